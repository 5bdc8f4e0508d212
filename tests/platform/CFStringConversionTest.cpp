// SPDX-License-Identifier: Apache-2.0
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

struct UpperHalf {
    CFStringEncoding encoding;
    unsigned firstByte;
    std::u16string_view characters;  // U+FFFF for a byte that is no text
};
constexpr UpperHalf kUpperHalves[] = {
    {kCFStringEncodingMacRoman, 0x80,
     u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü"
     u"†°¢£§•¶ß®©™\u00B4\u00A8≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
     u"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ"
     u"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙı\u02C6\u02DC\u00AF\u02D8\u02D9\u02DA\u00B8\u02DD\u02DB\u02C7"},
    {6, 0x80,
     u"Ä¹²É³ÖÜ\u0385àâä\u0384\u00A8çéèêë£™îï•½‰ôö¦€ùûü"
     u"†ΓΔΘΛΞΠß®©ΣΪ§≠°·Α±≤≥¥ΒΕΖΗΙΚΜΦΫΨΩ"
     u"άΝ¬ΟΡ≈Τ«»…\u00A0ΥΧΆΈœ–―“”‘’÷ΉΊΌΎέήίόΏ"
     u"ύαβψδεφγηιξκλμνοπώρστθωςχυζϊϋΐΰ\u00AD"},
    {7, 0x80,
     u"АБВГДЕЖЗИЙКЛМНОПРСТУФХЦЧШЩЪЫЬЭЮЯ"
     u"†°Ґ£§•¶І®©™Ђђ≠Ѓѓ∞±≤≥іµґЈЄєЇїЉљЊњ"
     u"јЅ¬√ƒ≈∆«»…\u00A0ЋћЌќѕ–—“”‘’÷„ЎўЏџ№Ёёя"
     u"абвгдежзийклмнопрстуфхцчшщъыьэю€"},
    {29, 0x80,
     u"ÄĀāÉĄÖÜáąČäčĆćéŹźĎíďĒēĖóėôöõúĚěü"
     u"†°Ę£§•¶ß®©™ę\u00A8≠ģĮįĪ≤≥īĶ∂∑łĻļĽľĹĺŅ"
     u"ņŃ¬√ńŇ∆«»…\u00A0ňŐÕőŌ–—“”‘’÷◊ōŔŕŘ‹›řŖ"
     u"ŗŠ‚„šŚśÁŤťÍŽžŪÓÔūŮÚůŰűŲųÝýķŻŁżĢ\u02C7"},
    {35, 0x80,
     u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü"
     u"†°¢£§•¶ß®©™\u00B4\u00A8≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø"
     u"¿¡¬√ƒ≈∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸĞğİıŞş"
     u"‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙ\uF8A0\u02C6\u02DC\u00AF\u02D8\u02D9\u02DA\u00B8\u02DD\u02DB"
     u"\u02C7"},
    {kCFStringEncodingISOLatin1, 0xA0,
     u"\u00A0¡¢£¤¥¦§\u00A8©ª«¬\u00AD®\u00AF°±²³\u00B4µ¶·\u00B8¹º»¼½¾¿"
     u"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
     u"àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"},
    {kCFStringEncodingISOLatin2, 0xA0,
     u"\u00A0Ą\u02D8Ł¤ĽŚ§\u00A8ŠŞŤŹ\u00ADŽŻ°ą\u02DBł\u00B4ľś\u02C7\u00B8šşťź\u02DDžż"
     u"ŔÁÂĂÄĹĆÇČÉĘËĚÍÎĎĐŃŇÓÔŐÖ×ŘŮÚŰÜÝŢß"
     u"ŕáâăäĺćçčéęëěíîďđńňóôőö÷řůúűüýţ\u02D9"},
    {kCFStringEncodingISOLatin5, 0xA0,
     u"\u00A0¡¢£¤¥¦§\u00A8©ª«¬\u00AD®\u00AF°±²³\u00B4µ¶·\u00B8¹º»¼½¾¿"
     u"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏĞÑÒÓÔÕÖ×ØÙÚÛÜİŞß"
     u"àáâãäåæçèéêëìíîïğñòóôõö÷øùúûüışÿ"},
    {kCFStringEncodingISOLatin9, 0xA0,
     u"\u00A0¡¢£€¥Š§š©ª«¬\u00AD®\u00AF°±²³Žµ¶·ž¹º»ŒœŸ¿"
     u"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
     u"àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"},
    {kCFStringEncodingWindowsLatin1, 0x80,
     u"€\uFFFF‚ƒ„…†‡\u02C6‰Š‹Œ\uFFFFŽ\uFFFF\uFFFF‘’“”•–—\u02DC™š›œ\uFFFFžŸ"
     u"\u00A0¡¢£¤¥¦§\u00A8©ª«¬\u00AD®\u00AF°±²³\u00B4µ¶·\u00B8¹º»¼½¾¿"
     u"ÀÁÂÃÄÅÆÇÈÉÊËÌÍÎÏÐÑÒÓÔÕÖ×ØÙÚÛÜÝÞß"
     u"àáâãäåæçèéêëìíîïðñòóôõö÷øùúûüýþÿ"},
};

TEST_F(CFStringConversionTest, SingleByteEncodingsMapEveryByteBothWays) {
    for (auto const& row : kUpperHalves) {
        ASSERT_EQ(row.characters.size(), 256 - row.firstByte) << row.encoding;
        for (unsigned byte = 1; byte < 256; ++byte) {
            // Below the tables: ASCII, and in the ISO encodings the controls as themselves.
            char16_t const expected = byte < row.firstByte ? static_cast<char16_t>(byte)
                                                           : row.characters[byte - row.firstByte];
            std::string const text(1, static_cast<char>(byte));
            auto const string = Decoded(text, row.encoding);
            if (expected == u'\uFFFF') {
                EXPECT_FALSE(string) << row.encoding << ' ' << byte;
                continue;
            }
            ASSERT_TRUE(string) << row.encoding << ' ' << byte;
            EXPECT_EQ(CFStringGetCharacterAtIndex(string, 0), expected) << row.encoding << byte;
            EXPECT_EQ(Encoded(string, row.encoding), text) << row.encoding << ' ' << byte;
        }
    }
}

TEST_F(CFStringConversionTest, DoubleByteEncodingsConvertTextAndRefuseWhatIsNone) {
    struct Case {
        CFStringEncoding encoding;
        char const* bytes;
        char const* text;  // null: the bytes are no text
    };
    Case const cases[] = {
        {kCFStringEncodingShiftJIS, "\x88\xF3\x8D\xFC", "印刷"},
        {1, "A\xB1\x81\x60", "Aｱ～"},
        {CFStringEncoding{0x00040001}, "\x88\xF3", "印"},
        {kCFStringEncodingShiftJIS, "\\~", "\\~"},
        {kCFStringEncodingShiftJIS, "\x81\x5F", "＼"},
        {kCFStringEncodingShiftJIS, "\x88", nullptr},
        {kCFStringEncodingShiftJIS, "\x88\x20", nullptr},
        {kCFStringEncodingShiftJIS, "\x80", nullptr},
        {kCFStringEncodingShiftJIS, "\xA0", nullptr},
        {kCFStringEncodingShiftJIS, "\xFF", nullptr},
        {2, "\xA6\x43\xA6\x4C", "列印"},
        {2, "\x80", nullptr},
        {3, "\xC0\xCE\xBC\xE2", "인쇄"},
        {3, "\xC0", nullptr},
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
    struct Case {
        std::string_view bytes;
        std::u16string_view units;  // empty: no text
    };
    Case const cases[] = {
        {"\x7F", u"\u007F"},
        {"\xC2\x80", u"\u0080"},
        {"\xDF\xBF\xE0\xA0\x80", u"\u07FF\u0800"},
        {"\xED\x9F\xBF\xEE\x80\x80", u"\uD7FF\uE000"},
        {"\xEF\xBF\xBF", u"\uFFFF"},
        {"\xF0\x90\x80\x80", u"\U00010000"},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF"},
        {"\xC0\x80", {}},  // overlong
        {"\xC1\xBF", {}},
        {"\xE0\x9F\xBF", {}},
        {"\xF0\x8F\xBF\xBF", {}},
        {"\xED\xA0\x80", {}},  // a surrogate
        {"\xED\xBF\xBF", {}},
        {"\xF4\x90\x80\x80", {}},  // beyond the last character
        {"\xF5\x80\x80\x80", {}},
        {"\xFF", {}},
        {"\x80", {}},   // without a beginning
        {"a\xC3", {}},  // cut
        {"\xE2\x82", {}},
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
    for (CFStringEncoding const encoding :
         {kCFStringEncodingUTF8, kCFStringEncodingMacRoman, kCFStringEncodingASCII,
          kCFStringEncodingISOLatin1, kCFStringEncodingShiftJIS}) {
        EXPECT_EQ(Encoded(string, encoding), std::nullopt) << encoding;
    }
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
}

TEST_F(CFStringConversionTest, ExternalFormNeedsALossByteForWhatHasNoForm) {
    auto const external = [](std::uint8_t lossByte) {
        return CFRef<CFDataRef>(
            CFStringCreateExternalRepresentation(nullptr, Str("a→b"), 0, lossByte));
    };
    EXPECT_EQ(Text(external('?')), "a?b");
    EXPECT_FALSE(external(0));
}

TEST_F(CFStringConversionTest, UnknownEncodingsAndBadLengthsGiveNull) {
    std::uint8_t const byte = 'a';
    EXPECT_EQ(CFStringCreateWithBytes(nullptr, &byte, -1, kCFStringEncodingASCII, false), nullptr);
    EXPECT_EQ(CFStringCreateWithBytes(nullptr, nullptr, 1, kCFStringEncodingASCII, false), nullptr);
    EXPECT_EQ(CFStringCreateWithCString(nullptr, nullptr, kCFStringEncodingASCII), nullptr);
    EXPECT_EQ(CFStringCreateWithPascalString(nullptr, nullptr, 0), nullptr);
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
    EXPECT_FALSE(CFStringGetCString(Str("→"), buffer, 8, kCFStringEncodingMacRoman));
    EXPECT_FALSE(CFStringGetCString(string, buffer, 0, kCFStringEncodingMacRoman));
    EXPECT_FALSE(CFStringGetCString(nullptr, buffer, 8, kCFStringEncodingMacRoman));

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
    struct Case {
        CFRange range;
        CFStringEncoding encoding;
        std::uint8_t lossByte;
        CFIndex size;
        CFIndex units;
        char const* bytes;
    };
    Case const cases[] = {
        {{0, 5}, kCFStringEncodingUTF8, 0, 20, 5, "a€\U0001F5A8z"},
        {{0, 5}, kCFStringEncodingUTF8, 0, 7, 2, "a€"},
        {{0, 5}, kCFStringEncodingUTF8, 0, 8, 4, "a€\U0001F5A8"},
        {{0, 5}, kCFStringEncodingUTF8, 0, 3, 1, "a"},
        {{1, 1}, kCFStringEncodingMacRoman, 0, 20, 1, "\xDB"},
        {{0, 5}, kCFStringEncodingMacRoman, 0, 20, 2, "a\xDB"},
        {{0, 5}, kCFStringEncodingMacRoman, '?', 20, 5, "a\xDB?z"},
        {{0, 5}, kCFStringEncodingASCII, '?', 2, 2, "a?"},
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
        {kCFStringEncodingUTF8, 0},
        {kCFStringEncodingWindowsLatin1, 0},
        {kCFStringEncodingISOLatin2, 29},
        {kCFStringEncodingISOLatin5, 35},
        {kCFStringEncodingShiftJIS, 1},
        {0x00040001, 1},
        {7, 7},
        {0xFFFF, kCFStringEncodingInvalidId},
    };
    for (auto const& [encoding, macEncoding] : pairs) {
        EXPECT_EQ(CFStringGetMostCompatibleMacStringEncoding(encoding), macEncoding) << encoding;
    }
}

}  // namespace
