// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "constraints/ItemConstraintList.h"

// The rules of one keyword, by option. Rules can be switched off and on again; an option whose
// rules are partly or wholly off keeps aside what its list was before the last that went off.
class KeyConstraintTree {
  public:
    explicit KeyConstraintTree(long key) : mKey(key) {}
    KeyConstraintTree(KeyConstraintTree const&) = delete;
    KeyConstraintTree& operator=(KeyConstraintTree const&) = delete;
    virtual ~KeyConstraintTree();

    long Key() const { return mKey; }
    void insert(long item, std::pair<long, long> rule);
    // A new list, which the caller deletes, with the rules of this option that are on; with item
    // -1 those of all options in ascending order. Empty when there are none.
    ItemConstraintList* GetItemConstraintList(long item) const;

    // Whether any of those rules fits, without a list; `fits` takes a pair.
    template <typename Fits>
    bool AnyRule(long item, Fits fits) const {
        auto const anyOf = [&fits](ItemConstraintList const& list) {
            return std::any_of(list.Pairs().begin(), list.Pairs().end(), fits);
        };
        if (item == -1) {
            return std::any_of(mActive.begin(), mActive.end(),
                               [&anyOf](auto const& entry) { return anyOf(*entry.second); });
        }
        auto const found = mActive.find(item);
        return found != mActive.end() && anyOf(*found->second);
    }

    // Switch off, or on again, the rules of an option (-1: of every option) against key2 and item2
    // (-1: against any option of key2), or all of them when key2 is negative. The result names
    // what all of an option's rules were against when key2 is negative, and is empty otherwise.
    // Rules that come back stand sorted, without duplicates, unless all of them do.
    std::set<std::pair<long, long>> DisableConstraints(long item, long key2, long item2);
    std::set<std::pair<long, long>> EnableConstraints(long item, long key2, long item2);

  private:
    using Lists = std::map<long, ItemConstraintList*>;
    using Pairs = std::set<std::pair<long, long>>;

    void DisableAll(ItemConstraintList& active, Pairs& partners);
    void DisableSome(ItemConstraintList& active, long key2, long item2);
    void EnableSome(ItemConstraintList const& disabled, long key2, long item2);

    long mKey;
    Lists mActive;    // owned lists, by option
    Lists mDisabled;  // owned copies of full lists, by option
};
