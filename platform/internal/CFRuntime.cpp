// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/CFRuntime.h"

#include "platform/Testing.h"

namespace platform {
namespace {

constexpr long kNever = -1;

std::atomic<long> gCreationsBeforeFailure{kNever};
std::atomic<long> gLiveObjects{0};

CFObject const* AsObject(CFTypeRef object) {
    return static_cast<CFObject const*>(object);
}

bool IsConstant(CFObject const* object) {
    return object->references.load(std::memory_order_relaxed) == kConstantCount;
}

}  // namespace

bool CreationAllowed() {
    if (gCreationsBeforeFailure.load(std::memory_order_relaxed) == kNever) {
        return true;
    }
    return gCreationsBeforeFailure.fetch_sub(1) != 0;
}

void CountLiveObjects(long change) {
    gLiveObjects.fetch_add(change, std::memory_order_relaxed);
}

}  // namespace platform

using platform::AsObject;

CFTypeRef CFRetain(CFTypeRef object) {
    if (object != nullptr && !platform::IsConstant(AsObject(object))) {
        AsObject(object)->references.fetch_add(1, std::memory_order_relaxed);
    }
    return object;
}

void CFRelease(CFTypeRef object) {
    if (object == nullptr || platform::IsConstant(AsObject(object))) {
        return;
    }
    if (AsObject(object)->references.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        AsObject(object)->objectClass->destroy(AsObject(object));
    }
}

CFIndex CFGetRetainCount(CFTypeRef object) {
    if (object == nullptr) {
        return 0;
    }
    return platform::IsConstant(AsObject(object)) ? 1 : AsObject(object)->references.load();
}

CFTypeID CFGetTypeID(CFTypeRef object) {
    return object == nullptr ? 0 : AsObject(object)->objectClass->typeID;
}

bool CFEqual(CFTypeRef left, CFTypeRef right) {
    if (left == right) {
        return true;
    }
    if (left == nullptr || right == nullptr ||
        AsObject(left)->objectClass != AsObject(right)->objectClass) {
        return false;
    }
    return AsObject(left)->objectClass->equal(AsObject(left), AsObject(right));
}

CFTypeID CFStringGetTypeID() {
    return platform::kStringTypeID;
}
CFTypeID CFDataGetTypeID() {
    return platform::kDataTypeID;
}
CFTypeID CFArrayGetTypeID() {
    return platform::kArrayTypeID;
}
CFTypeID CFDictionaryGetTypeID() {
    return platform::kDictionaryTypeID;
}
CFTypeID CFNumberGetTypeID() {
    return platform::kNumberTypeID;
}
CFTypeID CFBooleanGetTypeID() {
    return platform::kBooleanTypeID;
}
CFTypeID CFURLGetTypeID() {
    return platform::kURLTypeID;
}
CFTypeID CFUUIDGetTypeID() {
    return platform::kUUIDTypeID;
}
CFTypeID CFBundleGetTypeID() {
    return platform::kBundleTypeID;
}

void FailCreationAfter(long count) {
    platform::gCreationsBeforeFailure = count < 0 ? platform::kNever : count;
}

long LiveObjectCount() {
    return platform::gLiveObjects;
}
