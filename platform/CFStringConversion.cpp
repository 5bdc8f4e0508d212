// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>
#include <optional>

#include "platform/TextEncodingConverter.h"
#include "platform/UTF16.h"
#include "platform/internal/CFObjects.h"
#include "platform/internal/TextCodec.h"

namespace platform {
namespace {

constexpr char16_t kByteOrderMark = 0xFEFF;
constexpr char16_t kSwappedByteOrderMark = 0xFFFE;
constexpr std::size_t kMaximumPascalLength = 255;

void TakeByteOrderMark(CFStringEncoding encoding, UTF16Text& text) {
    bool const mayHaveOne =
        encoding == kCFStringEncodingUnicode || encoding == kCFStringEncodingUTF8;
    if (!mayHaveOne || text.empty()) {
        return;
    }
    if (encoding == kCFStringEncodingUnicode && text[0] == kSwappedByteOrderMark) {
        std::transform(text.begin(), text.end(), text.begin(), [](char16_t unit) {
            return static_cast<char16_t>((unit >> 8) | (unit << 8));
        });
    }
    if (text[0] == kByteOrderMark) {
        text.erase(0, 1);
    }
}

CFStringRef CreateFromBytes(std::uint8_t const* bytes, std::size_t size, CFStringEncoding encoding,
                            bool isExternal) {
    return WithoutExceptions<CFStringRef>(nullptr, [&]() -> CFStringRef {
        auto const* codec = TextCodec::ForEncoding(encoding);
        UTF16Text text;
        if (codec == nullptr || !codec->DecodeText(bytes, size, text)) {
            return nullptr;
        }
        if (isExternal) {
            TakeByteOrderMark(encoding, text);
        }
        return NewObject<__CFString>(std::move(text), false);
    });
}

// Where encoded bytes go: into a bounded buffer, or nowhere when they are only counted.
class ByteSink {
  public:
    ByteSink(std::uint8_t* buffer, std::size_t size) : mBuffer(buffer), mSize(size) {}

    bool Put(std::uint8_t const* bytes, std::size_t count) {
        if (mBuffer != nullptr) {
            if (count > mSize - mUsed) {
                return false;
            }
            std::memcpy(mBuffer + mUsed, bytes, count);
        }
        mUsed += count;
        return true;
    }
    std::size_t Used() const { return mUsed; }

  private:
    std::uint8_t* mBuffer;  // not owned, may be null
    std::size_t mSize;
    std::size_t mUsed = 0;
};

// Returns how many units went out before the sink was full or, without a loss byte, a character
// had no form.
std::size_t Encode(std::u16string_view text, TextCodec const& codec, std::uint8_t lossByte,
                   ByteSink& sink) {
    std::size_t done = 0;
    while (done < text.size()) {
        std::size_t next = done;
        std::array<std::uint8_t, TextCodec::kMaximumCharacterSize> form;
        std::size_t size = codec.Encode(TakeCharacter(text, next), form.data());
        if (size == 0 && lossByte != 0) {
            form[0] = lossByte;
            size = 1;
        }
        if (size == 0 || !sink.Put(form.data(), size)) {
            break;
        }
        done = next;
    }
    return done;
}

// All of the text into `size` bytes; nothing when it doesn't go.
std::optional<std::size_t> EncodeWhole(CFStringRef string, std::uint8_t* buffer, std::size_t size,
                                       CFStringEncoding encoding) {
    auto const* codec = TextCodec::ForEncoding(encoding);
    if (codec == nullptr || string == nullptr) {
        return std::nullopt;
    }
    ByteSink sink(buffer, size);
    if (Encode(TextOf(string), *codec, 0, sink) != TextOf(string).size()) {
        return std::nullopt;
    }
    return sink.Used();
}

struct MacCounterpart {
    CFStringEncoding encoding;
    CFStringEncoding macEncoding;
};
constexpr MacCounterpart kMacCounterparts[] = {
    {kCFStringEncodingUnicode, kCFStringEncodingMacRoman},
    {kCFStringEncodingUTF8, kCFStringEncodingMacRoman},
    {kCFStringEncodingASCII, kCFStringEncodingMacRoman},
    {kCFStringEncodingISOLatin1, kCFStringEncodingMacRoman},
    {kCFStringEncodingISOLatin9, kCFStringEncodingMacRoman},
    {kCFStringEncodingWindowsLatin1, kCFStringEncodingMacRoman},
    {kCFStringEncodingISOLatin2, 29},
    {kCFStringEncodingISOLatin5, 35},
    {kCFStringEncodingGBK, 25},
    {kCFStringEncodingShiftJIS, 1},
};

}  // namespace

bool GetUTF8(CFStringRef string, std::string& text) {
    text.resize(TextOf(string).size() * 3);
    auto const size = EncodeWhole(string, reinterpret_cast<std::uint8_t*>(text.data()), text.size(),
                                  kCFStringEncodingUTF8);
    text.resize(size.value_or(0));
    return size.has_value();
}

CFStringRef CreateStringFromUTF8(std::string_view bytes) {
    return CreateFromBytes(reinterpret_cast<std::uint8_t const*>(bytes.data()), bytes.size(),
                           kCFStringEncodingUTF8, false);
}

CFStringRef CreateStringFromSystemBytes(std::string_view bytes) {
    auto const* start = reinterpret_cast<std::uint8_t const*>(bytes.data());
    CFStringRef const string = CreateStringFromUTF8(bytes);
    return string != nullptr
               ? string
               : CreateFromBytes(start, bytes.size(), kCFStringEncodingISOLatin1, false);
}

}  // namespace platform

using platform::TextCodec;
using platform::TextOf;

CFStringRef CFStringCreateWithCString(CFAllocatorRef, char const* text, CFStringEncoding encoding) {
    if (text == nullptr) {
        return nullptr;
    }
    return platform::CreateFromBytes(reinterpret_cast<std::uint8_t const*>(text), std::strlen(text),
                                     encoding, false);
}

CFStringRef CFStringCreateWithBytes(CFAllocatorRef, std::uint8_t const* bytes, CFIndex length,
                                    CFStringEncoding encoding, bool isExternal) {
    if (length < 0 || (bytes == nullptr && length > 0)) {
        return nullptr;
    }
    return platform::CreateFromBytes(bytes, static_cast<std::size_t>(length), encoding, isExternal);
}

CFStringRef CFStringCreateWithPascalString(CFAllocatorRef, std::uint8_t const* text,
                                           CFStringEncoding encoding) {
    return text == nullptr ? nullptr
                           : platform::CreateFromBytes(text + 1, text[0], encoding, false);
}

bool CFStringGetCString(CFStringRef string, char* buffer, CFIndex size, CFStringEncoding encoding) {
    if (buffer == nullptr || size <= 0) {
        return false;
    }
    auto const used = platform::EncodeWhole(string, reinterpret_cast<std::uint8_t*>(buffer),
                                            static_cast<std::size_t>(size) - 1, encoding);
    buffer[used.value_or(0)] = '\0';
    return used.has_value();
}

bool CFStringGetPascalString(CFStringRef string, std::uint8_t* buffer, CFIndex size,
                             CFStringEncoding encoding) {
    if (buffer == nullptr || size <= 0) {
        return false;
    }
    auto const room = std::min(static_cast<std::size_t>(size) - 1, platform::kMaximumPascalLength);
    auto const used = platform::EncodeWhole(string, buffer + 1, room, encoding);
    buffer[0] = static_cast<std::uint8_t>(used.value_or(0));
    return used.has_value();
}

CFIndex CFStringGetBytes(CFStringRef string, CFRange range, CFStringEncoding encoding,
                         std::uint8_t lossByte, bool isExternal, std::uint8_t* buffer, CFIndex size,
                         CFIndex* used) {
    if (used != nullptr) {
        *used = 0;
    }
    auto const* codec = TextCodec::ForEncoding(encoding);
    auto text = TextOf(string);
    if (codec == nullptr || range.location < 0 || range.length < 0 || size < 0 ||
        static_cast<std::size_t>(range.location) > text.size()) {
        return 0;
    }
    text = text.substr(static_cast<std::size_t>(range.location),
                       static_cast<std::size_t>(range.length));
    platform::ByteSink sink(buffer, static_cast<std::size_t>(size));
    if (isExternal && encoding == kCFStringEncodingUnicode) {
        char16_t const mark = platform::kByteOrderMark;
        if (!sink.Put(reinterpret_cast<std::uint8_t const*>(&mark), sizeof mark)) {
            return 0;
        }
    }
    // The text has that form already, lone surrogates too.
    bool const isWhole = encoding == kCFStringEncodingUnicode && !text.empty() &&
                         sink.Put(reinterpret_cast<std::uint8_t const*>(text.data()),
                                  text.size() * sizeof(char16_t));
    std::size_t const converted =
        isWhole ? text.size() : platform::Encode(text, *codec, lossByte, sink);
    if (used != nullptr) {
        *used = static_cast<CFIndex>(sink.Used());
    }
    return static_cast<CFIndex>(converted);
}

CFIndex CFStringGetMaximumSizeForEncoding(CFIndex length, CFStringEncoding encoding) {
    auto const* codec = TextCodec::ForEncoding(encoding);
    if (codec == nullptr || length < 0) {
        return kCFNotFound;
    }
    auto const factor = static_cast<CFIndex>(codec->MaximumBytesPerUnit());
    return length > std::numeric_limits<CFIndex>::max() / factor ? kCFNotFound : length * factor;
}

void CFStringAppendCString(CFMutableStringRef string, char const* text, CFStringEncoding encoding) {
    CFRef<CFStringRef> const appended(CFStringCreateWithCString(nullptr, text, encoding));
    CFStringAppend(string, appended);
}

CFStringEncoding CFStringGetSystemEncoding() {
    return GetApplicationTextEncoding();
}

CFStringEncoding CFStringGetMostCompatibleMacStringEncoding(CFStringEncoding encoding) {
    for (auto const& row : platform::kMacCounterparts) {
        if (row.encoding == encoding) {
            return row.macEncoding;
        }
    }
    return TextCodec::ForEncoding(encoding) == nullptr ? kCFStringEncodingInvalidId
                                                       : encoding & 0xFFFF;
}

CFDataRef CFStringCreateExternalRepresentation(CFAllocatorRef allocator, CFStringRef string,
                                               CFStringEncoding encoding, std::uint8_t lossByte) {
    auto const* codec = TextCodec::ForEncoding(encoding);
    if (string == nullptr || codec == nullptr) {
        return nullptr;
    }
    return platform::WithoutExceptions<CFDataRef>(nullptr, [&]() -> CFDataRef {
        auto const length = CFStringGetLength(string);
        std::vector<std::uint8_t> bytes((TextOf(string).size() + 1) *
                                        std::max<std::size_t>(2, codec->MaximumBytesPerUnit()));
        CFIndex used = 0;
        if (CFStringGetBytes(string, {0, length}, encoding, lossByte, true, bytes.data(),
                             static_cast<CFIndex>(bytes.size()), &used) != length) {
            return nullptr;
        }
        return CFDataCreate(allocator, bytes.data(), used);
    });
}

CFStringRef CFStringCreateFromExternalRepresentation(CFAllocatorRef allocator, CFDataRef data,
                                                     CFStringEncoding encoding) {
    return data == nullptr ? nullptr
                           : CFStringCreateWithBytes(allocator, CFDataGetBytePtr(data),
                                                     CFDataGetLength(data), encoding, true);
}
