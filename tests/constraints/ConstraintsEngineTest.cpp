// SPDX-License-Identifier: Apache-2.0
#include "constraints/ConstraintsEngine.h"

#include <gtest/gtest.h>

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
