// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXControls.h"

#include <gtest/gtest.h>

#include <random>

#include "PPDX/PPDObjects/Controls/DisplayOptions.h"
#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXSpecialOption.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

constexpr _DISPLAY_OPTIONS_ kAllOptions[] = {kDisplayPlacedAndVisible, kDisplayOrphans,
                                             kDisplayHidden, kDisplayAll};

struct State {
    bool visible = true;
    bool placed = true;
};

// Owns the controls of a registry, as the tree does.
class PPDXControlsTest : public testing::Test {
  protected:
    template <typename Control, typename... Arguments>
    Control* Add(State state, Arguments&&... arguments) {
        auto control = std::make_unique<Control>(std::forward<Arguments>(arguments)...);
        control->SetParent(state.placed ? &mPlace : nullptr);
        mControls.Add(control.get());
        mOwned.push_back(std::move(control));
        return static_cast<Control*>(mOwned.back().get());
    }
    PPDXPopupControl* AddPopup(char const* keyword, State state = {}) {
        PointerList items = NewItems({{"A", "A", nullptr}, {"B", "B", nullptr}});
        return Add<PPDXPopupControl>(state, keyword, CFSTR("P"), mFlags, state.visible, false,
                                     false, items, nullptr, nullptr);
    }
    PPDXBooleanControl* AddBoolean(char const* keyword, State state = {}) {
        return Add<PPDXBooleanControl>(state, keyword, CFSTR("B"), mFlags, state.visible, nullptr,
                                       nullptr, 0, nullptr, nullptr, 0, false, nullptr);
    }
    PPDXRangeControl* AddRange(char const* keyword, State state = {}) {
        return Add<PPDXRangeControl>(state, keyword, CFSTR("R"), mFlags, nullptr, 0, 0, 9, 1, 4,
                                     state.visible);
    }
    PPDXCustomPageSizeControl* AddPageSize(char const* keyword) {
        return Add<PPDXCustomPageSizeControl>(State{}, keyword, mFlags);
    }
    PPDXSpecialOption* AddSpecial(char const* keyword) {
        char value[] = "yes";
        return Add<PPDXSpecialOption>({.visible = false, .placed = false}, keyword, CFSTR("S"),
                                      mFlags, value, nullptr, 0, false);
    }
    // Keywords of a walk over `controls`, each with the type's number.
    static std::string Walked(PPDXControls& controls) {
        std::string text;
        CNTL_TYPE type;
        for (auto* control = controls.First(type); control; control = controls.Next(type)) {
            text += std::string(control->Keyword()) + std::to_string(type) + " ";
        }
        return text;
    }
    PPDXControl* Find(char const* keyword, bool exact = true) {
        CNTL_TYPE type;
        return mControls.Find(keyword, type, exact);
    }

    DisplayOptionsScope mScope{kDisplayPlacedAndVisible};
    Place mPlace;
    PointerList mFlags;
    PPDXControls mControls;
    std::vector<std::unique_ptr<PPDXControl>> mOwned;
};

TEST_F(PPDXControlsTest, DisplayOptionDecidesWhatAWalkSeesAndWhatIsCounted) {
    AddPopup("*Plain");
    AddPopup("*Orphan", {.placed = false});
    AddPopup("*Hidden", {.visible = false});
    AddPopup("*Both", {.visible = false, .placed = false});
    AddRange("*Range");
    struct {
        std::int32_t option;
        char const* walked;
        std::int32_t popups;
    } const cases[] = {
        {0, "*Plain5 *Range2 ", 1},
        {1, "*Plain5 *Orphan5 *Range2 ", 2},
        {2, "*Plain5 *Hidden5 *Range2 ", 2},
        {3, "*Plain5 *Orphan5 *Hidden5 *Both5 *Range2 ", 4},
    };
    for (auto const& [option, walked, popups] : cases) {
        DisplayOptionsScope const scope(static_cast<_DISPLAY_OPTIONS_>(option));
        EXPECT_EQ(Walked(mControls), walked);
        EXPECT_EQ(mControls.PopupCount(), popups);
        EXPECT_EQ(mControls.ControlCount(), popups + 1);
    }
    DisplayOptionsScope const scope(static_cast<_DISPLAY_OPTIONS_>(7));
    EXPECT_EQ(mControls.PopupCount(), 0);
    EXPECT_TRUE(mControls.NoPopups());
}

TEST_F(PPDXControlsTest, FindSeesWhatIsDisplayedAndTypedFindsSeeAll) {
    auto* const orphan = AddPopup("*PageRegion", {.placed = false});
    auto* const range = AddRange("*PageScale");
    AddPopup("*PageScale");
    EXPECT_EQ(Find("*PageRegion"), nullptr);
    EXPECT_EQ(mControls.FindPopup("*PageRegion", true), orphan);
    EXPECT_EQ(Find("Page", false), range);
    EXPECT_EQ(mControls.FindPopup("Page", false), orphan);
    EXPECT_EQ(Find("Page", true), nullptr);
    EXPECT_EQ(Find("*pagescale"), nullptr);
    EXPECT_EQ(mControls.FindBoolean("*PageScale", true), nullptr);
    EXPECT_EQ(mControls.FindRangeControl("*PageScale", true), range);

    CNTL_TYPE type = kBooleanType;
    EXPECT_EQ(mControls.Find(nullptr, type, true), nullptr);
    EXPECT_EQ(mControls.Find("*Gone", type, true), nullptr);
    EXPECT_EQ(type, kBooleanType);
    EXPECT_EQ(mControls.Find("*PageScale", type, true), range);
    EXPECT_EQ(type, kRangeType);
}

TEST_F(PPDXControlsTest, ExactLookupsGiveWhatAWalkGives) {
    constexpr unsigned kSeed = 20240611;
    std::mt19937 random(kSeed);
    for (int count = 0; count < 600; ++count) {
        std::string const keyword = "*Key" + std::to_string(random() % 150);
        State const state = {.visible = random() % 2 == 0, .placed = random() % 2 == 0};
        if (random() % 2 == 0) {
            AddPopup(keyword.c_str(), state);
        } else {
            AddBoolean(keyword.c_str(), state);
        }
    }
    for (int number = 0; number < 160; ++number) {
        std::string const keyword = "*Key" + std::to_string(number);
        for (_DISPLAY_OPTIONS_ const options : kAllOptions) {
            DisplayOptionsScope const scope(options);
            CNTL_TYPE type;
            auto* walked = mControls.First(type);
            while (walked != nullptr && keyword != walked->Keyword()) {
                walked = mControls.Next(type);
            }
            EXPECT_EQ(Find(keyword.c_str()), walked) << keyword << ", seed " << kSeed;
        }
        auto* popup = mControls.FirstPopupControl();
        while (popup != nullptr && keyword != popup->Keyword()) {
            popup = mControls.NextPopupControl();
        }
        EXPECT_EQ(mControls.FindPopup(keyword.c_str(), true), popup) << keyword;
    }
}

TEST_F(PPDXControlsTest, LookingUpLeavesAWalkWhereItIs) {
    AddPopup("*One");
    auto* const two = AddPopup("*Two");
    CNTL_TYPE type;
    mControls.First(type);
    mControls.FirstPopupControl();
    for (bool const exact : {true, false}) {
        mControls.Find("*Gone", type, exact);
        mControls.FindPopup("*One", exact);
    }
    EXPECT_EQ(mControls.Next(type), two);
    EXPECT_EQ(mControls.NextPopupControl(), two);
}

TEST_F(PPDXControlsTest, AskingForASpecialOptionLetsOrphansIntoTheNextWalk) {
    auto* const special = AddSpecial("*ZUServer");
    AddPopup("*Orphan", {.placed = false});
    EXPECT_EQ(mControls.SpecialOptionsCount(), 1);
    EXPECT_FALSE(mControls.NoSpecialOptions());
    EXPECT_EQ(mControls.FindSpecialOption(nullptr, true), nullptr);
    EXPECT_EQ(Walked(mControls), "");
    EXPECT_EQ(mControls.FindSpecialOption("*Gone", true), nullptr);
    EXPECT_EQ(DisplayOptions::Options(), kDisplayOrphans);
    EXPECT_EQ(Walked(mControls), "*Orphan5 ");
    EXPECT_EQ(mControls.FindSpecialOption("*ZUServer", true), special);
    EXPECT_EQ(mControls.FindSpecialOption("Serv", false), special);
    DisplayOptions::Options(kDisplayAll);
    EXPECT_EQ(mControls.FirstSpecialOption(), special);
    EXPECT_EQ(mControls.NextSpecialOption(), nullptr);
    EXPECT_EQ(DisplayOptions::Options(), kDisplayOrphans);
}

TEST_F(PPDXControlsTest, EmptyLeavesOutPageSizesAndSpecialOptions) {
    mControls.Add(nullptr);
    AddSpecial("*ZUServer");
    AddPageSize("*CustomPageSize");
    EXPECT_TRUE(mControls.Empty());
    EXPECT_EQ(mControls.ControlCount(), 1);
    EXPECT_EQ(mControls.CustomPageSizeCount(), 1);
    AddBoolean("*B", {.placed = false});
    EXPECT_TRUE(mControls.Empty());
    DisplayOptions::Options(kDisplayOrphans);
    EXPECT_FALSE(mControls.Empty());
    EXPECT_EQ(mControls.BooleanCount(), 1);
}

}  // namespace
