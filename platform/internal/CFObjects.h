// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/CFRef.h"
#include "platform/Wiping.h"
#include "platform/internal/CFRuntime.h"
#include "platform/internal/UTF16Text.h"

// The insides of the value objects, for the services of this library.

namespace platform {

extern CFClass const kStringClass;
extern CFClass const kDataClass;
extern CFClass const kArrayClass;
extern CFClass const kDictionaryClass;
extern CFClass const kNumberClass;
extern CFClass const kBooleanClass;
extern CFClass const kURLClass;
extern CFClass const kUUIDClass;
extern CFClass const kBundleClass;
extern CFClass const kRunLoopSourceClass;
extern CFClass const kDataProviderClass;
extern CFClass const kImageClass;

}  // namespace platform

struct __CFString : platform::CFObject {
    __CFString(platform::UTF16Text&& content, bool isMutableText, long count = 1)
        : CFObject(&platform::kStringClass, count),
          text(std::move(content)),
          isMutable(isMutableText) {}

    // A short text lies in the object itself.
    static void operator delete(void* string, std::size_t size) {
        Wipe(string, size);
        ::operator delete(string);
    }

    platform::UTF16Text text;
    std::size_t maximum = platform::UTF16Text::npos;  // in UTF-16 units
    bool isMutable;
};

struct __CFData : platform::CFObject {
    __CFData(std::uint8_t const* source, std::size_t length, bool isMutableData)
        : CFObject(&platform::kDataClass),
          bytes(source, source + length),
          isMutable(isMutableData) {}

    std::vector<std::uint8_t, WipingAllocator<std::uint8_t>> bytes;
    bool isMutable;
};

struct __CFArray : platform::CFObject {
    __CFArray() : CFObject(&platform::kArrayClass) {}
    explicit __CFArray(std::vector<CFRef<CFTypeRef>> const& source)
        : CFObject(&platform::kArrayClass), elements(source) {}

    std::vector<CFRef<CFTypeRef>> elements;
};

struct __CFDictionary : platform::CFObject {
    struct Entry {
        CFRef<CFStringRef> key;
        CFRef<CFTypeRef> value;
    };

    __CFDictionary() : CFObject(&platform::kDictionaryClass) {}

    std::vector<Entry> entries;  // in order of insertion
    // Position in `entries`; the views look into the entries' keys, which never change.
    std::unordered_map<std::u16string_view, std::size_t> positions;
};

struct __CFNumber : platform::CFObject {
    explicit __CFNumber(std::int64_t value)
        : CFObject(&platform::kNumberClass), integer(value), real(0), isFloat(false) {}
    explicit __CFNumber(double value)
        : CFObject(&platform::kNumberClass), integer(0), real(value), isFloat(true) {}

    std::int64_t integer;
    double real;
    bool isFloat;
};

struct __CFBoolean : platform::CFObject {
    explicit constexpr __CFBoolean(bool truth)
        : CFObject(&platform::kBooleanClass, platform::kConstantCount), value(truth) {}

    bool value;
};

namespace platform {

// The text in UTF-8; lone surrogates have no form there and make it empty and the result false.
bool GetUTF8(CFStringRef string, std::string& text);
// From bytes that should be UTF-8 and otherwise are taken for ISO Latin 1, such as file names.
CFStringRef CreateStringFromSystemBytes(std::string_view bytes);
CFStringRef CreateStringFromUTF8(std::string_view bytes);  // strict
std::u16string_view TextOf(CFStringRef string);            // empty for null

// A copy that no longer changes with the original, null for null; throws std::bad_alloc.
CFRef<CFStringRef> CopyOf(CFStringRef string);

// A deep copy of a property list value that no longer changes with the original; other objects
// are retained. Null when it is nested too deep or there is no memory.
CFTypeRef CreateDeepCopy(CFTypeRef value);

constexpr int kMaximumPropertyListDepth = 256;

}  // namespace platform
