// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/CollectionIndex.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace platform {
namespace {

constexpr std::uint64_t kMixing = 0x9E3779B97F4A7C15U;

// Multiplicative hashing (Knuth, The Art of Computer Programming, volume 3, section 6.4).
std::size_t Mixed(std::uint64_t number) {
    return (number * kMixing) >> 32;
}

}  // namespace

CollectionIndex::Place const* CollectionIndex::TagList::Find(std::int32_t id) {
    if (id > places.back().id) {
        return nullptr;
    }
    // The same once more, or the next one.
    for (std::size_t at = last; at < std::min(last + 2, places.size()); ++at) {
        if (places[at].id == id) {
            last = at;
            return &places[at];
        }
    }
    auto const found = std::ranges::lower_bound(places, id, {}, &Place::id);
    last = static_cast<std::size_t>(found - places.begin());
    return found->id == id ? &*found : nullptr;
}

std::uint8_t& CollectionIndex::TagSlot(std::uint32_t tag) {
    std::size_t slot = Mixed(tag) % kTagSlots;
    while (mTagSlots[slot] != 0 && mLists[mTagSlots[slot] - 1U].tag != tag) {
        slot = (slot + 1) % kTagSlots;
    }
    return mTagSlots[slot];
}

std::optional<std::size_t> CollectionIndex::Find(Key const& key) {
    if (!mSlots.empty()) {
        std::uint32_t const place = SlotOf(mSlots, key).place;
        return place == 0 ? std::nullopt : std::optional<std::size_t>(place - 1);
    }
    std::uint8_t const list = TagSlot(key.tag);
    Place const* const place = list == 0 ? nullptr : mLists[list - 1U].Find(key.id);
    return place == nullptr ? std::nullopt : std::optional<std::size_t>(place->item);
}

bool CollectionIndex::Append(Key const& key) {
    if (mSlots.empty() && AppendToList(key)) {
        ++mCount;
        return true;
    }
    if (mSlots.empty()) {
        if (Find(key)) {
            return false;
        }
        TurnIntoHash();
    }
    if (!AppendHashed(key)) {
        return false;
    }
    ++mCount;
    return true;
}

// False, with nothing changed, for what the lists can't take.
bool CollectionIndex::AppendToList(Key const& key) {
    std::uint8_t& slot = TagSlot(key.tag);
    Place const place = {key.id, static_cast<std::uint32_t>(mCount)};
    if (slot != 0) {
        TagList& list = mLists[slot - 1U];
        if (key.id <= list.places.back().id) {
            return false;
        }
        list.places.push_back(place);
        return true;
    }
    if (mLists.size() == kMostTags) {
        return false;
    }
    mLists.push_back({key.tag, 0, {place}});
    slot = static_cast<std::uint8_t>(mLists.size());
    return true;
}

bool CollectionIndex::AppendHashed(Key const& key) {
    if ((mCount + 1) * 2 > mSlots.size()) {
        std::vector<Slot> more = SlotsFor(mCount + 1);
        for (Slot const& slot : mSlots) {
            if (slot.place != 0) {
                SlotOf(more, slot.key) = slot;
            }
        }
        mSlots.swap(more);
    }
    Slot& slot = SlotOf(mSlots, key);
    if (slot.place != 0) {
        return false;
    }
    slot = {key, static_cast<std::uint32_t>(mCount + 1)};
    return true;
}

void CollectionIndex::TurnIntoHash() {
    std::vector<Slot> slots = SlotsFor(mCount + 1);
    for (TagList const& list : mLists) {
        for (Place const& place : list.places) {
            Key const key = {list.tag, place.id};
            SlotOf(slots, key) = {key, place.item + 1};
        }
    }
    mSlots.swap(slots);
    mLists.clear();
    mTagSlots.fill(0);
}

// Where the key stands, or would.
CollectionIndex::Slot& CollectionIndex::SlotOf(std::vector<Slot>& slots, Key const& key) {
    std::size_t const mask = slots.size() - 1;
    std::uint64_t const number =
        (std::uint64_t{key.tag} << 32 | static_cast<std::uint32_t>(key.id)) ^ key.tag;
    std::size_t slot = Mixed(number) & mask;
    while (slots[slot].place != 0 && slots[slot].key != key) {
        slot = (slot + 1) & mask;
    }
    return slots[slot];
}

std::vector<CollectionIndex::Slot> CollectionIndex::SlotsFor(std::size_t count) {
    return std::vector<Slot>(std::bit_ceil(std::max<std::size_t>(16, count * 2)));
}

}  // namespace platform
