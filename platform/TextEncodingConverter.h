// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/MacTypes.h"

// Conversion of byte runs between text encodings. Encoding numbers are those of CoreFoundation.h;
// the Mac scripts besides: 1 Japanese, 2 Traditional Chinese, 3 Korean, 6 Greek, 7 Cyrillic,
// 25 Simplified Chinese, 29 Central European, 35 Turkish. UTF-16 (256) is in host order.

using TextEncoding = std::uint32_t;
struct OpaqueTECObject;
using TECObjectRef = OpaqueTECObject*;

constexpr TextEncoding kTextEncodingUnknown = 0xFFFF;
constexpr TextEncoding kTextEncodingUnicodeDefault = 0x100;

constexpr OSStatus kTextUnsupportedEncodingErr = -8738;
constexpr OSStatus kTECUnmappableElementErr = -8739;
constexpr OSStatus kTECPartialCharErr = -8753;
constexpr OSStatus kTECBufferBelowMinimumSizeErr = -8750;
constexpr OSStatus kTECOutputBufferFullStatus = -8785;

// Packs base (16 bits), variant and format into an encoding number: (256, 0, 2) is UTF-8.
constexpr TextEncoding CreateTextEncoding(std::uint32_t base, std::uint32_t variant,
                                          std::uint32_t format) {
    return (format << 26) | (variant << 16) | base;
}

// kTextUnsupportedEncodingErr and null for an encoding that isn't known.
OSStatus TECCreateConverter(TECObjectRef* converter, TextEncoding input, TextEncoding output);
void TECDisposeConverter(TECObjectRef converter);
// Forgets a begun character.
OSStatus TECClearConverterContextInfo(TECObjectRef converter);
// Converts whole characters as long as they fit. Result kTECOutputBufferFullStatus when the output
// is full (kTECBufferBelowMinimumSizeErr when not even one character fits), -8739 at a character
// without a form, -8753 at a character cut by the end of the input; `consumed` and `written` tell
// in any case how far it came.
OSStatus TECConvertText(TECObjectRef converter, std::uint8_t const* input,
                        unsigned long inputLength, unsigned long* consumed, std::uint8_t* output,
                        unsigned long outputSize, unsigned long* written);
// Ends the text: writes what the output encoding wants at its end, mostly nothing.
OSStatus TECFlushText(TECObjectRef converter, std::uint8_t* output, unsigned long outputSize,
                      unsigned long* written);

constexpr std::int16_t kTextScriptDontCare = -128;
// The encoding of a script, language and region; script -1 and the others -128 ask for the
// system's. `fontName` may be null.
OSStatus UpgradeScriptInfoToTextEncoding(std::int16_t script, std::int16_t language,
                                         std::int16_t region, std::uint8_t const* fontName,
                                         TextEncoding* encoding);
TextEncoding GetApplicationTextEncoding();  // the same setting as the system encoding
