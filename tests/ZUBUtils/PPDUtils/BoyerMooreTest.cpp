// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/BoyerMoore.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>

namespace {

long Find(std::string text, std::string const& wanted, long start = 0) {
    BoyerMoore search(wanted.data(), static_cast<short>(wanted.size()), text.data(),
                      static_cast<long>(text.size()));
    return search.Search(start, nullptr, 0);
}

std::string RandomText(std::mt19937& random, std::size_t length) {
    std::string text(length, 'a');
    std::generate(text.begin(), text.end(), [&] { return "ab\xFF"[random() % 3]; });
    return text;
}

TEST(BoyerMooreTest, SearchesThatCannotMatchGiveNone) {
    EXPECT_EQ(Find("abc", ""), -1);
    EXPECT_EQ(Find("abc", "b", -1), -1);
    EXPECT_EQ(Find("abc", "b", 1L << 40), -1);
    EXPECT_EQ(BoyerMoore().Search(), -1);
    std::string const tooLong(256, 'a');
    EXPECT_EQ(Find(tooLong, tooLong), -1);
}

TEST(BoyerMooreTest, FindsWhatAPlainSearchFinds) {
    std::mt19937 random(255);
    for (int round = 0; round < 4000; ++round) {
        std::string text = RandomText(random, random() % 600);
        std::size_t const wantedLength = 1 + random() % (round % 8 == 0 ? 255 : 6);
        std::string const wanted =
            wantedLength < text.size() && round % 2 == 0
                ? text.substr(random() % (text.size() - wantedLength), wantedLength)
                : RandomText(random, wantedLength);
        std::size_t const start = random() % (text.size() + 1);
        std::size_t const found = text.find(wanted, start);
        long const expected =
            found == std::string::npos ? -1 : static_cast<long>(found) - static_cast<long>(start);
        ASSERT_EQ(Find(text, wanted, static_cast<long>(start)), expected) << "round " << round;
    }
}

TEST(BoyerMooreTest, ANewSearchStringReplacesTheOldOne) {
    char text[] = "*PCFileName: \"A.PPD\"";
    BoyerMoore search("Name", 4, text, sizeof text - 1);
    unsigned char pascal[] = "\5A.PPD";
    EXPECT_EQ(search.Search(), 7);
    EXPECT_EQ(search.Search(3, pascal), 11);
    search.SetCaseSensitve(false);
    EXPECT_EQ(search.Search(0, "a.ppd", 5), -1);
    search.SetSearchData(text + 13, 7);
    EXPECT_EQ(search.Search(0, "A", 1), 1);
}

}  // namespace
