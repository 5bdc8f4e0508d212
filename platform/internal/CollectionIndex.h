// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace platform {

// Where the items of a collection stand, by tag and id.
//
// Records are written one after the other, so the ids of a tag mostly rise: then each tag has a
// list that is added to at its end and read on from where it was read last. The first id that
// doesn't rise, and the first tag beyond kMostTags, turn the whole index into a hash table.
class CollectionIndex {
  public:
    struct Key {
        std::uint32_t tag;
        std::int32_t id;

        bool operator==(Key const& other) const = default;
    };

    // Remembers where it was.
    std::optional<std::size_t> Find(Key const& key);
    // Takes the key of the next item: places count up from 0. False for a key that it has already.
    // Throws std::bad_alloc; it is then as it was.
    bool Append(Key const& key);

  private:
    static constexpr std::size_t kMostTags = 64;
    static constexpr std::size_t kTagSlots = 2 * kMostTags;

    struct Place {
        std::int32_t id;
        std::uint32_t item;
    };
    struct TagList {
        std::uint32_t tag;
        std::size_t last;  // that was found
        std::vector<Place> places;

        Place const* Find(std::int32_t id);
    };
    struct Slot {
        Key key;
        std::uint32_t place;  // from 1; 0 for a free slot
    };

    // The slot of the tag, or the free one where it would stand.
    std::uint8_t& TagSlot(std::uint32_t tag);
    bool AppendToList(Key const& key);
    bool AppendHashed(Key const& key);
    void TurnIntoHash();
    static Slot& SlotOf(std::vector<Slot>& slots, Key const& key);
    static std::vector<Slot> SlotsFor(std::size_t count);

    std::size_t mCount = 0;
    std::vector<TagList> mLists;
    std::array<std::uint8_t, kTagSlots> mTagSlots{};  // places in mLists, from 1
    // Where there is a hash table there are no lists. A power of two, at most half of them taken.
    std::vector<Slot> mSlots;
};

}  // namespace platform
