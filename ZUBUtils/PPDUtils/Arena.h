// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

// Memory for many small things that go together. Nothing is given back before the arena goes, which
// runs no destructor of what lies in it. Not for use from two threads at once.
class Arena {
  public:
    Arena() = default;
    Arena(Arena const&) = delete;
    Arena& operator=(Arena const&) = delete;
    ~Arena();

    // At most std::max_align_t's alignment, a power of two. Throws std::bad_alloc.
    void* Allocate(std::size_t size, std::size_t alignment) {
        void* place = mNext;
        if (std::align(alignment, size, place, mRoom) == nullptr) {
            place = StartBlock(size);
        }
        mNext = static_cast<char*>(place) + size;
        mRoom -= size;
        return place;
    }
    template <typename Object>
    void* PlaceFor() {
        return Allocate(sizeof(Object), alignof(Object));
    }
    char* CopyText(std::string_view text);  // with a terminator

  private:
    struct Block;

    void* StartBlock(std::size_t size);

    Block* mBlocks = nullptr;  // owned, newest first
    char* mNext = nullptr;     // in the newest block, with so much room behind it
    std::size_t mRoom = 0;
    std::size_t mBlockSize = 0;
};
