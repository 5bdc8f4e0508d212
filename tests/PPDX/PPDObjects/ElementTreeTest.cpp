// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "PPDText.h"
#include "PPDX/PPDObjects/DisplayOptions.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "platform/CFRef.h"
#include "platform/Testing.h"

namespace {

using Texts = std::vector<std::string>;

constexpr unsigned long Tag(char const (&code)[5]) {
    unsigned long tag = 0;
    for (int i = 0; i < 4; ++i) {
        tag = tag << 8 | static_cast<unsigned char>(code[i]);
    }
    return tag;
}

CFRef<CFStringRef> Text(char const* text) {
    return CFRef<CFStringRef>(CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8));
}

Texts Walk(PPDXGroups& groups, _DISPLAY_OPTIONS_ options) {
    DisplayOptionsScope const scope(options);
    Texts keywords;
    for (PPDXGroup* group = groups.First(); group != nullptr; group = groups.Next()) {
        keywords.emplace_back(group->Keyword());
    }
    return keywords;
}

std::string Entry(Settings& settings, unsigned long tag, long id) {
    std::unique_ptr<CString> const text(GetSettingsString(settings, tag, id));
    return text == nullptr ? "(none)" : text->GetCharData();
}

std::string ParentName(PPDXElement& element) {
    std::unique_ptr<CString> const name(element.TakeParentName());
    return name == nullptr ? "(none)" : name->GetCharData();
}

// A page with its pane, a roll-down on it, a plain group and a hidden one.
struct Tree {
    Tree() {
        mPane.SetParent(&mPage);
        mPage.SetScrollDown(&mPane);
        mRollDown.SetParent(&mPane);
        mHidden.SetParent(&mPane);
        mPages.Add(&mPage);
        for (PPDXGroup* group :
             std::initializer_list<PPDXGroup*>{&mRollDown, &mPlain, &mPane, &mHidden}) {
            mGroups.Add(group);
        }
    }

    CFRef<CFStringRef> mName = Text("Höhe");
    PPDXProperty mPage{"Page", mName, true, false, true};
    PPDXScrollPane mPane{"Pane", mName, true};
    PPDXRollDown mRollDown{"Roll", mName, true};
    PPDXGroup mPlain{"Plain", mName, true};
    PPDXGroup mHidden{"Hidden", mName, false};
    PPDXProperties mPages;
    PPDXGroups mGroups;
};

// Deletes what a restore made.
struct RestoredTree {
    explicit RestoredTree(Settings& settings) : mPages(settings), mGroups(settings) {}
    ~RestoredTree() {
        DisplayOptionsScope const scope(kDisplayAll);
        for (PPDXGroup* group = mGroups.First(); group != nullptr; group = mGroups.Next()) {
            delete group;
        }
        for (PPDXProperty* page = mPages.First(); page != nullptr; page = mPages.Next()) {
            delete page;
        }
    }

    PPDXProperties mPages;
    PPDXGroups mGroups;
};

void Save(Tree& tree, Settings& settings) {
    DisplayOptionsScope const scope(kDisplayAll);
    ASSERT_EQ(tree.mPages.Save(settings), 0);
    ASSERT_EQ(tree.mGroups.Save(settings), 0);
}

TEST(ElementTreeTest, DisplayOptionDecidesWhatAWalkShowsAndCounts) {
    struct Case {
        _DISPLAY_OPTIONS_ options;
        Texts shown;
        std::int32_t count;
    };
    Case const cases[] = {
        {kDisplayPlacedAndVisible, {"Roll", "Pane"}, 4},
        {kDisplayOrphans, {"Roll", "Plain", "Pane"}, 5},
        {kDisplayHidden, {"Roll", "Pane", "Hidden"}, 5},
        {kDisplayAll, {"Roll", "Plain", "Pane", "Hidden"}, 6},
        {static_cast<_DISPLAY_OPTIONS_>(7), {"Roll", "Plain", "Pane", "Hidden"}, 0},
    };
    Tree tree;
    for (Case const& c : cases) {
        SCOPED_TRACE(c.options);
        EXPECT_EQ(Walk(tree.mGroups, c.options), c.shown);
        DisplayOptionsScope const scope(c.options);
        EXPECT_EQ(tree.mGroups.Count(), c.count);
        EXPECT_EQ(IsGrouPointerListEmpty(&tree.mGroups), c.count == 0);
    }
    PPDXGroups none;
    EXPECT_EQ(none.Next(), nullptr);
    EXPECT_EQ(none.First(), nullptr);
    EXPECT_TRUE(none.Empty());
}

TEST(ElementTreeTest, FindsByWholeKeywordOrByAPartOfIt) {
    Tree tree;
    EXPECT_EQ(tree.mGroups.First(), &tree.mRollDown);
    EXPECT_EQ(tree.mGroups.Find("Hidden", true), &tree.mHidden);
    EXPECT_EQ(tree.mGroups.Find("Pl", false), &tree.mPlain);
    for (char const* absent : {"plain", "Pl", "", static_cast<char const*>(nullptr)}) {
        EXPECT_EQ(tree.mGroups.Find(absent, true), nullptr);
        EXPECT_EQ(tree.mPages.Find(absent, true), nullptr);
    }
    EXPECT_EQ(tree.mGroups.Find("pane", false), nullptr);
    EXPECT_EQ(tree.mGroups.Next(), &tree.mPane);
    EXPECT_EQ(tree.mPages.Find("Page", true), &tree.mPage);
    EXPECT_EQ(tree.mPages.Find("ag", false), &tree.mPage);
    EXPECT_EQ(tree.mPages.Next(), nullptr);
}

TEST(ElementTreeTest, ElementsOfEqualKeywordAreEqualAndOnesWithoutAreNot) {
    CFRef<CFStringRef> const name = Text("");
    PPDXGroup first("*A", name, true);
    PPDXScrollPane second("*A", name, false);
    PPDXGroup without("", name, true);
    EXPECT_TRUE(EqualsElement(&first, &second));
    EXPECT_FALSE(first == "*a");
    EXPECT_EQ(Keyword(&without), nullptr);
    EXPECT_FALSE(without == without);
    EXPECT_FALSE(EqualsKeyWord(&without, ""));
    EXPECT_FALSE(EqualsKeyWord(&first, nullptr));
    EXPECT_STREQ(UserName(&first), "");
    EXPECT_TRUE(IsScrollPane(&second) && !IsRollDown(&second) && !IsScrollPane(nullptr));
}

TEST(ElementTreeTest, NameIsConvertedOnceAndReleasedWithTheElement) {
    SetSystemTextEncoding(kCFStringEncodingMacRoman);
    long const before = LiveObjectCount();
    {
        PPDXGroup group("*A", Text("Höhe"), true);
        char const* name = group.UserName();
        EXPECT_STREQ(name, "H\x9Ahe");
        EXPECT_EQ(group.UserName(), name);
        std::unique_ptr<CString> const copy(CFStringToCString(group.CFStringUserName()));
        EXPECT_STREQ(copy->GetCharData(), name);
    }
    EXPECT_EQ(LiveObjectCount(), before);
    EXPECT_EQ(CFStringToCString(nullptr), nullptr);
    SetSystemTextEncoding(kTextEncodingUnknown);
}

TEST(ElementTreeDeathTest, AnElementWithoutANameStopsTheProcess) {
    EXPECT_DEATH(PPDXGroup("*A", nullptr, true),
                 "PPDX/PPDObjects/PPDXElement:86: failed assertion `inLocalName != NULL'");
}

TEST(ElementTreeTest, ARecordHoldsWhatTheElementHas) {
    SetSystemTextEncoding(kCFStringEncodingMacRoman);
    Tree tree;
    Settings settings;
    ASSERT_NO_FATAL_FAILURE(Save(tree, settings));
    EXPECT_EQ(Entry(settings, Tag("KyWd"), 4001), "Roll");
    EXPECT_EQ(Entry(settings, Tag("LcNm"), 4001), "H\x9Ahe");
    EXPECT_EQ(Entry(settings, Tag("PrNm"), 4001), "Pane");
    EXPECT_EQ(Entry(settings, Tag("PrNm"), 4002), "(none)");
    CFRef<CFStringRef> const name(GetSettingsCFString(settings, Tag("LcCF"), 4001));
    EXPECT_TRUE(CFEqual(name, tree.mName));
    std::int32_t visible = -1;
    EXPECT_TRUE(GetSettingsField(settings, Tag("isVs"), 4004, &visible, sizeof visible));
    EXPECT_EQ(visible, 0);
    // A roll-down has its own mark alone.
    EXPECT_EQ(Entry(settings, Tag("gGrp"), 4001), "(none)");
    std::int32_t count = 0;
    EXPECT_TRUE(GetSettingsField(settings, 3000, 3002, &count, sizeof count));
    EXPECT_EQ(count, 1);
    EXPECT_TRUE(GetSettingsField(settings, 4000, 4002, &count, sizeof count));
    EXPECT_EQ(count, 4);
    SetSystemTextEncoding(kTextEncodingUnknown);
}

TEST(ElementTreeTest, ATreeComesBackFromItsArchiveWithParentsByName) {
    Tree tree;
    Settings settings;
    ASSERT_NO_FATAL_FAILURE(Save(tree, settings));
    RestoredTree restored(settings);

    PPDXProperty* page = restored.mPages.Find("Page", true);
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->IsVisible() && !page->ShowInPrintProp() && page->ShowInApp());
    EXPECT_EQ(restored.mPages.Count(), 1);

    EXPECT_EQ(Walk(restored.mGroups, kDisplayAll), (Texts{"Roll", "Plain", "Pane", "Hidden"}));
    Texts parents;
    for (char const* keyword : {"Roll", "Plain", "Pane", "Hidden"}) {
        PPDXGroup* group = restored.mGroups.Find(keyword, true);
        // A parent known by name counts when the lists count, before there are links.
        EXPECT_EQ(group->IsOrphan(), std::string(keyword) == "Plain");
        EXPECT_TRUE(CFEqual(group->CFStringUserName(), tree.mName));
        parents.push_back(ParentName(*group));
    }
    EXPECT_EQ(parents, (Texts{"Pane", "(none)", "Page", "Pane"}));
    EXPECT_FALSE(restored.mGroups.Find("Hidden", true)->IsVisible());
    EXPECT_TRUE(IsRollDown(restored.mGroups.Find("Roll", true)));
    EXPECT_TRUE(IsScrollPane(restored.mGroups.Find("Pane", true)));
}

TEST(ElementTreeTest, NamesOfParentsBecomeLinksWhateverTheOrderOfTheList) {
    Tree tree;
    Settings settings;
    ASSERT_NO_FATAL_FAILURE(Save(tree, settings));
    PPDPtr const ppd(new ZUBPPD(kParseAll));
    // The reader owns what is in its lists. The roll-down comes before its pane.
    ppd->GetProperties()->Add(new PPDXProperty(settings, 3001));
    for (long id : {4001, 4002}) {
        ppd->GetGroups()->Add(id == 4001 ? new PPDXRollDown(settings, id)
                                         : new PPDXGroup(settings, id));
    }
    auto* const pane = new PPDXScrollPane(settings, 4003);
    ppd->GetGroups()->Add(pane);
    DisplayOptionsScope const scope(kDisplayAll);
    ppd->ResolveHeirarchy();

    PPDXProperty* const page = ppd->GetProperties()->First();
    EXPECT_EQ(page->GetScrollDown(), pane);
    EXPECT_EQ(pane->GetParent(), page);
    PPDXGroup* const rollDown = ppd->GetGroups()->Find("Roll", true);
    EXPECT_EQ(rollDown->GetParent(), pane);
    EXPECT_EQ(pane->RollDowns()->Find("Roll", true), rollDown);
    EXPECT_TRUE(ppd->GetGroups()->Find("Plain", true)->IsOrphan());
    ZUBPPD::Options(kDisplayPlacedAndVisible);
    EXPECT_EQ(ppd->GetGroups()->Count(), 3);
    ZUBPPD::Options(kDisplayOrphans);
    EXPECT_EQ(ppd->GetGroups()->Count(), 4);  // the plain one again
}

TEST(ElementTreeTest, ElementWhoseParentHasGoneBecomesAnOrphan) {
    Tree tree;
    Settings settings;
    ASSERT_NO_FATAL_FAILURE(Save(tree, settings));
    PPDPtr const ppd(new ZUBPPD(kParseAll));
    auto* const rollDown = new PPDXRollDown(settings, 4001);
    ppd->GetGroups()->Add(rollDown);
    EXPECT_FALSE(rollDown->IsOrphan());
    DisplayOptionsScope const scope(kDisplayAll);
    ppd->ResolveHeirarchy();
    EXPECT_TRUE(rollDown->IsOrphan());
}

TEST(ElementTreeTest, ADamagedArchiveGivesASmallerTree) {
    Tree tree;
    Settings settings;
    ASSERT_NO_FATAL_FAILURE(Save(tree, settings));
    settings.Remove(Tag("gGrp"), 4002);
    std::int32_t const many = 0x7FFFFFFF;
    settings.Set(4000, 4002, &many, sizeof many);
    RestoredTree const restored(settings);
    EXPECT_EQ(restored.mGroups.Find("Plain", true), nullptr);
    EXPECT_NE(restored.mGroups.Find("Hidden", true), nullptr);

    Settings empty;
    RestoredTree nothing(empty);
    EXPECT_TRUE(nothing.mGroups.Empty() && nothing.mPages.Empty());
    PPDXProperty bare(empty, 3001);
    EXPECT_EQ(bare.UserName(), nullptr);
    tree.mPlain.SetParent(&bare);
    EXPECT_EQ(tree.mPlain.Save(settings, 9001), 0);
    EXPECT_EQ(Entry(settings, Tag("PrNm"), 9001), "(none)");
}

}  // namespace
