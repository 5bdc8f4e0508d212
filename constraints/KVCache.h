// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <span>
#include <utility>
#include <vector>

#include "constraints/KeyPlaces.h"

// Pairs of a key id and an option id in the order of insertion: the current selection, a proposed
// change, a list of conflicts. Several pairs of one key come in through `add` and the operators
// with a plus, never through `Insert`. A value: copies are independent.
class KVCache {
  public:
    KVCache() = default;
    KVCache(KVCache const&) = default;
    KVCache& operator=(KVCache const&) = default;
    virtual ~KVCache() = default;

    long size() const { return static_cast<long>(mPairs.size() - mPopped); }
    void clear();
    // Appends, whatever is there already.
    void add(std::pair<long, long> pair);
    // Gives the first pair of the key this option, or appends a pair. A negative key is ignored.
    void Insert(long key, long item);
    // The pair at this position, from 0; must be in range.
    std::pair<long, long> GetKV(long position) const;
    // The option of the key's first pair, or -1.
    long GetItem(long key) const;
    // Position of the first equal pair, or -1.
    long Lookup(std::pair<long, long> pair) const;
    // Remove and return a pair; (0, 0) from an empty cache.
    std::pair<long, long> pop_front();
    std::pair<long, long> pop_back();
    // Insert of each pair of the other cache.
    void merge(KVCache const& other);
    // Append each pair of the other cache whose key isn't negative, whatever is there already.
    KVCache operator+(KVCache const& other) const;
    KVCache& operator+=(KVCache const& other);
    // Same pairs, each as often; their order doesn't count.
    bool operator==(KVCache const& other) const;

  private:
    using Pair = std::pair<long, long>;

    std::span<Pair const> Pairs() const { return std::span(mPairs).subspan(mPopped); }
    void ForgetFirst(long key);
    void DropPopped();

    std::vector<Pair> mPairs;  // those that were taken from the front still lie there
    KeyPlaces mKeys;           // positions in mPairs
    std::size_t mPopped = 0;   // pairs taken from the front
};

// Orders pairs from the greatest key down, those of one key from the greatest option down.
bool KeyOptionGreater(std::pair<long, long> left, std::pair<long, long> right);
