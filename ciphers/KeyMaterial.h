// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <type_traits>

// All tables and keys that a print server decides. They come from PlaceholderKeys.h, or from the
// header that the build was told to take in its place (CMake: ZUB_KEY_MATERIAL), which names the
// same constants.
#ifdef ZUB_KEY_MATERIAL_HEADER
#include ZUB_KEY_MATERIAL_HEADER
#else
#include "ciphers/PlaceholderKeys.h"
#endif

template <std::size_t kSize>
using KeyBytes = std::array<std::uint8_t, kSize> const;

static_assert(std::is_same_v<decltype(kNoteKeyTable), KeyBytes<120>>, "120 bytes");
static_assert(std::is_same_v<decltype(kNoteVectorTable), KeyBytes<48>>, "48 bytes");
static_assert(std::is_same_v<decltype(kUserAuthFixedKey), KeyBytes<32>>, "32 bytes");
static_assert(std::is_same_v<decltype(kPresetInitialisationVector), KeyBytes<16>>, "16 bytes");

constexpr bool IsASCIIText(std::string_view text) {
    return std::ranges::all_of(text, [](char c) { return c >= ' ' && c <= '~'; });
}
// 8-4-4-4-12 hexadecimal digits, letters upper case.
constexpr bool HasGUIDForm(std::string_view text) {
    constexpr std::string_view kForm = "dddddddd-dddd-dddd-dddd-dddddddddddd";
    return std::ranges::equal(text, kForm, [](char c, char form) {
        return form == '-' ? c == '-' : (c >= '0' && c <= '9') || (c >= 'A' && c <= 'F');
    });
}
static_assert(HasGUIDForm(kPresetKey), "36 characters in the form of a GUID");
static_assert(kPresetSalt.size() == 8 && IsASCIIText(kPresetSalt), "8 ASCII characters");
