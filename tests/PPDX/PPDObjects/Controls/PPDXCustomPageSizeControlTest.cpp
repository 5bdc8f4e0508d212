// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"

#include <gtest/gtest.h>

#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

TEST(PPDXCustomPageSizeControlTest, TextHoldsWidthAndHeight) {
    struct {
        char const* text;
        char const* result;
    } const cases[] = {
        {"612 792", "612.000000 792.000000"},
        {"595.28 841.89 7", "595.280029 841.890015"},
        {"10  20", "10.000000 20.000000"},
        {"x y", "0.000000 0.000000"},
        {"inf nan", "0.000000 0.000000"},
        {"33", "33.000000 2.000000"},
        {"", "0.000000 2.000000"},
        {"-5 +6", "-5.000000 6.000000"},
    };
    for (auto const& [text, result] : cases) {
        PointerList flags;
        PPDXCustomPageSizeControl page("*CustomPageSize", flags);
        page.SetWidth(1);
        page.SetHeight(2);
        page.SetCurrentControlWithCFString(String(text));
        EXPECT_EQ(TextOf(page.CopyCurrentControlValueString()), result) << text;
    }
}

}  // namespace
