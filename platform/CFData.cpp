// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <functional>
#include <vector>

#include "platform/internal/CFObjects.h"

namespace platform {

constinit CFClass const kDataClass = {
    kDataTypeID, DestroyObject<__CFData>, [](CFObject const* left, CFObject const* right) {
        return static_cast<CFDataRef>(left)->bytes == static_cast<CFDataRef>(right)->bytes;
    }};

}  // namespace platform

using platform::NewObject;

CFDataRef CFDataCreate(CFAllocatorRef, std::uint8_t const* bytes, CFIndex length) {
    if (length < 0 || (bytes == nullptr && length > 0)) {
        return nullptr;
    }
    return NewObject<__CFData>(bytes, static_cast<std::size_t>(length), false);
}

CFDataRef CFDataCreateCopy(CFAllocatorRef, CFDataRef data) {
    if (data == nullptr) {
        return nullptr;
    }
    if (!data->isMutable) {
        return static_cast<CFDataRef>(CFRetain(data));
    }
    return NewObject<__CFData>(data->bytes.data(), data->bytes.size(), false);
}

CFMutableDataRef CFDataCreateMutable(CFAllocatorRef, CFIndex capacity) {
    CFMutableDataRef const data = NewObject<__CFData>(nullptr, std::size_t{0}, true);
    if (data != nullptr && capacity > 0) {
        // A hint: without the memory for all of it the data grows as it can.
        platform::WithoutExceptions(false, [&] {
            data->bytes.reserve(static_cast<std::size_t>(capacity));
            return true;
        });
    }
    return data;
}

CFIndex CFDataGetLength(CFDataRef data) {
    return data == nullptr ? 0 : static_cast<CFIndex>(data->bytes.size());
}

std::uint8_t const* CFDataGetBytePtr(CFDataRef data) {
    return data == nullptr ? nullptr : data->bytes.data();
}

void CFDataAppendBytes(CFMutableDataRef data, std::uint8_t const* bytes, CFIndex length) {
    if (data == nullptr || bytes == nullptr || length <= 0) {
        return;
    }
    platform::WithoutExceptions(false, [&] {
        std::less<std::uint8_t const*> const isBefore;
        std::uint8_t const* const own = data->bytes.data();
        if (isBefore(bytes, own) || !isBefore(bytes, own + data->bytes.size())) {
            data->bytes.insert(data->bytes.end(), bytes, bytes + length);
        } else {
            std::vector<std::uint8_t> const copy(bytes, bytes + length);
            data->bytes.insert(data->bytes.end(), copy.begin(), copy.end());
        }
        return true;
    });
}
