// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

// The fixed key material. These are placeholders: whoever ships the plug-in puts in the values that
// the readers of what it writes have.

// Stored presets of job notes: the pass phrase, in the form of a GUID, and of the key that is
// derived from it the salt, 8 ASCII characters; the initialisation vector of the cipher.
constexpr std::string_view kPresetKey = "00010203-0405-0607-0809-0A0B0C0D0E0F";
constexpr std::string_view kPresetSalt = "01234567";
constexpr std::array<std::uint8_t, 16> kPresetInitialisationVector = {
    0xE0, 0xE1, 0xE2, 0xE3, 0xE4, 0xE5, 0xE6, 0xE7, 0xE8, 0xE9, 0xEA, 0xEB, 0xEC, 0xED, 0xEE, 0xEF,
};
static_assert(kPresetSalt.size() == 8 && kPresetKey.size() == 36);
