// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/Collection.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

#include "platform/Wiping.h"
#include "platform/internal/CFRuntime.h"

namespace {

// Small collections shall not pay for large ones, nor large ones for many blocks. Blocks stay below
// what the C library takes from the system anew each time.
constexpr std::size_t kFirstBlock = 1024;
constexpr std::size_t kLargestBlock = 65536;

enum Field : std::size_t { kTag, kId, kAttributes, kSize };

char* PlaceOf(Field field, char* flat) {
    return flat + field * OpaqueCollection::kNumberSize;
}

// A collection that goes after its thread's spare blocks did can't leave any there.
thread_local bool sSpareBlocksAreGone = false;

// Blocks of the largest usual size that no collection of the thread uses.
class SpareBlocks {
  public:
    SpareBlocks() = default;
    SpareBlocks(SpareBlocks const&) = delete;
    SpareBlocks& operator=(SpareBlocks const&) = delete;
    ~SpareBlocks() {
        while (char* const block = Take()) {
            delete[] block;
        }
        sSpareBlocksAreGone = true;
    }

    char* Take() {
        if (mFirst == nullptr) {
            return nullptr;
        }
        --mCount;
        char* const next = Next(mFirst);
        return std::exchange(mFirst, next);
    }
    void Keep(char* block) {
        if (mCount == kMostBlocks) {
            delete[] block;
            return;
        }
        std::memcpy(block, &mFirst, sizeof mFirst);
        mFirst = block;
        ++mCount;
    }

  private:
    static constexpr std::size_t kMostBlocks = 256;

    static char* Next(char const* block) {
        char* next = nullptr;
        std::memcpy(&next, block, sizeof next);
        return next;
    }

    char* mFirst = nullptr;  // owned; in each lies the address of the next
    std::size_t mCount = 0;
};
thread_local SpareBlocks sSpareBlocks;

char* NewBlock(std::size_t size) {
    bool const mayBeSpare = size == kLargestBlock && !sSpareBlocksAreGone;
    char* const spare = mayBeSpare ? sSpareBlocks.Take() : nullptr;
    return spare != nullptr ? spare : new char[size];
}

}  // namespace

void OpaqueCollection::PutNumber(char* place, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        *place++ = static_cast<char>(number >> shift);
    }
}

std::uint32_t OpaqueCollection::NumberAt(char const* place) {
    std::uint32_t number = 0;
    for (std::size_t at = 0; at < kNumberSize; ++at) {
        number = (number << 8) | static_cast<unsigned char>(place[at]);
    }
    return number;
}

// What was archived may hold secrets.
void OpaqueCollection::GiveBack::operator()(char* bytes) const {
    Wipe(bytes, size);
    if (size == kLargestBlock && !sSpareBlocksAreGone) {
        sSpareBlocks.Keep(bytes);
    } else {
        delete[] bytes;
    }
}

platform::CollectionIndex::Key OpaqueCollection::Item::Key() const {
    return {NumberAt(PlaceOf(kTag, mFlat)),
            static_cast<std::int32_t>(NumberAt(PlaceOf(kId, mFlat)))};
}
std::uint32_t OpaqueCollection::Item::Attributes() const {
    return NumberAt(PlaceOf(kAttributes, mFlat));
}
std::uint32_t OpaqueCollection::Item::Size() const {
    return NumberAt(PlaceOf(kSize, mFlat));
}
void OpaqueCollection::Item::SetAttributes(std::uint32_t attributes) const {
    PutNumber(PlaceOf(kAttributes, mFlat), attributes);
}

OpaqueCollection::OpaqueCollection(OpaqueCollection const& other) {
    mItems.reserve(other.mItems.size());
    for (Item const& item : other.mItems) {
        Append(item.Key(), item.View());
        mItems.back().SetAttributes(item.Attributes());
    }
}

OpaqueCollection::Item* OpaqueCollection::Find(platform::CollectionIndex::Key const& key) {
    auto const place = mIndex.Find(key);
    return place ? &mItems[*place] : nullptr;
}

OpaqueCollection::Item* OpaqueCollection::AtIndex(long index) {
    return index < 1 || static_cast<std::size_t>(index) > mItems.size()
               ? nullptr
               : &mItems[static_cast<std::size_t>(index) - 1];
}

void OpaqueCollection::Append(platform::CollectionIndex::Key const& key, std::string_view value) {
    platform::ReserveOneMore(mItems);
    Room(kItemHeadSize + value.size());
    if (mIndex.Append(key)) {
        mItems.push_back(Write(key, 0, value));
    }
}

void OpaqueCollection::SetValue(Item& item, std::string_view value) {
    std::size_t const formerSize = item.Size();
    if (value.size() == formerSize) {
        std::memmove(item.Value(), value.data(), value.size());
        return;
    }
    item = Write(item.Key(), item.Attributes(), value);
    mUnused += kItemHeadSize + formerSize;
    constexpr std::size_t kFewBytes = 4096;
    if (mUnused > mUsed / 2 + kFewBytes) {
        try {
            Tidy();
        } catch (std::bad_alloc const&) {
            // It would only have saved room.
        }
    }
}

void OpaqueCollection::Remove(Item const& item) {
    platform::CollectionIndex index;
    for (Item const& other : mItems) {
        if (&other != &item) {
            index.Append(other.Key());
        }
    }
    mIndex = std::move(index);
    mUnused += kItemHeadSize + item.Size();
    mItems.erase(mItems.begin() + (&item - mItems.data()));
}

char* OpaqueCollection::Room(std::size_t size) {
    if (mBlocks.empty() || mBlocks.back().size - mBlocks.back().used < size) {
        std::size_t const former = mBlocks.empty() ? 0 : mBlocks.back().size;
        AddBlock(std::max(size, std::clamp(2 * former, kFirstBlock, kLargestBlock)));
    }
    return mBlocks.back().bytes.get() + mBlocks.back().used;
}

char* OpaqueCollection::AddBlock(std::size_t size) {
    platform::ReserveOneMore(mBlocks);
    mBlocks.push_back({{NewBlock(size), GiveBack{size}}, 0, size});
    return mBlocks.back().bytes.get();
}

OpaqueCollection::Item OpaqueCollection::Write(platform::CollectionIndex::Key const& key,
                                               std::uint32_t attributes, std::string_view value) {
    char* const place = Room(kItemHeadSize + value.size());
    PutNumber(PlaceOf(kTag, place), key.tag);
    PutNumber(PlaceOf(kId, place), static_cast<std::uint32_t>(key.id));
    PutNumber(PlaceOf(kAttributes, place), attributes);
    PutNumber(PlaceOf(kSize, place), static_cast<std::uint32_t>(value.size()));
    std::memcpy(place + kItemHeadSize, value.data(), value.size());
    mBlocks.back().used += kItemHeadSize + value.size();
    mUsed += kItemHeadSize + value.size();
    return Item(place);
}

// The count says what it likes, but each item takes room.
void OpaqueCollection::ReserveItems(std::uint32_t count, std::size_t size) {
    mItems.reserve(std::min<std::size_t>(count, size / kItemHeadSize));
}

std::size_t OpaqueCollection::RoomFor(std::string_view begun, std::size_t size) {
    std::size_t const all = begun.size() + size;
    std::size_t needed = kItemHeadSize;
    if (begun.size() >= kItemHeadSize) {
        needed += NumberAt(begun.data() + kSize * kNumberSize);
    }
    return needed > all ? 0 : std::max(needed, std::min(all, kLargestBlock));
}

bool OpaqueCollection::TakeItems(std::string_view bytes, std::string_view& begun) {
    char* const block = mBlocks.back().bytes.get();
    std::size_t at = 0;
    while (bytes.size() - at >= kItemHeadSize) {
        Item const item(block + at);
        if (item.Size() > bytes.size() - at - kItemHeadSize) {
            break;
        }
        if (!mIndex.Append(item.Key())) {
            return false;
        }
        mItems.push_back(item);
        at += kItemHeadSize + item.Size();
    }
    mBlocks.back().used = at;
    mUsed += at;
    begun = bytes.substr(at);
    return true;
}

void OpaqueCollection::Tidy() {
    if (mUnused != 0) {
        *this = OpaqueCollection(*this);
    }
}
