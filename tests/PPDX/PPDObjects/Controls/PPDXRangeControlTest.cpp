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

TEST(PPDXRangeControlTest, TextSetsTheValueAsANumber) {
    auto const range = NewRange({-50, 200, 1}, 0);
    struct {
        char const* text;
        char const* result;
    } const cases[] = {{"75", "75"}, {" -8x", "-8"}, {"x", "0"}, {"99999999999", "200"}};
    for (auto const& [text, result] : cases) {
        range->SetCurrentControlWithCFString(String(text));
        EXPECT_EQ(TextOf(range->CopyCurrentControlValueString()), result);
    }
}

TEST(PPDXRangeControlTest, CodeHoldsTheValueInFrameAndTemplate) {
    auto const range = NewRange({-500, 500, 1}, 150, "<*zuscale> /S <*ZUScale> def\n");
    EXPECT_EQ(Emitted(*range), "%%BeginFeature: *ZUScale 150\n150 /S 150 def\n%%EndFeature\n");
    range->SetValue(-8);
    EXPECT_EQ(Emitted(*range), "%%BeginFeature: *ZUScale -8\n-8 /S -8 def\n%%EndFeature\n");
    EXPECT_EQ(Emitted(*NewRange({0, 9, 1}, 4)), "%%BeginFeature: *ZUScale 4\n\n%%EndFeature\n");
    EXPECT_EQ(PPDXRangeControl().PostScript(nullptr), 0);
}

TEST(PPDXRangeControlTest, ArchiveKeepsAllNumbersAndTheTemplate) {
    Settings settings;
    auto const range = NewRange({10, 400, 10}, 100, "<*ZUScale> S\n");
    range->SetValue(150);
    ASSERT_EQ(range->Save(settings, kID), 0);
    PPDXRangeControl restored(settings, kID);
    EXPECT_EQ(restored.Type(), kRangeType);
    EXPECT_EQ(restored.GetValue(), 150);
    EXPECT_EQ(restored.MinVal(), 10);
    EXPECT_EQ(restored.MaxVal(), 400);
    EXPECT_EQ(restored.Increment(), 10);
    EXPECT_EQ(restored.DefaultValue(), 100);
    EXPECT_EQ(Emitted(restored), Emitted(*range));
}

TEST(PPDXRangeControlTest, NumbersOfAnArchiveOfTheOtherByteOrderAreReadRight) {
    constexpr unsigned long kValueEntry = 0x5243566C;  // RCVl
    Settings settings;
    ASSERT_EQ(NewRange({0, 9, 1}, 4)->Save(settings, kID), 0);
    std::int32_t const pages = 3 << 24;
    settings.Add(3000, 3002, &pages, sizeof pages);
    std::int32_t const value = 7 << 24;
    settings.Add(kValueEntry, kID, &value, sizeof value);
    EXPECT_EQ(PPDXRangeControl(settings, kID).GetValue(), 7);
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

TEST(PPDXRangeControlTest, AccessorsTakeANullHandle) {
    SetRangeValue(nullptr, 1);
    EXPECT_EQ(GetRangeValue(nullptr), 0);
    EXPECT_EQ(RangePostScript(nullptr, nullptr), 0);
    auto const range = NewRange({2, 10, 5}, 3);
    SetRangeValue(range.get(), 7);
    EXPECT_EQ(GetRangeValue(range.get()), 5);
    EXPECT_EQ(GetRangeMinimum(range.get()), 2);
    EXPECT_EQ(GetRangeMaximum(range.get()), 10);
    EXPECT_EQ(GetRangeIncrement(range.get()), 5);
    EXPECT_EQ(GetRangeDefaultVal(range.get()), 3);
}

}  // namespace
