// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/ZUBWatermark.h"

#include <algorithm>
#include <cwchar>

#include "VelonFeatures/Project/Core/Warning.h"
#include "ZUBUtils/PPDUtils/PlainText.h"
#include "ZUBUtils/PPDUtils/StringUtils.h"
#include "platform/TextEncodingConverter.h"

namespace {

constexpr char kSeparator = ',';
constexpr std::size_t kMaximumCharacterSize = 4;

struct TextTarget {
    std::string_view languageVersion;
    TextEncoding encoding;
    bool replacesA4;                // each such byte, also the half of a character
    std::string_view strangeBytes;  // which the job shows as other characters
    char const* strange;            // what the text has then; for people
};
// In GBK the byte is no character, but a half of many.
constexpr TextTarget kTargets[] = {
    {"Chinese", CreateTextEncoding(1585, 0, 0), true, "\xA4",
     "has a character of whose two bytes one is A4, as of all hiragana: it and what follows come "
     "out as other characters"},
    {"Japanese", CreateTextEncoding(1, 4, 0), false, "", ""},
};
// The job's fonts are in the interpreter's ISO Latin 1. Beside the euro sign, which they get at 80,
// it has other letters than ISO Latin 9 in seven places, and accents or nothing from 80 to 9F. Its
// minus at 2D and its quotes at 27 and 60 are only other shapes.
constexpr TextTarget kOtherTarget = {
    "", CreateTextEncoding(527, 0, 0), true,
    "\xA6\xA8\xB4\xB8\xBC\xBD\xBE"
    "\x80\x81\x82\x83\x84\x85\x86\x87\x88\x89\x8A\x8B\x8C\x8D\x8E\x8F"
    "\x90\x91\x92\x93\x94\x95\x96\x97\x98\x99\x9A\x9B\x9C\x9D\x9E\x9F",
    "has one of \u0160 \u0161 \u017D \u017E \u0152 \u0153 \u0178 or a control character from "
    "U+0080 on, "
    "which come out as other characters"};
constexpr char kCurrencySign = static_cast<char>(0xA4);
constexpr char kEuroCode = static_cast<char>(0x80);
constexpr unsigned char kFirstOfTwoDigits = 0x10;

// Takes the next field off the front with the comma that ends it. Commas ahead of it go too.
std::string_view TakeField(std::string_view& record) {
    record.remove_prefix(std::min(record.find_first_not_of(kSeparator), record.size()));
    std::string_view const field = record.substr(0, record.find(kSeparator));
    record.remove_prefix(std::min(field.size() + 1, record.size()));
    return field;
}

std::int32_t NumberOf(std::string_view field) {
    return static_cast<std::int32_t>(string2Number(std::string(field).c_str()));
}

bool HasOneDigit(char byte) {
    return static_cast<unsigned char>(byte) < kFirstOfTwoDigits;
}

TextTarget const& TargetFor(char const* languageVersion) {
    std::string_view const language = languageVersion == nullptr ? "" : languageVersion;
    auto const* const found = std::ranges::find(kTargets, language, &TextTarget::languageVersion);
    return found == std::end(kTargets) ? kOtherTarget : *found;
}

// What could be converted of a text in UTF-8; `whole` tells whether that is all of it.
std::string Converted(std::string const& text, TextEncoding target, bool& whole) {
    constexpr TextEncoding kUTF8 = CreateTextEncoding(256, 0, 2);
    TECObjectRef converter = nullptr;
    if (TECCreateConverter(&converter, kUTF8, target) != noErr) {
        whole = text.empty();
        return {};
    }
    std::string converted(text.size() * kMaximumCharacterSize, '\0');
    unsigned long consumed = 0;
    unsigned long written = 0;
    whole =
        TECConvertText(converter, reinterpret_cast<std::uint8_t const*>(text.data()), text.size(),
                       &consumed, reinterpret_cast<std::uint8_t*>(converted.data()),
                       converted.size(), &written) == noErr;
    TECDisposeConverter(converter);
    converted.resize(written);
    return converted;
}

void WarnOfLosses(std::string_view converted, bool whole, TextTarget const& target) {
    struct {
        bool isThere;
        char const* loss;
    } const losses[] = {
        {!whole, "ends where it has a character that the PPD's language can't print"},
        {converted.find_first_of(target.strangeBytes) != converted.npos, target.strange},
        {std::ranges::any_of(converted, HasOneDigit),
         "has a tab, a line end or another control character, which spoils what follows it"},
    };
    for (auto const& [isThere, loss] : losses) {
        if (isThere) {
            Warn(std::string("the watermark's text ") + loss);
        }
    }
}

std::string Digits(std::string_view bytes) {
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string digits;
    for (char const c : bytes) {
        auto const byte = static_cast<unsigned char>(c);
        if (!HasOneDigit(c)) {
            digits += kDigits[byte >> 4U];
        }
        digits += kDigits[byte & 0xFU];
    }
    return digits;
}

}  // namespace

WatermarkFields::WatermarkFields(std::string_view record) : text(record) {
    for (std::string_view& field : fields) {
        field = TakeField(text);
    }
}

bool HasFontsOfItsOwn(char const* languageVersion) {
    return &TargetFor(languageVersion) != &kOtherTarget;
}

ZUBWatermark::ZUBWatermark(char const* record)
    : mRecord(CutText(record == nullptr ? "" : record, kMostRecordBytes)) {
    using enum WatermarkFields::Place;
    auto const& [fields, text] = WatermarkFields(mRecord);
    mXOffset = NumberOf(fields[kX]);
    mYOffset = NumberOf(fields[kY]);
    mRed = NumberOf(fields[kRed]);
    mGreen = NumberOf(fields[kGreen]);
    mBlue = NumberOf(fields[kBlue]);
    TakeFirstPageOfRecord();
    mAngle = NumberOf(fields[kAngle]);
    mFontSize = NumberOf(fields[kPoints]);
    mFont = CutText(fields[kFontName], kMostFontBytes);
    mFontCut = mFont.size() < fields[kFontName].size();
    mText = CutText(text, kMostTextBytes);
}

void ZUBWatermark::TakeFirstPageOfRecord() {
    mFirstPageOnly = WatermarkFields(mRecord).fields[WatermarkFields::kFirstPage] == "1";
}

void ZUBWatermark::SetFirstPageOnly(wchar_t const* value) {
    mFirstPageOnly = value != nullptr && std::wcscmp(value, L"True") == 0;
}

char const* ZUBWatermark::GetWMTextInHex(char const* languageVersion) {
    if (mHexText.empty()) {
        Convert(languageVersion);
    }
    return mHexText.c_str();
}

void ZUBWatermark::Convert(char const* languageVersion) {
    TextTarget const& target = TargetFor(languageVersion);
    bool whole = true;
    std::string text = Converted(mText, target.encoding, whole);
    WarnOfLosses(text, whole, target);
    if (target.replacesA4) {
        std::ranges::replace(text, kCurrencySign, kEuroCode);
    }
    mText = text;
    mHexText = Digits(text);
}
