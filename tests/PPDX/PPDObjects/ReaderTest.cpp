// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "constraints/UIConstraints.h"
#include "tests/PPDLines.h"

// The model in tests/model reads the whole grammar. Here is what it leaves open, what an inspected
// file doesn't show, and the limits.

namespace {

using Texts = std::vector<std::string>;

// The errors, and behind them each option as "keyword=value".
std::string OutcomeOf(ZUBPPD& ppd) {
    std::string outcome;
    for (std::string const& error : ErrorsOf(ppd)) {
        outcome += error + ", ";
    }
    DisplayOptionsScope const all(kDisplayAll);
    CNTL_TYPE type = kControlType;
    for (auto* control = GetFirst(ppd.GetControls(), type); control != nullptr;
         control = GetNext(ppd.GetControls(), type)) {
        outcome += std::string(control->Keyword()) + "=" + ValueOf(ppd, control->Keyword()) + " ";
    }
    return outcome;
}

// A block of *K in the roll-down of the tree, with these lines in it.
std::string Block(std::string const& kind, std::string const& lines) {
    return "*%ZUBFlags *K:\n*%ZUBGroup *K: Finish/F\n*OpenUI *K" + kind + "\n" + lines +
           "*CloseUI: *K\n";
}

Texts ItemsOf(PPDXPopupControl& popup) {
    Texts items;
    for (auto* item = popup.FirstItem(); item != nullptr; item = popup.NextItem()) {
        items.emplace_back(item->Keyword());
    }
    return items;
}

TEST(ReaderTest, OddPlacesOfAFile) {
    struct Case {
        std::string lines;
        char const* outcome;
    };
    std::string const section = "*OpenGroup: InstallableOptions/O\n";
    for (Case const& row : std::vector<Case>{
             {Block("/: PickOne", "*DefaultK: a\n*K a/A: \"\"\n"), "*K=a "},
             {Block("/K: PickOne", "*DefaultK: a\n"), "*K=(null) "},
             {Block("/K: PickOne", "*DefaultK: b\n*K /none: \"x\"\n*K b/B: \"\"\n"), "*K=b "},
             {Block("/K: PickOne", "*DefaultK: b\n*K\t b /B/b : \"x\"\n*K a\n"), "*K=b "},
             {Block("/K: PickOne", "*DefaultK: x\n*K/a: \"x\"\n*Kx b/B: \"\"\n"), "*K=b "},
             {Block("/K: PickOne", "*DefaultK: c\n*K a/A: \"\"\n?K x: *K c/C: \"\"\n"), "*K=a "},
             {Block("/K: PickOne", "*DefaultK: a\n*K a/A: \"open\n").substr(0, 95), "11! *K, 27, "},
             {Block("/K: Boolean", "*DefaultK: True\n*DefaultK: False\n"), "*K=False "},
             {Block("/K: Boolean", "*DefaultK: True\n*K\n"), "9 *K, 27, "},
             {"*%ZUBFlags *S:\n*OpenUIZUB *S/S: PickOne\n*DefaultS: a\n", "34 *S, 10! *S, 27, "},
             {"*%ZUBPropPage\n*%ZUBGroupName\n*%ZUBParent\n", "4, 12, 15, 27, "},
             {"*OpenGroup: InstallableOptions\n" + PPDLines::Boolean("*T"), "*T=False "},
             {section + "*%ZUBSpecialOption *S: x\n*CloseGroup: InstallableOptions\n", "27, *S=x "},
             {"*UIConstraints: *A x\n*UIConstraints:\n*%ZUBUIRequires: *A\n", "36, 36, 36, 27, "},
             {PPDLines::Popup("*CustomPrintSize", {"a"}) +
                  "*%ParamCustomPrintSize Width: 1 points 36 1000\n",
              "29 *CustomPrintSize, 27, *CustomPrintSize=a "}}) {
        PPDPtr const ppd = ParseBody(kTree + row.lines);
        EXPECT_EQ(OutcomeOf(*ppd), row.outcome) << row.lines;
    }
}

TEST(ReaderTest, AStateGivenAgainIsReplacedWhole) {
    PPDPtr const ppd =
        ParseBody(kTree + Block("/K: Boolean",
                                "*DefaultK: True\n*K True/Yes: \"on\"\n*K True: \"on2\"\n"
                                "*K False/No: \"off\"\n*K False/Never: \"\"\n"));
    PPDXControl* const control = ControlOf(*ppd, "*K");
    EXPECT_EQ(PostScriptOf(*control), "%%BeginFeature: *K True\non2\n%%EndFeature\n");
    control->SetCurrentControlWithCFString(CFSTR("False"));
    EXPECT_EQ(PostScriptOf(*control), "%%BeginFeature: *K False\n\n%%EndFeature\n");
}

TEST(ReaderTest, WithoutLanguagesNothingThatNeedsANameIsMade) {
    PPDPtr const ppd =
        ParseBytes(std::string("*PPD-Adobe: \"4.3\"\n*%ZUVersion: 4\n") + kTree +
                   "*OpenGroup: InstallableOptions/Options\n*%ZUBSpecialOption *Secret: x\n" +
                   Block("/K: PickOne", "*DefaultK: a\n*K a/A: \"\"\n"));
    EXPECT_EQ(OutcomeOf(*ppd),
              "4, 12 Pane1, 12 Finish, 12 InstallableOptions, 1 *Secret, 8 *K, 25, 26, 27, ");
    EXPECT_TRUE(ppd->IsValidPPD());
}

TEST(ReaderTest, NumbersThatDontFitAreClampedAndStillClamp) {
    std::string const body = kTree + std::string("*%ZUBFlags *K:\n*%ZUBGroup *K: Finish/F\n");
    PPDPtr const ppd = ParseBody(
        body + "*%ZUBRange *K/K: (-99999999999999999999;4294967296;0;2147483648) \"<*K>\"\n");
    auto* const range = ControlOf<PPDXRangeControl>(*ppd, "*K");
    ASSERT_NE(range, nullptr);
    EXPECT_EQ(range->MinVal(), -2147483648L);
    EXPECT_EQ(range->MaxVal(), 2147483647L);
    EXPECT_EQ(range->GetValue(), 2147483647L);
    PPDPtr const strange =
        ParseBody(body + "*%ZUBFloatRange *K/K: (-inf;1e999;\xCA\x35;0x1p4) \"<*K>\"\n");
    auto* const decimal = ControlOf<PPDXFloatRangeControl>(*strange, "*K");
    ASSERT_NE(decimal, nullptr);
    EXPECT_EQ(decimal->MinVal(), 0);
    EXPECT_GT(decimal->MaxVal(), 3e38F);
    EXPECT_EQ(decimal->Increment(), 0);
    EXPECT_EQ(decimal->GetValue(), 0);
    PPDPtr const size = ParseBody("*%ParamCustomPrintSize Width: 1 points x 1e99\n");
    EXPECT_EQ(ControlOf<PPDXCustomPageSizeControl>(*size, "*CustomPrintSize")->MaxWidth(),
              3.4028235e38F);
}

TEST(ReaderTest, RulesOfThreeKeywordsReachTheirStores) {
    PPDPtr const ppd = ParseBody(
        "*UIConstraints: *A a \t*B b\n*%ZUBUIConstraints:\t*A a *C c\n"
        "*%ZUBUIRequires: *A a *D d\n");
    UIConstraints& store = *ppd->GetUIConstraints();
    CStringSoup& strings = store.GetConstraintStrings();
    auto const ruleCount = [&strings](ConstraintForest& forest) {
        std::unique_ptr<ItemConstraintList> const rules(
            forest.GetConstraintList(strings.Find("*A"), strings.Find("a")));
        return rules == nullptr ? 0 : rules->size();
    };
    EXPECT_EQ(ruleCount(store.GetConstraintForest()), 2U);
    EXPECT_EQ(ruleCount(store.GetRequiresForest()), 1U);
}

// ---- The file as a whole ----

TEST(ReaderTest, AFileThatCannotBeReadIsError18) {
    PPDPtr const absent(new ZUBPPD(FileURL("/nowhere/x.ppd"), kParseAll, nullptr));
    EXPECT_EQ(ErrorsOf(*absent).front(), "18!");
    EXPECT_FALSE(absent->IsValidPPD());
    EXPECT_EQ(ErrorsOf(*ParseBytes("")).front(), "18!");
    EXPECT_EQ(ErrorsOf(*ParseBytes("*PPD-Adobe: \"4.2\"\n")).front(), "28!");
}

TEST(ReaderTest, ALineThatIsTooLongOrHoldsFFEndsTheFileQuietly) {
    for (std::string const& stop : {std::string(255, 'x') + "\n", std::string("a\xFF\n")}) {
        PPDPtr const ppd = ParseBody(stop + "*%ZUBPropPage\n");
        EXPECT_EQ(OutcomeOf(*ppd), "25, 26, 27, ");
        EXPECT_TRUE(ppd->IsValidPPD());
    }
    EXPECT_EQ(OutcomeOf(*ParseBody(std::string(254, 'x') + "\n*%ZUBPropPage\n")),
              "4, 25, 26, 27, ");
}

TEST(ReaderTest, APrintersNameIsLookedForIn4096BytesAnd32BehindTheKeyword) {
    struct Case {
        std::size_t padding;
        std::size_t blanks;
        std::string value;
        bool accepted;
    };
    std::size_t const last = 4096 - std::string("*PCFileName: ZUB").size();
    for (Case const& row : {Case{last, 0, "ZUB", true}, Case{last + 1, 0, "ZUB", false},
                            Case{0, 20, std::string(29, 'x') + "ZUB", true},
                            Case{0, 20, std::string(30, 'x') + "ZUB", false},
                            Case{0, 0, "zub", false}, Case{4096 - 12, 0, "", false}}) {
        PPDPtr const ppd = ParseBytes(std::string(row.padding, '#') + "*PCFileName: " +
                                          std::string(row.blanks, ' ') + row.value,
                                      kParseAll, Names("ZUB"));
        EXPECT_EQ(ppd->IsValidPrinterName(), row.accepted) << row.padding << row.value;
        EXPECT_EQ(ppd->GetControls() != nullptr, row.accepted);
    }
}

TEST(ReaderTest, TheFirstErrorOfAnyKindEndsAParseThatAllowsNone) {
    struct Case {
        char const* lines;
        Texts errors;  // of a whole parse and behind it of a strict one
    };
    for (Case const& row :
         {Case{"*%ZUBPropPage\n*%ZUBGroupName\n", {"4", "12", "25", "26", "27", "4"}},
          // Also one that the reader adds in the middle of a block.
          Case{"*%ZUBFlags *S:\n*OpenUIZUB *S/S: PickOne\n*CloseUIZUB: *S\n*%ZUBPropPage\n",
               {"34 *S", "4", "25", "26", "27", "34 *S"}}}) {
        TemporaryFile const file(std::string(kHeader) + row.lines);
        PPDPtr const ppd(new ZUBPPD(file.URL(), kParseAll, nullptr));
        EXPECT_TRUE(ppd->IsValidPPD());
        ppd->AllErrorsFatal(true);
        EXPECT_FALSE(ppd->IsValidPPD());
        ppd->Parse();
        EXPECT_EQ(ErrorsOf(*ppd), row.errors);
    }
}

TEST(ReaderTest, ReferencesCountFromNoneAndTheDisplayOptionStartsAtNone) {
    DisplayOptionsScope const all(kDisplayAll);
    auto* const ppd = new ZUBPPD(kParseAll);
    EXPECT_EQ(ZUBPPD::Options(), kDisplayPlacedAndVisible);
    ppd->Retain();
    ppd->Retain();
    EXPECT_FALSE(ppd->Release());
    EXPECT_TRUE(ppd->Release());
    EXPECT_TRUE((new ZUBPPD(kParseAll))->Release());
}

TEST(ReaderTest, AListIsAddedToATreeAtRunTimeAndGivenNewItems) {
    auto const fill = [](PointerList& items, std::initializer_list<char const*> keywords) {
        for (char const* keyword : keywords) {
            auto* const item = new _PopupItem;
            item->mKeyword = new CString(keyword);
            items.PushBack(item);
        }
    };
    PPDPtr const ppd = ParseBody(kTree);
    PointerList items;
    fill(items, {"a", "b"});
    auto* const popup = dynamic_cast<PPDXPopupControl*>(
        ppd->PPDCreatePopupMenu("Finish", "*R", "Run time", items, new CString("b")));
    ASSERT_NE(popup, nullptr);
    EXPECT_STREQ(popup->GetParent()->Keyword(), "Finish");
    EXPECT_EQ(popup->GetValue(), 2);
    PointerList newItems;
    fill(newItems, {"c", "b"});
    EXPECT_TRUE(ppd->PPDReconcilePopupMenu("*R", "Other", newItems, nullptr));
    EXPECT_EQ(ItemsOf(*popup), (Texts{"c", "b"}));
    EXPECT_EQ(popup->GetValue(), 2);

    PointerList none;
    EXPECT_FALSE(ppd->PPDReconcilePopupMenu("*Unknown", "x", none, nullptr));
    EXPECT_EQ(ppd->PPDCreatePopupMenu(nullptr, "*S", "x", none, nullptr), nullptr);
    PPDPtr const noConverter(new ZUBPPD(kParseAll));
    EXPECT_EQ(noConverter->PPDCreatePopupMenu("G", "*S", "x", none, nullptr), nullptr);
}

}  // namespace
