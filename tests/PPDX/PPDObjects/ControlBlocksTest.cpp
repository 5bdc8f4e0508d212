// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "ZUBUtils/PPDUtils/CString.h"

namespace {

using Texts = std::vector<std::string>;

std::string const kGroups = std::string(kTree) +
                            "*%ZUBGroupName Plain/Plain: True\n"
                            "*%ZUBGroupName ZUPPInstallableOptions/Installed: True\n"
                            "*%ZUBParent ZUPPInstallableOptions/Pane1: True|Rolldown\n";

// A block of *K in the roll-down "Finish", with these lines in it.
std::string Block(std::string const& kind, std::string const& lines) {
    return "*%ZUBFlags *K: Dynamic|Setup\n*%ZUBGroup *K: Finish/Finishing\n*OpenUI *K/Kay: " +
           kind + "\n" + lines + "*CloseUI: *K\n";
}

PPDPtr ParseBlock(std::string const& kind, std::string const& lines) {
    return ParseBody(kGroups + Block(kind, lines));
}

Texts ItemsOf(PPDXPopupControl& popup) {
    Texts items;
    for (auto* item = popup.FirstItem(); item != nullptr; item = popup.NextItem()) {
        items.emplace_back(item->Keyword());
    }
    return items;
}

}  // namespace

TEST(PopupBlockTest, OptionsComeWithNamesCodesAndFlags) {
    PPDPtr const ppd = ParseBlock("PickOne (a comment)",
                                  "*OrderDependency: 10 AnySetup *K\n*DefaultK: On\n"
                                  "*K None/Off: \"false set\"\n*K On/On: \"true\nset\"\n"
                                  "*K Bare: \"\"\n*Other x/x: \"lost\"\n");
    auto* const popup = ControlOf<PPDXPopupControl>(*ppd, "*K");
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(ItemsOf(*popup), (Texts{"None", "On", "Bare"}));
    EXPECT_STREQ(popup->UserName(), "Kay");
    EXPECT_STREQ(popup->GetKeywordLocalName("None"), "Off");
    EXPECT_EQ(popup->GetKeywordLocalName("Bare"), nullptr);
    EXPECT_EQ(popup->GetValue(), 2);
    EXPECT_EQ(PostScriptOf(*popup), "%%BeginFeature: *K On\ntrue\nset\n%%EndFeature\n");
    EXPECT_TRUE(popup->IsDynamic() && popup->IsSetup() && !popup->IsCommand());
    EXPECT_FALSE(popup->CanSelectMultipleItems());
    EXPECT_FALSE(popup->IsInstallableOption());
    auto* const rollDown = dynamic_cast<PPDXRollDown*>(popup->GetParent());
    ASSERT_NE(rollDown, nullptr);
    EXPECT_STREQ(rollDown->Keyword(), "Finish");
    EXPECT_EQ(rollDown->Controls()->FindPopup("*K", true), popup);
    EXPECT_TRUE(ErrorsOf(*ppd).empty());
}

TEST(PopupBlockTest, DefaultIsTheNamedOptionTheFirstOneOrNone) {
    struct Case {
        char const* lines;
        char const* value;  // null for none
        Texts errors;
    };
    std::string const options = "*K a/A: \"a\"\n*K b/B: \"b\"\n";
    std::vector<Case> const cases = {
        {"*DefaultK: b\n#", "b", {}},          {"*DefaultAnything: b/Bee\n#", "b", {}},
        {"*Default: *K: b\n#", "b", {}},       {"*Default: *Other: b\n*DefaultK: a\n#", "a", {}},
        {"*DefaultK: unlisted\n#", "a", {}},   {"#*DefaultK: b\n", "a", {}},
        {"*DefaultK:\n#", nullptr, {"33 *K"}}, {"#", nullptr, {"33 *K"}},
        {"*DefaultK: a\n", nullptr, {}},
    };
    for (Case const& row : cases) {
        std::string lines = row.lines;
        if (auto const at = lines.find('#'); at != std::string::npos) {
            lines.replace(at, 1, options);
        }
        PPDPtr const ppd = ParseBlock("PickOne", lines);
        auto* const popup = ControlOf<PPDXPopupControl>(*ppd, "*K");
        ASSERT_NE(popup, nullptr) << lines;
        CFRef<CFStringRef> const value(popup->CopyCurrentControlValueString());
        EXPECT_EQ(static_cast<bool>(value), row.value != nullptr) << lines;
        if (value) {
            EXPECT_TRUE(CFEqual(value, CFStringConstant(row.value))) << lines;
        }
        EXPECT_EQ(ErrorsOf(*ppd), row.errors) << lines;
    }
}

TEST(PopupBlockTest, SecondDefaultAndMissingEndAreFatal) {
    for (std::string const& lines :
         {Block("PickOne", "*DefaultK: a\n*K a/A: \"\"\n*Default: *K: a\n"),
          std::string("*%ZUBFlags *K:\n*OpenUI *K/K: PickOne\n*DefaultK: a\n*K a/A: \"\"\n"),
          std::string("*%ZUBFlags *K:\n*OpenUI *K/K: PickOne\n*K a/A: \"never closed\n")}) {
        PPDPtr const ppd = ParseBody(kGroups + lines + "*%ZUBPropPage\n", kParsePlacedAndVisible);
        EXPECT_EQ(ErrorsOf(*ppd), (Texts{"11! *K", "27"})) << lines;
        EXPECT_FALSE(ppd->IsValidPPD());
    }
}

TEST(PopupBlockTest, HeadsOfALine) {
    PPDPtr const ppd =
        ParseBlock("PickMany",
                   "*DefaultK: a: *K ignored/I: \"x\"\n"  // a default, then an option behind it
                   "*KMode m/M: \"m\"\n"                  // the keyword is a prefix
                   "*K a/A: \"a\":*K lost/L: \"l\"\n"     // an empty head ends the line
                   "*K b/B: \"b\" : *K c/C: \"c\"\n"      // a blank one doesn't
                   "*K /no option: \"x\"\n"
                   "?K x: *K hidden/H: \"x\"\n");  // nobody's line is passed over whole
    auto* const popup = ControlOf<PPDXPopupControl>(*ppd, "*K");
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(ItemsOf(*popup), (Texts{"ignored", "m", "a", "b", "c"}));
    EXPECT_TRUE(popup->CanSelectMultipleItems());
}

TEST(BooleanBlockTest, StatesCarryTextAndCode) {
    PPDPtr const ppd = ParseBlock("Boolean",
                                  "*DefaultK: True\n*K True/Yes: \"on\"\n*K False/<4E6F>: \"off\"\n"
                                  "*K True/Sure: \"on2\"\n");
    auto* const boolean = ControlOf<PPDXBooleanControl>(*ppd, "*K");
    ASSERT_NE(boolean, nullptr);
    EXPECT_TRUE(boolean->IsTrue() && boolean->DefaultState());
    EXPECT_STREQ(boolean->TrueDisplayText(), "Sure");
    EXPECT_STREQ(boolean->FalseDisplayText(), "<4E6F>");
    EXPECT_EQ(PostScriptOf(*boolean), "%%BeginFeature: *K True\non2\n%%EndFeature\n");
    boolean->SetValue(false);
    EXPECT_EQ(PostScriptOf(*boolean), "%%BeginFeature: *K False\noff\n%%EndFeature\n");
}

TEST(BooleanBlockTest, DefaultsAndFaults) {
    struct Case {
        char const* lines;
        int state;  // -1 for no control
        Texts errors;
    };
    for (Case const& row :
         std::vector<Case>{{"*DefaultK: True\n*DefaultK: False\n", 0, {}},
                           {"*DefaultK:\n", 0, {}},
                           {"*DefaultK: true\n", 0, {}},
                           {"*K True/Y: \"\"\n", 0, {"33 *K"}},
                           {"*DefaultK: True\n*K Maybe/M: \"\"\n", -1, {"9 *K", "27"}},
                           {"*DefaultK: True\n*K\n", -1, {"9 *K", "27"}}}) {
        PPDPtr const ppd = ParseBlock("Boolean", row.lines);
        auto* const boolean = ControlOf<PPDXBooleanControl>(*ppd, "*K");
        EXPECT_EQ(boolean == nullptr ? -1 : boolean->IsTrue(), row.state) << row.lines;
        EXPECT_EQ(ErrorsOf(*ppd), row.errors) << row.lines;
    }
    PPDPtr const open = ParseBody(kGroups + "*%ZUBFlags *K:\n*OpenUI *K/K: Boolean\n");
    EXPECT_EQ(ErrorsOf(*open), (Texts{"27"}));
}

TEST(ControlBlockTest, WhatOpensABlockDecides) {
    struct Case {
        char const* lines;
        Texts errors;
        bool made;
    };
    std::string const rest = "*DefaultK: a\n*K a/A: \"\"\n*CloseUI: *K\n";
    std::vector<Case> const cases = {
        {"*OpenUI *K/K: PickOne\n", {}, false},
        {"*%ZUBFlags\n", {"16"}, false},
        {"*%ZUBFlags *K:\n*UIConstraints: *A *B\n", {"16 *K"}, false},
        {"*%ZUBFlags *K:\n\n*OpenUI *K/K: PickOne\n", {}, false},
        {"*%ZUBFlags *K:\n*%ZUBGroup\n", {"5"}, false},
        {"*%ZUBFlags *K:\n*%ZUBGroup *L: Finish/F\n*OpenUI *K/K: PickOne\n", {}, false},
        {"*%ZUBFlags *K:\n*%ZUBGroup *K: Finish/F\n*Nothing\n", {"5 *K"}, false},
        {"*%ZUBFlags *K:\n*%ZUBGroup *K: Finish/F\n\n", {}, false},
        {"*%ZUBFlags *K:\n*%ZUBGroup *K:\n*OpenUI *K/K: PickOne\n", {}, false},
        {"*%ZUBFlags *K:\n*OpenUI\n", {"8 *K"}, false},
        {"*%ZUBFlags *K:\n*OpenUI *K: PickOne\n", {"31 *K"}, false},
        {"*%ZUBFlags *K:\n*OpenUI *K/K: PickTwo\n", {"31 *K"}, false},
        {"*%ZUBFlags *K:\n*%ZUBGroup *K: Finish/F\n*OpenUI *Any/K: PickOne\n", {}, true},
        {"*%ZUBFlags *K:\n*%ZUBGroup *K: Finish/F\n*ZUOpenUI *K/K: PickOne\n", {}, true},
        {"*%ZUBFlags *K:\n*%ZUBGroup *K: Finish/F\n*BeginUI *K/K: PickOne\n", {}, true},
        {"*%ZUBFlags *K:\n*OpenUI *K/K: PickOne\n", {"29 *K"}, true},
        {"*%ZUBFlags *K:\n*%ZUBGroup *K: Plain/P\n*OpenUI *K/K: PickOne\n", {"29 *K"}, true},
    };
    for (Case const& row : cases) {
        PPDPtr const ppd = ParseBody(kGroups + (row.lines + rest));
        Texts errors = ErrorsOf(*ppd);
        std::erase(errors, "27");
        EXPECT_EQ(errors, row.errors) << row.lines;
        EXPECT_EQ(ControlOf(*ppd, "*K") != nullptr, row.made) << row.lines;
    }
}

TEST(ControlBlockTest, RepeatedKeywordKeepsTheFirstControl) {
    std::string const block = Block("PickOne", "*DefaultK: a\n*K a/A: \"\"\n");
    // An orphan counts too, though a walk under the first display option doesn't see it.
    std::string const orphan =
        "*%ZUBFlags *K:\n*OpenUI *K/K: PickOne\n*DefaultK: o\n*K o/O: \"\"\n*CloseUI: *K\n";
    for (std::string const& first : {block, orphan}) {
        PPDPtr const ppd = ParseBody(kGroups + first + block);
        Texts const errors = ErrorsOf(*ppd);
        EXPECT_EQ(std::count(errors.begin(), errors.end(), "23"), 1);
        DisplayOptionsScope const all(kDisplayAll);
        EXPECT_EQ(ppd->GetControls()->ControlCount(), 1);
    }
}

TEST(ControlBlockTest, VersionsUpTo2HaveNoPopupsAndBooleans) {
    std::string const body = kGroups + Block("PickOne", "*DefaultK: a\n*K a/A: \"\"\n");
    std::string const header =
        "*PPD-Adobe: \"4.3\"\n*LanguageVersion: English\n"
        "*LanguageEncoding: ISOLatin1\n";
    struct Case {
        char const* version;
        bool made;
    };
    for (Case const& row : std::vector<Case>{{"*%ZUVersion: 2.9\n", false},
                                             {"*%ZUVersion: 3\n", true},
                                             {"*%ZUVersion:  \n", false},
                                             {"*%ZUVersion: \x80\n", true},
                                             {"", false}}) {
        PPDPtr const ppd = ParseBytes(header + row.version + body);
        EXPECT_EQ(ControlOf(*ppd, "*K") != nullptr, row.made) << row.version;
        EXPECT_EQ(ErrorsOf(*ppd), row.made ? Texts{} : Texts{"27"});
    }
}

TEST(ControlBlockTest, ControlsWithoutAGroupFollowTheParseOptions) {
    std::string const block =
        "*%ZUBFlags *K:\n*OpenUI *K/K: Boolean\n*DefaultK: True\n*CloseUI: *K\n";
    std::string const section =
        "*OpenGroup: InstallableOptions/Options\n" + block + "*CloseGroup: InstallableOptions\n";
    struct Case {
        std::string lines;
        _PARSE_OPTIONS_ options;
        Texts errors;
        char const* parent;  // null for none
    };
    for (Case const& row : std::vector<Case>{
             {block, kParseAll, {"29 *K"}, nullptr},
             {block, kParseHidden, {"21 *K"}, nullptr},
             {section, kParseAll, {}, "InstallableOptions"},
             {section, kParseHidden, {"21 *K"}, nullptr},
             {section + "*OpenGroup: X/X\n", kParseAll, {}, "InstallableOptions"},
             {"*OpenGroup: InstallableOptions/O\n*CloseGroup: InstallableOptions\n" + block,
              kParseAll,
              {"29 *K"},
              nullptr}}) {
        PPDPtr const ppd = ParseBody(kGroups + row.lines, row.options);
        PPDXControl* const control = ControlOf(*ppd, "*K");
        Texts errors = ErrorsOf(*ppd);
        std::erase(errors, "27");
        EXPECT_EQ(errors, row.errors) << row.lines;
        if (row.parent != nullptr) {
            ASSERT_NE(control, nullptr) << row.lines;
            EXPECT_STREQ(control->GetParent()->Keyword(), row.parent);
        }
    }
}

TEST(ControlBlockTest, GroupOfInstallableOptionsMarksItsPopups) {
    std::string block = Block("PickOne", "*DefaultK: a\n*K a/A: \"\"\n");
    block.replace(block.find("Finish/Finishing"), 16, "ZUPPInstallableOptions/I");
    PPDPtr const ppd = ParseBody(kGroups + block);
    ASSERT_NE(ControlOf(*ppd, "*K"), nullptr);
    EXPECT_TRUE(ControlOf(*ppd, "*K")->IsInstallableOption());
}

TEST(ControlBlockTest, SkippedBlockIsReportedAndTheFileGoesOn) {
    std::string const skipped =
        "*%ZUBFlags *S:\n*OpenUIZUB *S/S: PickOne\n*DefaultS: a\n*DefaultS: a\n*S a/A: \"\"\n";
    PPDPtr ppd = ParseBody(kGroups + skipped + "*CloseUIZUB: *S\n" +
                           Block("PickOne", "*DefaultK: a\n*K a/A: \"\"\n"));
    EXPECT_EQ(ErrorsOf(*ppd), (Texts{"34 *S"}));
    EXPECT_EQ(ControlOf(*ppd, "*S"), nullptr);
    EXPECT_NE(ControlOf(*ppd, "*K"), nullptr);
    ppd = ParseBody(kGroups + skipped);
    EXPECT_EQ(ErrorsOf(*ppd), (Texts{"34 *S", "10! *S", "27"}));
}

TEST(ControlBlockTest, FlagWordsKeepTheirOrder) {
    struct Case {
        char const* words;
        Texts flags;
    };
    for (Case const& row : std::vector<Case>{{" A|B |C", {"A", "B", "C"}},
                                             {" A| |C", {"A", "C"}},
                                             {" A||C", {"A"}},
                                             {"\"A|B\"", {}},
                                             {" \"A|B\"", {"A", "B"}}}) {
        PPDPtr const ppd = ParseBody(std::string("*%ZUBFlags *K:") + row.words +
                                     "\n*OpenUI *K/K: Boolean\n*DefaultK: True\n*CloseUI: *K\n");
        PPDXControl* const control = ControlOf(*ppd, "*K");
        ASSERT_NE(control, nullptr);
        Texts flags;
        for (char const* flag = control->FirstControlFlag(); flag != nullptr;
             flag = control->NextControlFlag()) {
            flags.emplace_back(flag);
        }
        EXPECT_EQ(flags, row.flags) << row.words;
    }
}

TEST(RunTimePopupTest, PopupIsAddedToATreeAndGivenANewList) {
    auto const item = [](char const* keyword) {
        auto* const made = new _PopupItem;
        made->mKeyword = new CString(keyword);
        return made;
    };
    PPDPtr const ppd = ParseBody(kGroups);
    PointerList items;
    items.PushBack(item("a"));
    items.PushBack(item("b"));
    auto* const popup = dynamic_cast<PPDXPopupControl*>(
        ppd->PPDCreatePopupMenu("Finish", "*R", "Run time", items, new CString("b")));
    ASSERT_NE(popup, nullptr);
    EXPECT_STREQ(popup->GetParent()->Keyword(), "Finish");
    EXPECT_EQ(popup->GetValue(), 2);

    PointerList newItems;
    newItems.PushBack(item("c"));
    newItems.PushBack(item("b"));
    EXPECT_TRUE(ppd->PPDReconcilePopupMenu("*R", "Other", newItems, nullptr));
    EXPECT_EQ(ItemsOf(*popup), (Texts{"c", "b"}));
    EXPECT_EQ(popup->GetValue(), 2);

    PointerList none;
    EXPECT_FALSE(ppd->PPDReconcilePopupMenu("*Unknown", "x", none, nullptr));
    EXPECT_EQ(ppd->PPDCreatePopupMenu(nullptr, "*S", "x", none, nullptr), nullptr);
    PPDPtr const noConverter(new ZUBPPD(kParseAll));
    EXPECT_EQ(noConverter->PPDCreatePopupMenu("G", "*S", "x", none, nullptr), nullptr);
}
