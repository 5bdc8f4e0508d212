// SPDX-License-Identifier: Apache-2.0
#include "platform/TextEncodingConverter.h"

#include <memory>
#include <vector>

#include "tests/platform/TestSupport.h"

namespace {

using TextEncodingConverterTest = OwnershipTest;

constexpr TextEncoding kUTF8 = CreateTextEncoding(256, 0, 2);
constexpr TextEncoding kMacJapanese = CreateTextEncoding(1, 4, 0);

using ConverterGuard = std::unique_ptr<OpaqueTECObject, Calls<TECDisposeConverter>>;

ConverterGuard Converter(TextEncoding input, TextEncoding output) {
    TECObjectRef converter = nullptr;
    EXPECT_EQ(TECCreateConverter(&converter, input, output), noErr);
    return ConverterGuard(converter);
}

std::string Unicode(std::u16string_view units) {
    return {reinterpret_cast<char const*>(units.data()), units.size() * 2};
}

TEST_F(TextEncodingConverterTest, TellsHowFarItCameAndWhyItStopped) {
    struct {
        TextEncoding input;
        TextEncoding output;
        std::string bytes;
        unsigned long room;
        OSStatus status;
        unsigned long consumed;
        std::string result;
    } const cases[] = {
        {kUTF8, kMacJapanese, "印刷", 9, noErr, 6, "\x88\xF3\x8D\xFC"},
        {514, 256, "\xB1", 9, noErr, 1, Unicode(u"ą")},
        {0, kUTF8, "", 9, noErr, 0, ""},
        // a full output, at the beginning and later
        {0, kUTF8,
         "a\x9A"
         "b",
         2, kTECOutputBufferFullStatus, 1, "a"},
        {0, kUTF8, "\x9A", 1, kTECBufferBelowMinimumSizeErr, 0, ""},
        // no form, and no text
        {kUTF8, 0, "a→b", 9, kTECUnmappableElementErr, 1, "a"},
        {1280, 256, "\x81", 9, kTECUnmappableElementErr, 0, ""},
        {256, kUTF8, Unicode(std::u16string(u"a") + char16_t{0xDC00}), 9, kTECUnmappableElementErr,
         2, "a"},
        // a character cut by the end
        {kUTF8, 0, "a\xC3", 9, kTECPartialCharErr, 1, "a"},
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
}

TEST_F(TextEncodingConverterTest, SystemEncodingFollowsTheLocaleUntilItIsSet) {
    struct {
        char const* all;
        char const* characters;
        char const* language;
        TextEncoding encoding;
    } const cases[] = {
        {nullptr, nullptr, nullptr, 0},
        {nullptr, nullptr, "ja_JP.UTF-8", 1},
        {nullptr, "de_DE.UTF-8", "ja_JP.UTF-8", 0},
        {"ru_RU.KOI8-R", "de_DE.UTF-8", "ja_JP.UTF-8", 7},
        {"", "", "zh_TW.UTF-8", 2},
        {"zh_HK", nullptr, nullptr, 2},
        {"el_GR@euro", nullptr, nullptr, 6},
    };
    for (auto const& c : cases) {
        ScopedVariable const all("LC_ALL", c.all);
        ScopedVariable const characters("LC_CTYPE", c.characters);
        ScopedVariable const language("LANG", c.language);
        SetSystemTextEncoding(kTextEncodingUnknown);
        EXPECT_EQ(GetApplicationTextEncoding(), c.encoding);
        EXPECT_EQ(CFStringGetSystemEncoding(), c.encoding);
    }
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
    EXPECT_EQ(upgrade(0, 17), 35U);  // Turkish is written in the Roman script
    EXPECT_EQ(upgrade(5, kTextScriptDontCare), kTextEncodingUnknown);
    EXPECT_EQ(upgrade(527, kTextScriptDontCare), kTextEncodingUnknown);
}

}  // namespace
