// SPDX-License-Identifier: Apache-2.0
#include "ciphers/Base64Decoder.h"

#include <array>

#include "ciphers/Base64Alphabet.h"

namespace {

constexpr std::uint8_t kForeign = 0xFF;

constexpr std::array<std::uint8_t, 256> kValues = [] {
    std::array<std::uint8_t, 256> values{};
    values.fill(kForeign);
    for (std::size_t value = 0; value < kBase64Alphabet.size(); ++value) {
        values[static_cast<unsigned char>(kBase64Alphabet[value])] =
            static_cast<std::uint8_t>(value);
    }
    return values;
}();

}  // namespace

std::size_t Base64Decoder::Decode(char const* in, std::size_t length, std::uint8_t* out) {
    if (in == nullptr || out == nullptr) {
        return 0;
    }
    std::uint8_t* end = out;
    for (std::size_t i = 0; i < length && !mEnded; ++i) {
        mEnded = in[i] == '=';
        std::uint8_t const value = kValues[static_cast<unsigned char>(in[i])];
        if (value != kForeign) {
            mBits = mBits << 6U | value;
            ++mCount;
        }
        if (mCount < 4 && !mEnded) {
            continue;
        }
        // Two characters hold one whole byte, three hold two, four three.
        for (std::uint32_t byte = 1; byte < mCount; ++byte) {
            *end++ = static_cast<std::uint8_t>(mBits >> (6 * mCount - 8 * byte));
        }
        mBits = 0;
        mCount = 0;
    }
    return static_cast<std::size_t>(end - out);
}
