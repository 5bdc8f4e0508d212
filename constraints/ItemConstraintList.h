// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>
#include <vector>

// The kind of a rule. There is one.
enum ConstraintType : int { kConstraintPlain = 0 };

// The rules of one option: the key and option pairs that it conflicts with, in the order in which
// they came. Duplicates are kept. A value: copies are independent.
class ItemConstraintList {
  public:
    explicit ItemConstraintList(long item) : mItem(item) {}
    ItemConstraintList(ItemConstraintList const&) = default;
    ItemConstraintList& operator=(ItemConstraintList const&) = default;
    virtual ~ItemConstraintList() = default;

    long Item() const { return mItem; }
    void insert(long key, long item, ConstraintType type);
    void insert(std::pair<long, long> rule);
    ItemConstraintList& operator+=(ItemConstraintList const& other);
    long size() const { return static_cast<long>(mConstraints.size()); }
    // A new pair that the caller deletes; null outside the list.
    std::pair<long, long>* operator[](long index) const;
    // All pairs at once, without copies; valid until the list changes.
    std::vector<std::pair<long, long>> const& Pairs() const { return mConstraints; }

  private:
    long mItem;
    std::vector<std::pair<long, long>> mConstraints;
};
