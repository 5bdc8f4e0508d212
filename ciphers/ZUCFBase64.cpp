// SPDX-License-Identifier: Apache-2.0
#include "ciphers/ZUCFBase64.h"

#include <array>
#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <vector>

#include "ciphers/Base64Alphabet.h"
#include "ciphers/Base64Encoder.h"

namespace {

constexpr char kPadding = '=';
constexpr CFIndex kGroupLength = 4;

constexpr std::array<std::uint8_t, 256> MakeValues() {
    std::array<std::uint8_t, 256> values{};
    for (std::size_t value = 0; value < kBase64Alphabet.size(); ++value) {
        values[static_cast<unsigned char>(kBase64Alphabet[value])] =
            static_cast<std::uint8_t>(value);
    }
    return values;
}
constexpr auto kValues = MakeValues();

// Up to four characters as one byte fewer than there are of them.
void AppendBytes(std::string_view digits, std::vector<std::uint8_t>& bytes) {
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 4; ++i) {
        group =
            group << 6U | (i < digits.size() ? kValues[static_cast<unsigned char>(digits[i])] : 0U);
    }
    for (std::size_t i = 0; i + 1 < digits.size(); ++i) {
        bytes.push_back(static_cast<std::uint8_t>(group >> (16 - 8 * i)));
    }
}

// ASCII, with padding for every other character and none at the end.
std::string DigitsOf(CFStringRef text) {
    CFIndex const length = CFStringGetLength(text);
    std::string digits(static_cast<std::size_t>(length), '\0');
    CFIndex used = 0;
    CFStringGetBytes(text, {0, length}, kCFStringEncodingASCII, static_cast<std::uint8_t>(kPadding),
                     false, reinterpret_cast<std::uint8_t*>(digits.data()), length, &used);
    digits.resize(static_cast<std::size_t>(used));
    for (int i = 0; i < 2 && !digits.empty() && digits.back() == kPadding; ++i) {
        digits.pop_back();
    }
    return digits;
}

}  // namespace

CFStringRef ZUCFBase64CreateEncodedString(CFDataRef data) {
    try {
        auto const size = static_cast<std::size_t>(CFDataGetLength(data));
        std::string text(Base64Encoder::EncodedLength(size), '\0');
        text.resize(Base64Encoder::Encode(CFDataGetBytePtr(data), size, text.data(), false));
        return CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingASCII);
    } catch (std::exception const&) {
        return nullptr;
    }
}

CFDataRef ZUCFBase64CreateDecodedData(CFStringRef text) {
    try {
        std::vector<std::uint8_t> bytes;
        if (CFStringGetLength(text) >= kGroupLength) {
            std::string const digits = DigitsOf(text);
            for (std::size_t at = 0; at < digits.size(); at += 4) {
                AppendBytes(std::string_view(digits).substr(at, 4), bytes);
            }
        }
        return CFDataCreate(nullptr, bytes.data(), static_cast<CFIndex>(bytes.size()));
    } catch (std::exception const&) {
        return nullptr;
    }
}
