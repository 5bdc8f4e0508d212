// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"

#include <gtest/gtest.h>

#include <climits>

#include "ZUBUtils/PPDUtils/Settings.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

constexpr long kID = 5001;

struct Limits {
    long minimum;
    long maximum;
    long increment;
};

std::unique_ptr<PPDXRangeControl> NewRange(Limits const& limits, long defaultValue,
                                           std::string const& code = "") {
    PointerList flags;
    return std::make_unique<PPDXRangeControl>("*ZUScale", CFSTR("Scale"), flags,
                                              code.empty() ? nullptr : Code(code),
                                              static_cast<long>(code.size()), limits.minimum,
                                              limits.maximum, limits.increment, defaultValue, true);
}

TEST(PPDXRangeControlTest, ValueSnapsTowardZeroAndThenKeepsTheLimits) {
    constexpr Limits kPercent = {0, 100, 5};
    constexpr Limits kOdd = {2, 10, 5};
    constexpr Limits kAround = {-100, 100, 5};
    constexpr Limits kWhole = {INT_MIN, INT_MAX, -1};
    struct {
        Limits limits;
        long value;
        long result;
    } const cases[] = {
        {kPercent, 7, 5},
        {kPercent, -7, 0},
        {kPercent, 103, 100},
        {kPercent, 100, 100},
        {kOdd, 1, 2},
        {kOdd, 7, 5},
        {kAround, -7, -5},
        {{0, 100, 0}, 7, 7},
        {{0, 100, 0}, 700, 100},
        {{0, 100, -5}, 7, 5},
        {kWhole, INT_MIN, INT_MIN},
        {kWhole, LONG_MIN, INT_MIN},
        {kWhole, LONG_MAX, INT_MAX},
        {{INT_MIN, INT_MAX, INT_MIN}, INT_MIN, INT_MIN},
        {{INT_MIN, INT_MAX, INT_MIN}, INT_MAX, 0},
    };
    for (auto const& [limits, value, result] : cases) {
        auto const range = NewRange(limits, 0);
        range->SetValue(value);
        EXPECT_EQ(range->GetValue(), result) << value << " by " << limits.increment;
    }
}

TEST(PPDXRangeControlTest, ConstructionKeepsNumbersAsTheyStandWithin32Bits) {
    auto const range = NewRange({0, 100, 5}, 777);
    EXPECT_EQ(range->Type(), kRangeType);
    EXPECT_EQ(range->GetValue(), 777);
    range->ResetToDefaultValue();
    EXPECT_EQ(range->GetValue(), 100);
    EXPECT_EQ(NewRange({LONG_MIN, LONG_MAX, 1}, LONG_MAX)->DefaultValue(), INT_MAX);
}

TEST(PPDXRangeControlTest, RestoreTakesTheStoredValueAndLeavesMadeCode) {
    constexpr unsigned long kValueEntry = 0x5243566C;  // RCVl
    Settings settings;
    ASSERT_EQ(NewRange({0, 9, 1}, 4)->Save(settings, kID), 0);
    auto const range = NewRange({0, 9, 1}, 1, "<*ZUScale> S\n");
    Emitted(*range);
    EXPECT_EQ(range->Restore(settings, kID), 0);
    EXPECT_EQ(range->GetValue(), 4);
    EXPECT_EQ(Emitted(*range), "%%BeginFeature: *ZUScale 4\n1 S\n%%EndFeature\n");
    range->SetValue(4);
    EXPECT_EQ(Emitted(*range), "%%BeginFeature: *ZUScale 4\n4 S\n%%EndFeature\n");

    settings.Add(kValueEntry, kID, "xx", 2);
    EXPECT_EQ(range->Restore(settings, kID), 0);
    EXPECT_EQ(range->Restore(settings, kID + 1), -5751);
    EXPECT_EQ(range->GetValue(), 4);
}

}  // namespace
