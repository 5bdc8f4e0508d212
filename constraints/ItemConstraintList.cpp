// SPDX-License-Identifier: Apache-2.0
#include "constraints/ItemConstraintList.h"

#include <cstddef>

void ItemConstraintList::insert(long key, long item, ConstraintType) {
    mConstraints.emplace_back(key, item);
}

void ItemConstraintList::insert(std::pair<long, long> rule) {
    mConstraints.push_back(rule);
}

ItemConstraintList& ItemConstraintList::operator+=(ItemConstraintList const& other) {
    // By position: the other list may be this one.
    std::size_t const count = other.mConstraints.size();
    mConstraints.reserve(mConstraints.size() + count);
    for (std::size_t i = 0; i < count; ++i) {
        mConstraints.push_back(other.mConstraints[i]);
    }
    return *this;
}

std::pair<long, long>* ItemConstraintList::operator[](long index) const {
    if (index < 0 || index >= size()) {
        return nullptr;
    }
    return new std::pair<long, long>(mConstraints[static_cast<std::size_t>(index)]);
}
