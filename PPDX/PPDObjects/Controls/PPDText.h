// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

// A keyword or value of the PPD as a string that the caller releases: ASCII, or Mac Roman when it
// has other bytes. Null only for null and without memory.
inline CFStringRef CopyPPDText(char const* text) {
    CFStringRef const string = CFStringCreateWithCString(nullptr, text, kCFStringEncodingASCII);
    return string != nullptr ? string
                             : CFStringCreateWithCString(nullptr, text, kCFStringEncodingMacRoman);
}

// The same for a colour profile, whose name may have come from outside the PPD: UTF-8, or Mac Roman
// when it isn't that.
inline CFStringRef CopyProfileText(char const* text) {
    CFStringRef const string = CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8);
    return string != nullptr ? string
                             : CFStringCreateWithCString(nullptr, text, kCFStringEncodingMacRoman);
}
