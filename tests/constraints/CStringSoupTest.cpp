// SPDX-License-Identifier: Apache-2.0
#include "constraints/CStringSoup.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(CStringSoupTest, IdsFollowTheOrderOfFirstInsertion) {
    CStringSoup soup;
    EXPECT_EQ(soup.Insert("*Duplex"), 0);
    EXPECT_EQ(soup.Insert("None"), 1);
    EXPECT_EQ(soup.Insert(""), 2);
    EXPECT_EQ(soup.Insert("none"), 3);
    EXPECT_EQ(soup.Insert("None"), 1);
    EXPECT_EQ(soup.Find("*PageSize"), -1);
    EXPECT_EQ(soup.size(), 4);
    soup.Clear();
    EXPECT_EQ(soup.Find("None"), -1);
    EXPECT_EQ(soup.Insert("none"), 0);
}

TEST(CStringSoupTest, KeepsItsOwnCopiesOfTextsOfAnyLengthWhileItGrows) {
    CStringSoup soup;
    char const* first = soup.Find(soup.Insert("*First"));
    for (std::size_t length = 1; length < 1000; ++length) {
        soup.Insert(std::string(length, 'x').c_str());
    }
    EXPECT_STREQ(first, "*First");
    for (std::size_t length = 1; length < 1000; ++length) {
        std::string const text(length, 'x');
        EXPECT_EQ(soup.Find(text.c_str()), static_cast<long>(length));
        EXPECT_EQ(soup.Find(static_cast<long>(length)), text);
    }
}

}  // namespace
