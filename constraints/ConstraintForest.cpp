// SPDX-License-Identifier: Apache-2.0
#include "constraints/ConstraintForest.h"

#include <cstddef>

#include "constraints/KeyConstraintTree.h"

ConstraintForest::~ConstraintForest() {
    clear();
}

void ConstraintForest::insert(long key, long item, long key2, long item2, ConstraintType) {
    insert(key, item, {key2, item2});
}

void ConstraintForest::insert(long key, long item, std::pair<long, long> rule) {
    if (key < 0) {
        return;
    }
    auto const index = static_cast<std::size_t>(key);
    if (index >= mTrees.size()) {
        mTrees.resize(index + 1);
    }
    if (mTrees[index] == nullptr) {
        mTrees[index] = new KeyConstraintTree(key);
    }
    mTrees[index]->insert(item, rule);
}

KeyConstraintTree* ConstraintForest::TreeOf(long key) const {
    auto const index = static_cast<std::size_t>(key);  // a negative key is beyond every end
    return index < mTrees.size() ? mTrees[index] : nullptr;
}

ItemConstraintList* ConstraintForest::GetConstraintList(long key, long item) const {
    KeyConstraintTree const* tree = TreeOf(key);
    return tree == nullptr ? nullptr : tree->GetItemConstraintList(item);
}

bool ConstraintForest::DisableConstraints(long key, long item, long key2, long item2) {
    if (key == -1) {
        for (KeyConstraintTree* tree : mTrees) {
            if (tree != nullptr) {
                tree->DisableConstraints(item, key2, item2);
            }
        }
        return true;
    }
    KeyConstraintTree* tree = TreeOf(key);
    if (tree == nullptr) {
        return false;
    }
    for (auto const& [partnerKey, partnerItem] : tree->DisableConstraints(item, key2, item2)) {
        DisableConstraints(partnerKey, partnerItem, key, item);
    }
    return true;
}

bool ConstraintForest::EnableConstraints(long key, long item, long key2, long item2) {
    if (key == -1) {
        for (KeyConstraintTree* tree : mTrees) {
            if (tree != nullptr) {
                tree->EnableConstraints(-1, key2, item2);
            }
        }
        return true;
    }
    KeyConstraintTree* tree = TreeOf(key);
    if (tree == nullptr) {
        return false;
    }
    for (auto const& [partnerKey, partnerItem] : tree->EnableConstraints(item, key2, item2)) {
        EnableConstraints(partnerKey, partnerItem, key, item);
    }
    return true;
}

void ConstraintForest::clear() {
    for (KeyConstraintTree* tree : mTrees) {
        delete tree;
    }
    mTrees.clear();
}
