// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"

#include <gtest/gtest.h>

#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "constraints/UIConstraints.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

using Changes = std::vector<std::string>;

std::unique_ptr<PPDXBooleanControl> NewBoolean(bool defaultValue,
                                               UIConstraints* constraints = nullptr) {
    PointerList flags;
    return std::make_unique<PPDXBooleanControl>(
        "*Collate", CFSTR("Collate"), flags, true, new CString("On"), Code("on\n"), 3,
        new CString("Off"), nullptr, 0, defaultValue, constraints);
}

TEST(PPDXBooleanControlTest, EveryValueIsReportedFromTheStart) {
    TakeReportedChanges();
    UIConstraints constraints;
    auto const boolean = NewBoolean(false, &constraints);
    EXPECT_NE(constraints.GetConstraintStrings().Find("False"), -1);
    EXPECT_EQ(constraints.GetConstraintStrings().Find("True"), -1);
    boolean->SetValue(true);
    EXPECT_NE(constraints.GetConstraintStrings().Find("True"), -1);
    EXPECT_EQ(TakeReportedChanges(), (Changes{"*Collate=False", "*Collate=True"}));
}

TEST(PPDXBooleanControlTest, RestoreTakesTheValueSilently) {
    Settings settings;
    ASSERT_EQ(NewBoolean(true)->Save(settings, 5001), 0);
    auto const boolean = NewBoolean(false);
    TakeReportedChanges();
    EXPECT_EQ(boolean->Restore(settings, 5001), 0);
    EXPECT_TRUE(boolean->IsTrue());
    EXPECT_EQ(TakeReportedChanges(), Changes{});
    EXPECT_EQ(boolean->Restore(settings, 5002), -5751);
    EXPECT_TRUE(boolean->IsTrue());
}

}  // namespace
