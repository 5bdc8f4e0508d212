// SPDX-License-Identifier: Apache-2.0
#include "constraints/ConstraintsEngine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include "CachePairs.h"
#include "constraints/ConstraintForest.h"
#include "constraints/KeyForest.h"

namespace {

struct Rule {
    Pair from;
    Pair against;
};

// Three keys; an option's id is its key's plus its place.
constexpr long kA = 0;
constexpr long kB = 10;
constexpr long kC = 20;
constexpr Pair kA1{kA, 1};
constexpr Pair kA2{kA, 2};
constexpr Pair kB1{kB, 11};
constexpr Pair kB2{kB, 12};
constexpr Pair kB3{kB, 13};
constexpr Pair kC1{kC, 21};
constexpr Pair kC2{kC, 22};

// What an engine stands on.
struct Ground {
    Ground(std::vector<Rule> const& rules, Pairs const& current) : mCurrent(CacheOf(current)) {
        for (Pair const& option : {kA1, kA2, kB1, kB2, kB3, kC1, kC2}) {
            mKeys.insert(option.first, option.second);
        }
        for (Rule const& rule : rules) {
            mForest.insert(rule.from.first, rule.from.second, rule.against);
        }
    }

    ConstraintForest mForest;
    KeyForest mKeys;
    KVCache mCurrent;
    ConstraintsEngine mEngine{&mCurrent, &mForest, &mKeys, nullptr};
};

TEST(ConstraintsEngineTest, ASearchEndsAndItsSolutionsHold) {
    constexpr long kKeys = 40;
    constexpr long kOptions = 6;
    int solved = 0;
    for (unsigned seed = 1; seed <= 10; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        auto const pick = [&random] {
            long const key = static_cast<long>(random() % kKeys) * 10;
            return Pair(key, key + 1 + static_cast<long>(random() % kOptions));
        };
        ConstraintForest forest;
        KeyForest keys;
        KVCache current;
        for (long key = 0; key < kKeys * 10; key += 10) {
            current.add({key, key + 1});
            for (long option = key + 1; option <= key + kOptions; ++option) {
                keys.insert(key, option);
            }
        }
        for (unsigned rule = 0; rule < 300 * seed; ++rule) {
            Pair const from = pick();
            forest.insert(from.first, from.second, pick());
        }
        ConstraintsEngine engine(&current, &forest, &keys, nullptr);
        Pair const wanted = pick();
        KVCache delta = CacheOf({wanted});
        if (engine.Solve(&delta, true).conflicts.size() == 0) {
            ++solved;
            EXPECT_EQ(delta.GetItem(wanted.first), wanted.second);
            EXPECT_EQ(engine.Test(&delta).conflicts.size(), 0);
        }
    }
    EXPECT_GT(solved, 0);
    EXPECT_LT(solved, 10);
}

TEST(ConstraintsEngineTest, ASearchThatGoesTooDeepGivesUp) {
    // Each key has the options 1 and 2, and 2 asks the next key for its 2.
    for (long length : {128L, 129L}) {
        ConstraintForest forest;
        KeyForest keys;
        KVCache current;
        for (long key = 0; key <= length; ++key) {
            keys.insert(key, 1);
            keys.insert(key, 2);
            current.add({key, 1});
            if (key < length) {
                forest.insert(key, 2, {key + 1, 1});
            }
        }
        ConstraintsEngine engine(&current, &forest, &keys, nullptr);
        KVCache delta = CacheOf({{0, 2}});
        Pairs const conflicts = PairsOf(engine.Solve(&delta, true).conflicts);
        EXPECT_EQ(conflicts, length == 128 ? Pairs{} : Pairs({{129, 1}}));
        EXPECT_EQ(delta.size(), 129);
    }
}

TEST(ConstraintsEngineTest, EveryProposalWithinTheDepthWaitsForItsTurn) {
    // 2 of key 0 stands against what key 1 is at; all other options of key 1, the last one first,
    // are blocked. The 128th has its turn when the search gives up.
    constexpr long kProposals = 128;
    ConstraintForest forest;
    KeyForest keys;
    KVCache const current = CacheOf({{0, 1}, {1, 0}, {2, 1}});
    forest.insert(0, 2, {1, 0});
    keys.insert(2, 1);
    for (long option = 0; option <= kProposals; ++option) {
        keys.insert(1, option);
        forest.insert(1, option, {2, 1});
    }
    ConstraintsEngine engine(&current, &forest, &keys, nullptr);
    KVCache delta = CacheOf({{0, 2}});
    EXPECT_EQ(PairsOf(engine.Solve(&delta, false).conflicts), Pairs({{2, 1}}));
    EXPECT_EQ(PairsOf(delta), (Pairs{{0, 2}, {1, 1}}));
}

TEST(ConstraintsEngineTest, ListsOptionsByWhatTheirRulesName) {
    Ground ground({{kB1, kA1}, {kB1, kC1}, {kB3, kC1}, {kB3, kA1}, {kB2, kA2}, {kC1, kA2}},
                  {kA1, kC1});
    ConstraintsEngine const& engine = ground.mEngine;
    EXPECT_EQ(PairsOf(engine.ListCurrentConstraints(kB)), (Pairs{kB1, kB3}));
    EXPECT_EQ(PairsOf(engine.ListCurrentConstraints(-1)), Pairs{});
    EXPECT_EQ(PairsOf(engine.ListScreenedConstraints(CacheOf({kA2, kC1}), false, kB)), Pairs{kB3});
    EXPECT_EQ(PairsOf(engine.ListScreenedConstraints(CacheOf({kA2, kC1}), true, kB)), Pairs{});
    EXPECT_EQ(PairsOf(engine.ListScreenedConstraints(CacheOf({kA2}), true, kB)), Pairs{kB2});
    EXPECT_EQ(PairsOf(engine.ListBlockingConstraints(kA, 1, kB)), Pairs{kB2});
    EXPECT_EQ(PairsOf(engine.ListBlockingConstraints(kA, 2, kB)), (Pairs{kB1, kB3}));
    EXPECT_EQ(PairsOf(engine.ListBlockingConstraints(kA, -1, kB)), Pairs{});
    EXPECT_EQ(PairsOf(engine.ListBlockingConstraints(99, 1, kB)), Pairs{});
}

TEST(ConstraintsEngineTest, AnEngineWithoutRulesFindsNoConflict) {
    ConstraintsEngine engine;
    KVCache delta = CacheOf({kA1});
    EXPECT_EQ(engine.Solve(&delta, false).conflicts.size(), 0);
    EXPECT_EQ(engine.ListCurrentConstraints(kA).size(), 0);
}

}  // namespace
