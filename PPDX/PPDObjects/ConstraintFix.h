// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "constraints/ConstraintForest.h"
#include "constraints/KVCache.h"
#include "constraints/_KVErrorSet.h"

class ZUBPPD;

// Looks for the smallest set of further changes with which a choice meets no conflict, and nothing
// that is selected meets one with it: rules count in both directions here, since a rule that is
// written in one only would show up at once in what is selected.
//
// The solver proposes, with ever larger sets of keys that it may touch; what a proposal doesn't
// need is left out of it. Bounded in the keys and in the number of searches, so a fix that isn't
// found within the bounds, which lie far above what PPDs have, may exist. Throws std::bad_alloc.
class ConstraintFix {
  public:
    struct Change {
        std::string keyword;  // bytes as in the PPD, as the next two
        std::string from;
        std::string to;
    };
    struct Fix {
        bool possible = false;
        std::vector<Change> changes;  // without the choice itself
    };

    // Borrowed; must have a store of rules, which stay as they are, and outlive the object. Each
    // Find starts from what is selected by then.
    explicit ConstraintFix(ZUBPPD& ppd);

    // A choice that the store doesn't know is free. The keywords of `kept` aren't changed.
    Fix Find(char const* keyword, char const* option, std::vector<std::string> const& kept = {});

  private:
    using Pair = std::pair<long, long>;
    using Pairs = std::vector<Pair>;
    using Keys = std::vector<long>;

    void MirrorRules();
    void AddMirrored(Pair pair);
    _KVErrorSet Test(Pairs const& changes) const;
    bool IsFree(Pairs const& changes) const { return Test(changes).conflicts.size() == 0; }
    bool StaysFree(Pairs const& changes) const;
    bool Propose(std::set<long> const& free, Pairs& changes) const;
    bool ProposeWithout(Keys const& kept, Pairs& changes) const;
    Pairs Smallest(Pairs const& changes) const;
    bool FindSmaller(Keys const& conflicting, std::size_t below, Pairs& changes);
    Keys ConflictingKeys() const;
    Keys NearKeys(Keys const& from) const;
    bool Search(Pairs& changes);
    Fix Told(Pairs const& changes) const;

    ZUBPPD& mPPD;
    ConstraintForest mRules;  // each rule and its mirror image, once
    std::set<std::pair<Pair, Pair>> mKnown;
    KVCache mSelection;  // with the choice made
    Pair mChoice{-1, -1};
    Keys mKept;         // never changed, the choice's own key among them
    int mSearches = 0;  // that may still be made
};
