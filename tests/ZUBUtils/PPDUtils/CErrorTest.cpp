// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/CError.h"

#include <gtest/gtest.h>

namespace {

TEST(CErrorTest, CopiesKeepTheirTextAndAnEmptyOneIsNone) {
    CError original(18, "Can't read", true);
    CError copy;
    EXPECT_EQ(copy.Description(), nullptr);
    copy = original;
    original.Description("");
    EXPECT_EQ(original.Description(), nullptr);
    EXPECT_STREQ(copy.Description(), "Can't read");
    EXPECT_TRUE(copy == 18);
    EXPECT_TRUE(copy.IsFatal());
}

}  // namespace
