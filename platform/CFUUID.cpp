// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iterator>

#include "platform/internal/CFObjects.h"

struct __CFUUID : platform::CFObject {
    explicit __CFUUID(CFUUIDBytes const& value) : CFObject(&platform::kUUIDClass), bytes(value) {}

    CFUUIDBytes bytes;
};

namespace platform {

constinit CFClass const kUUIDClass = {
    kUUIDTypeID, DestroyObject<__CFUUID>, [](CFObject const* left, CFObject const* right) {
        return std::equal(std::begin(static_cast<CFUUIDRef>(left)->bytes.byte),
                          std::end(static_cast<CFUUIDRef>(left)->bytes.byte),
                          std::begin(static_cast<CFUUIDRef>(right)->bytes.byte));
    }};

namespace {

constexpr std::string_view kPattern = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx";

int HexadecimalDigit(char16_t unit) {
    if (unit >= u'0' && unit <= u'9') {
        return unit - u'0';
    }
    char16_t const lower = unit | 0x20;
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

}  // namespace
}  // namespace platform

CFUUIDRef CFUUIDCreate(CFAllocatorRef allocator) {
    CFUUIDBytes bytes;
    if (getentropy(bytes.byte, sizeof bytes.byte) != 0) {
        return nullptr;
    }
    // RFC 4122: version 4, variant 1.
    bytes.byte[6] = static_cast<std::uint8_t>((bytes.byte[6] & 0x0F) | 0x40);
    bytes.byte[8] = static_cast<std::uint8_t>((bytes.byte[8] & 0x3F) | 0x80);
    return CFUUIDCreateFromUUIDBytes(allocator, bytes);
}

CFUUIDRef CFUUIDCreateFromString(CFAllocatorRef allocator, CFStringRef text) {
    auto const units = platform::TextOf(text);
    if (units.size() != platform::kPattern.size()) {
        return nullptr;
    }
    CFUUIDBytes bytes{};
    std::size_t digits = 0;
    for (std::size_t index = 0; index < units.size(); ++index) {
        if (platform::kPattern[index] == '-') {
            if (units[index] != u'-') {
                return nullptr;
            }
            continue;
        }
        int const digit = platform::HexadecimalDigit(units[index]);
        if (digit < 0) {
            return nullptr;
        }
        auto& byte = bytes.byte[digits++ / 2];
        byte = static_cast<std::uint8_t>((byte << 4) | digit);
    }
    return CFUUIDCreateFromUUIDBytes(allocator, bytes);
}

CFUUIDRef CFUUIDCreateFromUUIDBytes(CFAllocatorRef, CFUUIDBytes bytes) {
    return platform::NewObject<__CFUUID>(bytes);
}

CFStringRef CFUUIDCreateString(CFAllocatorRef allocator, CFUUIDRef uuid) {
    if (uuid == nullptr) {
        return nullptr;
    }
    constexpr char kDigits[] = "0123456789ABCDEF";
    char16_t text[platform::kPattern.size()];
    std::size_t digit = 0;
    for (std::size_t index = 0; index < platform::kPattern.size(); ++index) {
        if (platform::kPattern[index] == '-') {
            text[index] = u'-';
            continue;
        }
        auto const byte = uuid->bytes.byte[digit / 2];
        text[index] = static_cast<char16_t>(kDigits[digit % 2 == 0 ? byte >> 4 : byte & 0x0F]);
        ++digit;
    }
    return CFStringCreateWithCharacters(allocator, text, std::ssize(text));
}

CFUUIDBytes CFUUIDGetUUIDBytes(CFUUIDRef uuid) {
    return uuid == nullptr ? CFUUIDBytes{} : uuid->bytes;
}
