// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <exception>
#include <utility>
#include <vector>

#include "platform/CoreFoundation.h"

// What all counted objects share. An object's class is a table rather than virtual functions, so
// that constants can be initialised at compile time and never need a destructor.

namespace platform {

struct CFObject;

struct CFClass {
    CFTypeID typeID;
    void (*destroy)(CFObject const* object);
    // Both objects have this class and differ in address.
    bool (*equal)(CFObject const* left, CFObject const* right);
};

constexpr long kConstantCount = -1;  // an object that is never freed

struct CFObject {
    explicit constexpr CFObject(CFClass const* theClass, long count = 1)
        : objectClass(theClass), references(count) {}

    CFClass const* objectClass;
    mutable std::atomic<long> references;
};

enum ObjectTypeID : CFTypeID {
    kStringTypeID = 1,
    kDataTypeID,
    kArrayTypeID,
    kDictionaryTypeID,
    kNumberTypeID,
    kBooleanTypeID,
    kURLTypeID,
    kUUIDTypeID,
    kBundleTypeID,
    kRunLoopSourceTypeID,
    kDataProviderTypeID,
    kImageTypeID
};

// False when a test has asked for this creation to fail.
bool CreationAllowed();
void CountLiveObjects(long change);

// Every platform object, counted or not, is made and destroyed by this pair. Null without memory.
template <typename Object, typename... Arguments>
Object* NewObject(Arguments&&... arguments) {
    if (!CreationAllowed()) {
        return nullptr;
    }
    try {
        auto* object = new Object(std::forward<Arguments>(arguments)...);
        CountLiveObjects(1);
        return object;
    } catch (std::exception const&) {
        return nullptr;
    }
}
template <typename Object>
void DeleteObject(Object* object) {
    if (object != nullptr) {
        delete object;
        CountLiveObjects(-1);
    }
}
template <typename Object>
void DestroyObject(CFObject const* object) {
    DeleteObject(static_cast<Object const*>(object));
}

// Runs a piece of work that may run out of memory; `failure` then is the result.
template <typename Result, typename Work>
Result WithoutExceptions(Result failure, Work&& work) {
    try {
        return work();
    } catch (std::exception const&) {
        return failure;
    }
}

// Room for another element, so that adding it can't fail; grows by doubling.
template <typename Element>
void ReserveOneMore(std::vector<Element>& elements) {
    if (elements.size() == elements.capacity()) {
        elements.reserve(std::max<std::size_t>(4, elements.size() * 2));
    }
}

// The object as `Object` if it has that type, or null.
template <typename Object>
Object const* ObjectOfType(CFTypeRef object, CFTypeID type) {
    return CFGetTypeID(object) == type ? static_cast<Object const*>(object) : nullptr;
}

}  // namespace platform
