// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/CFRef.h"
#include "platform/CoreFoundation.h"

using StringRef = CFRef<CFStringRef>;

inline StringRef StringOf(char const* utf8) {
    return StringRef(CFStringCreateWithCString(nullptr, utf8, kCFStringEncodingUTF8));
}

// "(null)" for a null string.
inline std::string UTF8Of(CFStringRef string) {
    if (string == nullptr) {
        return "(null)";
    }
    CFIndex const size =
        1 + CFStringGetMaximumSizeForEncoding(CFStringGetLength(string), kCFStringEncodingUTF8);
    std::string text(static_cast<std::size_t>(size), '\0');
    CFStringGetCString(string, text.data(), size, kCFStringEncodingUTF8);
    return text.c_str();
}
