// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/TextConverter.h"

#include <memory>
#include <string>

#include "ZUBUtils/PPDUtils/PPDLanguage.h"
#include "tests/ZUBUtils/PPDUtils/FailingNew.h"

// What a converter sees of a PPD.
class PPDX {
  public:
    char const* version;
    char const* encoding;
};
char const* PPDLanguageVersion(PPDX* ppd) {
    return ppd->version;
}
char const* PPDLanguageEncoding(PPDX* ppd) {
    return ppd->encoding;
}

namespace {

constexpr unsigned long kUTF8 = kCFStringEncodingUTF8;

using TextConverterTest = MacRomanTest;

std::string Display(TextConverter& converter, std::string const& text) {
    return Text(CFRef<CFStringRef>(converter.ConvertToCFString(text.c_str(), 256)));
}

std::string Display(char const* encoding, std::string const& text) {
    PPDX ppd{"English", encoding};
    TextConverter converter(&ppd);
    return Display(converter, text);
}

struct Converted {
    long status;
    std::string text;
};

Converted Convert(TextConverter& converter, std::string const& text, std::size_t size = 200) {
    std::unique_ptr<char[]> const buffer(new char[std::max(size, text.size() + 1)]);
    text.copy(buffer.get(), text.size());
    buffer[text.size()] = '\0';
    long const status = converter.Convert(buffer.get(), static_cast<long>(size));
    return {status, buffer.get()};
}

TEST_F(TextConverterTest, EscapesDecodeAndMalformedOnesStayAsTheyStand) {
    struct {
        char const* text;
        char const* decoded;
        bool isWhole;
    } const cases[] = {
        {"Paper <46 6F>", "Paper Fo", true},
        {"< \t\n\r41>", "A", true},
        {"<6a6B>x<4C>", "jkxL", true},
        {"<4 >", "@", true},
        {"<414>", "<414>", false},
        {"<>", "<>", false},
        {"a>b<41>", "a>b<41>", false},
        {"<41>a<4><42>", "Aa<4><42>", false},
        {"<41><", "A<", false},
    };
    for (auto const& row : cases) {
        std::string const text = row.text;
        std::unique_ptr<char[]> const out(new char[text.size() + 1]);
        long const written = TextConverter::DehexBufferFill(row.text, out.get());
        EXPECT_STREQ(out.get(), row.decoded) << row.text;
        EXPECT_EQ(written, static_cast<long>(std::string(row.decoded).size()) + row.isWhole)
            << row.text;
        EXPECT_EQ(Display("MacStandard", text), row.decoded) << row.text;
    }
}

TEST_F(TextConverterTest, EveryEncodingGivesItsOwnLetters) {
    struct {
        char const* encoding;
        char const* text;
        char const* display;
    } const cases[] = {
        {"ISOLatin1", "Gr\366\337e <E4>", "Größe ä"},
        {"ISOLatin2", "\350esk\375 <F8>", "český ř"},
        {"ISOLatin5", "\336al <F0>", "Şal ğ"},
        {"JIS83-RKSJ", "\x93\xFA\x96\x7B <8D80>\xB1", "日本 項ｱ"},
        {"WindowsANSI", "\x80 5 <93>", "€ 5 “"},
        {"KOI8", "日本 <C3A4>", "日本 ä"},
    };
    for (auto const& row : cases) {
        std::string longText;
        std::string longDisplay;
        for (int i = 0; i < 80; ++i) {
            longText += row.text;
            longDisplay += row.display;
        }
        EXPECT_EQ(Display(row.encoding, longText), longDisplay) << row.display;
    }
}

TEST_F(TextConverterTest, NothingToConvertGivesTheEmptyString) {
    PPDX ppd{"Japanese", "JIS83-RKSJ"};
    TextConverter converter(&ppd);
    EXPECT_EQ(Text(CFRef<CFStringRef>(converter.ConvertToCFString(nullptr, 256))), "");
    EXPECT_EQ(Display(converter, "seen<00>hidden"), "seen");
}

TEST_F(TextConverterTest, BytesThatAreNoTextGiveNullOrWhatStandsBeforeThem) {
    EXPECT_EQ(Display("UTF-8", "a<FF>"), "(null)");
    PPDX ppd{"Japanese", "JIS83-RKSJ"};
    TextConverter converter(&ppd);
    EXPECT_EQ(Display(converter, "A<93>"), "A");
    // The half letter of the text before is forgotten.
    EXPECT_EQ(Display(converter, "\x93\xFA"), "日");
}

TEST_F(TextConverterTest, AnEncodingWithoutANameHasNoConverterButStillReadsUTF8) {
    PPDX ppd{"English", "KOI8"};
    TextConverter converter(&ppd);
    EXPECT_FALSE(converter.ValidConverter());
    EXPECT_EQ(Convert(converter, "text").status, 0);
    for (char const* const name : {"isolatin1", "ISOLatin1 ", "", "utf-8"}) {
        EXPECT_EQ(TextConverter::LanguageStringToEncoding(name), 65535U) << name;
    }
    unsigned long input = 513;
    TextConverter unsupported(input, 0x7777);
    EXPECT_EQ(Convert(unsupported, "text").status, kTextUnsupportedEncodingErr);
    EXPECT_EQ(Display(unsupported, "\xE4"), "ä");
}

TEST_F(TextConverterTest, OnlyListedLanguagesKeepTheirEncodingForHighBytes) {
    for (char const* const language : {"Japanese", "Czech", "Bulg", "Slovenian"}) {
        PPDX ppd{language, "ISOLatin1"};
        TextConverter converter(&ppd, kUTF8);
        EXPECT_EQ(Convert(converter, "\xE4").text, "ä") << language;
    }
    for (char const* const language :
         {"English", "czech", "Czech ", "", static_cast<char const*>(nullptr)}) {
        PPDX ppd{language, "ISOLatin1"};
        TextConverter converter(&ppd, kUTF8);
        EXPECT_EQ(Convert(converter, "a<E4>").text, "aä");
        EXPECT_EQ(Convert(converter, "\xE4").text, "‰");
        EXPECT_EQ(Convert(converter, "a<E4>").text, "a‰");
    }
}

TEST_F(TextConverterTest, ConvertStaysInsideItsRoomAndGrowsItsOutput) {
    PPDX ppd{"Japanese", "JIS83-RKSJ"};
    TextConverter converter(&ppd, kUTF8);
    std::string katakana;
    for (int i = 0; i < 40; ++i) {
        katakana += "ｱ";
    }
    EXPECT_EQ(Convert(converter, std::string(40, '\xB1'), 41).text, katakana.substr(0, 40));
    EXPECT_EQ(Convert(converter, "abc", 1).text, "");
    EXPECT_EQ(Convert(converter, "abc", 0).text, "abc");
    SetSystemTextEncoding(1);
    EXPECT_EQ(Convert(*std::make_unique<TextConverter>(&ppd), "\xB1").text, "\xB1");
    // Shift-JIS output takes an even number of bytes in.
    TextConverter same(&ppd, 2561);
    EXPECT_EQ(Convert(same, "\x93\xFA\x96\x7B").text, "\x93\xFA\x96\x7B");
    EXPECT_EQ(Convert(same, "<4G").text, "<4");
}

TEST_F(TextConverterTest, AFailedConversionLeavesTheText) {
    PPDX ppd{"Japanese", "JIS83-RKSJ"};
    TextConverter converter(&ppd);
    EXPECT_EQ(converter.Convert(nullptr, 10), paramErr);
    EXPECT_EQ(Convert(converter, "").status, 5000);
    Converted const unmappable = Convert(converter, "a\x93\xFA");
    EXPECT_EQ(unmappable.status, kTECUnmappableElementErr);
    EXPECT_EQ(unmappable.text, "a\x93\xFA");
    for (long creations = 0; creations < 2; ++creations) {
        FailCreationAfter(creations);
        Converted const failed = Convert(converter, "abc");
        EXPECT_EQ(failed.status, memFullErr);
        EXPECT_EQ(failed.text, "abc");
    }
}

TEST_F(TextConverterTest, AFailedPlatformLeavesTheConverterUsable) {
    PPDX ppd{"Czech", "ISOLatin2"};
    TextConverter converter(&ppd);
    FailCreationAfter(0);
    // No converter to Unicode: the bytes are taken for UTF-16 as they are.
    EXPECT_EQ(Display(converter, "AA"), "䅁");
    EXPECT_EQ(Display(converter, "\xE8"), "č");
    FailCreationAfter(0);
    EXPECT_EQ(Display(converter, "\xE8"), "(null)");
    std::string const longText = std::string(300, 'a') + "<E8>";
    FailNewAfter(1);
    EXPECT_EQ(Display(converter, longText), "Out Of Memory");
    EXPECT_EQ(Display(converter, longText), std::string(300, 'a') + "č");
}

TEST_F(TextConverterTest, StringsComeBackInTheSystemEncodingOrAsTheFailureText) {
    struct {
        char const* string;
        long size;
        bool converts;
        char const* text;
    } const cases[] = {
        {"Größe", 6, true, "Gr\232\247e"},
        {"日本", 100, false, "Translation Error"},
        {"日本", 1, false, ""},
        {nullptr, 18, false, "Translation Error"},
    };
    for (auto const& row : cases) {
        std::string buffer(static_cast<std::size_t>(row.size), '?');
        CFRef<CFStringRef> const string =
            row.string != nullptr ? Str(row.string) : CFRef<CFStringRef>();
        EXPECT_EQ(TextConverter::CFStringToCstring(string, buffer.data(), row.size), row.converts);
        EXPECT_STREQ(buffer.c_str(), row.text);
    }
}

}  // namespace
