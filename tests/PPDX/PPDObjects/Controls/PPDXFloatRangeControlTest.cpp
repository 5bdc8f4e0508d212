// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <limits>

#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

std::unique_ptr<PPDXFloatRangeControl> NewGamma(double minimum, double maximum, double value) {
    PointerList flags;
    return std::make_unique<PPDXFloatRangeControl>("*Gamma", CFSTR("Gamma"), flags, nullptr, 0,
                                                   minimum, maximum, 0.25, value, true);
}

TEST(PPDXFloatRangeControlTest, ValueIsClampedButNotSnapped) {
    auto const gamma = NewGamma(0.5, 2, 9);
    EXPECT_EQ(gamma->Type(), kFloatRangeType);
    EXPECT_EQ(gamma->GetValue(), 9.0F);
    struct {
        char const* text;
        char const* result;
    } const cases[] = {{"0.6", "0.600"},     {"0.1", "0.500"}, {"2.5", "2.000"},
                       {"1.23456", "1.235"}, {"x", "0.500"},   {"1e300", "2.000"},
                       {"-1e300", "0.500"}};
    for (auto const& [text, result] : cases) {
        gamma->SetCurrentControlWithCFString(Str(text));
        EXPECT_EQ(Taken(gamma->CopyCurrentControlValueString()), result) << text;
    }
    gamma->ResetToDefaultValue();
    EXPECT_EQ(gamma->GetValue(), 2.0F);
}

TEST(PPDXFloatRangeControlTest, NumbersOutOfReachOfAFloatBecomeFinite) {
    using Double = std::numeric_limits<double>;
    auto const gamma = NewGamma(-Double::infinity(), 1e300, Double::quiet_NaN());
    EXPECT_EQ(gamma->MinVal(), -FLT_MAX);
    EXPECT_EQ(gamma->MaxVal(), FLT_MAX);
    EXPECT_EQ(gamma->DefaultValue(), 0.0F);
    gamma->SetValue(std::numeric_limits<float>::quiet_NaN());
    EXPECT_EQ(gamma->GetValue(), 0.0F);
    gamma->SetValue(FLT_MAX);
    EXPECT_EQ(Taken(gamma->CopyCurrentControlValueString()),
              "340282346638528859811704183484516925440.000");
}

}  // namespace
