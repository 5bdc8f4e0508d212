// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstring>

#include "VelonFeatures/Project/Core/PostScriptInjectionSite.h"

// The entries of one job, each a site and bytes, in the order in which they were added. They lie
// one behind the other in blocks; a block that one job gives up serves the process's next one.
// Belongs to the dialog's thread.
class JobEntries {
  public:
    struct Entry {
        PostScriptInjectionSite site;
        std::size_t length;
        unsigned char const* bytes;  // as long as no entry goes
    };

    JobEntries() = default;
    JobEntries(JobEntries const&) = delete;
    JobEntries& operator=(JobEntries const&) = delete;
    ~JobEntries() { Clear(); }

    void Clear();
    // Where the bytes of the next entry go, at most `length` of them; null without memory.
    unsigned char* Room(std::size_t length) {
        bool const fits = mLast != nullptr && mLast->size - mLast->used >= sizeof(EntryHead) &&
                          mLast->size - mLast->used - sizeof(EntryHead) >= length;
        return fits || StartBlock(length) ? BytesOf(*mLast) + mLast->used + sizeof(EntryHead)
                                          : nullptr;
    }
    // Makes the first `length` bytes of the room that was given last an entry.
    void Add(PostScriptInjectionSite site, std::size_t length) {
        EntryHead const head = {length, site};
        std::memcpy(BytesOf(*mLast) + mLast->used, &head, sizeof head);
        mLast->used += sizeof head + length;
    }

    // Calls `visit` with each entry until it says false; whether it never did.
    template <typename Visit>
    bool ForEach(Visit visit) const {
        for (Block const* block = mFirst; block != nullptr; block = block->next) {
            for (std::size_t at = 0; at < block->used;) {
                if (!visit(EntryAt(*block, at))) {
                    return false;
                }
            }
        }
        return true;
    }

  private:
    // Followed by its bytes.
    struct Block {
        Block* next;
        std::size_t size;
        std::size_t used;
    };
    // Stands in front of an entry's bytes, at any address.
    struct EntryHead {
        std::size_t length;
        PostScriptInjectionSite site;
    };
    class SpareBlocks;

    static SpareBlocks& Spare();
    static unsigned char* BytesOf(Block const& block) {
        return reinterpret_cast<unsigned char*>(const_cast<Block*>(&block + 1));
    }
    bool StartBlock(std::size_t length);  // with room for an entry; false without memory
    // Moves `at` behind the entry.
    static Entry EntryAt(Block const& block, std::size_t& at);

    Block* mFirst = nullptr;  // owned, as all behind it
    Block* mLast = nullptr;
};
