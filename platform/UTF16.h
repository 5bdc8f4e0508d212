// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

// UTF-16, as in RFC 2781: a character from U+10000 on is a pair of surrogates, a high and a low
// one.

constexpr char32_t kFirstHighSurrogate = 0xD800;
constexpr char32_t kFirstLowSurrogate = 0xDC00;
constexpr char32_t kLastSurrogate = 0xDFFF;
constexpr char32_t kFirstSupplementary = 0x10000;
constexpr char32_t kLastCharacter = 0x10FFFF;
constexpr unsigned kSurrogateBits = 10;  // of the character in each of a pair

constexpr bool IsHighSurrogate(char32_t unit) {
    return unit >= kFirstHighSurrogate && unit < kFirstLowSurrogate;
}
constexpr bool IsLowSurrogate(char32_t unit) {
    return unit >= kFirstLowSurrogate && unit <= kLastSurrogate;
}
constexpr bool IsSurrogate(char32_t unit) {
    return unit >= kFirstHighSurrogate && unit <= kLastSurrogate;
}

// The character at `position`, which is within the text and moves behind it. A lone surrogate comes
// as itself.
constexpr char32_t TakeCharacter(std::u16string_view text, std::size_t& position) {
    char32_t const unit = text[position++];
    if (!IsHighSurrogate(unit) || position == text.size() || !IsLowSurrogate(text[position])) {
        return unit;
    }
    char32_t const low = text[position++];
    return kFirstSupplementary + ((unit - kFirstHighSurrogate) << kSurrogateBits) +
           (low - kFirstLowSurrogate);
}

// One or two units for a character up to kLastCharacter; returns how many.
constexpr std::size_t PutCharacter(char32_t character, char16_t* units) {
    if (character < kFirstSupplementary) {
        units[0] = static_cast<char16_t>(character);
        return 1;
    }
    character -= kFirstSupplementary;
    units[0] = static_cast<char16_t>(kFirstHighSurrogate + (character >> kSurrogateBits));
    units[1] =
        static_cast<char16_t>(kFirstLowSurrogate + (character & ((1U << kSurrogateBits) - 1)));
    return 2;
}
