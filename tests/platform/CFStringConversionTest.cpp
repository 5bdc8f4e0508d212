// SPDX-License-Identifier: Apache-2.0
#include <sstream>
#include <utility>
#include <vector>

#include "tests/platform/TestSupport.h"

namespace {

using CFStringConversionTest = OwnershipTest;

CFRef<CFStringRef> Decoded(std::string_view bytes, CFStringEncoding encoding,
                           bool isExternal = false) {
    return CFRef<CFStringRef>(CFStringCreateWithBytes(
        nullptr, Bytes(bytes), static_cast<CFIndex>(bytes.size()), encoding, isExternal));
}

CFRef<CFStringRef> Units(std::u16string_view units) {
    return CFRef<CFStringRef>(
        CFStringCreateWithCharacters(nullptr, units.data(), static_cast<CFIndex>(units.size())));
}

// The text in an encoding, or nothing when it has no form there.
std::optional<std::string> Encoded(CFStringRef string, CFStringEncoding encoding) {
    char buffer[64];
    if (!CFStringGetCString(string, buffer, sizeof buffer, encoding)) {
        return std::nullopt;
    }
    return buffer;
}

// Whose tables Python has as well, under its name for them.
constexpr std::pair<CFStringEncoding, char const*> kSingleByteEncodings[] = {
    {kCFStringEncodingMacRoman, "mac_roman"},
    {6, "mac_greek"},
    {7, "mac_cyrillic"},
    {29, "mac_latin2"},
    {35, "mac_turkish"},
    {kCFStringEncodingISOLatin1, "latin_1"},
    {kCFStringEncodingISOLatin2, "iso8859_2"},
    {kCFStringEncodingISOLatin5, "iso8859_9"},
    {kCFStringEncodingISOLatin9, "iso8859_15"},
    {kCFStringEncodingWindowsLatin1, "cp1252"},
};

TEST_F(CFStringConversionTest, SingleByteEncodingsMapEveryByteBothWays) {
    // For every encoding and byte the character, U+FFFD for a byte that is no text.
    std::string command =
        "python3 -c 'import sys; [print(ord(bytes([b]).decode(name, \"replace\"))) "
        "for name in sys.argv[1:] for b in range(256)]'";
    for (auto const& [encoding, name] : kSingleByteEncodings) {
        command += std::string(" ") + name;
    }
    std::istringstream expected(OutputOf(command));
    for (auto const& [encoding, name] : kSingleByteEncodings) {
        for (unsigned byte = 0; byte < 256; ++byte) {
            unsigned character = 0;
            ASSERT_TRUE(expected >> character) << name;
            std::string const text(1, static_cast<char>(byte));
            auto const string = Decoded(text, encoding);
            ASSERT_EQ(string.Get() != nullptr, character != 0xFFFD) << name << ' ' << byte;
            if (string) {
                EXPECT_EQ(CFStringGetCharacterAtIndex(string, 0), character) << name << ' ' << byte;
                EXPECT_EQ(Encoded(string, encoding), text.c_str()) << name << ' ' << byte;
            }
        }
    }
}

TEST_F(CFStringConversionTest, DoubleByteEncodingsConvertTextAndRefuseWhatIsNone) {
    struct {
        CFStringEncoding encoding;
        char const* bytes;
        char const* text;  // null: the bytes are no text
    } const cases[] = {
        {kCFStringEncodingShiftJIS, "\x88\xF3\x8D\xFC", "印刷"},
        {CFStringEncoding{0x00040001}, "\x88\xF3", "印"},
        {kCFStringEncodingShiftJIS, "\\~", "\\~"},
        {kCFStringEncodingShiftJIS, "\x81\x5F", "＼"},
        {kCFStringEncodingShiftJIS, "\x88\x20", nullptr},
        {kCFStringEncodingShiftJIS, "\xFF", nullptr},
        {2, "\xA6\x43\xA6\x4C", "列印"},
        {3, "\xC0\xCE\xBC\xE2", "인쇄"},
        {25, "\xB4\xF2\xD3\xA1", "打印"},
        {25, "\xE9\x46", nullptr},
        {kCFStringEncodingGBK, "\xE9\x46", "镕"},
    };
    for (auto const& c : cases) {
        auto const string = Decoded(c.bytes, c.encoding);
        EXPECT_EQ(Text(string), c.text == nullptr ? "(null)" : c.text) << c.encoding;
        if (c.text != nullptr) {
            EXPECT_EQ(Encoded(string, c.encoding), c.bytes) << c.text;
        }
    }
    // A yen sign is no backslash, though old tables print one for the other.
    EXPECT_EQ(Encoded(Str("¥"), kCFStringEncodingShiftJIS), std::nullopt);
}

TEST_F(CFStringConversionTest, UTF8IsTakenOnlyInItsShortestFormAndWithinUnicode) {
    struct {
        std::string_view bytes;
        std::u16string_view units;  // empty: no text
    } const cases[] = {
        {"\x7F", u"\u007F"},
        {"\xC2\x80", u"\u0080"},
        {"\xDF\xBF\xE0\xA0\x80", u"\u07FF\u0800"},
        {"\xED\x9F\xBF\xEE\x80\x80", u"\uD7FF\uE000"},
        {"\xEF\xBF\xBF", u"\uFFFF"},
        {"\xF0\x90\x80\x80", u"\U00010000"},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        {"\xC0\x80", {}},  // overlong
        {"\xE0\x9F\xBF", {}},
        {"\xF0\x8F\xBF\xBF", {}},
        {"\xED\xA0\x80", {}},  // a surrogate
        {"\xED\xBF\xBF", {}},
        {"\xF4\x90\x80\x80", {}},  // beyond the last character
        {"\x80", {}},              // without a beginning
        {"a\xC3", {}},             // cut
        {"\xC3\x28", {}},
    };
    for (auto const& c : cases) {
        auto const string = Decoded(c.bytes, kCFStringEncodingUTF8);
        ASSERT_EQ(string.Get() != nullptr, !c.units.empty()) << testing::PrintToString(c.bytes);
        if (string) {
            EXPECT_TRUE(CFEqual(string, Units(c.units)));
            EXPECT_EQ(Encoded(string, kCFStringEncodingUTF8), c.bytes);
        }
    }
}

TEST_F(CFStringConversionTest, LoneSurrogatesLiveInUTF16Only) {
    char16_t const lone[] = {u'a', 0xD800, u'b', 0xDC00};
    auto const string = Units({lone, 4});
    EXPECT_EQ(Encoded(string, kCFStringEncodingUTF8), std::nullopt);
    EXPECT_EQ(Encoded(string, kCFStringEncodingShiftJIS), std::nullopt);
    CFRef<CFDataRef> const external(
        CFStringCreateExternalRepresentation(nullptr, string, kCFStringEncodingUnicode, '?'));
    CFRef<CFStringRef> const back(
        CFStringCreateFromExternalRepresentation(nullptr, external, kCFStringEncodingUnicode));
    EXPECT_TRUE(CFEqual(back, string));
}

TEST_F(CFStringConversionTest, ByteOrderMarksCountOnlyInExternalText) {
    std::string const little("\xFF\xFE\x41\x00", 4);
    std::string const big("\xFE\xFF\x00\x41", 4);
    EXPECT_EQ(Text(Decoded(little, kCFStringEncodingUnicode, true)), "A");
    EXPECT_EQ(Text(Decoded(big, kCFStringEncodingUnicode, true)), "A");
    EXPECT_EQ(CFStringGetLength(Decoded(little, kCFStringEncodingUnicode, false)), 2);
    EXPECT_EQ(Text(Decoded("\xEF\xBB\xBFZ", kCFStringEncodingUTF8, true)), "Z");
    EXPECT_EQ(CFStringGetLength(Decoded("\xEF\xBB\xBFZ", kCFStringEncodingUTF8)), 2);
    EXPECT_EQ(Text(Decoded("", kCFStringEncodingUnicode, true)), "");
    EXPECT_FALSE(Decoded("\xFF\xFE\x41", kCFStringEncodingUnicode, true));

    CFRef<CFDataRef> const external(
        CFStringCreateExternalRepresentation(nullptr, Str("Ab"), kCFStringEncodingUnicode, '?'));
    char16_t const expected[] = {0xFEFF, u'A', u'b'};
    EXPECT_EQ(Text(external), std::string(reinterpret_cast<char const*>(expected), 6));
    EXPECT_EQ(CFStringCreateExternalRepresentation(nullptr, Str("a→b"), 0, 0), nullptr);
}

TEST_F(CFStringConversionTest, UnknownEncodingsAndBadLengthsGiveNull) {
    std::uint8_t const byte = 'a';
    EXPECT_EQ(CFStringCreateWithBytes(nullptr, &byte, -1, kCFStringEncodingASCII, false), nullptr);
    for (CFStringEncoding const unknown : {0xFFFFU, kCFStringEncodingInvalidId, 5U, 0x0C000100U}) {
        EXPECT_FALSE(Decoded("a", unknown)) << unknown;
        EXPECT_EQ(Encoded(Str("a"), unknown), std::nullopt) << unknown;
        EXPECT_EQ(CFStringGetMaximumSizeForEncoding(4, unknown), kCFNotFound) << unknown;
    }
    EXPECT_FALSE(Decoded("a\x80", kCFStringEncodingASCII));
}

TEST_F(CFStringConversionTest, TextThatDoesNotFitWholeLeavesAnEmptyBuffer) {
    auto const string = Str("Größe");
    char buffer[8] = "unset";
    EXPECT_TRUE(CFStringGetCString(string, buffer, 6, kCFStringEncodingMacRoman));
    EXPECT_STREQ(buffer,
                 "Gr\x9A\xA7"
                 "e");
    EXPECT_FALSE(CFStringGetCString(string, buffer, 5, kCFStringEncodingMacRoman));
    EXPECT_STREQ(buffer, "");

    std::uint8_t pascal[256];
    EXPECT_TRUE(CFStringGetPascalString(string, pascal, 6, kCFStringEncodingMacRoman));
    EXPECT_EQ(pascal[0], 5);
    EXPECT_FALSE(CFStringGetPascalString(string, pascal, 5, kCFStringEncodingMacRoman));
    EXPECT_EQ(pascal[0], 0);
    std::string const longest(255, 'x');
    EXPECT_TRUE(CFStringGetPascalString(Str(longest), pascal, 256, kCFStringEncodingASCII));
    CFRef<CFStringRef> const back(
        CFStringCreateWithPascalString(nullptr, pascal, kCFStringEncodingASCII));
    EXPECT_EQ(Text(back), longest);
    EXPECT_FALSE(CFStringGetPascalString(Str(longest + 'x'), pascal, 256, kCFStringEncodingASCII));
}

TEST_F(CFStringConversionTest, BytesComeInWholeCharactersWithALossByteForTheRest) {
    auto const string = Str("a€\U0001F5A8z");
    struct {
        CFRange range;
        CFStringEncoding encoding;
        std::uint8_t lossByte;
        CFIndex size;
        CFIndex units;
        char const* bytes;
    } const cases[] = {
        {{0, 5}, kCFStringEncodingUTF8, 0, 20, 5, "a€\U0001F5A8z"},
        {{0, 5}, kCFStringEncodingUTF8, 0, 7, 2, "a€"},
        {{0, 5}, kCFStringEncodingUTF8, 0, 8, 4, "a€\U0001F5A8"},
        {{0, 5}, kCFStringEncodingMacRoman, 0, 20, 2, "a\xDB"},
        {{0, 5}, kCFStringEncodingMacRoman, '?', 20, 5, "a\xDB?z"},
        {{4, 99}, kCFStringEncodingASCII, 0, 20, 1, "z"},
        {{6, 1}, kCFStringEncodingASCII, 0, 20, 0, ""},
        {{-1, 1}, kCFStringEncodingASCII, 0, 20, 0, ""},
    };
    for (auto const& c : cases) {
        std::vector<std::uint8_t> buffer(static_cast<std::size_t>(c.size));
        CFIndex used = -1;
        EXPECT_EQ(CFStringGetBytes(string, c.range, c.encoding, c.lossByte, false, buffer.data(),
                                   c.size, &used),
                  c.units)
            << c.bytes;
        EXPECT_EQ(std::string(buffer.data(), buffer.data() + used), c.bytes);
    }
    CFIndex counted = 0;
    EXPECT_EQ(
        CFStringGetBytes(string, {0, 5}, kCFStringEncodingUTF8, 0, false, nullptr, 0, &counted), 5);
    EXPECT_EQ(counted, 9);
}

TEST_F(CFStringConversionTest, MacCounterpartServesTheSameLanguage) {
    CFStringEncoding const pairs[][2] = {
        {kCFStringEncodingWindowsLatin1, 0},
        {kCFStringEncodingISOLatin2, 29},
        {kCFStringEncodingISOLatin5, 35},
        {0x00040001, 1},
        {7, 7},
        {0xFFFF, kCFStringEncodingInvalidId},
    };
    for (auto const& [encoding, macEncoding] : pairs) {
        EXPECT_EQ(CFStringGetMostCompatibleMacStringEncoding(encoding), macEncoding) << encoding;
    }
}

}  // namespace
