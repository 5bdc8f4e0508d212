// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <utility>
#include <vector>

#include "constraints/ItemConstraintList.h"
#include "constraints/KeyConstraintTree.h"
#include "constraints/RuleTable.h"

// The rules of all keywords. A rule is held by its first key and option alone: it says nothing
// about a test of the second. Ids are those of one CStringSoup; rules of a negative key are
// ignored.
//
// Rules lie in one table as the file wrote them. A key gets a tree, with its rules written out
// option by option, only when rules of it are switched off or on; its tree answers from then on.
class ConstraintForest {
  public:
    ConstraintForest() = default;
    ConstraintForest(ConstraintForest const&) = delete;
    ConstraintForest& operator=(ConstraintForest const&) = delete;
    virtual ~ConstraintForest() = default;

    // A number that stands for each of these options, of which there must be one, wherever insert
    // takes an item. Good until clear.
    long AddOptionList(std::vector<std::int32_t> options);
    void insert(long key, long item, long key2, long item2, ConstraintType type);
    void insert(long key, long item, std::pair<long, long> rule);
    // The rules of an option (-1: of all options of the key) in a new list, written out, which the
    // caller deletes; null for a key without any rule.
    ItemConstraintList* GetConstraintList(long key, long item) const;
    // The same, not written out; empty for a key without any rule.
    std::vector<RulePartner> GetPartners(long key, long item) const;
    // Whether `fits` holds for any of those partners, without a list and in no order.
    template <typename Fits>
    bool AnyPartner(long key, long item, Fits fits) const {
        if (KeyConstraintTree const* const tree = TreeOf(key)) {
            return tree->AnyRule(item, [&fits](std::pair<long, long> const& rule) {
                return fits(RulePartner{rule.first, rule.second, nullptr});
            });
        }
        return item >= -1 && mTable.AnyPartner(key, item, fits);
    }

    // Switch rules off, or on again: those of the key and option (-1: of every option, or of every
    // key) against key2 and item2 (-1: against any option of key2), or against everything when
    // key2 is negative. In that last case the rules that stand the other way round follow, unless
    // key is -1. False for a key without any rule.
    bool DisableConstraints(long key, long item, long key2, long item2);
    bool EnableConstraints(long key, long item, long key2, long item2);

    void clear();

  private:
    KeyConstraintTree* TreeOf(long key) const;  // null for a key that has none
    KeyConstraintTree* MakeTree(long key);      // null for a key without rules
    void MakeAllTrees();

    RuleTable mTable;
    std::map<long, std::unique_ptr<KeyConstraintTree>> mTrees;  // by key
};
