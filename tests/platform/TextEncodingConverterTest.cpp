// SPDX-License-Identifier: Apache-2.0
#include "platform/TextEncodingConverter.h"

#include <memory>
#include <vector>

#include "tests/platform/TestSupport.h"

namespace {

using TextEncodingConverterTest = OwnershipTest;

constexpr TextEncoding kUTF8 = CreateTextEncoding(256, 0, 2);
constexpr TextEncoding kMacJapanese = CreateTextEncoding(1, 4, 0);

struct ConverterDeleter {
    void operator()(TECObjectRef converter) const { TECDisposeConverter(converter); }
};
using ConverterGuard = std::unique_ptr<OpaqueTECObject, ConverterDeleter>;

ConverterGuard Converter(TextEncoding input, TextEncoding output) {
    TECObjectRef converter = nullptr;
    EXPECT_EQ(TECCreateConverter(&converter, input, output), noErr);
    return ConverterGuard(converter);
}

std::string Unicode(std::u16string_view units) {
    return {reinterpret_cast<char const*>(units.data()), units.size() * 2};
}

TEST_F(TextEncodingConverterTest, TellsHowFarItCameAndWhyItStopped) {
    struct Case {
        TextEncoding input;
        TextEncoding output;
        std::string bytes;
        unsigned long room;
        OSStatus status;
        unsigned long consumed;
        std::string result;
    };
    Case const cases[] = {
        {kUTF8, 0,
         "Gr\xC3\xB6\xC3\x9F"
         "e",
         9, noErr, 7,
         "Gr\x9A\xA7"
         "e"},
        {kUTF8, kMacJapanese, "印刷", 9, noErr, 6, "\x88\xF3\x8D\xFC"},
        {kUTF8, 1585, "打印", 9, noErr, 6, "\xB4\xF2\xD3\xA1"},
        {kUTF8, 527, "5€", 9, noErr, 4, "5\xA4"},
        {514, 256, "\xB1", 9, noErr, 1, Unicode(u"ą")},
        {521, 256, "\xFD", 9, noErr, 1, Unicode(u"ı")},
        {2561, 256,
         "\x88\xF3"
         "A",
         9, noErr, 3, Unicode(u"印A")},
        {256, kUTF8, Unicode(u"\U0001F5A8"), 9, noErr, 4, "\U0001F5A8"},
        {0, kUTF8, "", 9, noErr, 0, ""},
        // a full output, at the beginning and later
        {0, kUTF8,
         "a\x9A"
         "b",
         2, kTECOutputBufferFullStatus, 1, "a"},
        {0, kUTF8, "\x9A", 1, kTECBufferBelowMinimumSizeErr, 0, ""},
        {0, kUTF8, "a", 0, kTECBufferBelowMinimumSizeErr, 0, ""},
        // no form, and no text
        {kUTF8, 0, "a→b", 9, kTECUnmappableElementErr, 1, "a"},
        {kUTF8, 0, "a\xFFz", 9, kTECUnmappableElementErr, 1, "a"},
        {1280, 256, "\x81", 9, kTECUnmappableElementErr, 0, ""},
        {256, kUTF8, Unicode(std::u16string(u"a") + char16_t{0xDC00}), 9, kTECUnmappableElementErr,
         2, "a"},
        // a character cut by the end
        {kUTF8, 0, "a\xC3", 9, kTECPartialCharErr, 1, "a"},
        {2561, 256, "\x88", 9, kTECPartialCharErr, 0, ""},
        {256, kUTF8, "a", 9, kTECPartialCharErr, 0, ""},
        {256, kUTF8, Unicode(std::u16string(1, char16_t{0xD83D})), 9, kTECPartialCharErr, 0, ""},
    };
    for (auto const& c : cases) {
        auto const converter = Converter(c.input, c.output);
        std::vector<std::uint8_t> output(c.room + 1);
        unsigned long consumed = 99;
        unsigned long written = 99;
        EXPECT_EQ(TECConvertText(converter.get(), Bytes(c.bytes), c.bytes.size(), &consumed,
                                 output.data(), c.room, &written),
                  c.status)
            << c.bytes;
        EXPECT_EQ(consumed, c.consumed) << c.bytes;
        EXPECT_EQ(std::string(output.data(), output.data() + written), c.result);
        EXPECT_EQ(TECFlushText(converter.get(), output.data(), c.room, &written), noErr);
        EXPECT_EQ(written, 0U);
        EXPECT_EQ(TECClearConverterContextInfo(converter.get()), noErr);
    }
}

TEST_F(TextEncodingConverterTest, UnknownEncodingsHaveNoConverter) {
    TECObjectRef converter = nullptr;
    EXPECT_EQ(TECCreateConverter(&converter, kTextEncodingUnknown, 256),
              kTextUnsupportedEncodingErr);
    EXPECT_EQ(converter, nullptr);
    EXPECT_EQ(TECCreateConverter(&converter, 0, 5), kTextUnsupportedEncodingErr);
    EXPECT_EQ(TECConvertText(nullptr, Bytes("a"), 1, nullptr, nullptr, 0, nullptr), paramErr);
    TECDisposeConverter(nullptr);
}

TEST_F(TextEncodingConverterTest, SystemEncodingFollowsTheLocaleUntilItIsSet) {
    struct Case {
        char const* all;
        char const* characters;
        char const* language;
        TextEncoding encoding;
    };
    Case const cases[] = {
        {nullptr, nullptr, nullptr, 0},
        {nullptr, nullptr, "ja_JP.UTF-8", 1},
        {nullptr, "de_DE.UTF-8", "ja_JP.UTF-8", 0},
        {"ru_RU.KOI8-R", "de_DE.UTF-8", "ja_JP.UTF-8", 7},
        {"", "", "zh_TW.UTF-8", 2},
        {"zh_CN.GB18030", nullptr, nullptr, 25},
        {"zh_HK", nullptr, nullptr, 2},
        {"ko", nullptr, nullptr, 3},
        {"el_GR@euro", nullptr, nullptr, 6},
        {"pl_PL", nullptr, nullptr, 29},
        {"tr_TR.UTF-8", nullptr, nullptr, 35},
        {"POSIX", nullptr, nullptr, 0},
    };
    for (auto const& c : cases) {
        ScopedVariable const all("LC_ALL", c.all);
        ScopedVariable const characters("LC_CTYPE", c.characters);
        ScopedVariable const language("LANG", c.language);
        SetSystemTextEncoding(kTextEncodingUnknown);
        EXPECT_EQ(GetApplicationTextEncoding(), c.encoding);
        EXPECT_EQ(CFStringGetSystemEncoding(), c.encoding);
    }
    SetSystemTextEncoding(29);
    EXPECT_EQ(CFStringGetSystemEncoding(), 29U);
}

TEST_F(TextEncodingConverterTest, ScriptNumbersNameEncodingsAndDontCareTheSystems) {
    SetSystemTextEncoding(7);
    auto const upgrade = [](std::int16_t script, std::int16_t language) {
        TextEncoding encoding = 99;
        OSStatus const status = UpgradeScriptInfoToTextEncoding(
            script, language, kTextScriptDontCare, nullptr, &encoding);
        EXPECT_EQ(status, encoding == kTextEncodingUnknown ? kTextUnsupportedEncodingErr : noErr);
        return encoding;
    };
    EXPECT_EQ(upgrade(-1, kTextScriptDontCare), 7U);
    EXPECT_EQ(upgrade(0, kTextScriptDontCare), 0U);
    EXPECT_EQ(upgrade(1, kTextScriptDontCare), 1U);
    EXPECT_EQ(upgrade(0, 17), 35U);  // Turkish is written in the Roman script
    EXPECT_EQ(upgrade(5, kTextScriptDontCare), kTextEncodingUnknown);
    EXPECT_EQ(upgrade(527, kTextScriptDontCare), kTextEncodingUnknown);
}

}  // namespace
