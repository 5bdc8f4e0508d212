// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// DES (FIPS 46), one block at a time. There is one key schedule in the process, which `deskey` and
// `usekey` load and `des` uses: not for two threads at once. LoadedDESKey keeps it to a block.

constexpr std::size_t kDESBlockSize = 8;
constexpr std::size_t kDESScheduleWords = 32;

enum DESMode : short { EN0 = 0, DE1 = 1 };  // for enciphering, for deciphering

// Makes the schedule of the 8 bytes at `key`, of which the lowest bits (parity) don't count, and
// loads it.
void deskey(std::uint8_t const* key, short mode);
// One block of 8 bytes; `in` and `out` may be the same.
void des(std::uint8_t const* in, std::uint8_t* out);
// 32 words: for each of the 16 turns two of the standard's key halves of 24 bits.
void usekey(std::uint32_t const* from);
void cpkey(std::uint32_t* into);

// Loads a key for the length of a block. At its end what was loaded before is there again, which
// is nothing but zeros unless somebody else is at work, and no trace of the key is left.
class LoadedDESKey {
  public:
    LoadedDESKey(std::uint8_t const* key, DESMode mode);
    LoadedDESKey(LoadedDESKey const&) = delete;
    LoadedDESKey& operator=(LoadedDESKey const&) = delete;
    ~LoadedDESKey();

  private:
    std::array<std::uint32_t, kDESScheduleWords> mFormer{};
};
