// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>

// The nearest number of 32 bits.
constexpr std::int32_t ClampTo32Bits(long number) {
    return static_cast<std::int32_t>(std::clamp<long>(number, INT32_MIN, INT32_MAX));
}
