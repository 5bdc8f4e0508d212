// SPDX-License-Identifier: Apache-2.0
#include "constraints/KVCache.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <utility>
#include <vector>

#include "CachePairs.h"

namespace {

// The first pair of a key, found by a walk.
Pairs::iterator FirstOf(Pairs& pairs, long key) {
    return std::find_if(pairs.begin(), pairs.end(),
                        [key](Pair const& pair) { return pair.first == key; });
}

// The same change to the cache and to a plain list of pairs.
void TakeARandomStep(KVCache& cache, Pairs& model, std::mt19937& random) {
    Pair const pair(static_cast<long>(random() % 7) - 1, static_cast<long>(random() % 4));
    unsigned long const step = random() % 6;
    if (step < 2) {
        cache.add(pair);
        model.push_back(pair);
    } else if (step == 2) {
        cache.Insert(pair.first, pair.second);
        auto const first = FirstOf(model, pair.first);
        if (pair.first >= 0 && first != model.end()) {
            first->second = pair.second;
        } else if (pair.first >= 0) {
            model.push_back(pair);
        }
    } else if (step < 5 && model.empty()) {
        ASSERT_EQ(step == 3 ? cache.pop_front() : cache.pop_back(), Pair(0, 0));
    } else if (step < 5) {
        auto const at = step == 3 ? model.begin() : model.end() - 1;
        ASSERT_EQ(step == 3 ? cache.pop_front() : cache.pop_back(), *at);
        model.erase(at);
    } else if (random() % 40 == 0) {
        cache.clear();
        model.clear();
    }
}

TEST(KVCacheTest, AnswersAsAWalkWouldAfterAnyMixOfChanges) {
    for (unsigned seed = 1; seed <= 20; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        KVCache cache;
        Pairs model;
        for (int step = 0; step < 500; ++step) {
            ASSERT_NO_FATAL_FAILURE(TakeARandomStep(cache, model, random));
            ASSERT_EQ(PairsOf(cache), model);
            for (long key = -1; key <= 6; ++key) {
                auto const first = FirstOf(model, key);
                ASSERT_EQ(cache.GetItem(key), first == model.end() ? -1 : first->second);
                Pair const pair(key, step % 4);
                auto const equal = std::find(model.begin(), model.end(), pair);
                ASSERT_EQ(cache.Lookup(pair), equal == model.end() ? -1 : equal - model.begin());
            }
        }
    }
}

TEST(KVCacheTest, AQueueForgetsKeysThatHaveGoneAndKnowsThemWhenTheyComeBack) {
    constexpr long kKeys = 97;
    constexpr long kWaiting = 40;
    KVCache queue;
    for (long step = 0; step < 20 * kKeys; ++step) {
        queue.add({step % kKeys, step});
        if (queue.size() > kWaiting) {
            ASSERT_EQ(queue.pop_front(), Pair((step - kWaiting) % kKeys, step - kWaiting));
        }
        for (long age = 0; age < kKeys && age <= step; ++age) {
            Pair const pair((step - age) % kKeys, step - age);
            bool const waits = age < kWaiting;
            ASSERT_EQ(queue.GetItem(pair.first), waits ? pair.second : -1);
            ASSERT_EQ(queue.Lookup(pair), waits ? queue.size() - 1 - age : -1);
        }
    }
}

TEST(KVCacheTest, MergeReplacesWhilePlusRepeats) {
    KVCache const base = CacheOf({{1, 10}, {2, 20}});
    KVCache const change = CacheOf({{2, 21}, {-1, 5}, {3, 30}, {2, 22}});

    KVCache merged = base;
    merged.merge(change);
    EXPECT_EQ(PairsOf(merged), (Pairs{{1, 10}, {2, 22}, {3, 30}}));

    KVCache const sum = base + change;
    EXPECT_EQ(PairsOf(sum), (Pairs{{1, 10}, {2, 20}, {2, 21}, {3, 30}, {2, 22}}));
    EXPECT_EQ(sum.GetItem(2), 20);
    EXPECT_EQ(base.size(), 2);

    KVCache doubled = base;
    doubled += doubled;
    EXPECT_EQ(PairsOf(doubled), (Pairs{{1, 10}, {2, 20}, {1, 10}, {2, 20}}));
}

TEST(KVCacheTest, EqualityCountsPairsButNotTheirOrder) {
    struct Case {
        KVCache left;
        KVCache right;
        bool equal;
    };
    Case const cases[] = {
        {CacheOf({}), CacheOf({}), true},
        {CacheOf({{1, 1}, {2, 2}}), CacheOf({{1, 1}, {2, 2}}), true},
        {CacheOf({{1, 1}, {2, 2}, {1, 3}}), CacheOf({{1, 3}, {1, 1}, {2, 2}}), true},
        {CacheOf({{1, 1}, {1, 1}, {2, 2}}), CacheOf({{1, 1}, {2, 2}, {2, 2}}), false},
        {CacheOf({{1, 1}}), CacheOf({{1, 1}, {1, 1}}), false},
        {CacheOf({{1, 2}}), CacheOf({{2, 1}}), false},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(c.left == c.right, c.equal);
        EXPECT_EQ(c.right == c.left, c.equal);
    }
    Pairs pairs{{1, 5}, {3, 1}, {1, 7}, {1, 5}, {3, 4}};
    std::sort(pairs.begin(), pairs.end(), KeyOptionGreater);
    EXPECT_EQ(pairs, (Pairs{{3, 4}, {3, 1}, {1, 7}, {1, 5}, {1, 5}}));
}

}  // namespace
