// SPDX-License-Identifier: Apache-2.0
#include "platform/TextEncodingConverter.h"

#include <atomic>
#include <cstring>
#include <string_view>

#include "platform/CoreFoundation.h"
#include "platform/Testing.h"
#include "platform/internal/CFRuntime.h"
#include "platform/internal/Locale.h"
#include "platform/internal/TextCodec.h"

struct OpaqueTECObject {
    platform::TextCodec const* input;   // not owned
    platform::TextCodec const* output;  // not owned
};

namespace platform {
namespace {

std::atomic<TextEncoding> gSystemEncoding{kTextEncodingUnknown};

// The languages whose Mac script isn't Roman. Traditional Chinese goes by the territory.
struct LanguageScript {
    std::string_view locale;
    TextEncoding encoding;
};
constexpr LanguageScript kLanguageScripts[] = {
    {"ja", 1},  {"zh_TW", 2}, {"zh_HK", 2}, {"zh_MO", 2}, {"zh", 25}, {"ko", 3},
    {"cs", 29}, {"sk", 29},   {"pl", 29},   {"hu", 29},   {"hr", 29}, {"sl", 29},
    {"et", 29}, {"lv", 29},   {"lt", 29},   {"ru", 7},    {"uk", 7},  {"bg", 7},
    {"sr", 7},  {"be", 7},    {"mk", 7},    {"el", 6},    {"tr", 35},
};

TextEncoding EncodingOfLocale() {
    auto const locale = LocaleName("LC_CTYPE");
    auto const language = locale.substr(0, locale.find('_'));
    for (auto const& row : kLanguageScripts) {
        if (row.locale == locale || row.locale == language) {
            return row.encoding;
        }
    }
    return kCFStringEncodingMacRoman;
}

struct Conversion {
    OSStatus status;
    std::size_t consumed;
    std::size_t written;
};

Conversion Convert(OpaqueTECObject const& converter, std::uint8_t const* input,
                   std::size_t inputSize, std::uint8_t* output, std::size_t outputSize) {
    Conversion result{noErr, 0, 0};
    while (result.consumed < inputSize) {
        char32_t character = 0;
        int const taken =
            converter.input->Decode(input + result.consumed, input + inputSize, character);
        if (taken <= 0) {
            result.status =
                taken == TextCodec::kCut ? kTECPartialCharErr : kTECUnmappableElementErr;
            break;
        }
        std::uint8_t form[TextCodec::kMaximumCharacterSize];
        std::size_t const size = converter.output->Encode(character, form);
        if (size == 0) {
            result.status = kTECUnmappableElementErr;
            break;
        }
        if (size > outputSize - result.written) {
            result.status =
                result.written == 0 ? kTECBufferBelowMinimumSizeErr : kTECOutputBufferFullStatus;
            break;
        }
        std::memcpy(output + result.written, form, size);
        result.written += size;
        result.consumed += static_cast<std::size_t>(taken);
    }
    return result;
}

}  // namespace
}  // namespace platform

OSStatus TECCreateConverter(TECObjectRef* converter, TextEncoding input, TextEncoding output) {
    if (converter == nullptr) {
        return paramErr;
    }
    *converter = nullptr;
    return platform::WithoutExceptions<OSStatus>(memFullErr, [&]() -> OSStatus {
        auto const* from = platform::TextCodec::ForEncoding(input);
        auto const* to = platform::TextCodec::ForEncoding(output);
        if (from == nullptr || to == nullptr) {
            return kTextUnsupportedEncodingErr;
        }
        *converter = platform::NewObject<OpaqueTECObject>(OpaqueTECObject{from, to});
        return *converter == nullptr ? memFullErr : noErr;
    });
}

void TECDisposeConverter(TECObjectRef converter) {
    platform::DeleteObject(converter);
}

// A begun character is never taken, so there is nothing to forget.
OSStatus TECClearConverterContextInfo(TECObjectRef converter) {
    return converter == nullptr ? paramErr : noErr;
}

OSStatus TECConvertText(TECObjectRef converter, std::uint8_t const* input,
                        unsigned long inputLength, unsigned long* consumed, std::uint8_t* output,
                        unsigned long outputSize, unsigned long* written) {
    platform::Conversion result{paramErr, 0, 0};
    if (converter != nullptr && (input != nullptr || inputLength == 0)) {
        result = platform::Convert(*converter, input, inputLength, output,
                                   output == nullptr ? 0 : outputSize);
    }
    if (consumed != nullptr) {
        *consumed = result.consumed;
    }
    if (written != nullptr) {
        *written = result.written;
    }
    return result.status;
}

OSStatus TECFlushText(TECObjectRef converter, std::uint8_t*, unsigned long,
                      unsigned long* written) {
    if (written != nullptr) {
        *written = 0;
    }
    return converter == nullptr ? paramErr : noErr;
}

OSStatus UpgradeScriptInfoToTextEncoding(std::int16_t script, std::int16_t language,
                                         std::int16_t region, std::uint8_t const*,
                                         TextEncoding* encoding) {
    constexpr std::int16_t kSystemScript = -1;
    constexpr std::int16_t kTurkish = 17;  // written in the Roman script
    constexpr std::int16_t kTurkey = 24;
    constexpr TextEncoding kTurkishEncoding = 35;
    if (encoding == nullptr) {
        return paramErr;
    }
    if (language == kTurkish || region == kTurkey) {
        *encoding = kTurkishEncoding;
    } else if (script == kSystemScript || script == kTextScriptDontCare) {
        *encoding = GetApplicationTextEncoding();
    } else {
        *encoding = static_cast<TextEncoding>(script);
        constexpr TextEncoding kLastScript = 32;
        if (script < 0 || *encoding > kLastScript ||
            platform::TextCodec::ForEncoding(*encoding) == nullptr) {
            *encoding = kTextEncodingUnknown;
            return kTextUnsupportedEncodingErr;
        }
    }
    return noErr;
}

TextEncoding GetApplicationTextEncoding() {
    TextEncoding encoding = platform::gSystemEncoding;
    if (encoding == kTextEncodingUnknown) {
        encoding = platform::EncodingOfLocale();
        platform::gSystemEncoding = encoding;
    }
    return encoding;
}

void SetSystemTextEncoding(TextEncoding encoding) {
    platform::gSystemEncoding = encoding;
}
