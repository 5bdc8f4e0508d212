// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "constraints/ConstraintForest.h"
#include "constraints/KVCache.h"
#include "constraints/KeyForest.h"

namespace {

using Pairs = std::vector<std::pair<long, long>>;

constexpr long kA = 0;
constexpr long kA1 = 1;
constexpr long kA2 = 2;
constexpr long kB = 10;
constexpr long kB1 = 11;
constexpr long kB2 = 12;
constexpr long kC = 20;
constexpr long kC1 = 21;

Pairs Rules(ConstraintForest const& forest, long key, long item) {
    std::unique_ptr<ItemConstraintList> const list(forest.GetConstraintList(key, item));
    EXPECT_NE(list, nullptr);
    EXPECT_EQ(list->Item(), item);
    return list->Pairs();
}

// A's first option against both of B and against C, its second against B's first; each with its
// mirror.
class SwitchedRulesTest : public ::testing::Test {
  protected:
    SwitchedRulesTest() {
        AddBothWays(kA, kA1, kC, kC1);
        AddBothWays(kA, kA1, kB, kB2);
        AddBothWays(kA, kA1, kB, kB1);
        AddBothWays(kA, kA2, kB, kB1);
    }
    void AddBothWays(long key1, long item1, long key2, long item2) {
        mForest.insert(key1, item1, key2, item2, kConstraintPlain);
        mForest.insert(key2, item2, {key1, item1});
    }

    ConstraintForest mForest;
};

TEST(ConstraintForestTest, HoldsARuleInItsOwnDirectionAndGivesThemInOrder) {
    ConstraintForest forest;
    forest.insert(kB, kB2, {kA, kA1});
    forest.insert(kB, kB1, {kC, kC1});
    forest.insert(kB, kB2, {kA, kA1});
    forest.insert(-1, kB1, {kA, kA1});
    EXPECT_EQ(Rules(forest, kB, kB2), (Pairs{{kA, kA1}, {kA, kA1}}));
    EXPECT_EQ(Rules(forest, kB, -1), (Pairs{{kC, kC1}, {kA, kA1}, {kA, kA1}}));
    EXPECT_EQ(Rules(forest, kB, kA1), Pairs{});
    for (long key : {kA, kC, 1000L, -1L}) {
        EXPECT_EQ(forest.GetConstraintList(key, -1), nullptr);
    }
}

TEST_F(SwitchedRulesTest, AnOptionGoesOffAndComesBackWithItsMirrors) {
    EXPECT_TRUE(mForest.DisableConstraints(kA, kA1, -1, -1));
    EXPECT_EQ(Rules(mForest, kA, -1), (Pairs{{kB, kB1}}));
    EXPECT_EQ(Rules(mForest, kB, -1), (Pairs{{kA, kA2}}));
    EXPECT_EQ(Rules(mForest, kC, -1), Pairs{});

    EXPECT_TRUE(mForest.EnableConstraints(kA, kA1, -1, -1));
    EXPECT_EQ(Rules(mForest, kA, kA1), (Pairs{{kC, kC1}, {kB, kB2}, {kB, kB1}}));
    EXPECT_EQ(Rules(mForest, kB, -1), (Pairs{{kA, kA1}, {kA, kA2}, {kA, kA1}}));
    EXPECT_EQ(Rules(mForest, kC, kC1), (Pairs{{kA, kA1}}));
}

TEST_F(SwitchedRulesTest, AWholeKeyGoesOffAndComesBackEvenWhenToldTwice) {
    mForest.DisableConstraints(kA, -1, -1, -1);
    mForest.DisableConstraints(kA, -1, -1, -1);
    for (long key : {kA, kB, kC}) {
        EXPECT_EQ(Rules(mForest, key, -1), Pairs{});
    }
    mForest.EnableConstraints(kA, -1, -1, -1);
    EXPECT_EQ(Rules(mForest, kA, -1), (Pairs{{kC, kC1}, {kB, kB2}, {kB, kB1}, {kB, kB1}}));
    EXPECT_EQ(Rules(mForest, kB, kB1), (Pairs{{kA, kA1}, {kA, kA2}}));
}

TEST_F(SwitchedRulesTest, RulesAgainstOneKeyOrOptionGoOffAndComeBackSorted) {
    mForest.DisableConstraints(kA, kA1, kB, -1);
    EXPECT_EQ(Rules(mForest, kA, kA1), (Pairs{{kC, kC1}}));
    mForest.EnableConstraints(kA, kA1, kB, kB2);
    EXPECT_EQ(Rules(mForest, kA, kA1), (Pairs{{kB, kB2}, {kC, kC1}}));
    mForest.EnableConstraints(kA, kA1, kB, -1);
    EXPECT_EQ(Rules(mForest, kA, kA1), (Pairs{{kB, kB1}, {kB, kB2}, {kC, kC1}}));
    EXPECT_EQ(Rules(mForest, kB, kB1), (Pairs{{kA, kA1}, {kA, kA2}}));
    // Each call puts aside what is on by then: told twice, nothing comes back.
    mForest.DisableConstraints(kA, kA1, kB, -1);
    mForest.DisableConstraints(kA, kA1, kB, -1);
    mForest.EnableConstraints(kA, kA1, kB, -1);
    EXPECT_EQ(Rules(mForest, kA, kA1), (Pairs{{kC, kC1}}));
}

TEST_F(SwitchedRulesTest, EveryKeyAtOnceAndAnUnknownOne) {
    EXPECT_TRUE(mForest.DisableConstraints(-1, -1, kA, kA1));
    EXPECT_EQ(Rules(mForest, kB, -1), (Pairs{{kA, kA2}}));
    EXPECT_EQ(Rules(mForest, kC, -1), Pairs{});
    EXPECT_TRUE(mForest.EnableConstraints(-1, kB1, kA, -1));
    EXPECT_EQ(Rules(mForest, kC, -1), (Pairs{{kA, kA1}}));
    EXPECT_FALSE(mForest.DisableConstraints(99, -1, -1, -1));
    EXPECT_FALSE(mForest.EnableConstraints(-2, -1, -1, -1));
}

TEST(ItemConstraintListTest, GivesPairsByPositionAndNullOutside) {
    ItemConstraintList list(kA1);
    list.insert(kB, kB1, kConstraintPlain);
    list += list;
    std::unique_ptr<std::pair<long, long>> const second(list[1]);
    EXPECT_EQ(*second, std::pair(kB, kB1));
    EXPECT_EQ(list[-1], nullptr);
    EXPECT_EQ(list[2], nullptr);
}

TEST(KeyForestTest, KeepsOptionsInOrderAndListsKeysAscending) {
    KeyForest keys;
    for (auto const& [key, item] : Pairs{{kB, kB2}, {-1, kB2}}) {
        keys.insert(key, item);
    }
    for (long const key : {kA, -1L}) {
        keys.insert(key, std::vector<long>{kA1});
    }
    keys.insert(kB, std::vector<long>{kB1, kB2});
    EXPECT_EQ(keys.GetItems(kC), nullptr);
    EXPECT_EQ(keys.GetItems(-1), nullptr);
    EXPECT_EQ(*keys.GetItems(kB), (std::vector<long>{kB2, kB1, kB2}));

    KVCache* made = nullptr;
    keys.GetKeys(&made);
    std::unique_ptr<KVCache> const owner(made);
    KVCache reused = *made;
    KVCache* filled = &reused;
    keys.GetKeys(&filled);
    for (KVCache const* cache : {made, filled}) {
        ASSERT_EQ(cache->size(), 4);
        EXPECT_EQ(cache->GetKV(0), std::pair(kA, kA1));
        EXPECT_EQ(cache->GetKV(1), std::pair(kB, kB2));
        EXPECT_EQ(cache->GetKV(2), std::pair(kB, kB1));
    }
}

}  // namespace
