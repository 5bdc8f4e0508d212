// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"

namespace {

using Texts = std::vector<std::string>;

std::string KindOf(PPDXGroup* group) {
    return IsRollDown(group) ? "rollDown" : IsScrollPane(group) ? "scrollPane" : "group";
}

// Each group as "keyword kind parent", with "hidden" behind it if it is.
Texts GroupsOf(ZUBPPD& ppd) {
    DisplayOptionsScope const all(kDisplayAll);
    Texts groups;
    for (auto* group = ppd.GetGroups()->First(); group != nullptr;
         group = ppd.GetGroups()->Next()) {
        PPDXElement* const parent = group->GetParent();
        groups.push_back(std::string(group->Keyword()) + " " + KindOf(group) + " " +
                         (parent != nullptr ? parent->Keyword() : "-") +
                         (group->IsVisible() ? "" : " hidden"));
    }
    return groups;
}

// The errors but for the three about what a whole file lacks.
Texts LineErrors(ZUBPPD& ppd) {
    Texts errors = ErrorsOf(ppd);
    std::erase_if(errors,
                  [](auto const& text) { return text == "25" || text == "26" || text == "27"; });
    return errors;
}

}  // namespace

TEST(LayoutLinesTest, PagesPanesAndRollDownsFormATree) {
    PPDPtr const ppd = ParseBody(kTree);
    EXPECT_EQ(GroupsOf(*ppd), (Texts{"Pane1 scrollPane Layout", "Finish rollDown Pane1"}));
    PPDXProperty* const page = ppd->GetProperties()->First();
    ASSERT_NE(page, nullptr);
    EXPECT_STREQ(page->UserName(), "Layout");
    ASSERT_NE(page->GetScrollDown(), nullptr);
    EXPECT_STREQ(page->GetScrollDown()->Keyword(), "Pane1");
    EXPECT_EQ(page->GetScrollDown()->RollDowns()->Find("Finish", true),
              ppd->GetGroups()->Find("Finish", true));
    EXPECT_TRUE(LineErrors(*ppd).empty());
}

TEST(LayoutLinesTest, WordsOfAPageCountInAnyOrder) {
    struct Case {
        char const* words;
        bool visible;
        bool inPrintProperties;
        bool inApplication;
    };
    for (Case const& row : std::vector<Case>{{" App|True", true, false, true},
                                             {"True|Prop", true, true, false},
                                             {"True|App|Prop", true, false, false},
                                             {" \"True|App\"", true, false, true},
                                             {"True||App", true, true, true},
                                             {"true", false, true, true},
                                             {"", false, true, true}}) {
        PPDPtr const ppd = ParseBody(std::string("*%ZUBPropPage P/Page:") + row.words + "\n");
        PPDXProperty* const page = ppd->GetProperties()->First();
        ASSERT_NE(page, nullptr) << row.words;
        EXPECT_EQ(page->IsVisible(), row.visible) << row.words;
        EXPECT_EQ(page->ShowInPrintProp(), row.inPrintProperties) << row.words;
        EXPECT_EQ(page->ShowInApp(), row.inApplication) << row.words;
    }
}

TEST(LayoutLinesTest, FaultyLinesAreReportedOrPassedOver) {
    struct Case {
        char const* lines;
        Texts errors;
    };
    std::vector<Case> const cases = {
        {"*%ZUBPropPage\n", {"4"}},
        {"*%ZUBPropPage Layout/Again: True\n", {"23"}},
        {"*%ZUBPropPage NoName\n", {}},
        {"*%ZUBGroupName\n", {"12"}},
        {"*%ZUBGroupName Pane1/Again: True\n", {"23 Pane1"}},
        {"*%ZUBGroupName NoName\n", {}},
        {"*%ZUBParent\n", {"15"}},
        {"*%ZUBParent Free\n", {"15 Free"}},
        {"*%ZUBParent Unknown/Layout: True|Scrollpane\n", {}},
        {"*%ZUBGroupName Free/Free: True\n*%ZUBParent Free/Nowhere: True|Scrollpane\n",
         {"14 Nowhere"}},
        {"*%ZUBGroupName Free/Free: True\n*%ZUBParent Free/Finish: True|Rolldown\n", {"14 Finish"}},
        {"*%ZUBGroupName Free/Free: True\n*%ZUBParent Free/Layout: True|Rolldown\n", {"14 Layout"}},
        {"*%ZUBGroupName Free/Free: True\n*%ZUBParent Free/Pane1: True\n", {}},
    };
    for (Case const& row : cases) {
        PPDPtr const ppd = ParseBody(std::string(kTree) + row.lines, kParsePlacedAndVisible);
        EXPECT_EQ(LineErrors(*ppd), row.errors) << row.lines;
        EXPECT_EQ(GroupsOf(*ppd).size(), 2U) << row.lines;
        EXPECT_EQ(ppd->GetProperties()->Count(), 1) << row.lines;
        EXPECT_TRUE(ppd->IsValidPPD());
    }
}

TEST(LayoutLinesTest, LastKindOnAParentLineWins) {
    std::string const body = std::string(kTree) +
                             "*%ZUBGroupName G/Group: True\n*%ZUBParent G/Pane1: Scrollpane|True|"
                             "Rolldown\n";
    EXPECT_EQ(GroupsOf(*ParseBody(body)).back(), "G rollDown Pane1");
}

TEST(LayoutLinesTest, SecondPaneOfAPageReplacesTheFirst) {
    PPDPtr const ppd = ParseBody(std::string(kTree) +
                                 "*%ZUBGroupName Pane2/Other: True\n"
                                 "*%ZUBParent Pane2/Layout: True|Scrollpane\n");
    EXPECT_STREQ(ppd->GetProperties()->First()->GetScrollDown()->Keyword(), "Pane2");
    EXPECT_EQ(GroupsOf(*ppd).size(), 3U);
}

TEST(LayoutLinesTest, HiddenAndUnusedNamesFollowTheParseOptions) {
    std::string const body =
        "*%ZUBPropPage Shown/Shown: True\n*%ZUBPropPage Hidden/Hidden: False\n"
        "*%ZUBGroupName A/A: True\n*%ZUBGroupName B/B:\n*%ZUBGroupName C/C: True\n"
        "*%ZUBGroupName B/Again:\n*%ZUBParent A/Hidden: Scrollpane\n";
    struct Case {
        _PARSE_OPTIONS_ options;
        std::int32_t pages;
        Texts groups;
    };
    for (Case const& row : std::vector<Case>{
             {kParsePlacedAndVisible, 1, {}},
             {kParseOrphans, 1, {"A group -", "C group -"}},
             {kParseHidden, 2, {"A scrollPane Hidden hidden"}},
             {kParseAll, 2, {"A scrollPane Hidden hidden", "B group - hidden", "C group -"}}}) {
        PPDPtr const ppd = ParseBody(body, row.options);
        EXPECT_EQ(ppd->GetProperties()->Count(), row.pages);
        EXPECT_EQ(GroupsOf(*ppd), row.groups) << row.options;
    }
}

TEST(LayoutLinesTest, NameWithoutATextConverterMakesNoElement) {
    PPDPtr const ppd = ParseBytes(std::string("*PPD-Adobe: \"4.3\"\n*%ZUVersion: 4\n") + kTree +
                                  "*OpenGroup: InstallableOptions/Options\n"
                                  "*%ZUBFlags *K: Dynamic\n*OpenUI *K/Name: PickOne\n"
                                  "*DefaultK: a\n*K a/A: \"\"\n*CloseUI: *K\n");
    EXPECT_EQ(LineErrors(*ppd),
              (Texts{"4", "12 Pane1", "12 Finish", "12 InstallableOptions", "8 *K"}));
    EXPECT_TRUE(ppd->IsValidPPD());
}

TEST(LayoutLinesTest, InstallableSectionIsARollDownOfItsOwn) {
    PPDPtr const ppd = ParseBody(
        "*OpenGroup: Other/Other\n*OpenGroup: InstallableOptions/Options Installed\n"
        "*CloseGroup: InstallableOptions\n*OpenGroup: InstallableOptions/Again\n");
    EXPECT_EQ(GroupsOf(*ppd), (Texts{"InstallableOptions rollDown -"}));
    EXPECT_STREQ(ppd->GetGroups()->Find("InstallableOptions", true)->UserName(),
                 "Options Installed");
}
