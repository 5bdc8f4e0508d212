// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

// How the text of a job note stands in a preset, where a password may not be read by chance.
class PresetCipher {
  public:
    // Null for a text that can't be enciphered or deciphered; the caller releases the result.
    static CFStringRef CopyEnciphered(CFStringRef text);
    static CFStringRef CopyDeciphered(CFStringRef text);
};
