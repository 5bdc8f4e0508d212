// SPDX-License-Identifier: Apache-2.0
#include "platform/SystemInfo.h"

#include <atomic>

namespace platform {
namespace {

constexpr std::int32_t kMajorVersion = 10;

std::atomic<std::int32_t> gMinorVersion{kDefaultSystemMinorVersion};

}  // namespace
}  // namespace platform

OSErr Gestalt(OSType selector, std::int32_t* response) {
    if (response == nullptr) {
        return static_cast<OSErr>(paramErr);
    }
    *response = 0;
    if (selector == gestaltSystemVersionMajor) {
        *response = platform::kMajorVersion;
    } else if (selector == gestaltSystemVersionMinor) {
        *response = platform::gMinorVersion;
    } else {
        return gestaltUndefSelectorErr;
    }
    return noErr;
}

void SetSystemMinorVersion(std::int32_t minor) {
    platform::gMinorVersion = minor;
}
