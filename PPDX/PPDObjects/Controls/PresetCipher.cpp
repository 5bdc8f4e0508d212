// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PresetCipher.h"

// TEMPORARY: until the string cipher is there, nothing is enciphered, so presets leave notes out.

CFStringRef PresetCipher::CopyEnciphered(CFStringRef) {
    return nullptr;
}

CFStringRef PresetCipher::CopyDeciphered(CFStringRef) {
    return nullptr;
}
