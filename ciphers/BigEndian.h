// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// Numbers of 32 bits in 4 bytes, the high byte first, at any address.

constexpr std::uint32_t LoadBigEndian32(std::uint8_t const* bytes) {
    return std::uint32_t{bytes[0]} << 24U | std::uint32_t{bytes[1]} << 16U |
           std::uint32_t{bytes[2]} << 8U | bytes[3];
}

constexpr void StoreBigEndian32(std::uint32_t number, std::uint8_t* bytes) {
    for (unsigned i = 0; i < 4; ++i) {
        bytes[i] = static_cast<std::uint8_t>(number >> (24 - 8 * i));
    }
}
