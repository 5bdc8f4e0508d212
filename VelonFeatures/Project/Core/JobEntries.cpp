// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/JobEntries.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

#include "platform/Wiping.h"

namespace {

// Below what the C library takes from the system for each block anew.
constexpr std::size_t kBlockSize = 64 * std::size_t{1024};
// What is kept for the next job: more than the largest PPDs need.
constexpr std::size_t kSpareBlocks = 32;

}  // namespace

// Blocks of the usual size that no job uses.
class JobEntries::SpareBlocks {
  public:
    SpareBlocks() = default;
    SpareBlocks(SpareBlocks const&) = delete;
    SpareBlocks& operator=(SpareBlocks const&) = delete;
    ~SpareBlocks() {
        while (mFirst != nullptr) {
            delete[] reinterpret_cast<unsigned char*>(Take());
        }
    }

    Block* Take() {
        Block* const block = mFirst;
        if (block != nullptr) {
            mFirst = block->next;
            --mCount;
        }
        return block;
    }
    void Keep(Block* block) {
        if (block->size != kBlockSize || mCount == kSpareBlocks) {
            delete[] reinterpret_cast<unsigned char*>(block);
            return;
        }
        block->next = std::exchange(mFirst, block);
        ++mCount;
    }

  private:
    Block* mFirst = nullptr;  // owned, as all behind it
    std::size_t mCount = 0;
};

JobEntries::SpareBlocks& JobEntries::Spare() {
    static SpareBlocks blocks;
    return blocks;
}

// A job may hold secrets.
void JobEntries::Clear() {
    while (mFirst != nullptr) {
        Wipe(BytesOf(*mFirst), mFirst->used);
        Spare().Keep(std::exchange(mFirst, mFirst->next));
    }
    mLast = nullptr;
}

bool JobEntries::StartBlock(std::size_t length) {
    if (length > PTRDIFF_MAX - sizeof(Block) - sizeof(EntryHead)) {
        return false;
    }
    std::size_t const size = std::max(sizeof(EntryHead) + length, kBlockSize);
    Block* block = size == kBlockSize ? Spare().Take() : nullptr;
    if (block == nullptr) {
        block = reinterpret_cast<Block*>(new (std::nothrow) unsigned char[sizeof(Block) + size]);
    }
    if (block == nullptr) {
        return false;
    }
    *block = {nullptr, size, 0};
    (mLast == nullptr ? mFirst : mLast->next) = block;
    mLast = block;
    return true;
}

JobEntries::Entry JobEntries::EntryAt(Block const& block, std::size_t& at) {
    EntryHead head;
    std::memcpy(&head, BytesOf(block) + at, sizeof head);
    unsigned char const* const bytes = BytesOf(block) + at + sizeof head;
    at += sizeof head + head.length;
    return {head.site, head.length, bytes};
}
