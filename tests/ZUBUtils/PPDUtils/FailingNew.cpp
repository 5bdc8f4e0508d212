// SPDX-License-Identifier: Apache-2.0
#include "tests/ZUBUtils/PPDUtils/FailingNew.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

long gCountdown = -1;

}  // namespace

void FailNewAfter(long count) {
    gCountdown = count;
}

// All forms of one pair, so that every block that one of them made is one that another can free.
void* operator new[](std::size_t size) {
    if (void* const block = std::malloc(size)) {
        return block;
    }
    throw std::bad_alloc();
}

void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    if (gCountdown >= 0 && gCountdown-- == 0) {
        return nullptr;
    }
    return std::malloc(size);
}

void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete[](void* block, std::nothrow_t const&) noexcept {
    std::free(block);
}
