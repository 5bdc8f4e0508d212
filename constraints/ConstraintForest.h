// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>
#include <vector>

#include "constraints/ItemConstraintList.h"
#include "constraints/KeyConstraintTree.h"

// The rules of all keywords. A rule is held by its first key and option alone: it says nothing
// about a test of the second. Ids are those of one CStringSoup; rules of a negative key are
// ignored.
class ConstraintForest {
  public:
    ConstraintForest() = default;
    ConstraintForest(ConstraintForest const&) = delete;
    ConstraintForest& operator=(ConstraintForest const&) = delete;
    virtual ~ConstraintForest();

    void insert(long key, long item, long key2, long item2, ConstraintType type);
    void insert(long key, long item, std::pair<long, long> rule);
    // The rules of an option (-1: of all options of the key) in a new list, which the caller
    // deletes; null for a key without any rule.
    ItemConstraintList* GetConstraintList(long key, long item) const;
    // Whether any of those rules fits, without a list; `fits` takes a pair.
    template <typename Fits>
    bool AnyRule(long key, long item, Fits fits) const {
        KeyConstraintTree const* const tree = TreeOf(key);
        return tree != nullptr && tree->AnyRule(item, fits);
    }

    // Switch rules off, or on again: those of the key and option (-1: of every option, or of every
    // key) against key2 and item2 (-1: against any option of key2), or against everything when
    // key2 is negative. In that last case the rules that stand the other way round follow, unless
    // key is -1. False for a key without any rule.
    bool DisableConstraints(long key, long item, long key2, long item2);
    bool EnableConstraints(long key, long item, long key2, long item2);

    void clear();

  private:
    KeyConstraintTree* TreeOf(long key) const;

    std::vector<KeyConstraintTree*> mTrees;  // owned, by key id; null for a key without rules
};
