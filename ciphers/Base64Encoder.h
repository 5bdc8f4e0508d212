// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

// Base64 (RFC 4648), "=" as padding.
class Base64Encoder {
  public:
    // The characters of `length` bytes without line breaks.
    static constexpr std::size_t EncodedLength(std::size_t length) { return (length + 2) / 3 * 4; }

    // Writes the text without a terminator and returns its length. With `lineBreaks` a line feed
    // stands behind every 64 characters, which isn't counted among them. `out` has room for
    // EncodedLength(length), with line breaks for a 64th more. Null writes nothing.
    static std::size_t Encode(std::uint8_t const* in, std::size_t length, char* out,
                              bool lineBreaks);
};
