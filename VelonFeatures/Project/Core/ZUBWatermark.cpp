// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/ZUBWatermark.h"

#include <algorithm>
#include <cwchar>
#include <utility>

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
    bool hasEuro;                   // at the byte of the currency sign
    std::string_view strangeBytes;  // which the job's fonts show as other characters
};
constexpr TextTarget kTargets[] = {
    {"Chinese", CreateTextEncoding(1585, 0, 0), true, ""},
    {"Japanese", CreateTextEncoding(1, 4, 0), false, ""},
};
// The job's fonts are in ISO Latin 1, which has other characters in eight places.
constexpr TextTarget kOtherTarget = {"", CreateTextEncoding(527, 0, 0), true,
                                     "\xA6\xA8\xB4\xB8\xBC\xBD\xBE"};
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
    mFirstPageOnly = fields[kFirstPage] == "1";
    mAngle = NumberOf(fields[kAngle]);
    mFontSize = NumberOf(fields[kPoints]);
    mFont = CutText(fields[kFontName], kMostFontBytes);
    mFontCut = mFont.size() < fields[kFontName].size();
    mText = CutText(text, kMostTextBytes);
    mTextCut = mText.size() < text.size();
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
    constexpr char kDigits[] = "0123456789ABCDEF";
    TextTarget const& target = TargetFor(languageVersion);
    bool whole = true;
    std::string text = Converted(mText, target.encoding, whole);
    bool const isStrange = text.find_first_of(target.strangeBytes) != text.npos;
    std::pair<bool, char const*> const faults[] = {
        {std::exchange(mTextCut, false), "is cut: it takes 255 bytes"},
        {!whole, "ends where it has a character that the PPD's language can't print"},
        {isStrange,
         "has one of \u0160 \u0161 \u017D \u017E \u0152 \u0153 \u0178, which come out as "
         "other characters"},
        {std::ranges::any_of(text, HasOneDigit),
         "has a tab, a line end or another control character, which spoils what follows it"},
    };
    for (auto const& [isThere, fault] : faults) {
        if (isThere) {
            Warn(std::string("the watermark's text ") + fault);
        }
    }
    if (target.hasEuro) {
        std::ranges::replace(text, kCurrencySign, kEuroCode);
    }
    mText = text;
    for (char const c : mText) {
        auto const byte = static_cast<unsigned char>(c);
        if (!HasOneDigit(c)) {
            mHexText += kDigits[byte >> 4U];
        }
        mHexText += kDigits[byte & 0xFU];
    }
}
