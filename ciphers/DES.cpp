// SPDX-License-Identifier: Apache-2.0
#include "ciphers/DES.h"

#include <algorithm>
#include <utility>

#include "platform/Wiping.h"

namespace {

constexpr std::size_t kTurns = 16;
constexpr std::uint32_t kHalfKeyMask = 0x0FFFFFFF;  // 28 bits

// The standard's tables, numbered as there: bit 1 is the first, which here is the highest.
constexpr std::array<std::uint8_t, 64> kInitialPermutation = {
    58, 50, 42, 34, 26, 18, 10, 2,  60, 52, 44, 36, 28, 20, 12, 4,  62, 54, 46, 38, 30, 22,
    14, 6,  64, 56, 48, 40, 32, 24, 16, 8,  57, 49, 41, 33, 25, 17, 9,  1,  59, 51, 43, 35,
    27, 19, 11, 3,  61, 53, 45, 37, 29, 21, 13, 5,  63, 55, 47, 39, 31, 23, 15, 7,
};
constexpr std::array<std::uint8_t, 48> kExpansion = {
    32, 1,  2,  3,  4,  5,  4,  5,  6,  7,  8,  9,  8,  9,  10, 11, 12, 13, 12, 13, 14, 15, 16, 17,
    16, 17, 18, 19, 20, 21, 20, 21, 22, 23, 24, 25, 24, 25, 26, 27, 28, 29, 28, 29, 30, 31, 32, 1,
};
constexpr std::array<std::uint8_t, 32> kPermutation = {
    16, 7, 20, 21, 29, 12, 28, 17, 1,  15, 23, 26, 5,  18, 31, 10,
    2,  8, 24, 14, 32, 27, 3,  9,  19, 13, 30, 6,  22, 11, 4,  25,
};
constexpr std::array<std::uint8_t, 56> kPermutedChoice1 = {
    57, 49, 41, 33, 25, 17, 9,  1,  58, 50, 42, 34, 26, 18, 10, 2,  59, 51, 43,
    35, 27, 19, 11, 3,  60, 52, 44, 36, 63, 55, 47, 39, 31, 23, 15, 7,  62, 54,
    46, 38, 30, 22, 14, 6,  61, 53, 45, 37, 29, 21, 13, 5,  28, 20, 12, 4,
};
constexpr std::array<std::uint8_t, 48> kPermutedChoice2 = {
    14, 17, 11, 24, 1,  5,  3,  28, 15, 6,  21, 10, 23, 19, 12, 4,  26, 8,  16, 7,  27, 20, 13, 2,
    41, 52, 31, 37, 47, 55, 30, 40, 51, 45, 33, 48, 44, 49, 39, 56, 34, 53, 46, 42, 50, 36, 29, 32,
};
constexpr std::array<std::uint8_t, kTurns> kRotations = {1, 1, 2, 2, 2, 2, 2, 2,
                                                         1, 2, 2, 2, 2, 2, 2, 1};
// Four rows of 16 for each of the eight functions.
constexpr std::array<std::array<std::uint8_t, 64>, 8> kSelections = {{
    {14, 4,  13, 1, 2,  15, 11, 8, 3, 10, 6, 12, 5,  9,  0,  7,  0,  15, 7,  4,  14, 2,
     13, 1,  10, 6, 12, 11, 9,  5, 3, 8,  4, 1,  14, 8,  13, 6,  2,  11, 15, 12, 9,  7,
     3,  10, 5,  0, 15, 12, 8,  2, 4, 9,  1, 7,  5,  11, 3,  14, 10, 0,  6,  13},
    {15, 1,  8,  14, 6,  11, 3,  4, 9,  7,  2, 13, 12, 0,  5,  10, 3,  13, 4,  7, 15, 2,
     8,  14, 12, 0,  1,  10, 6,  9, 11, 5,  0, 14, 7,  11, 10, 4,  13, 1,  5,  8, 12, 6,
     9,  3,  2,  15, 13, 8,  10, 1, 3,  15, 4, 2,  11, 6,  7,  12, 0,  5,  14, 9},
    {10, 0,  9,  14, 6, 3,  15, 5,  1,  13, 12, 7, 11, 4,  2,  8,  13, 7, 0,  9, 3, 4,
     6,  10, 2,  8,  5, 14, 12, 11, 15, 1,  13, 6, 4,  9,  8,  15, 3,  0, 11, 1, 2, 12,
     5,  10, 14, 7,  1, 10, 13, 0,  6,  9,  8,  7, 4,  15, 14, 3,  11, 5, 2,  12},
    {7, 13, 14, 3, 0, 6,  9, 10, 1,  2, 8,  5, 11, 12, 4,  15, 13, 8,  11, 5, 6, 15,
     0, 3,  4,  7, 2, 12, 1, 10, 14, 9, 10, 6, 9,  0,  12, 11, 7,  13, 15, 1, 3, 14,
     5, 2,  8,  4, 3, 15, 0, 6,  10, 1, 13, 8, 9,  4,  5,  11, 12, 7,  2,  14},
    {2,  12, 4, 1,  7,  10, 11, 6, 8, 5,  3, 15, 13, 0,  14, 9,  14, 11, 2,  12, 4,  7,
     13, 1,  5, 0,  15, 10, 3,  9, 8, 6,  4, 2,  1,  11, 10, 13, 7,  8,  15, 9,  12, 5,
     6,  3,  0, 14, 11, 8,  12, 7, 1, 14, 2, 13, 6,  15, 0,  9,  10, 4,  5,  3},
    {12, 1,  10, 15, 9,  2,  6, 8,  0, 13, 3,  4,  14, 7,  5, 11, 10, 15, 4, 2, 7, 12,
     9,  5,  6,  1,  13, 14, 0, 11, 3, 8,  9,  14, 15, 5,  2, 8,  12, 3,  7, 0, 4, 10,
     1,  13, 11, 6,  4,  3,  2, 12, 9, 5,  15, 10, 11, 14, 1, 7,  6,  0,  8, 13},
    {4, 11, 2,  14, 15, 0,  8,  13, 3, 12, 9,  7, 5,  10, 6,  1,  13, 0,  11, 7,  4, 9,
     1, 10, 14, 3,  5,  12, 2,  15, 8, 6,  1,  4, 11, 13, 12, 3,  7,  14, 10, 15, 6, 8,
     0, 5,  9,  2,  6,  11, 13, 8,  1, 4,  10, 7, 9,  5,  0,  15, 14, 2,  3,  12},
    {13, 2, 8,  4, 6, 15, 11, 1,  10, 9,  3, 14, 5,  0,  12, 7,  1,  15, 13, 8, 10, 3,
     7,  4, 12, 5, 6, 11, 0,  14, 9,  2,  7, 11, 4,  1,  9,  12, 14, 2,  0,  6, 10, 13,
     15, 3, 5,  8, 2, 1,  14, 7,  4,  10, 8, 13, 15, 12, 9,  0,  3,  5,  6,  11},
}};

std::array<std::uint32_t, kDESScheduleWords> gSchedule{};

// The bits of `value`, which has `width` of them, in the order of the table.
template <std::size_t kCount>
std::uint64_t Pick(std::array<std::uint8_t, kCount> const& table, std::uint64_t value,
                   std::size_t width) {
    std::uint64_t picked = 0;
    for (std::uint8_t const bit : table) {
        picked = picked << 1U | (value >> (width - bit) & 1U);
    }
    return picked;
}

std::uint64_t PlaceBack(std::uint64_t value) {
    std::uint64_t placed = 0;
    for (std::size_t i = 0; i < kInitialPermutation.size(); ++i) {
        placed |= (value >> (63 - i) & 1U) << (64U - kInitialPermutation[i]);
    }
    return placed;
}

std::uint64_t LoadBlock(std::uint8_t const* bytes) {
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < kDESBlockSize; ++i) {
        value = value << 8U | bytes[i];
    }
    return value;
}

void StoreBlock(std::uint64_t value, std::uint8_t* bytes) {
    for (std::size_t i = 0; i < kDESBlockSize; ++i) {
        bytes[i] = static_cast<std::uint8_t>(value >> (56 - 8 * i));
    }
}

std::uint32_t RotateHalfKey(std::uint32_t half, unsigned count) {
    return (half << count | half >> (28U - count)) & kHalfKeyMask;
}

// The standard's function f.
std::uint32_t Substitute(std::uint32_t right, std::uint64_t key) {
    std::uint64_t const sum = Pick(kExpansion, right, 32) ^ key;
    std::uint32_t chosen = 0;
    for (std::size_t i = 0; i < kSelections.size(); ++i) {
        auto const six = static_cast<std::uint32_t>(sum >> (42 - 6 * i)) & 0x3FU;
        // The outer two bits tell the row.
        std::uint32_t const row = (six >> 4U & 2U) | (six & 1U);
        chosen = chosen << 4U | kSelections[i][16 * row + (six >> 1U & 0xFU)];
    }
    return static_cast<std::uint32_t>(Pick(kPermutation, chosen, 32));
}

}  // namespace

void deskey(std::uint8_t const* key, short mode) {
    std::array<std::uint32_t, kDESScheduleWords> schedule{};
    std::uint64_t chosen = Pick(kPermutedChoice1, LoadBlock(key), 64);
    WipeAtEnd const wipeSchedule(schedule);
    WipeAtEnd const wipeChosen(chosen);
    for (std::size_t turn = 0; turn < kTurns; ++turn) {
        auto const left = static_cast<std::uint32_t>(chosen >> 28U);
        auto const right = static_cast<std::uint32_t>(chosen) & kHalfKeyMask;
        chosen = std::uint64_t{RotateHalfKey(left, kRotations[turn])} << 28U |
                 RotateHalfKey(right, kRotations[turn]);
        std::uint64_t const turnKey = Pick(kPermutedChoice2, chosen, 56);
        std::size_t const at = 2 * (mode == DE1 ? kTurns - 1 - turn : turn);
        schedule[at] = static_cast<std::uint32_t>(turnKey >> 24U);
        schedule[at + 1] = static_cast<std::uint32_t>(turnKey & 0xFFFFFFU);
    }
    usekey(schedule.data());
}

void des(std::uint8_t const* in, std::uint8_t* out) {
    std::uint64_t const block = Pick(kInitialPermutation, LoadBlock(in), 64);
    auto left = static_cast<std::uint32_t>(block >> 32U);
    auto right = static_cast<std::uint32_t>(block);
    for (std::size_t turn = 0; turn < kTurns; ++turn) {
        std::uint64_t const key =
            std::uint64_t{gSchedule[2 * turn]} << 24U | gSchedule[2 * turn + 1];
        left ^= Substitute(right, key);
        std::swap(left, right);
    }
    // The last turn doesn't change sides.
    StoreBlock(PlaceBack(std::uint64_t{right} << 32U | left), out);
}

void usekey(std::uint32_t const* from) {
    std::copy_n(from, gSchedule.size(), gSchedule.begin());
}

void cpkey(std::uint32_t* into) {
    std::ranges::copy(gSchedule, into);
}

LoadedDESKey::LoadedDESKey(std::uint8_t const* key, DESMode mode) {
    cpkey(mFormer.data());
    deskey(key, mode);
}

LoadedDESKey::~LoadedDESKey() {
    usekey(mFormer.data());
    Wipe(&mFormer, sizeof mFormer);
}
