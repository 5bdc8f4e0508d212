// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <algorithm>

#include "platform/internal/CFObjects.h"

namespace platform {

constinit CFClass const kArrayClass = {
    kArrayTypeID, DestroyObject<__CFArray>, [](CFObject const* left, CFObject const* right) {
        auto const& a = static_cast<CFArrayRef>(left)->elements;
        auto const& b = static_cast<CFArrayRef>(right)->elements;
        return std::equal(a.begin(), a.end(), b.begin(), b.end(), CFEqual);
    }};

namespace {

bool HasIndex(CFArrayRef array, CFIndex index) {
    return index >= 0 && index < CFArrayGetCount(array);
}

}  // namespace
}  // namespace platform

using platform::NewObject;

CFMutableArrayRef CFArrayCreateMutable(CFAllocatorRef, CFIndex) {
    return NewObject<__CFArray>();
}

CFMutableArrayRef CFArrayCreateMutableCopy(CFAllocatorRef, CFIndex, CFArrayRef array) {
    return array == nullptr ? NewObject<__CFArray>() : NewObject<__CFArray>(array->elements);
}

CFIndex CFArrayGetCount(CFArrayRef array) {
    return array == nullptr ? 0 : static_cast<CFIndex>(array->elements.size());
}

CFTypeRef CFArrayGetValueAtIndex(CFArrayRef array, CFIndex index) {
    return platform::HasIndex(array, index) ? array->elements[static_cast<std::size_t>(index)].Get()
                                            : nullptr;
}

void CFArrayAppendValue(CFMutableArrayRef array, CFTypeRef value) {
    CFArrayInsertValueAtIndex(array, CFArrayGetCount(array), value);
}

void CFArrayInsertValueAtIndex(CFMutableArrayRef array, CFIndex index, CFTypeRef value) {
    if (array == nullptr || index < 0 || index > CFArrayGetCount(array)) {
        return;
    }
    platform::WithoutExceptions(false, [&] {
        array->elements.insert(array->elements.begin() + index, CFRef<CFTypeRef>::Retained(value));
        return true;
    });
}

void CFArraySetValueAtIndex(CFMutableArrayRef array, CFIndex index, CFTypeRef value) {
    if (platform::HasIndex(array, index)) {
        array->elements[static_cast<std::size_t>(index)] = CFRef<CFTypeRef>::Retained(value);
    } else {
        CFArrayInsertValueAtIndex(array, index, value);
    }
}

void CFArrayRemoveValueAtIndex(CFMutableArrayRef array, CFIndex index) {
    if (platform::HasIndex(array, index)) {
        // Held until the gap is closed: what is freed may look at the array.
        auto const removed = array->elements[static_cast<std::size_t>(index)];
        array->elements.erase(array->elements.begin() + index);
    }
}
