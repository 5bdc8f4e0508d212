// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <vector>

class KVCache;

// The options of every keyword in PPD order. Ids are those of one CStringSoup; a negative key is
// ignored.
class KeyForest {
  public:
    KeyForest() = default;
    KeyForest(KeyForest const&) = delete;
    KeyForest& operator=(KeyForest const&) = delete;
    virtual ~KeyForest();

    // Appends the option; one that is inserted twice stands twice.
    void insert(long key, long item);
    void insert(long key, std::vector<long> items);  // all of them
    // The options of the key, or null. Lives until clear.
    std::vector<long> const* GetItems(long key) const;
    // Fills the cache with every key and option, keys ascending, options in order. A null cache is
    // made, and then belongs to the caller.
    void GetKeys(KVCache** keys) const;
    void clear();

  private:
    std::vector<long>& ItemsOf(long key);

    std::vector<std::vector<long>*> mItems;  // owned, by key id; null for a key without options
};
