// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <limits>

#include "ZUBUtils/PPDUtils/Settings.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

std::unique_ptr<PPDXFloatRangeControl> NewGamma(double minimum, double maximum, double value,
                                                std::string const& code = "") {
    PointerList flags;
    return std::make_unique<PPDXFloatRangeControl>(
        "*Gamma", CFSTR("Gamma"), flags, code.empty() ? nullptr : Code(code),
        static_cast<long>(code.size()), minimum, maximum, 0.25, value, true);
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
    EXPECT_EQ(TextOf(gamma->CopyCurrentControlValueString()),
              "340282346638528859811704183484516925440.000");
}

TEST(PPDXFloatRangeControlTest, ArchiveKeepsAllNumbers) {
    Settings settings;
    auto const gamma = NewGamma(0.5, 2.5, 1.5);
    gamma->SetValue(0.6F);
    ASSERT_EQ(gamma->Save(settings, 5001), 0);
    PPDXFloatRangeControl restored(settings, 5001);
    EXPECT_EQ(restored.Type(), kFloatRangeType);
    EXPECT_EQ(restored.GetValue(), 0.6F);
    EXPECT_EQ(restored.MinVal(), 0.5F);
    EXPECT_EQ(restored.MaxVal(), 2.5F);
    EXPECT_EQ(restored.Increment(), 0.25F);
    EXPECT_EQ(restored.DefaultValue(), 1.5F);

    auto const other = NewGamma(0, 9, 9);
    EXPECT_EQ(other->Restore(settings, 5001), 0);
    EXPECT_EQ(other->GetValue(), 0.6F);
    EXPECT_EQ(other->Restore(settings, 5002), -5751);
}

}  // namespace
