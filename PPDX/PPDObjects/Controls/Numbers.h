// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string>

// The nearest finite float; 0 for what is no number.
inline float NarrowToFloat(double number) {
    constexpr double kGreatest = std::numeric_limits<float>::max();
    return std::isnan(number) ? 0 : static_cast<float>(std::clamp(number, -kGreatest, kGreatest));
}

// The number with so many decimals (up to 6) and a point, whatever the locale; blanks before it
// make up the width.
inline std::string FixedText(float number, int decimals, std::size_t width = 0) {
    char text[64];
    auto const end = std::to_chars(text, text + sizeof text, static_cast<double>(number),
                                   std::chars_format::fixed, decimals);
    auto const length = static_cast<std::size_t>(end.ptr - text);
    return std::string(width > length ? width - length : 0, ' ').append(text, length);
}
