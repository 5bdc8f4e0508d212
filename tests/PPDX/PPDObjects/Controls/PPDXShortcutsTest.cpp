// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"

#include <gtest/gtest.h>

#include "PPDX/PPDObjects/Controls/DisplayOptions.h"
#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

// A boolean ahead of the first popup, then popups and others; *Late is no shortcut.
class PPDXShortcutsTest : public testing::Test {
  protected:
    PPDXShortcutsTest() {
        PPDXControl* const shortcuts[] = {&mEarly,       mSize.get(), &mRange,
                                          mDuplex.get(), &mNote,      &mMirror};
        for (PPDXControl* const control : shortcuts) {
            mList.PushBack(control);
            mRegistry.Add(control);
        }
        mRegistry.Add(mLate.get());
    }
    static std::string Walked(PPDXShortcuts& shortcuts) {
        std::string text;
        for (auto* control = shortcuts.First(true); control; control = shortcuts.Next()) {
            text += control->Keyword();
        }
        return text;
    }

    DisplayOptionsScope mScope{kDisplayAll};
    PointerList mFlags;
    std::unique_ptr<PPDXPopupControl> mSize = NewPopup("*PageSize", {});
    std::unique_ptr<PPDXPopupControl> mDuplex = NewPopup("*ZUDuplex", {});
    std::unique_ptr<PPDXPopupControl> mLate = NewPopup("*InputSlot", {});
    PPDXBooleanControl mEarly{"*Early", CFSTR("E"), mFlags,  true, nullptr, nullptr,
                              0,        nullptr,    nullptr, 0,    false,   nullptr};
    PPDXBooleanControl mMirror{"*Mirror", CFSTR("M"), mFlags,  true, nullptr, nullptr,
                               0,         nullptr,    nullptr, 0,    false,   nullptr};
    PPDXRangeControl mRange{"*Range", CFSTR("R"), mFlags, nullptr, 0, 0, 9, 1, 4, true};
    PPDXJobNote mNote{"*Note", CFSTR("N"), mFlags, nullptr,      0, nullptr,
                      nullptr, true,       9,      kNoteNoFlags, 0};
    PointerList mList;
    PPDXControls mRegistry;
};

TEST_F(PPDXShortcutsTest, WalkBeginsAtTheFirstPopupAndPassesPopupsNotesAndBooleans) {
    PPDXShortcuts shortcuts(mList);
    EXPECT_EQ(shortcuts.Next(), nullptr);
    EXPECT_EQ(Walked(shortcuts), "*PageSize*ZUDuplex*Note*Mirror");
    EXPECT_EQ(shortcuts.Next(), nullptr);
    EXPECT_EQ(shortcuts.Count(), 6);
    EXPECT_EQ(shortcuts.Find("*Early", true), nullptr);
    EXPECT_EQ(shortcuts.Find("*Range", true), nullptr);
    EXPECT_EQ(shortcuts.Find("*Mirror", true), &mMirror);
    EXPECT_EQ(shortcuts.Find("irr", false), &mMirror);
    EXPECT_EQ(shortcuts.Find("irr", true), nullptr);
    EXPECT_EQ(shortcuts.Find(nullptr, false), nullptr);
}

TEST_F(PPDXShortcutsTest, ArchiveKeepsTheWalkAndANullForWhatHasGone) {
    Settings settings;
    ASSERT_EQ(PPDXShortcuts(mList).Save(settings), 0);
    PPDXShortcuts restored(settings, &mRegistry);
    EXPECT_EQ(restored.Count(), 4);
    EXPECT_EQ(Walked(restored), "*PageSize*ZUDuplex*Note*Mirror");

    PPDXControls smaller;
    smaller.Add(mSize.get());
    smaller.Add(&mMirror);
    PPDXShortcuts partly(settings, &smaller);
    EXPECT_EQ(partly.Count(), 4);
    EXPECT_EQ(Walked(partly), "*PageSize*Mirror");
    EXPECT_TRUE(PPDXShortcuts(settings, nullptr).Empty());
    Settings nothing;
    EXPECT_TRUE(PPDXShortcuts(nothing, &mRegistry).Empty());
}

}  // namespace
