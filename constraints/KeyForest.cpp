// SPDX-License-Identifier: Apache-2.0
#include "constraints/KeyForest.h"

#include <cstddef>
#include <utility>

#include "constraints/KVCache.h"

KeyForest::~KeyForest() {
    clear();
}

void KeyForest::insert(long key, long item) {
    if (key >= 0) {
        ItemsOf(key).push_back(item);
    }
}

void KeyForest::insert(long key, std::vector<long> items) {
    if (key < 0) {
        return;
    }
    std::vector<long>& known = ItemsOf(key);
    if (known.empty()) {
        known = std::move(items);
    } else {
        known.insert(known.end(), items.begin(), items.end());
    }
}

std::vector<long>& KeyForest::ItemsOf(long key) {
    auto const index = static_cast<std::size_t>(key);
    if (index >= mItems.size()) {
        mItems.resize(index + 1);
    }
    if (mItems[index] == nullptr) {
        mItems[index] = new std::vector<long>;
    }
    return *mItems[index];
}

std::vector<long> const* KeyForest::GetItems(long key) const {
    auto const index = static_cast<std::size_t>(key);  // a negative key is beyond every end
    return index < mItems.size() ? mItems[index] : nullptr;
}

void KeyForest::GetKeys(KVCache** keys) const {
    if (*keys == nullptr) {
        *keys = new KVCache;
    } else {
        (*keys)->clear();
    }
    for (std::size_t key = 0; key < mItems.size(); ++key) {
        if (mItems[key] != nullptr) {
            for (long item : *mItems[key]) {
                (*keys)->add({static_cast<long>(key), item});
            }
        }
    }
}

void KeyForest::clear() {
    for (std::vector<long>* items : mItems) {
        delete items;
    }
    mItems.clear();
}
