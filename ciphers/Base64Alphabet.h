// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

// The characters of Base64 in the order of their values (RFC 4648).
constexpr std::string_view kBase64Alphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
