// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

// Where in a list the pairs of each key are: a flat table, as a list is copied with its table for
// every proposal that a search makes. A value: copies are independent.
class KeyPlaces {
  public:
    static constexpr std::int32_t kFree = -1;

    struct Place {
        long key;
        std::uint32_t first;  // the position of the key's first pair
        std::int32_t count;   // of its pairs; 0 where a key has none left, kFree in a free slot
    };

    // Null for a key without pairs. Good until the next Of.
    Place* Find(long key);
    Place const* Find(long key) const { return const_cast<KeyPlaces*>(this)->Find(key); }
    // The key's place, whose count is 0 when the key has no pairs: the caller then sets the first
    // one. Throws std::bad_alloc.
    Place& Of(long key);
    // Takes this much from every position.
    void MoveDown(std::uint32_t positions);
    void Clear();
    std::size_t Size() const { return mSlots.size(); }  // of the table: what a MoveDown takes

  private:
    std::size_t SlotOf(long key) const;  // of the key, or the free one where it would be
    void Grow();

    std::vector<Place> mSlots;  // open addressing; a power of two, at most three quarters in use
    std::size_t mUsed = 0;
};
