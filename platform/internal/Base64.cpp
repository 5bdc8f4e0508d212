// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/Base64.h"

#include <algorithm>
#include <array>

namespace platform {
namespace {

constexpr std::string_view kAlphabet =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr char kPadding = '=';
constexpr std::uint8_t kForeign = 0xFF;
constexpr std::uint8_t kWhite = 0xFE;

constexpr std::array<std::uint8_t, 256> MakeDecodingTable() {
    std::array<std::uint8_t, 256> table{};
    table.fill(kForeign);
    for (char const c : std::string_view(" \t\r\n")) {
        table[static_cast<unsigned char>(c)] = kWhite;
    }
    for (std::size_t value = 0; value < kAlphabet.size(); ++value) {
        table[static_cast<unsigned char>(kAlphabet[value])] = static_cast<std::uint8_t>(value);
    }
    return table;
}
constexpr auto kDecodingTable = MakeDecodingTable();

}  // namespace

void AppendBase64(std::uint8_t const* bytes, std::size_t size, std::size_t lineLength,
                  std::string_view lineStart, std::string& text) {
    std::size_t const bytesPerLine = lineLength / 4 * 3;
    for (std::size_t line = 0; line < size; line += bytesPerLine) {
        text.append(lineStart);
        std::size_t const end = std::min(size, line + bytesPerLine);
        for (std::size_t at = line; at < end; at += 3) {
            std::size_t const count = std::min<std::size_t>(3, end - at);
            std::uint32_t group = std::uint32_t{bytes[at]} << 16U;
            group |= count > 1 ? std::uint32_t{bytes[at + 1]} << 8U : 0U;
            group |= count > 2 ? std::uint32_t{bytes[at + 2]} : 0U;
            char const digits[] = {kAlphabet[group >> 18], kAlphabet[(group >> 12) & 0x3F],
                                   count > 1 ? kAlphabet[(group >> 6) & 0x3F] : kPadding,
                                   count > 2 ? kAlphabet[group & 0x3F] : kPadding};
            text.append(digits, sizeof digits);
        }
    }
}

bool DecodeBase64(std::string_view text, std::vector<std::uint8_t>& bytes) {
    bytes.clear();
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    std::size_t digits = 0;
    std::size_t padding = 0;
    for (char const c : text) {
        std::uint8_t const value = kDecodingTable[static_cast<unsigned char>(c)];
        if (value == kWhite) {
            continue;
        }
        if (c == kPadding) {
            ++padding;
            continue;
        }
        if (value == kForeign || padding > 0) {
            return false;
        }
        group = (group << 6) | value;
        if (++digits % 4 == 0) {
            bytes.push_back(static_cast<std::uint8_t>(group >> 16));
            bytes.push_back(static_cast<std::uint8_t>(group >> 8));
            bytes.push_back(static_cast<std::uint8_t>(group));
        }
    }
    std::size_t const rest = digits % 4;
    if (rest == 1 || padding != (rest == 0 ? 0 : 4 - rest)) {
        return false;
    }
    if (rest >= 2) {
        group <<= 6 * (4 - rest);
        bytes.push_back(static_cast<std::uint8_t>(group >> 16));
    }
    if (rest == 3) {
        bytes.push_back(static_cast<std::uint8_t>(group >> 8));
    }
    return true;
}

}  // namespace platform
