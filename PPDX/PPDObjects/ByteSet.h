// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>

// A set of byte values.
class ByteSet {
  public:
    // Every byte of the text, which may be null.
    constexpr explicit ByteSet(char const* bytes) {
        for (; bytes != nullptr && *bytes != '\0'; ++bytes) {
            auto const byte = static_cast<unsigned char>(*bytes);
            mBits[byte / kWordBits] |= std::uint64_t{1} << byte % kWordBits;
        }
    }

    constexpr bool Has(char value) const {
        auto const byte = static_cast<unsigned char>(value);
        return (mBits[byte / kWordBits] >> byte % kWordBits & 1) != 0;
    }
    // Both sets together.
    constexpr ByteSet operator|(ByteSet const& other) const {
        ByteSet both = *this;
        for (std::size_t word = 0; word < mBits.size(); ++word) {
            both.mBits[word] |= other.mBits[word];
        }
        return both;
    }

  private:
    static constexpr unsigned kWordBits = 64;

    std::array<std::uint64_t, 256 / kWordBits> mBits = {};
};
