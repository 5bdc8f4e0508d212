// SPDX-License-Identifier: Apache-2.0
#include "ciphers/Base64Encoder.h"

#include <algorithm>

#include "ciphers/Base64Alphabet.h"

namespace {

constexpr char kPadding = '=';
constexpr std::size_t kLineLength = 64;

}  // namespace

std::size_t Base64Encoder::Encode(std::uint8_t const* in, std::size_t length, char* out,
                                  bool lineBreaks) {
    if (in == nullptr || out == nullptr) {
        return 0;
    }
    char* end = out;
    std::size_t characters = 0;
    for (std::size_t at = 0; at < length; at += 3) {
        std::size_t const count = std::min<std::size_t>(3, length - at);
        std::uint32_t group = 0;
        for (std::size_t i = 0; i < 3; ++i) {
            group = group << 8U | (i < count ? in[at + i] : 0U);
        }
        for (std::size_t i = 0; i < 4; ++i) {
            *end++ = i <= count ? kBase64Alphabet[group >> (18 - 6 * i) & 0x3FU] : kPadding;
        }
        characters += 4;
        if (lineBreaks && characters % kLineLength == 0) {
            *end++ = '\n';
        }
    }
    return static_cast<std::size_t>(end - out);
}
