// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <exception>
#include <random>
#include <string_view>

// The hash of every index whose texts come from a file. Its seed is drawn from the system's random
// numbers once a process, so that no file can choose texts that collide: a hash is worth nothing
// outside of the process, and no result may depend on the order of hashes.
class TextHash {
  public:
    using is_transparent = void;

    std::size_t operator()(std::string_view text) const {
        char const* at = text.data();
        std::size_t left = text.size();
        std::uint64_t hash = Seed() ^ left;
        for (; left >= sizeof hash; left -= sizeof hash, at += sizeof hash) {
            hash = Mixed(hash ^ Word(at, sizeof hash));
        }
        return Mixed(hash ^ Word(at, left));
    }

    // Drawn once a process; odd.
    static std::uint64_t Seed() {
        static std::uint64_t const sSeed = DrawnSeed();
        return sSeed;
    }

  private:
    static std::uint64_t DrawnSeed() {
        std::uint64_t seed = 1;
        try {
            std::random_device random;
            seed |= std::uint64_t{random()} << 32 | random();
        } catch (std::exception const&) {
            // Without a source of random numbers, where the stack lies has to do.
            seed |= reinterpret_cast<std::uintptr_t>(&seed);
        }
        return seed;
    }
    static std::uint64_t Word(char const* bytes, std::size_t size) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes, size);
        return word;
    }
    // Both halves of the product count: what differs in any bit of a word reaches all of the hash.
    // The seed as the factor keeps what is multiplied unknown.
    static std::uint64_t Mixed(std::uint64_t value) {
        constexpr std::uint64_t kOdd = 0x9E3779B97F4A7C15;
        __extension__ using Wide = unsigned __int128;
        Wide const product = Wide{value ^ kOdd} * (Seed() ^ (kOdd << 1));
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
    }
};
