// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// A moment as seconds and microseconds of the Unix time.
struct UniqueTime {
    std::int64_t seconds = 0;
    std::int32_t microseconds = 0;

    auto operator<=>(UniqueTime const&) const = default;
};

// `now`, or the next microsecond after `last` unless `now` is later; `last` becomes the result. So
// no moment comes twice, also when the clock stands or is set back.
UniqueTime TakeUniqueTime(UniqueTime now, UniqueTime& last);

// What an identifier holds of a moment: the lowest 28 bits of the seconds, 4 places up, with bits
// 24 to 27 replaced by bits 8 to 11 of the microseconds.
std::uint32_t IdentifierWord(UniqueTime const& moment);
