// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXSpecialOption.h"

#include <gtest/gtest.h>

#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

std::string ValueOf(PPDXSpecialOption& option) {
    return Taken(option.CopyCurrentControlValueString());
}

TEST(PPDXSpecialOptionTest, ArchiveKeepsTheTextAndItsAbsence) {
    Settings settings;
    PointerList flags;
    char text[] = "2.1";
    PPDXSpecialOption option("*ZUServer", CFSTR("Server"), flags, text, nullptr, 0, false);
    ASSERT_EQ(option.Save(settings, 5001), 0);
    PPDXSpecialOption restored(settings, 5001);
    EXPECT_EQ(restored.Type(), kSpecialOptionType);
    EXPECT_EQ(ValueOf(restored), "2.1");

    EXPECT_EQ(restored.Restore(settings, 5002), 0);
    EXPECT_EQ(restored.GetValue(), nullptr);
    EXPECT_EQ(ValueOf(restored), "");
    ASSERT_EQ(restored.Save(settings, 5003), 0);
    EXPECT_EQ(PPDXSpecialOption(settings, 5003).GetValue(), nullptr);
    EXPECT_EQ(restored.Restore(settings, 5001), 0);
    EXPECT_EQ(ValueOf(restored), "2.1");
}

}  // namespace
