// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

// A watermark's record, in which it is stored and exchanged, taken apart. It is UTF-8 with commas
// between the fields:
//
//     x, y, red, green, blue, -, first page, -, angle, -, -, font size, font, text
//
// Empty fields don't count: a run of commas is one. First page is "1" for a mark on that page
// alone; what stands at a "-" is ignored; the text is all that follows the comma behind the font,
// with its own commas. What a short record doesn't have is empty.
struct WatermarkFields {
    enum Place : std::size_t {
        kX = 0,
        kY = 1,
        kRed = 2,
        kGreen = 3,
        kBlue = 4,
        kFirstPage = 6,
        kAngle = 8,
        kPoints = 11,
        kFontName = 12,
        kCount = 13  // ahead of the text
    };

    explicit WatermarkFields(std::string_view record);  // which must outlive the fields

    std::array<std::string_view, kCount> fields;
    std::string_view text;
};

// A line of text that the print server stamps on the pages of a job. A record's numbers are decimal
// and clamped to 32 bits; one that it doesn't have is 0.
class ZUBWatermark {
  public:
    // Bytes that are kept. What is longer is cut at a character's border.
    static constexpr std::size_t kMostRecordBytes = 5119;
    static constexpr std::size_t kMostFontBytes = 63;
    static constexpr std::size_t kMostTextBytes = 255;

    explicit ZUBWatermark(char const* record);  // null is an empty one

    // Points from the middle of the page, to the right and up.
    std::int32_t XOffset() const { return mXOffset; }
    std::int32_t YOffset() const { return mYOffset; }
    std::int32_t Angle() const { return mAngle; }        // tenths of a degree, counter-clockwise
    std::int32_t FontSize() const { return mFontSize; }  // points
    bool FirstPageOnly() const { return mFirstPageOnly; }
    // 255 is full; the record may have any number, as in the next two.
    std::int32_t Red() const { return mRed; }
    std::int32_t Green() const { return mGreen; }
    std::int32_t Blue() const { return mBlue; }
    char const* Record() const { return mRecord.c_str(); }
    // The name of a PostScript font, of whatever bytes the record has.
    std::string const& Font() const { return mFont; }
    bool IsFontCut() const { return mFontCut; }
    // UTF-8, and from GetWMTextInHex on the bytes that that has made of it.
    std::string const& Text() const { return mText; }

    void TakeFirstPageOfRecord();
    // True for L"True" alone.
    void SetFirstPageOnly(wchar_t const* value);
    void RestrictToFirstPage() { mFirstPageOnly = true; }

    // The text as the hexadecimal digits that stand for it in the job, in upper case: in GBK for
    // the language version "Chinese", in Mac Japanese for "Japanese", in ISO Latin 9 for any other
    // and for null. Outside of Japanese each byte 0xA4 becomes 0x80: in ISO Latin 9 the euro sign,
    // which the job's fonts have there, in GBK a half of characters, which are lost. A byte below
    // 0x10 has one digit alone. A text ends ahead of the first character that the encoding lacks.
    // Warns of that and of characters that won't be printed as they are. Made once: later languages
    // change nothing. Lives as long as the watermark.
    char const* GetWMTextInHex(char const* languageVersion);

  private:
    void Convert(char const* languageVersion);

    std::int32_t mXOffset = 0;
    std::int32_t mYOffset = 0;
    std::int32_t mAngle = 0;
    std::int32_t mFontSize = 0;
    bool mFirstPageOnly = false;
    std::int32_t mRed = 0;
    std::int32_t mGreen = 0;
    std::int32_t mBlue = 0;
    std::string mRecord;
    std::string mFont;
    bool mFontCut = false;
    std::string mText;
    std::string mHexText;  // empty until it is asked for
};

// Whether watermarks of this language version, which may be null, are printed in their font's own
// encoding: those of "Chinese" and "Japanese".
bool HasFontsOfItsOwn(char const* languageVersion);
