// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/TextConverter.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <utility>

#include "ZUBUtils/PPDUtils/PPDLanguage.h"
#include "platform/CoreFoundation.h"
#include "platform/MemoryManager.h"
#include "platform/TextEncodingConverter.h"

namespace {

struct NamedEncoding {
    char const* name;
    std::uint32_t encoding;
};
constexpr NamedEncoding kEncodings[] = {
    {"ISOLatin1", kCFStringEncodingISOLatin1},        //
    {"ISOLatin2", kCFStringEncodingISOLatin2},        //
    {"ISOLatin5", kCFStringEncodingISOLatin5},        //
    {"JIS83-RKSJ", kCFStringEncodingShiftJIS},        //
    {"MacStandard", kCFStringEncodingMacRoman},       //
    {"WindowsANSI", kCFStringEncodingWindowsLatin1},  //
};
constexpr char const* kUTF8Name = "UTF-8";
constexpr std::uint32_t kUTF8 = CreateTextEncoding(kTextEncodingUnicodeDefault, 0, 2);

constexpr std::int32_t kEmptyText = 5000;
constexpr unsigned long kOutputBytesPerByte = 3;
constexpr unsigned long kSmallestOutput = 32;
constexpr unsigned long kUnicodeBytesPerByte = 4;
constexpr std::size_t kShortText = 256;  // a PPD's line has 254 bytes

struct HandleDeleter {
    void operator()(Handle handle) const { DisposeHandle(handle); }
};
using HandleGuard = std::unique_ptr<char*, HandleDeleter>;

// Bytes for the time of one conversion, on the stack as long as they are few.
template <std::size_t kInlineSize>
class Scratch {
  public:
    explicit Scratch(std::size_t size)
        : mHeap(size > kInlineSize ? new (std::nothrow) char[size] : nullptr),
          mBytes(size > kInlineSize ? mHeap.get() : mInline) {}
    char* Get() { return mBytes; }  // null when there is no memory

  private:
    std::unique_ptr<char[]> mHeap;
    char* mBytes;
    char mInline[kInlineSize];
};

std::uint8_t const* Bytes(char const* text) {
    return reinterpret_cast<std::uint8_t const*>(text);
}
std::uint8_t* Bytes(char* text) {
    return reinterpret_cast<std::uint8_t*>(text);
}

CFStringRef StringInEncoding(char const* bytes, unsigned long length, CFStringEncoding encoding) {
    return CFStringCreateWithBytes(nullptr, Bytes(bytes), static_cast<CFIndex>(length), encoding,
                                   false);
}

CFStringRef OutOfMemoryText() {
    return CFStringCreateWithCString(nullptr, "Out Of Memory", kCFStringEncodingMacRoman);
}

void Dispose(TECObjectRef* converter) {
    if (*converter != nullptr) {
        TECClearConverterContextInfo(*converter);
        TECDisposeConverter(*converter);
        *converter = nullptr;
    }
}

bool IsOutputFull(OSStatus status) {
    return status == kTECOutputBufferFullStatus || status == kTECBufferBelowMinimumSizeErr;
}

bool IsHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F') || (c >= 'a' && c <= 'f');
}

bool IsBlank(char c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r';
}

char const* NextHexChar(char const* position) {
    do {
        ++position;
    } while (IsBlank(*position));
    return position;
}

bool EndsAStep(char c) {
    return IsHexDigit(c) || c == '>';
}

// Whether what stands between "<" and ">" is pairs of digits. Blanks right before ">" lead the last
// step onto the ">" itself, which counts as a digit.
bool IsWholeEscape(char const* open, char const* close) {
    long count = 0;
    for (char const* position = open; position < close - 1; ++count) {
        position = NextHexChar(position);
        if (!EndsAStep(*position)) {
            return false;
        }
    }
    return count != 0 && count % 2 == 0;
}

char* DecodeEscape(char const* open, char const* close, char* out) {
    for (char const* position = open; position < close - 1;) {
        position = NextHexChar(position);
        int const high = TextConverter::toShort(*position);
        position = NextHexChar(position);
        *out++ = static_cast<char>(high * 16 + TextConverter::toShort(*position));
    }
    return out;
}

}  // namespace

HexLanguageExceptions TextConverter::mExceptionsList;

TextConverter::TextConverter(PPDX* ppd) : TextConverter(ppd, GetCurrentEncoding()) {}

TextConverter::TextConverter(PPDX* ppd, unsigned long const& output) {
    mInputEncoding = static_cast<std::uint32_t>(GetPPDEncoding(ppd));
    if (mInputEncoding == kUnknownEncoding) {
        return;
    }
    SetLanguage(ppd);
    mOutputEncoding = static_cast<std::uint32_t>(output);
    Create();
}

TextConverter::TextConverter(unsigned long& input, unsigned long const& output) {
    mInputEncoding = static_cast<std::uint32_t>(input);
    mOutputEncoding = static_cast<std::uint32_t>(output);
    Create();
}

TextConverter::~TextConverter() {
    Dispose(&mConverter);
    Dispose(&mToUnicodeConverter);
}

void TextConverter::Initialize() {
    Dispose(&mConverter);
    Dispose(&mToUnicodeConverter);
    mInputEncoding = kUnknownEncoding;
    mOutputEncoding = kUnknownEncoding;
    mStatus = 0;
    mValid = false;
    mUnicodeEncoding = 0;
    mLanguage.clear();
}

void TextConverter::Create() {
    if (mInputEncoding == kUnknownEncoding || mOutputEncoding == kUnknownEncoding) {
        return;
    }
    Dispose(&mConverter);
    mStatus = TECCreateConverter(&mConverter, mInputEncoding, mOutputEncoding);
    mValid = mStatus == noErr;
}

void TextConverter::SetLanguage(PPDX* ppd) {
    char const* const language = PPDLanguageVersion(ppd);
    try {
        mLanguage = language != nullptr ? language : "";
    } catch (std::bad_alloc const&) {
        mLanguage.clear();
    }
}

unsigned long TextConverter::LanguageStringToEncoding(char const* text) {
    if (text == nullptr) {
        return kUnknownEncoding;
    }
    auto const* const found =
        std::find_if(std::begin(kEncodings), std::end(kEncodings),
                     [text](NamedEncoding const& row) { return std::strcmp(row.name, text) == 0; });
    if (found != std::end(kEncodings)) {
        return found->encoding;
    }
    if (std::strcmp(text, kUTF8Name) != 0) {
        return kUnknownEncoding;
    }
    // Where the platform names a script of the table, the text would be read in that script.
    std::uint32_t const encoding = CFStringGetMostCompatibleMacStringEncoding(kUTF8);
    bool const isOfTable =
        std::any_of(std::begin(kEncodings), std::end(kEncodings),
                    [encoding](NamedEncoding const& row) { return row.encoding == encoding; });
    return isOfTable ? kUTF8 : encoding;
}

unsigned long TextConverter::GetPPDEncoding(PPDX* ppd) {
    return ppd != nullptr ? LanguageStringToEncoding(PPDLanguageEncoding(ppd)) : kUnknownEncoding;
}

unsigned long TextConverter::GetCurrentEncoding() {
    TextEncoding encoding = kUnknownEncoding;
    OSStatus const status = UpgradeScriptInfoToTextEncoding(
        -1, kTextScriptDontCare, kTextScriptDontCare, nullptr, &encoding);
    return status == noErr ? encoding : kUnknownEncoding;
}

__CFString const* TextConverter::ConvertToCFString(char const* text, long /*limit*/) {
    if (text == nullptr) {
        return CFStringCreateWithCString(nullptr, "", kCFStringEncodingMacRoman);
    }
    std::size_t const length = std::strlen(text);
    if (std::memchr(text, '<', length) == nullptr) {
        return StringFromBytes(text, length);
    }
    Scratch<kShortText> decoded(length + 1);
    if (decoded.Get() == nullptr) {
        return OutOfMemoryText();
    }
    DehexBufferFill(text, decoded.Get());
    return StringFromBytes(decoded.Get(), std::strlen(decoded.Get()));
}

std::uint32_t TextConverter::EncodingOf(std::string_view text) const {
    return text.find('<') == text.npos ? OneStepEncoding() : kUnknownEncoding;
}

std::uint32_t TextConverter::OneStepEncoding() const {
    switch (mInputEncoding) {
        case kCFStringEncodingMacRoman:
        case kCFStringEncodingISOLatin1:
        case kCFStringEncodingWindowsLatin1:
            return mInputEncoding;
        case kCFStringEncodingISOLatin2:
        case kCFStringEncodingISOLatin5:
        case kCFStringEncodingShiftJIS:
            return kUnknownEncoding;
        default:
            return kCFStringEncodingUTF8;
    }
}

__CFString const* TextConverter::StringFromBytes(char const* bytes, unsigned long length) {
    std::uint32_t const encoding = OneStepEncoding();
    return encoding != kUnknownEncoding ? StringInEncoding(bytes, length, encoding)
                                        : StringThroughUnicode(bytes, length);
}

__CFString const* TextConverter::StringThroughUnicode(char const* bytes, unsigned long length) {
    if (!PrepareUnicodeConverter()) {
        return StringInEncoding(bytes, length, kCFStringEncodingUnicode);
    }
    unsigned long const size = length * kUnicodeBytesPerByte;
    Scratch<kShortText * kUnicodeBytesPerByte> unicode(size);
    if (unicode.Get() == nullptr) {
        return OutOfMemoryText();
    }
    unsigned long consumed = 0;
    unsigned long written = 0;
    // Whatever the status, what was written is the text.
    TECClearConverterContextInfo(mToUnicodeConverter);
    TECConvertText(mToUnicodeConverter, Bytes(bytes), length, &consumed, Bytes(unicode.Get()), size,
                   &written);
    return StringInEncoding(unicode.Get(), written, kCFStringEncodingUnicode);
}

bool TextConverter::PrepareUnicodeConverter() {
    if (mUnicodeEncoding != mInputEncoding) {
        Dispose(&mToUnicodeConverter);
        OSStatus const status =
            TECCreateConverter(&mToUnicodeConverter, mInputEncoding, kTextEncodingUnicodeDefault);
        mUnicodeEncoding = status == noErr ? mInputEncoding : 0;
    }
    return mToUnicodeConverter != nullptr;
}

long TextConverter::Convert(char* text, long size) {
    if (!mValid) {
        return mStatus;
    }
    if (text == nullptr) {
        return mStatus = paramErr;
    }
    mStatus = noErr;
    UseMacRomanForPlainLanguages(text, size);
    if (mStatus != noErr) {
        return mStatus;
    }
    unsigned long const outputSize =
        std::max(std::strlen(text) * kOutputBytesPerByte, kSmallestOutput);
    HandleGuard const output(NewHandle(static_cast<long>(outputSize)));
    if (output == nullptr) {
        return mStatus = memFullErr;
    }
    unsigned long length = 0;
    mStatus = ppdStringConvert(text, output.get(), &length);
    if (mStatus == noErr && size > 0) {
        length = std::min(length, static_cast<unsigned long>(size) - 1);
        std::memcpy(text, *output, length);
        text[length] = '\0';
    }
    return mStatus;
}

void TextConverter::UseMacRomanForPlainLanguages(char const* text, long size) {
    if (mInputEncoding == kCFStringEncodingMacRoman) {
        return;
    }
    std::size_t const length =
        strnlen(text, size > 0 ? static_cast<std::size_t>(size) : std::size_t{0});
    bool const isPlain = std::all_of(text, text + length,
                                     [](char c) { return static_cast<unsigned char>(c) <= 127; });
    if (isPlain) {
        return;
    }
    try {
        if (mExceptionsList.IsException(mLanguage)) {
            return;
        }
    } catch (std::bad_alloc const&) {
        mStatus = memFullErr;
        return;
    }
    mInputEncoding = kCFStringEncodingMacRoman;
    Create();
}

std::int32_t TextConverter::ppdStringConvert(char const* in, char** output, unsigned long* length) {
    if (*in == '\0') {
        return kEmptyText;
    }
    HandleGuard const decoded(NewHandle(static_cast<long>(std::strlen(in) + 1)));
    if (decoded == nullptr) {
        return memFullErr;
    }
    unsigned long count = static_cast<unsigned long>(DehexBufferFill(in, *decoded));
    if (mOutputEncoding == kCFStringEncodingShiftJIS) {
        count -= count % 2;
    }
    unsigned long consumed = 0;
    return convertText(*decoded, count, output, static_cast<unsigned long>(GetHandleSize(output)),
                       &consumed, length);
}

std::int32_t TextConverter::convertText(char const* input, unsigned long length, char** output,
                                        unsigned long size, unsigned long* consumed,
                                        unsigned long* written) {
    *consumed = 0;
    *written = 0;
    TECClearConverterContextInfo(mConverter);
    // One step of the conversion proper, later of its end, into the room that is left.
    auto const repeatWhileFull = [&](auto step) {
        for (;;) {
            unsigned long const room = static_cast<unsigned long>(GetHandleSize(output)) - *written;
            OSStatus const status = step(Bytes(*output + *written), room);
            if (!IsOutputFull(status)) {
                return status;
            }
            if (OSStatus const grown = resetOutputHandle(output, size); grown != noErr) {
                return grown;
            }
        }
    };
    OSStatus const status = repeatWhileFull([&](std::uint8_t* out, unsigned long room) {
        unsigned long used = 0;
        unsigned long made = 0;
        OSStatus const step = TECConvertText(mConverter, Bytes(input + *consumed),
                                             length - *consumed, &used, out, room, &made);
        *consumed += used;
        *written += made;
        return step;
    });
    if (status != noErr) {
        return status;
    }
    return repeatWhileFull([&](std::uint8_t* out, unsigned long room) {
        unsigned long made = 0;
        OSStatus const step = TECFlushText(mConverter, out, room, &made);
        *written += made;
        return step;
    });
}

std::int32_t TextConverter::resetOutputHandle(char** output, unsigned long growth) {
    return SetHandleSize(output, GetHandleSize(output) + static_cast<long>(growth));
}

bool TextConverter::CFStringToCstring(__CFString const* string, char* text, long size) {
    if (text == nullptr || size <= 0) {
        return false;
    }
    if (string != nullptr && CFStringGetCString(string, text, size, CFStringGetSystemEncoding())) {
        return true;
    }
    std::snprintf(text, static_cast<std::size_t>(size), "%s", "Translation Error");
    return false;
}

long TextConverter::DehexBufferFill(char const* in, char* out) {
    char* const start = out;
    for (;;) {
        char const* const open = std::strchr(in, '<');
        char const* const close = open != nullptr ? std::strchr(in, '>') : nullptr;
        if (close == nullptr || close < open || !IsWholeEscape(open, close)) {
            std::size_t const rest = std::strlen(in);
            std::memcpy(out, in, rest + 1);
            return out - start + static_cast<long>(rest) + (open == nullptr ? 1 : 0);
        }
        out = DecodeEscape(open, close, std::copy(in, open, out));
        in = close + 1;
    }
}

short TextConverter::toShort(char digit) {
    if (!IsHexDigit(digit)) {
        return 0;
    }
    int const value = digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10;
    return static_cast<short>(value);
}

short TextConverter::nextHexChar(char** position) {
    *position += NextHexChar(*position) - *position;
    return EndsAStep(**position) ? short{0} : kNoHexChar;
}
