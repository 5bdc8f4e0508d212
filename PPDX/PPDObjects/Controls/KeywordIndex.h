// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"

// Controls by keyword, so that a lookup doesn't walk the whole PPD. The controls aren't owned and
// must live whenever the index is used, but may go before it does.
class KeywordIndex {
  public:
    // One without a keyword is left out. Throws std::bad_alloc, with nothing added.
    void Add(PPDXControl* control);
    // The first control, in the order of Add, of exactly this keyword for which `accepts` holds;
    // null for none.
    template <typename Accepts>
    PPDXControl* First(std::string_view keyword, Accepts accepts) const {
        for (std::int32_t at = FirstOf(keyword); at != kNone; at = EntryAt(at).next) {
            if (accepts(EntryAt(at).control)) {
                return EntryAt(at).control;
            }
        }
        return nullptr;
    }

  private:
    static constexpr std::int32_t kNone = -1;

    struct Entry {
        PPDXControl* control;
        std::uint32_t hash;
        std::int32_t next;  // of the same keyword
    };
    // The entries of one keyword.
    struct Slot {
        std::int32_t first = kNone;
        std::int32_t last = kNone;
    };

    Entry const& EntryAt(std::int32_t index) const {
        return mEntries[static_cast<std::size_t>(index)];
    }
    std::int32_t FirstOf(std::string_view keyword) const;
    std::size_t SlotOf(std::string_view keyword, std::uint32_t hash) const;
    void Grow();

    std::vector<Entry> mEntries;  // in the order of Add
    std::vector<Slot> mSlots;     // open addressing; a power of two, at most half in use
};
