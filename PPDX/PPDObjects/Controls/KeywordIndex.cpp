// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/KeywordIndex.h"

#include <algorithm>

#include "ZUBUtils/PPDUtils/TextHash.h"

namespace {

constexpr std::size_t kFewestSlots = 16;

std::uint32_t HashOf(std::string_view keyword) {
    return static_cast<std::uint32_t>(TextHash()(keyword));
}

}  // namespace

void KeywordIndex::Add(PPDXControl* control) {
    if (control->Keyword() == nullptr) {
        return;
    }
    if (2 * (mEntries.size() + 1) > mSlots.size()) {
        Grow();
    }
    std::uint32_t const hash = HashOf(control->KeywordText());
    mEntries.push_back({control, hash, kNone});
    auto const added = static_cast<std::int32_t>(mEntries.size() - 1);
    Slot& slot = mSlots[SlotOf(control->KeywordText(), hash)];
    if (slot.first == kNone) {
        slot.first = added;
    } else {
        mEntries[static_cast<std::size_t>(slot.last)].next = added;
    }
    slot.last = added;
}

std::int32_t KeywordIndex::FirstOf(std::string_view keyword) const {
    return mSlots.empty() ? kNone : mSlots[SlotOf(keyword, HashOf(keyword))].first;
}

// Where the keyword is, or would be.
std::size_t KeywordIndex::SlotOf(std::string_view keyword, std::uint32_t hash) const {
    std::size_t const mask = mSlots.size() - 1;
    std::size_t place = hash & mask;
    for (; mSlots[place].first != kNone; place = (place + 1) & mask) {
        Entry const& entry = EntryAt(mSlots[place].first);
        if (entry.hash == hash && entry.control->KeywordText() == keyword) {
            break;
        }
    }
    return place;
}

void KeywordIndex::Grow() {
    std::vector<Slot> slots(std::max(2 * mSlots.size(), kFewestSlots));
    std::size_t const mask = slots.size() - 1;
    for (Slot const& slot : mSlots) {
        if (slot.first != kNone) {
            std::size_t place = EntryAt(slot.first).hash & mask;
            while (slots[place].first != kNone) {
                place = (place + 1) & mask;
            }
            slots[place] = slot;
        }
    }
    mSlots = std::move(slots);
}
