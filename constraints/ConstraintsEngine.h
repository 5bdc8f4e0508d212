// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <queue>
#include <set>
#include <utility>
#include <vector>

#include "constraints/KVCache.h"
#include "constraints/_KVErrorSet.h"

class ConstraintForest;
class KeyForest;

// Answers what a proposed change of options runs into, and looks for further changes that clear
// the way. A proposal is a list of pairs; where a key stands in it more than once, its last option
// counts. Neither rules nor selection are ever changed.
class ConstraintsEngine {
  public:
    // Knows no rule: every proposal is free of conflicts.
    ConstraintsEngine() = default;
    // All are borrowed, must outlive the engine and are read as they stand at each question; they
    // must not change during one. `current` holds one pair a key. `locked` may be null; a pair in
    // it locks that option, a pair with the option -1 every option of its key.
    ConstraintsEngine(KVCache const* current, ConstraintForest const* forest, KeyForest const* keys,
                      KVCache const* locked);
    ConstraintsEngine(ConstraintsEngine const&) = delete;
    ConstraintsEngine& operator=(ConstraintsEngine const&) = delete;
    ~ConstraintsEngine();

    // The conflicts of each proposed pair, the one of its last rule first, and for each conflict
    // the other options of its key from the last one back, without those that the same proposed
    // pair rules out too.
    _KVErrorSet Test(KVCache const* delta) const;
    // Whether Test of this pair alone would find a conflict; costs no memory, as it is asked for
    // every item of a menu.
    bool HasConflict(std::pair<long, long> pair) const;
    // Adds pairs to `delta`, or gives its pairs other options, until it is free of conflicts; with
    // `keepDelta` the keys in it keep their options. Searches breadth first, within limits. With
    // conflicts in the result `delta` holds what was tried last, and the conflicts are what stood
    // in the way there; or they are locked options that the change asks for, and `delta` is as it
    // was.
    _KVErrorSet Solve(KVCache* delta, bool keepDelta);
    // The search of Solve without its purges before and after.
    _KVErrorSet RSolve(KVCache* delta, bool keepDelta);
    // Takes the locked pairs out of `alternatives`. Returns their keys with the options that they
    // have now, -1 for a key without one.
    KVCache TestLockedStatus(KVCache* alternatives) const;
    // Forgets all that a search has left.
    void purge();

    // The options of the key that have a rule against a selected pair.
    KVCache ListCurrentConstraints(long key) const;
    // The last option of the key that has a rule against a pair of `screen`; with `exact` against
    // every pair of it.
    KVCache ListScreenedConstraints(KVCache const& screen, bool exact, long key) const;
    // The options of key2 whose rules leave item1 as the only open option of key1.
    KVCache ListBlockingConstraints(long key1, long item1, long key2) const;

  private:
    // Whether `fits` holds for anything that the option has a rule against; takes a RulePartner.
    template <typename Fits>
    bool AnyPartner(long key, long item, Fits fits) const;
    bool HasRulesAgainstAll(long key, long item, KVCache const& screen) const;
    // The options of key2 that the option has a rule against.
    std::set<long> OptionsRuledOut(long key, long item, long key2) const;
    std::vector<long> const& OptionsOf(long key) const;
    bool IsLocked(std::pair<long, long> pair) const;
    bool TryAlternatives(KVCache& delta, KVCache& alternatives, bool keepDelta);
    void Enqueue(KVCache const& delta);

    std::queue<KVCache> mQueue;   // proposals that wait for their turn
    std::vector<KVCache> mTried;  // proposals that have had it
    KVCache const* mCurrent = nullptr;
    ConstraintForest const* mForest = nullptr;
    KeyForest const* mKeys = nullptr;
    KVCache const* mLocked = nullptr;
    bool mOverflow = false;  // the queue has passed its limit
    std::int32_t mDepth = 0;
};
