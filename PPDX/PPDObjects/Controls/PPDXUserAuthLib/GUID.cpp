// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <chrono>
#include <compare>
#include <cstring>

#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/PPDXUserAuthLib.h"
#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/UniqueTime.h"

namespace {

constexpr std::int32_t kMicrosecondsPerSecond = 1000000;
constexpr std::uint32_t kReplacedBits = 0x0F000000;

UniqueTime gLastTime;

UniqueTime Now() {
    auto const now = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::system_clock::now().time_since_epoch());
    return {now.count() / kMicrosecondsPerSecond,
            static_cast<std::int32_t>(now.count() % kMicrosecondsPerSecond)};
}

}  // namespace

UniqueTime TakeUniqueTime(UniqueTime now, UniqueTime& last) {
    if (now <= last) {
        now = last;
        if (++now.microseconds >= kMicrosecondsPerSecond) {
            now.microseconds = 0;
            ++now.seconds;
        }
    }
    last = now;
    return now;
}

std::uint32_t IdentifierWord(UniqueTime const& moment) {
    auto const shifted = static_cast<std::uint32_t>(moment.seconds) << 4U;
    auto const fraction = static_cast<std::uint32_t>(moment.microseconds) >> 8U << 24U;
    return (shifted & ~kReplacedBits) | (fraction & kReplacedBits);
}

bool CreateGUID(unsigned char* guid) {
    if (guid == nullptr) {
        return false;
    }
    std::fill_n(guid, kGUIDSize, static_cast<unsigned char>(0));
    unsigned char* address = nullptr;
    goGetMACAddress(&address);
    if (address != nullptr) {
        std::copy_n(address, kMACAddressSize, guid);
    }
    std::uint32_t const word = IdentifierWord(TakeUniqueTime(Now(), gLastTime));
    std::memcpy(guid + kMACAddressSize, &word, sizeof word);
    return true;
}
