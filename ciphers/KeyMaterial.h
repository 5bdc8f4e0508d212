// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// The fixed key material. These are placeholders: whoever ships the plug-in puts in the values that
// the readers of what it writes have.

// Notes in presets: the salt and the initialisation vector of the string cipher, and the pass
// phrase, a GUID as text.
inline constexpr std::string_view kPresetSalt = "ZUBSALT0";
inline constexpr std::array<std::uint8_t, 16> kPresetInitialisationVector = {
    0x00, 0x01, 0x02, 0x03, 0x04, 0x05, 0x06, 0x07, 0x08, 0x09, 0x0A, 0x0B, 0x0C, 0x0D, 0x0E, 0x0F};
inline constexpr std::string_view kPresetKey = "00000000-0000-4000-8000-000000000000";
static_assert(kPresetSalt.size() == 8 && kPresetKey.size() == 36);
