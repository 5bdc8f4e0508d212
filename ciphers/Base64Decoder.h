// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

// Base64 (RFC 4648), read piece by piece. Characters outside of the alphabet are passed over; "="
// ends the text. One object for each text.
class Base64Decoder {
  public:
    // The bytes that `length` characters can make at most.
    static constexpr std::size_t MaximumLength(std::size_t length) { return (length + 3) / 4 * 3; }

    // Writes the bytes and returns their number. Characters that don't fill a group of four wait
    // for the next piece, or for "=", at which the whole bytes among them are written. Behind "="
    // every call returns 0. `out` has room for MaximumLength(length). Null writes nothing.
    std::size_t Decode(char const* in, std::size_t length, std::uint8_t* out);

  private:
    std::uint32_t mBits = 0;
    std::uint32_t mCount = 0;  // characters of the present group
    bool mEnded = false;
};
