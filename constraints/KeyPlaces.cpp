// SPDX-License-Identifier: Apache-2.0
#include "constraints/KeyPlaces.h"

#include <algorithm>
#include <utility>

namespace {

constexpr std::size_t kFewestSlots = 8;

// Keys are ids that were given out one by one: a multiplication spreads them well enough (Knuth,
// The Art of Computer Programming, volume 3, section 6.4: multiplicative hashing).
std::size_t HashOf(long key) {
    constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15;
    std::uint64_t const product = static_cast<std::uint64_t>(key) * kFactor;
    return static_cast<std::size_t>(product >> 32);
}

}  // namespace

KeyPlaces::Place* KeyPlaces::Find(long key) {
    if (mSlots.empty()) {
        return nullptr;
    }
    Place& place = mSlots[SlotOf(key)];
    return place.count > 0 ? &place : nullptr;
}

KeyPlaces::Place& KeyPlaces::Of(long key) {
    if (4 * (mUsed + 1) > 3 * mSlots.size()) {
        Grow();
    }
    Place& place = mSlots[SlotOf(key)];
    if (place.count == kFree) {
        place = {key, 0, 0};
        ++mUsed;
    }
    return place;
}

void KeyPlaces::MoveDown(std::uint32_t positions) {
    for (Place& place : mSlots) {
        place.first -= positions;
    }
}

void KeyPlaces::Clear() {
    mSlots.clear();
    mUsed = 0;
}

std::size_t KeyPlaces::SlotOf(long key) const {
    std::size_t const mask = mSlots.size() - 1;
    std::size_t slot = HashOf(key) & mask;
    while (mSlots[slot].count != kFree && mSlots[slot].key != key) {
        slot = (slot + 1) & mask;
    }
    return slot;
}

// Keys that have no pairs left are dropped here, so they are counted without.
void KeyPlaces::Grow() {
    auto const isLive = [](Place const& place) { return place.count > 0; };
    auto const live = static_cast<std::size_t>(std::ranges::count_if(mSlots, isLive));
    std::size_t size = kFewestSlots;
    while (size < 2 * (live + 1)) {
        size *= 2;
    }
    std::vector<Place> const former =
        std::exchange(mSlots, std::vector<Place>(size, Place{0, 0, kFree}));
    mUsed = live;
    for (Place const& place : former) {
        if (isLive(place)) {
            mSlots[SlotOf(place.key)] = place;
        }
    }
}
