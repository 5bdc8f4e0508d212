// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/Controls/PPDXSpecialOption.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "tests/PPDLines.h"

namespace {

using Texts = std::vector<std::string>;

// A block of *K in the roll-down "Finish" whose last line is this one.
std::string Grouped(std::string const& line) {
    return "*%ZUBFlags *K: Dynamic\n*%ZUBGroup *K: Finish/Finishing\n" + line + "\n";
}

PPDPtr ParseGrouped(std::string const& line, _PARSE_OPTIONS_ options = kParseAll) {
    return ParseBody(kTree + Grouped(line), options);
}

}  // namespace

TEST(RangeLineTest, GivesNumbersNameCodeAndPlace) {
    for (char const* keyword : {"*%ZUBRange", "*%ZUBUnitRange"}) {
        PPDPtr const ppd =
            ParseGrouped(std::string(keyword) + " *K/Kay : (-10; 20;5;7) (ignored) \"<*K> set\"");
        auto* const range = ControlOf<PPDXRangeControl>(*ppd, "*K");
        ASSERT_NE(range, nullptr);
        EXPECT_EQ(ErrorsOf(*ppd), Texts{});
        EXPECT_STREQ(range->UserName(), "Kay ");
        EXPECT_TRUE(range->IsDynamic());
        EXPECT_EQ(dynamic_cast<PPDXRollDown*>(range->GetParent())
                      ->Controls()
                      ->FindRangeControl("*K", true),
                  range);
        EXPECT_EQ(range->MinVal(), -10);
        EXPECT_EQ(range->MaxVal(), 20);
        EXPECT_EQ(range->Increment(), 5);
        EXPECT_EQ(range->DefaultValue(), 7);
        EXPECT_EQ(range->GetValue(), 7);
        EXPECT_EQ(PostScriptOf(*range), "%%BeginFeature: *K 7\n7 set\n%%EndFeature\n");
    }
    PPDPtr const ppd = ParseGrouped("*%ZUBFloatRange *K/Kay: (0.5;2e0;.25;1.5) \"<*K> set\"");
    auto* const range = ControlOf<PPDXFloatRangeControl>(*ppd, "*K");
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->MinVal(), 0.5F);
    EXPECT_EQ(range->MaxVal(), 2.0F);
    EXPECT_EQ(range->Increment(), 0.25F);
    EXPECT_EQ(PostScriptOf(*range), "%%BeginFeature: *K    1.5000\n   1.5000 set\n%%EndFeature\n");
}

TEST(RangeLineTest, MalformedLinesMakeNothingAndSayWhy) {
    struct Case {
        char const* line;  // behind the keyword of the line
        Texts errors;
        bool made;
    };
    std::vector<Case> const cases = {
        {"", {"7 *K"}, false},
        {"*L/Kay: (1;2;1;1) \"\"", {"7 *L"}, false},
        {"*K", {}, false},
        {"*K/Kay: 1;2;1;1) \"x\"", {"7 *K"}, false},
        {"*K/Kay: (1;2;1) \"x\"", {"7 *K"}, false},
        {"*K/Kay: (1;2;1;1 \"x\"", {"7 *K"}, false},
        {"*K/Kay: (1;2;1;1;1) \"x\"", {"7 *K"}, false},
        {"*K/Kay: (1;;1;1) \"x\"", {"7 *K"}, false},
        {"*K/Kay: (1(2;1;1) \"x\"", {"7 *K"}, false},
        {"*K/Kay: (\"1\";2;1;1) \"x\"", {}, true},
        {"*K/Kay:( ;two;\t;0x10) \"x\"", {}, true},
        {"*K/Kay: (1;2;1;1)", {"35 *K"}, true},
        {"*K/Kay: (1;2;1;1) \"\"", {"35 *K"}, true},
    };
    for (Case const& row : cases) {
        for (char const* keyword : {"*%ZUBRange ", "*%ZUBFloatRange "}) {
            PPDPtr const ppd = ParseGrouped(std::string(keyword) + row.line);
            Texts errors = row.errors;
            if (!row.made) {
                errors.push_back("27");
            }
            EXPECT_EQ(ErrorsOf(*ppd), errors) << keyword << row.line;
            EXPECT_EQ(ControlOf(*ppd, "*K") != nullptr, row.made) << keyword << row.line;
        }
    }
}

TEST(RangeLineTest, NeedsAGroupOrOrphansButNoSeries) {
    std::string const grouped =
        "*%ZUBFlags *K:\n*%ZUBGroup *K: Nowhere\n*%ZUBRange *K/K: (1;2;1;1)\n";
    PPDPtr const dropped = ParseBody(kTree + grouped, kParsePlacedAndVisible);
    EXPECT_EQ(ErrorsOf(*dropped), (Texts{"35 *K", "21 *K", "27"}));
    PPDPtr const orphan = ParseBody(kTree + grouped);
    EXPECT_EQ(ErrorsOf(*orphan), (Texts{"35 *K", "29 *K", "27"}));
    // Behind the flags line itself there is no place for a range.
    PPDPtr const ungrouped = ParseBody("*%ZUBFlags *K:\n*%ZUBRange *K/K: (1;2;1;1)\n");
    EXPECT_EQ(ErrorsOf(*ungrouped).front(), "16 *K");
    PPDPtr const old = ParseBody("*%ZUVersion: 2.9\n" + std::string(kTree) +
                                 Grouped("*%ZUBRange *K/K: (1;2;1;1) \"x\""));
    EXPECT_NE(ControlOf(*old, "*K"), nullptr);
}

TEST(RangeLineTest, NumbersThatDontFitAreClampedAndStillClamp) {
    PPDPtr const ppd =
        ParseGrouped("*%ZUBRange *K/K: (-99999999999999999999;4294967296;0;2147483648) \"<*K>\"");
    auto* const range = ControlOf<PPDXRangeControl>(*ppd, "*K");
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->MinVal(), -2147483648L);
    EXPECT_EQ(range->MaxVal(), 2147483647L);
    EXPECT_EQ(range->GetValue(), 2147483647L);
    PPDPtr const inverted = ParseGrouped("*%ZUBRange *K/K: (10;3;0;5) \"<*K>\"");
    auto* const narrow = ControlOf<PPDXRangeControl>(*inverted, "*K");
    ASSERT_NE(narrow, nullptr);
    EXPECT_EQ(narrow->GetValue(), 5);
    for (long value : {1L, 5L, 99L}) {
        narrow->SetValue(value);
        EXPECT_EQ(narrow->GetValue(), 3);  // the maximum has the last word
    }
    PPDPtr const strange =
        ParseGrouped("*%ZUBFloatRange *K/K: (-inf;1e999;\xCA\x35;0x1p4) \"<*K>\"");
    auto* const decimal = ControlOf<PPDXFloatRangeControl>(*strange, "*K");
    ASSERT_NE(decimal, nullptr);
    EXPECT_EQ(decimal->MinVal(), 0);
    EXPECT_GT(decimal->MaxVal(), 3e38F);
    EXPECT_EQ(decimal->Increment(), 0);
    EXPECT_EQ(decimal->GetValue(), 0);
}

TEST(CustomPageSizeLineTest, EitherLineMakesTheControlAndFillsItsLimits) {
    std::string const height = "*%ParamCustomPrintSize Height: 2 points 50 1500.5\n";
    std::string const width = "*%ParamCustomPrintSize Width: 1 points 36 1000\n";
    for (std::string const& lines : {width + height, height + width}) {
        PPDPtr const ppd = ParseBody("*%ZUBGroupName FPPaperSource/Paper: True\n" + lines);
        auto* const size = ControlOf<PPDXCustomPageSizeControl>(*ppd, "*CustomPrintSize");
        ASSERT_NE(size, nullptr);
        EXPECT_EQ(ppd->GetControls()->CustomPageSizeCount(), 0);  // an orphan
        EXPECT_EQ(size->MinWidth(), 36);
        EXPECT_EQ(size->MaxWidth(), 1000);
        EXPECT_EQ(size->MinHeight(), 50);
        EXPECT_EQ(size->MaxHeight(), 1500.5F);
        EXPECT_EQ(ErrorsOf(*ppd), (Texts{"25", "27"}));
    }
}

TEST(CustomPageSizeLineTest, ShortAndOddLinesFillWhatTheyHave) {
    struct Case {
        char const* line;
        float minimum;
        float maximum;
    };
    for (Case const& row :
         {Case{"Width: 1 points 36", 36, 0}, Case{"Width: 1 points", 0, 0},
          Case{"Width:1 points 36 1000", 1000, 0}, Case{"Width: 1 points  36 1000", 0, 36},
          Case{"Depth: 1 pt 5 6", 0, 0}, Case{"Width: 1 points x 1e99", 0, 3.4028235e38F}}) {
        PPDPtr const ppd = ParseBody(std::string("*%ParamCustomPrintSize ") + row.line + "\n");
        auto* const size = ControlOf<PPDXCustomPageSizeControl>(*ppd, "*CustomPrintSize");
        ASSERT_NE(size, nullptr) << row.line;
        EXPECT_EQ(size->MinWidth(), row.minimum) << row.line;
        EXPECT_EQ(size->MaxWidth(), row.maximum) << row.line;
    }
    // Some other option has the keyword.
    PPDPtr const taken = ParseBody(PPDLines::Popup("*CustomPrintSize", {"a"}) +
                                   "*%ParamCustomPrintSize Width: 1 points 36 1000\n");
    EXPECT_EQ(taken->GetControls()->CustomPageSizeCount(), 0);
    EXPECT_NE(ControlOf<PPDXPopupControl>(*taken, "*CustomPrintSize"), nullptr);
}

TEST(SpecialOptionLineTest, MakesAHiddenOrphanWhateverIsParsed) {
    PPDPtr const ppd = ParseBody(
        "*%ZUVersion: 1\n*%ZUBSpecialOption *Secret: a \"b\": c \n*%ZUBSpecialOption *Empty:\n"
        "*%ZUBSpecialOption\n",
        kParsePlacedAndVisible);
    auto* const option = ControlOf<PPDXSpecialOption>(*ppd, "*Secret");
    ASSERT_NE(option, nullptr);
    EXPECT_STREQ(option->GetValue()->GetCharData(), "a \"b\": c");
    EXPECT_STREQ(option->UserName(), "*Secret");
    EXPECT_TRUE(option->IsOrphan() && !option->IsVisible());
    EXPECT_EQ(option->PostScript(nullptr), 0);
    EXPECT_EQ(ppd->GetControls()->SpecialOptionsCount(), 1);
    PPDPtr const installed = ParseBody(
        "*OpenGroup: InstallableOptions/Installed\n*%ZUBSpecialOption *Secret: x\n"
        "*CloseGroup: InstallableOptions\n");
    EXPECT_FALSE(ControlOf(*installed, "*Secret")->IsOrphan());
    // Before the languages are known nothing has a name.
    PPDPtr const nameless = ParseBytes("*PPD-Adobe: \"4.3\"\n*%ZUBSpecialOption *Secret: x\n");
    EXPECT_EQ(ErrorsOf(*nameless).front(), "1 *Secret");
    EXPECT_EQ(ControlOf(*nameless, "*Secret"), nullptr);
}

TEST(ShortcutLineTest, LeadsToOptionsOfTheWholeFileInItsOrder) {
    PPDPtr const ppd = ParseBody(
        "*%ZUShortcut *Late\n*%ZUShortcut: *Nowhere\n*%ZUShortcut *Flag \n*%ZUShortcut\n" +
        PPDLines::Boolean("*Flag") + PPDLines::Popup("*Late", {"a"}) +
        "*%ZUShortcut *ZUChromVale\n*%ZUShortcut *Late\n");
    EXPECT_EQ(ErrorsOf(*ppd),
              (Texts{"29 *Flag", "29 *Late", "19 *ZUChromVale", "19 *Nowhere", "25", "26", "27"}));
    PPDXShortcuts* const shortcuts = ppd->GetShortcuts();
    ASSERT_NE(shortcuts, nullptr);
    EXPECT_EQ(shortcuts->Count(), 3);
    EXPECT_EQ(shortcuts->First(false), ControlOf(*ppd, "*Late"));
    EXPECT_EQ(shortcuts->Next(), ControlOf(*ppd, "*Flag"));
    EXPECT_EQ(shortcuts->Next(), ControlOf(*ppd, "*Late"));
    EXPECT_EQ(shortcuts->Next(), nullptr);
    // The list is there for every file that could be read.
    PPDPtr const refused = ParseBytes("*PPD-Adobe: \"4.2\"\n");
    ASSERT_NE(refused->GetShortcuts(), nullptr);
    EXPECT_TRUE(refused->GetShortcuts()->Empty());
}
