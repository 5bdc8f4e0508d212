// SPDX-License-Identifier: Apache-2.0
#include "constraints/CStringSoup.h"

#include <algorithm>
#include <cstring>

#include "ZUBUtils/PPDUtils/TextHash.h"

namespace {

constexpr std::size_t kInitialCapacity = 512;
constexpr std::size_t kSlabSize = 16 * 1024;  // a longer text gets a slab of its own size

// Without a walk for the length of the terminated one.
bool IsText(char const* terminated, std::string_view text) {
    return std::strncmp(terminated, text.data(), text.size()) == 0 &&
           terminated[text.size()] == '\0';
}

}  // namespace

CStringSoup::CStringSoup() {
    mTexts.reserve(kInitialCapacity);
}

CStringSoup::~CStringSoup() = default;

long CStringSoup::Insert(char const* text) {
    return Insert(std::string_view(text));
}

long CStringSoup::Insert(std::string_view wanted) {
    if (2 * (mTexts.size() + 1) > mIndex.size()) {
        GrowIndex();
    }
    std::uint32_t const hash = HashOf(wanted);
    Slot& slot = mIndex[SlotOf(wanted, hash)];
    if (slot.id < 0) {
        mTexts.push_back(NewCopy(wanted));
        slot = {hash, static_cast<std::int32_t>(mTexts.size() - 1)};
    }
    return slot.id;
}

char const* CStringSoup::Find(long id) const {
    return mTexts[static_cast<std::size_t>(id)];
}

long CStringSoup::Find(char const* text) const {
    if (mIndex.empty()) {
        return -1;
    }
    std::string_view const wanted(text);
    return mIndex[SlotOf(wanted, HashOf(wanted))].id;
}

void CStringSoup::Clear() {
    mIndex.clear();
    mTexts.clear();
    mSlabs.clear();
    mSlabUsed = 0;
}

long CStringSoup::size() const {
    return static_cast<long>(mTexts.size());
}

std::uint32_t CStringSoup::HashOf(std::string_view text) {
    return static_cast<std::uint32_t>(TextHash()(text));
}

std::size_t CStringSoup::SlotOf(std::string_view text, std::uint32_t hash) const {
    std::size_t const mask = mIndex.size() - 1;
    std::size_t place = hash & mask;
    for (; mIndex[place].id >= 0; place = (place + 1) & mask) {
        if (mIndex[place].hash == hash &&
            IsText(mTexts[static_cast<std::size_t>(mIndex[place].id)], text)) {
            break;
        }
    }
    return place;
}

void CStringSoup::GrowIndex() {
    std::vector<Slot> const former = std::move(mIndex);
    mIndex.assign(std::max(2 * former.size(), 2 * kInitialCapacity), Slot{0, -1});
    std::size_t const mask = mIndex.size() - 1;
    for (Slot const& slot : former) {
        if (slot.id >= 0) {
            std::size_t place = slot.hash & mask;
            while (mIndex[place].id >= 0) {
                place = (place + 1) & mask;
            }
            mIndex[place] = slot;
        }
    }
}

char* CStringSoup::NewCopy(std::string_view text) {
    std::size_t const size = text.size() + 1;
    if (mSlabs.empty() || mSlabUsed + size > kSlabSize) {
        mSlabs.push_back(std::make_unique_for_overwrite<char[]>(std::max(size, kSlabSize)));
        mSlabUsed = 0;
    }
    char* const copy = mSlabs.back().get() + mSlabUsed;
    mSlabUsed += size;
    std::ranges::copy(text, copy);
    copy[text.size()] = '\0';
    return copy;
}
