// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>

// A set of byte values, one place each, so that a test is a single load.
class ByteSet {
  public:
    // Every byte of the text, which may be null.
    constexpr explicit ByteSet(char const* bytes) {
        for (; bytes != nullptr && *bytes != '\0'; ++bytes) {
            mHas[static_cast<unsigned char>(*bytes)] = true;
        }
    }

    constexpr bool Has(char byte) const { return mHas[static_cast<unsigned char>(byte)]; }
    // Both sets together.
    constexpr ByteSet operator|(ByteSet const& other) const {
        ByteSet both = *this;
        for (std::size_t byte = 0; byte < mHas.size(); ++byte) {
            both.mHas[byte] |= other.mHas[byte];
        }
        return both;
    }

  private:
    std::array<bool, 256> mHas = {};
};
