// SPDX-License-Identifier: Apache-2.0
#include "ciphers/NoteCipher.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <span>

#include "ciphers/AES256CBC.h"
#include "ciphers/DES.h"
#include "ciphers/KeyMaterial.h"
#include "platform/Wiping.h"

namespace {

constexpr std::string_view kDigits = "0123456789ABCDEF";
constexpr std::string_view kSpecialAES = "2";
constexpr int kAESRoom = 282;

struct KeyPlace {
    std::string_view value;
    std::size_t key;     // byte in the key table
    std::size_t vector;  // byte in the vector table
};
constexpr KeyPlace kKeyPlaces[] = {
    {"2", 8, 0}, {"3", 16, 0}, {"4", 24, 0}, {"5", 56, 16}, {"6", 88, 32},
};
constexpr KeyPlace kFirstPlace = {"", 0, 0};

static_assert(std::ranges::all_of(kKeyPlaces, [](KeyPlace const& place) {
    return place.key + AES256CBC::kKeyLength <= kNoteKeyTable.size() &&
           place.vector + AES256CBC::kBlockSize <= kNoteVectorTable.size();
}));

using CipherBytes = std::array<std::uint8_t, kNoteCipherSize>;

KeyPlace const& PlaceOf(NoteCipherChoice const& choice) {
    if (choice.specialKey == nullptr) {
        return kFirstPlace;
    }
    auto const* const place =
        std::ranges::find(kKeyPlaces, std::string_view(choice.specialKey), &KeyPlace::value);
    return place == std::end(kKeyPlaces) ? kFirstPlace : *place;
}

std::uint8_t const* KeyAt(KeyPlace const& place) {
    return kNoteKeyTable.data() + place.key;
}

std::uint8_t const* VectorAt(KeyPlace const& place) {
    return kNoteVectorTable.data() + place.vector;
}

void CryptDESBlocks(std::uint8_t const* key, DESMode mode, std::span<std::uint8_t> bytes) {
    LoadedDESKey const loaded(key, mode);
    for (std::size_t at = 0; at < bytes.size(); at += kDESBlockSize) {
        des(bytes.data() + at, bytes.data() + at);
    }
}

// These two return the size of the cipher text.
std::size_t EncipherByDES(std::string_view text, KeyPlace const& place, CipherBytes& bytes) {
    std::size_t const padding = kDESBlockSize - text.size() % kDESBlockSize;
    std::ranges::copy(text, bytes.begin());
    std::fill_n(bytes.data() + text.size(), padding, static_cast<std::uint8_t>(padding));
    CryptDESBlocks(KeyAt(place), EN0, {bytes.data(), text.size() + padding});
    return text.size() + padding;
}

std::size_t EncipherByAES(char const* text, KeyPlace const& place, CipherBytes& bytes) {
    std::array<std::uint8_t, kAESRoom> result{};
    WipeAtEnd const wipe(result);
    int length = kAESRoom;
    AES256CBC::DoAES256Encrypt(KeyAt(place), VectorAt(place), text, result.data(), &length);
    std::copy_n(result.begin(), length, bytes.begin());
    return static_cast<std::size_t>(length);
}

// False for something else than upper case digits of one to 128 bytes.
bool ParseDigits(std::string_view digits, CipherBytes& bytes) {
    if (digits.empty() || digits.size() % 2 != 0 || digits.size() > kNoteDigitsSize) {
        return false;
    }
    for (std::size_t i = 0; i < digits.size(); ++i) {
        std::size_t const value = kDigits.find(digits[i]);
        if (value == std::string_view::npos) {
            return false;
        }
        bytes[i / 2] = static_cast<std::uint8_t>(bytes[i / 2] * 16U + value);
    }
    return true;
}

// The plain bytes without the padding, of which the last byte tells the length: as it is under DES,
// one less under AES, where the text's terminator stands in front of it. Without data if the
// padding is wrong, or the text isn't one.
std::span<std::uint8_t const> WithoutPadding(std::span<std::uint8_t const> plain, bool isAES) {
    std::uint8_t const value = plain.back();
    std::size_t const padding = value + (isAES ? 1U : 0U);
    std::size_t const tail = padding + (isAES ? 1U : 0U);
    std::size_t const blockSize = isAES ? AES256CBC::kBlockSize : kDESBlockSize;
    if (padding < 1 || padding > blockSize || tail > plain.size()) {
        return {};
    }
    auto const isPadding = [value](std::uint8_t byte) { return byte == value; };
    auto const text = plain.first(plain.size() - tail);
    bool const isWhole = std::ranges::all_of(plain.last(padding), isPadding) &&
                         (!isAES || plain[text.size()] == 0) &&
                         std::ranges::find(text, std::uint8_t{0}) == text.end();
    return isWhole ? text : std::span<std::uint8_t const>();
}

}  // namespace

bool IsAESNote(NoteCipherChoice const& choice) {
    return choice.specialAlgorithm == nullptr ? choice.hasAESFlag
                                              : choice.specialAlgorithm == kSpecialAES;
}

bool EncipherNote(char const* text, NoteCipherChoice const& choice,
                  char (&digits)[kNoteDigitsSize]) {
    std::ranges::fill(digits, '\0');
    bool const isAES = IsAESNote(choice);
    if (text == nullptr || std::strlen(text) > (isAES ? kLongestAESNote : kLongestDESNote)) {
        return false;
    }
    CipherBytes bytes{};
    WipeAtEnd const wipe(bytes);
    std::size_t const size = isAES ? EncipherByAES(text, PlaceOf(choice), bytes)
                                   : EncipherByDES(text, PlaceOf(choice), bytes);
    for (std::size_t i = 0; i < size; ++i) {
        digits[2 * i] = kDigits[bytes[i] >> 4U];
        digits[2 * i + 1] = kDigits[bytes[i] & 0xFU];
    }
    return true;
}

std::string_view NoteDigits(char const (&digits)[kNoteDigitsSize]) {
    return {digits, strnlen(digits, kNoteDigitsSize)};
}

bool DecipherNote(std::string_view digits, NoteCipherChoice const& choice,
                  char (&text)[kNoteCipherSize]) {
    std::ranges::fill(text, '\0');
    bool const isAES = IsAESNote(choice);
    std::size_t const blockSize = isAES ? AES256CBC::kBlockSize : kDESBlockSize;
    CipherBytes bytes{};
    CipherBytes plain{};
    WipeAtEnd const wipe(plain);
    if (digits.size() / 2 % blockSize != 0 || !ParseDigits(digits, bytes)) {
        return false;
    }
    std::size_t const size = digits.size() / 2;
    KeyPlace const& place = PlaceOf(choice);
    if (isAES) {
        int length = kNoteCipherSize;
        AES256CBC::DoAES256Decrypt(KeyAt(place), VectorAt(place), bytes.data(),
                                   static_cast<int>(size), plain.data(), &length);
    } else {
        plain = bytes;
        CryptDESBlocks(KeyAt(place), DE1, {plain.data(), size});
    }
    auto const found = WithoutPadding({plain.data(), size}, isAES);
    std::ranges::copy(found, text);
    return found.data() != nullptr;
}
