// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// The constant tables of Twofish, from the paper's sections 4.3.2 to 4.3.5.

namespace twofish {

using ByteTable = std::array<std::uint8_t, 256>;
using Nibbles = std::array<std::uint8_t, 16>;

constexpr std::array<Nibbles, 4> kNibblesOfQ0 = {{
    {0x8, 0x1, 0x7, 0xD, 0x6, 0xF, 0x3, 0x2, 0x0, 0xB, 0x5, 0x9, 0xE, 0xC, 0xA, 0x4},
    {0xE, 0xC, 0xB, 0x8, 0x1, 0x2, 0x3, 0x5, 0xF, 0x4, 0xA, 0x6, 0x7, 0x0, 0x9, 0xD},
    {0xB, 0xA, 0x5, 0xE, 0x6, 0xD, 0x9, 0x0, 0xC, 0x8, 0xF, 0x3, 0x2, 0x4, 0x7, 0x1},
    {0xD, 0x7, 0xF, 0x4, 0x1, 0x2, 0x6, 0xE, 0x9, 0xB, 0x3, 0x0, 0x8, 0x5, 0xC, 0xA},
}};
constexpr std::array<Nibbles, 4> kNibblesOfQ1 = {{
    {0x2, 0x8, 0xB, 0xD, 0xF, 0x7, 0x6, 0xE, 0x3, 0x1, 0x9, 0x4, 0x0, 0xA, 0xC, 0x5},
    {0x1, 0xE, 0x2, 0xB, 0x4, 0xC, 0x3, 0x7, 0x6, 0xD, 0xA, 0x5, 0xF, 0x9, 0x0, 0x8},
    {0x4, 0xC, 0x7, 0x5, 0x1, 0x6, 0x9, 0xA, 0x0, 0xE, 0xD, 0x8, 0x2, 0xB, 0x3, 0xF},
    {0xB, 0x9, 0x5, 0x1, 0xC, 0x3, 0xD, 0xE, 0x6, 0x4, 0x7, 0xF, 0x2, 0x0, 0x8, 0xA},
}};

constexpr std::uint32_t RotateNibble(std::uint32_t nibble) {
    return (nibble >> 1U | nibble << 3U) & 0xFU;
}

constexpr ByteTable MakePermutation(std::array<Nibbles, 4> const& nibbles) {
    ByteTable permutation{};
    for (std::uint32_t value = 0; value < permutation.size(); ++value) {
        std::uint32_t a = value >> 4U;
        std::uint32_t b = value & 0xFU;
        for (std::size_t half = 0; half < 4; half += 2) {
            std::uint32_t const sum = a ^ b;
            std::uint32_t const turned = (a ^ RotateNibble(b) ^ (a << 3U)) & 0xFU;
            a = nibbles[half][sum];
            b = nibbles[half + 1][turned];
        }
        permutation[value] = static_cast<std::uint8_t>(b << 4U | a);
    }
    return permutation;
}

constexpr std::array<ByteTable, 2> kPermutations = {MakePermutation(kNibblesOfQ0),
                                                    MakePermutation(kNibblesOfQ1)};

// Which permutation a byte goes through, one column for each byte of a word: a key of the S-boxes
// is added behind each row but the last.
constexpr std::size_t kStages = 5;
constexpr std::array<std::array<std::uint8_t, 4>, kStages> kPermutationOrder = {{
    {1, 0, 0, 1},  // keys of 256 bits begin here
    {1, 1, 0, 0},  // 192
    {0, 1, 0, 1},  // 128
    {0, 0, 1, 1},
    {1, 0, 1, 0},
}};

constexpr std::uint32_t kMDSPolynomial = 0x169;
constexpr std::array<std::array<std::uint8_t, 4>, 4> kMDS = {{
    {0x01, 0xEF, 0x5B, 0x5B},
    {0x5B, 0xEF, 0xEF, 0x01},
    {0xEF, 0x5B, 0x01, 0xEF},
    {0xEF, 0x01, 0xEF, 0x5B},
}};

constexpr std::uint32_t kRSPolynomial = 0x14D;
constexpr std::array<std::array<std::uint8_t, 8>, 4> kRS = {{
    {0x01, 0xA4, 0x55, 0x87, 0x5A, 0x58, 0xDB, 0x9E},
    {0xA4, 0x56, 0x82, 0xF3, 0x1E, 0xC6, 0x68, 0xE5},
    {0x02, 0xA1, 0xFC, 0xC1, 0x47, 0xAE, 0x3D, 0x19},
    {0xA4, 0x55, 0x87, 0x5A, 0x58, 0xDB, 0x9E, 0x03},
}};

// In the field of 256 elements with this polynomial.
constexpr std::uint8_t Multiply(std::uint32_t left, std::uint32_t right, std::uint32_t polynomial) {
    std::uint32_t product = 0;
    for (; right != 0; right >>= 1U) {
        product ^= (right & 1U) != 0 ? left : 0;
        left <<= 1U;
        left ^= left > 0xFF ? polynomial : 0;
    }
    return static_cast<std::uint8_t>(product);
}

// What a byte of a word adds to the product of the word and the MDS matrix.
constexpr std::array<std::array<std::uint32_t, 256>, 4> kMDSProducts = [] {
    std::array<std::array<std::uint32_t, 256>, 4> products{};
    for (std::size_t column = 0; column < 4; ++column) {
        for (std::uint32_t value = 0; value < 256; ++value) {
            for (std::size_t row = 0; row < 4; ++row) {
                products[column][value] |=
                    std::uint32_t{Multiply(value, kMDS[row][column], kMDSPolynomial)} << 8 * row;
            }
        }
    }
    return products;
}();

}  // namespace twofish
