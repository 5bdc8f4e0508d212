// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"

#include <gtest/gtest.h>

#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "constraints/UIConstraints.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

using Changes = std::vector<std::string>;

constexpr long kID = 5001;
constexpr unsigned long kItemNameEntry = 0x5043464E;       // PCFN
constexpr unsigned long kItemPlainNameEntry = 0x5043494E;  // PCIN
constexpr unsigned long kItemSelectedEntry = 0x50434953;   // PCIS

std::unique_ptr<PPDXPopupControl> NewSlots(PopupTraits const& traits = {}) {
    return NewPopup("*InputSlot",
                    {{"Auto", "Automatic", "a\n"},
                     {"Upper", "Upper tray", nullptr},
                     {"Lower", "Lower tray", "l\n"}},
                    traits);
}

// The flags of all items, the value text and the first word behind the keyword in the frame line.
std::string StateOf(PPDXPopupControl& popup) {
    std::string state;
    for (auto* item = popup.FirstItem(); item != nullptr; item = popup.NextItem()) {
        state += item->mSelected != 0 ? '1' : '0';
    }
    std::string const code = Emitted(popup);
    return state + " " + Taken(popup.CopyCurrentControlValueString()) +
           (code.empty() ? " no code" : "");
}

void Set(PPDXPopupControl& popup, char const* value) {
    popup.SetCurrentControlWithCFString(Str(value));
}

TEST(PPDXPopupControlTest, SelectingByKeywordFollowsTheKindOfTheControl) {
    auto const single = NewSlots({.defaultKeyword = "Auto"});
    auto const multiple = NewSlots({.defaultKeyword = "Lower", .multiple = true});
    struct {
        char const* keyword;
        bool state;
        bool found;
        char const* single;
        char const* multiple;
    } const steps[] = {
        {"Upper", true, true, "010 Upper", "011 Upper"},
        {"Auto", true, true, "100 Auto", "111 Auto"},
        {"Auto", false, true, "000 Auto", "011 Auto"},
        {"Lower", true, true, "001 Lower", "011 Lower"},
        {"Gone", true, false, "000 Lower", "011 Lower"},
        {nullptr, true, false, "000 Lower", "011 Lower"},
    };
    for (auto const& step : steps) {
        EXPECT_EQ(single->SetKeywordSelect(step.keyword, step.state), step.found);
        EXPECT_EQ(multiple->SetKeywordSelect(step.keyword, step.state), step.found);
        EXPECT_EQ(StateOf(*single), step.single);
        EXPECT_EQ(StateOf(*multiple), step.multiple);
    }
    EXPECT_EQ(multiple->GetValue(), 2);
    EXPECT_TRUE(multiple->IsKeywordSelected("Upper"));
    EXPECT_FALSE(multiple->IsKeywordSelected("Auto"));
}

TEST(PPDXPopupControlTest, SettingAnIndexSelectsThatItemAlone) {
    auto const popup = NewSlots({.defaultKeyword = "Lower", .multiple = true});
    popup->SetKeywordSelect("Upper", true);
    popup->SetValue(1);
    EXPECT_EQ(StateOf(*popup), "100 Auto");
    for (long const none : {0L, 4L, -1L}) {
        popup->SetValue(none);
        EXPECT_EQ(StateOf(*popup), "000 Auto") << none;
    }
    popup->ResetToDefaultValue();
    EXPECT_EQ(StateOf(*popup), "001 Lower");
}

TEST(PPDXPopupControlTest, OnlyChangesByValueAreReportedToJobProperties) {
    TakeReportedChanges();
    UIConstraints constraints;
    auto const popup = NewSlots({.defaultKeyword = "Auto", .constraints = &constraints});
    popup->SetKeywordSelect("Gone", true);
    EXPECT_NE(constraints.GetConstraintStrings().Find("Auto"), -1);
    EXPECT_NE(constraints.GetConstraintStrings().Find("Gone"), -1);
    EXPECT_EQ(TakeReportedChanges(), Changes{});
    popup->SetValue(3);
    Set(*popup, "Upper");
    popup->SetValue(0);
    EXPECT_EQ(TakeReportedChanges(), (Changes{"*InputSlot=Lower", "*InputSlot=Upper"}));
    EXPECT_NE(constraints.GetConstraintStrings().Find("Lower"), -1);
}

TEST(PPDXPopupControlTest, KeywordBeyondASCIIIsMacRomanInItsValueText) {
    auto const popup = NewPopup("*Key", {{"Caf\x8E", nullptr, nullptr}, {"X", nullptr, nullptr}},
                                {.defaultKeyword = "Caf\x8E"});
    EXPECT_EQ(Taken(popup->CopyCurrentControlValueString()), "Caf\u00E9");
    popup->SetValue(2);
    Set(*popup, "Caf\u00E9");
    EXPECT_EQ(popup->GetValue(), 1);
}

TEST(PPDXPopupControlTest, OfTwoItemsWithOneKeywordAValueGoesToTheFirst) {
    auto const popup = NewPopup("*Key", {{"A", "One", "1\n"}, {"A", "Two", "2\n"}});
    Set(*popup, "A");
    EXPECT_EQ(StateOf(*popup), "10 A");
    EXPECT_STREQ(popup->GetKeywordLocalName("A"), "Two");
    EXPECT_EQ(Taken(CFStringRef(CFRetain(popup->GetKeywordCFLocalName("A")))), "Two");
    EXPECT_EQ(popup->GetKeywordLocalName("B"), nullptr);
    EXPECT_EQ(Emitted(*popup), "%%BeginFeature: *Key A\n1\n%%EndFeature\n");
    auto const multiple = NewPopup("*Key", {{"A", "One", nullptr}, {"A", "Two", nullptr}},
                                   {.defaultKeyword = "A", .multiple = true});
    EXPECT_EQ(StateOf(*multiple), "10 A");
}

TEST(PPDXPopupControlTest, ProfileNameOfMoreThan63BytesIsDropped) {
    auto const popup = NewPopup("*ZUOutProfile", {{"None", "None", nullptr}});
    std::string const longest = std::string(61, 'x') + "\u00FC";
    Set(*popup, ("y" + longest).c_str());
    EXPECT_EQ(StateOf(*popup), "0 (null) no code");
    Set(*popup, longest.c_str());
    EXPECT_STREQ(popup->GetKeywordLocalName(longest.c_str()),
                 (std::string(61, 'x') + '\x9F').c_str());
    EXPECT_EQ(popup->GetValue(), 2);
}

TEST(PPDXPopupControlTest, RebuildKeepsASelectionThatIsStillThere) {
    auto const popup = NewSlots({.defaultKeyword = "Upper"});
    PointerList items = NewItems({{"Side", "Side", "s\n"}, {"Upper", "Upper", "u\n"}});
    ASSERT_TRUE(popup->Rebuild("Trays", items, new CString("Side")));
    EXPECT_EQ(StateOf(*popup), "01 Upper");
    EXPECT_EQ(Emitted(*popup), "%%BeginFeature: *InputSlot Upper\nu\n%%EndFeature\n");
    EXPECT_STREQ(popup->UserName(), "Trays");
    EXPECT_EQ(CFStringCompare(popup->CFStringUserName(), CFSTR("Trays"), 0), kCFCompareEqualTo);
    EXPECT_EQ(popup->DefaultValue(), 1);
}

TEST(PPDXPopupControlTest, RebuildFallsBackToTheNewDefaultWithItsFlagClear) {
    auto const popup = NewSlots({.defaultKeyword = "Upper"});
    PointerList items = NewItems({{"Side", "Side", nullptr}, {"Rear", "Rear", nullptr}});
    ASSERT_TRUE(popup->Rebuild("Popup", items, new CString("Rear")));
    EXPECT_EQ(StateOf(*popup), "00 Rear");
    EXPECT_EQ(popup->GetValue(), 0);

    items = NewItems({{"Top", "Top", nullptr}});
    ASSERT_TRUE(popup->Rebuild(nullptr, items, nullptr));
    EXPECT_EQ(StateOf(*popup), "0 (null) no code");
    PointerList none;
    EXPECT_FALSE(popup->Rebuild("Other", none, nullptr));
    EXPECT_EQ(popup->ItemCount(), 1);
    EXPECT_STREQ(popup->UserName(), "Popup");
}

TEST(PPDXPopupControlTest, RebuildCutsALongNameIn8BitTextOnly) {
    auto const popup = NewSlots({.defaultKeyword = "Upper"});
    PointerList items;
    ASSERT_TRUE(popup->Rebuild(std::string(300, 'n').c_str(), items, nullptr));
    EXPECT_EQ(popup->UserName(), std::string(255, 'n'));
    EXPECT_EQ(CFStringGetLength(popup->CFStringUserName()), 300);
}

TEST(PPDXPopupControlTest, ArchiveWithoutASelectionGivesTheDefault) {
    Settings settings;
    auto const popup = NewSlots({.defaultKeyword = "Upper"});
    popup->SetValue(0);
    ASSERT_EQ(popup->Save(settings, kID), 0);
    EXPECT_EQ(StateOf(*std::make_unique<PPDXPopupControl>(settings, kID, nullptr)), "010 Upper");
}

TEST(PPDXPopupControlTest, ArchivedPlainNameServesWhereThereIsNoOther) {
    Settings settings;
    ASSERT_EQ(NewSlots()->Save(settings, kID), 0);
    settings.Remove(kItemNameEntry, kID * 100);
    settings.Add(kItemPlainNameEntry, kID * 100, "Plain", 5);
    settings.Add(kItemPlainNameEntry, kID * 100 + 1, "Unused", 6);
    PPDXPopupControl restored(settings, kID, nullptr);
    EXPECT_STREQ(restored.GetKeywordLocalName("Auto"), "Plain");
    EXPECT_STREQ(restored.GetKeywordLocalName("Upper"), "Upper tray");
}

TEST(PPDXPopupControlTest, RestoreTakesTheFlagsAndSelectsTheLastOne) {
    Settings settings;
    auto const saved = NewSlots({.defaultKeyword = "Lower"});
    ASSERT_EQ(saved->Save(settings, kID), 0);
    auto const popup = NewSlots({.defaultKeyword = "Auto"});
    TakeReportedChanges();
    EXPECT_EQ(popup->Restore(settings, kID), 0);
    EXPECT_EQ(StateOf(*popup), "001 Lower");
    EXPECT_EQ(TakeReportedChanges(), Changes{});

    // An entry of another size is passed over, a missing one ends it.
    popup->SetValue(1);
    settings.Add(kItemSelectedEntry, kID * 100, "xx", 2);
    EXPECT_EQ(popup->Restore(settings, kID), 0);
    EXPECT_EQ(StateOf(*popup), "001 Lower");
    popup->SetValue(2);
    settings.Remove(kItemSelectedEntry, kID * 100 + 1);
    EXPECT_EQ(popup->Restore(settings, kID), -5751);
    EXPECT_EQ(StateOf(*popup), "010 Upper");
    EXPECT_EQ(PPDXPopupControl().Restore(settings, kID), 0);
}

}  // namespace
