// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "PPDText.h"
#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "platform/Testing.h"

namespace {

// A page with its pane, a group on it, a plain group and a hidden one.
struct Tree {
    Tree() {
        mPane.SetParent(&mPage);
        mPlaced.SetParent(&mPane);
        mHidden.SetParent(&mPane);
        mPages.Add(&mPage);
        for (PPDXGroup* group :
             std::initializer_list<PPDXGroup*>{&mPlaced, &mPlain, &mPane, &mHidden}) {
            mGroups.Add(group);
        }
    }

    PPDXProperty mPage{"Page", CFSTR("Page"), true, false, true};
    PPDXScrollPane mPane{"Pane", CFSTR("Pane"), true};
    PPDXGroup mPlaced{"Placed", CFSTR("Placed"), true};
    PPDXGroup mPlain{"Plain", CFSTR("Plain"), true};
    PPDXGroup mHidden{"Hidden", CFSTR("Hidden"), false};
    PPDXProperties mPages;
    PPDXGroups mGroups;
};

TEST(ElementTreeTest, DisplayOptionDecidesWhatAWalkShowsAndCounts) {
    struct Case {
        _DISPLAY_OPTIONS_ options;
        char const* shown;
        std::int32_t count;
    };
    Tree tree;
    for (Case const& row : {Case{kDisplayPlacedAndVisible, "Placed Pane ", 4},
                            Case{kDisplayOrphans, "Placed Plain Pane ", 5},
                            Case{kDisplayHidden, "Placed Pane Hidden ", 5},
                            Case{kDisplayAll, "Placed Plain Pane Hidden ", 6},
                            Case{_DISPLAY_OPTIONS_(7), "Placed Plain Pane Hidden ", 0}}) {
        DisplayOptionsScope const scope(row.options);
        std::string shown;
        for (auto* group = tree.mGroups.First(); group != nullptr; group = tree.mGroups.Next()) {
            shown.append(group->Keyword()).append(" ");
        }
        EXPECT_EQ(shown, row.shown) << row.options;
        EXPECT_EQ(tree.mGroups.Count(), row.count) << row.options;
        EXPECT_EQ(IsGrouPointerListEmpty(&tree.mGroups), row.count == 0) << row.options;
    }
    PPDXGroups none;
    EXPECT_EQ(none.Next(), nullptr);
    EXPECT_EQ(none.First(), nullptr);
}

TEST(ElementTreeTest, FindsByWholeKeywordOrByAPartOfIt) {
    Tree tree;
    EXPECT_EQ(tree.mGroups.First(), &tree.mPlaced);
    EXPECT_EQ(tree.mGroups.Find("Hidden", true), &tree.mHidden);
    EXPECT_EQ(tree.mGroups.Find("lain", false), &tree.mPlain);
    for (char const* absent : {"plain", "Pla", "", static_cast<char const*>(nullptr)}) {
        EXPECT_EQ(tree.mGroups.Find(absent, true), nullptr);
        EXPECT_EQ(tree.mPages.Find(absent, true), nullptr);
    }
    EXPECT_EQ(tree.mGroups.Next(), &tree.mPane);  // the walk stands where it stood
    EXPECT_EQ(tree.mPages.Find("ag", false), &tree.mPage);
    EXPECT_EQ(tree.mPages.Next(), nullptr);
}

TEST(ElementTreeTest, ElementsWithoutAKeywordEqualNothing) {
    PPDXGroup const first("*A", CFSTR(""), true);
    PPDXScrollPane const second("*A", CFSTR("other"), false);
    PPDXGroup without("", CFSTR(""), true);
    EXPECT_TRUE(first == second);
    EXPECT_FALSE(first == "*a");
    EXPECT_EQ(without.Keyword(), nullptr);
    EXPECT_FALSE(without == without || without == "" || first == nullptr);
    EXPECT_STREQ(without.UserName(), "");
}

TEST(ElementTreeTest, NameIsConvertedOnceAndReleasedWithTheElement) {
    SetSystemTextEncoding(kCFStringEncodingMacRoman);
    long const before = LiveObjectCount();
    {
        PPDXGroup group("*A", Str("Höhe"), true);
        char const* const name = group.UserName();
        EXPECT_STREQ(name, "H\x9Ahe");
        EXPECT_EQ(group.UserName(), name);
        std::unique_ptr<CString> const copy(CFStringToCString(group.CFStringUserName()));
        EXPECT_STREQ(copy->GetCharData(), name);
    }
    EXPECT_EQ(LiveObjectCount(), before);
    EXPECT_EQ(CFStringToCString(nullptr), nullptr);
    SetSystemTextEncoding(kTextEncodingUnknown);
}

TEST(ElementTreeTest, AnArchiveHasUpTo511BytesOfANameInTheSystemsEncoding) {
    for (std::size_t length : {511U, 512U}) {
        std::string const name(length, 'x');
        PPDXGroup group("*A", Str(name), true);
        Settings settings;
        ASSERT_EQ(group.Save(settings, 4001), noErr);
        std::unique_ptr<CString> const text(
            GetSettingsString(settings, ArchiveTags::kNameText, 4001));
        EXPECT_STREQ(text->GetCharData(), length == 511U ? name.c_str() : "Translation Error");
        EXPECT_EQ(Taken(GetSettingsCFString(settings, ArchiveTags::kName, 4001)), name);
    }
}

TEST(ElementTreeDeathTest, AnElementWithoutANameStopsTheProcess) {
    EXPECT_DEATH(PPDXGroup("*A", nullptr, true),
                 "PPDX/PPDObjects/PPDXElement:86: failed assertion `inLocalName != NULL'");
}

}  // namespace
