// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

// Base64 (RFC 4648) in lines of `lineLength` characters, a multiple of 4; each line begins with
// `lineStart`.
void AppendBase64(std::uint8_t const* bytes, std::size_t size, std::size_t lineLength,
                  std::string_view lineStart, std::string& text);
// Passes over white space; false for any other foreign character and for wrong padding.
bool DecodeBase64(std::string_view text, std::vector<std::uint8_t>& bytes);

}  // namespace platform
