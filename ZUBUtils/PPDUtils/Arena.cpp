// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/Arena.h"

#include <algorithm>
#include <new>
#include <utility>

struct alignas(std::max_align_t) Arena::Block {
    Block* older;
};

namespace {

// Small files shall not pay for large ones, nor large ones for many blocks.
constexpr std::size_t kFirstBlock = 1024;
constexpr std::size_t kLargestBlock = 65536;

}  // namespace

Arena::~Arena() {
    while (mBlocks != nullptr) {
        ::operator delete(std::exchange(mBlocks, mBlocks->older));
    }
}

void* Arena::StartBlock(std::size_t size) {
    std::size_t const blockSize = std::clamp(2 * mBlockSize, kFirstBlock, kLargestBlock);
    std::size_t const room = std::max(size, blockSize - sizeof(Block));
    auto* const block = static_cast<Block*>(::operator new(sizeof(Block) + room));
    block->older = mBlocks;
    mBlocks = block;
    mBlockSize = blockSize;
    mRoom = room;
    return block + 1;
}

char* Arena::CopyText(std::string_view text) {
    auto* const copy = static_cast<char*>(Allocate(text.size() + 1, 1));
    copy[text.copy(copy, text.size())] = '\0';
    return copy;
}
