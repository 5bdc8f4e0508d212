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
        std::uint64_t const seed = Seed();
        std::uint64_t hash = seed ^ text.size();
        char const* at = text.data();
        std::size_t left = text.size();
        for (; left > kStep; left -= kStep, at += kStep) {
            hash = Mixed(hash ^ Load<std::uint64_t>(at), seed);
        }
        // The last step may take bytes again: reading up to the very end is dearer.
        return Mixed(
            hash ^ (text.size() < kStep ? Short(at, left) : Load<std::uint64_t>(at + left - kStep)),
            seed);
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
    template <typename Word>
    static std::uint64_t Load(char const* bytes) {
        Word word;
        std::memcpy(&word, bytes, sizeof word);
        return word;
    }
    // All bytes of a text of less than a step.
    static std::uint64_t Short(char const* text, std::size_t size) {
        if (size >= sizeof(std::uint32_t)) {
            return Load<std::uint32_t>(text) << 32 |
                   Load<std::uint32_t>(text + size - sizeof(std::uint32_t));
        }
        return size == 0 ? 0
                         : Load<std::uint8_t>(text) | Load<std::uint8_t>(text + size / 2) << 8 |
                               Load<std::uint8_t>(text + size - 1) << 16;
    }
    // Both halves of the product count, so a bit that differs reaches all of the hash. The seed is
    // in both factors: whoever chooses the texts doesn't know what is multiplied.
    static std::uint64_t Mixed(std::uint64_t value, std::uint64_t seed) {
        __extension__ using Wide = unsigned __int128;
        Wide const product = Wide{value ^ kFirstFactor} * (seed ^ kSecondFactor);
        return static_cast<std::uint64_t>(product) ^ static_cast<std::uint64_t>(product >> 64);
    }

    static constexpr std::size_t kStep = sizeof(std::uint64_t);
    static constexpr std::uint64_t kFirstFactor = 0x9E3779B97F4A7C15;
    static constexpr std::uint64_t kSecondFactor =
        0xD1B54A32D192ED02;  // even: the factor stays odd
};
