// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/CFRef.h"
#include "platform/CoreFoundation.h"

inline std::uint8_t const* Bytes(std::string_view text) {
    return reinterpret_cast<std::uint8_t const*>(text.data());
}

inline CFRef<CFStringRef> Str(std::string_view utf8) {
    return CFRef<CFStringRef>(CFStringCreateWithBytes(
        nullptr, Bytes(utf8), static_cast<CFIndex>(utf8.size()), kCFStringEncodingUTF8, false));
}

inline CFRef<CFDataRef> Data(std::string_view bytes) {
    return CFRef<CFDataRef>(
        CFDataCreate(nullptr, Bytes(bytes), static_cast<CFIndex>(bytes.size())));
}

// UTF-8, or "(null)".
inline std::string Text(CFStringRef string) {
    if (string == nullptr) {
        return "(null)";
    }
    std::string text(static_cast<std::size_t>(CFStringGetLength(string)) * 3 + 1, '\0');
    CFIndex used = 0;
    CFStringGetBytes(string, {0, CFStringGetLength(string)}, kCFStringEncodingUTF8, '?', false,
                     reinterpret_cast<std::uint8_t*>(text.data()),
                     static_cast<CFIndex>(text.size()), &used);
    text.resize(static_cast<std::size_t>(used));
    return text;
}

inline std::string Text(CFDataRef data) {
    auto const* bytes = CFDataGetBytePtr(data);
    return data == nullptr ? "(null)" : std::string(bytes, bytes + CFDataGetLength(data));
}

// The text of a string that is taken over.
inline std::string Taken(CFStringRef string) {
    return Text(CFRef<CFStringRef>(string));
}

inline CFRef<CFURLRef> FileURL(std::string const& path, bool isDirectory = false) {
    return CFRef<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
        nullptr, Bytes(path), static_cast<CFIndex>(path.size()), isDirectory));
}
