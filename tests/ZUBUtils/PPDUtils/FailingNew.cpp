// SPDX-License-Identifier: Apache-2.0
#include "tests/ZUBUtils/PPDUtils/FailingNew.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

long gCountdown = -1;
long gAnyCountdown = -1;

bool IsDue(long& countdown) {
    return countdown >= 0 && countdown-- == 0;
}

void* Allocate(std::size_t size) {
    return IsDue(gAnyCountdown) ? nullptr : std::malloc(size);
}

void* AllocateOrThrow(std::size_t size) {
    if (void* const block = Allocate(size)) {
        return block;
    }
    throw std::bad_alloc();
}

}  // namespace

void FailNewAfter(long count) {
    gCountdown = count;
}

void FailAnyNewAfter(long count) {
    gAnyCountdown = count;
}

bool HasAnyNewFailed() {
    return gAnyCountdown < 0;
}

// All forms, so that every block that one of them made is one that another can free.
void* operator new(std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new[](std::size_t size) {
    return AllocateOrThrow(size);
}
void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
    return Allocate(size);
}
void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
    return IsDue(gCountdown) ? nullptr : Allocate(size);
}

void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, std::size_t) noexcept {
    std::free(block);
}
void operator delete(void* block, std::nothrow_t const&) noexcept {
    std::free(block);
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
