// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/PPDStream.h"

namespace {

// The code that an option gets whose line goes on with `rest` behind the colon.
std::string CodeOf(std::string const& rest) {
    PPDPtr const ppd =
        ParseBody("*%ZUBFlags *K:\n*OpenUI *K/Name: PickOne\n*DefaultK: a\n*K a/A:" + rest +
                  "*CloseUI: *K\n*CloseUI: *K\n");
    auto* const popup = ControlOf<PPDXPopupControl>(*ppd, "*K");
    _PopupItem const* const item = popup != nullptr ? popup->FirstItem() : nullptr;
    if (item == nullptr || item->mPSCode == nullptr) {
        return "none";
    }
    return std::string(reinterpret_cast<char const*>(item->mPSCode),
                       static_cast<std::size_t>(item->mPSLength));
}

}  // namespace

TEST(NextTokenTest, CutsAtDelimitersAndLineEnds) {
    struct Case {
        std::string text;
        char const* delimiters;
        std::vector<std::string> tokens;  // "-" for a read that gives nothing
    };
    std::vector<Case> const cases = {
        {"a|b||c", "|:\"", {"a", "b", "-", "c"}},
        {"   /y", "/:", {"", "y"}},
        {"one\r\ntwo\rthree\n", "/", {"one", "two", "three", "-"}},
        {"\r\nx", "/", {"-", "x"}},
        {"no end", nullptr, {"no end", "-"}},
        {std::string(300, 'z'), " ", {std::string(255, 'z'), std::string(45, 'z')}},
    };
    PPDPtr const ppd(new ZUBPPD(kParseAll));
    for (Case const& row : cases) {
        PPDStream stream = StreamOf(row.text);
        char token[PPDX::kTextSize];
        for (std::string const& expected : row.tokens) {
            bool const read = ppd->NextToken(stream, token, row.delimiters, true);
            EXPECT_EQ(read, expected != "-") << row.text;
            EXPECT_EQ(std::string(token), expected == "-" ? "" : expected) << row.text;
        }
    }
}

TEST(QuotedStringTest, CountsTheTerminatorAndStopsAtTheLimit) {
    struct Case {
        std::string text;
        unsigned long count;
        std::string value;
    };
    std::vector<Case> const cases = {
        {"\"\"", 0, ""},
        {"\"" + std::string(254, 'x') + "\"", 255, std::string(254, 'x')},
        {"\"" + std::string(400, 'x') + "\"", 255, std::string(255, 'x')},
        {"\"open", 0, "open"},  // no stream to go on with
    };
    PPDPtr const ppd(new ZUBPPD(kParseAll));
    for (Case const& row : cases) {
        PPDStream stream = StreamOf(row.text);
        char text[PPDX::kTextSize];
        EXPECT_EQ(ppd->GetQuotedString(stream, text, PPDX::kTextSize), row.count) << row.text;
        EXPECT_EQ(std::string(text), row.value);
    }
    PPDStream stream = StreamOf("\"x\"");
    EXPECT_EQ(ppd->GetQuotedString(stream, nullptr, PPDX::kTextSize), 0U);
    EXPECT_EQ(ppd->GetPostscriptString(stream, nullptr, PPDX::kTextSize), 0U);
}

TEST(PostScriptStringTest, ValueBeyondTheLimitIsCutAndConsumed) {
    std::string lines;
    for (int i = 0; i < 50; ++i) {
        lines += std::string(99, static_cast<char>('a' + i % 26)) + "\n";
    }
    std::string const code = CodeOf(" \"" + lines + "\"\n*K b/B: \"x\"\n");
    EXPECT_EQ(code, lines.substr(0, 4095) + "\n");
    // Without an end, and with a NUL byte, which ends its own line alone.
    using namespace std::string_literals;
    EXPECT_EQ(CodeOf(" \"one\n*End\n"), "one\n\n");
    EXPECT_EQ(CodeOf(" \"one\ntw\0o\nthree\"\n"s), "one\ntw\nthree\n");
}
