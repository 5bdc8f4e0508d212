// SPDX-License-Identifier: Apache-2.0
#include "ciphers/Twofish.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstring>

#include "ciphers/TwofishTables.h"
#include "platform/Wiping.h"

namespace {

using Words = std::array<std::uint32_t, 4>;
using Block = std::array<std::uint8_t, kTwofishBlockSize>;

// Rounds for keys of 64, 128, 192 and 256 bits.
constexpr std::array<int, 4> numRounds = {16, 16, 16, 16};
constexpr std::size_t kWhiteningWords = 8;  // ahead of the subkeys of the rounds

bool tabEnable = false;
std::array<std::uint8_t, 256> tabUsed{};  // bit 0 for an entry of q0, bit 1 for one of q1
constexpr std::uint8_t kAllUsed = 3;

std::uint32_t LoadWord(std::uint8_t const* bytes) {
    return bytes[0] | std::uint32_t{bytes[1]} << 8U | std::uint32_t{bytes[2]} << 16U |
           std::uint32_t{bytes[3]} << 24U;
}

void StoreWord(std::uint32_t word, std::uint8_t* bytes) {
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[i] = static_cast<std::uint8_t>(word >> 8 * i);
    }
}

int HexDigitValue(char digit) {
    if (digit >= '0' && digit <= '9') {
        return digit - '0';
    }
    char const upper = static_cast<char>(digit & ~0x20);
    return upper >= 'A' && upper <= 'F' ? upper - 'A' + 10 : -1;
}

// Words from `digits` hexadecimal digits; false if one of them is something else.
bool ParseHex(char const* text, std::size_t digits, std::uint32_t* words) {
    for (std::size_t i = 0; i < digits; ++i) {
        int const value = HexDigitValue(text[i]);
        if (value < 0) {
            return false;
        }
        // The high digit of a byte stands first, the lowest byte of a word too.
        words[i / 8] |= static_cast<std::uint32_t>(value) << 4 * (i % 8 ^ 1U);
    }
    return true;
}

std::uint8_t Permute(std::size_t which, std::uint8_t value) {
    if (tabEnable) {
        tabUsed[value] = static_cast<std::uint8_t>(tabUsed[value] | 1U << which);
    }
    return twofish::kPermutations[which][value];
}

// 64-bit words of the key, after it was filled up to a length that the cipher has.
std::size_t KeyLengthInPairs(keyInstance const& key) {
    return static_cast<std::size_t>(std::max(key.keyLen / 64, 2));
}

// The function h: the word through permutations and `count` keys, which are `stride` words apart,
// the last of them first, and through the MDS matrix.
std::uint32_t H(std::uint32_t word, std::uint32_t const* keys, std::size_t stride,
                std::size_t count) {
    std::uint32_t result = 0;
    for (std::size_t byte = 0; byte < 4; ++byte) {
        auto value = static_cast<std::uint8_t>(word >> 8 * byte);
        std::size_t stage = twofish::kStages - 1 - count;
        for (std::size_t left = count; left > 0; --left, ++stage) {
            value =
                static_cast<std::uint8_t>(Permute(twofish::kPermutationOrder[stage][byte], value) ^
                                          keys[(left - 1) * stride] >> 8 * byte);
        }
        value = Permute(twofish::kPermutationOrder[stage][byte], value);
        result ^= twofish::kMDSProducts[byte][value];
    }
    return result;
}

std::uint32_t ReedSolomon(std::uint32_t low, std::uint32_t high) {
    std::uint32_t result = 0;
    for (std::size_t row = 0; row < 4; ++row) {
        std::uint32_t sum = 0;
        for (std::size_t column = 0; column < 8; ++column) {
            std::uint32_t const word = column < 4 ? low : high;
            std::uint32_t const byte = word >> 8 * (column % 4) & 0xFFU;
            sum ^= twofish::Multiply(byte, twofish::kRS[row][column], twofish::kRSPolynomial);
        }
        result |= sum << 8 * row;
    }
    return result;
}

// The two sums of a round, for the words that it leaves alone.
struct RoundSums {
    std::uint32_t first;
    std::uint32_t second;
};

RoundSums SumsOfRound(keyInstance const& key, std::size_t round, std::uint32_t left,
                      std::uint32_t right) {
    std::size_t const count = KeyLengthInPairs(key);
    std::uint32_t const t0 = H(left, key.sboxKeys.data(), 1, count);
    std::uint32_t const t1 = H(std::rotl(right, 8), key.sboxKeys.data(), 1, count);
    std::uint32_t const* const subKeys = key.subKeys.data() + kWhiteningWords + 2 * round;
    return {t0 + t1 + subKeys[0], t0 + 2 * t1 + subKeys[1]};
}

std::size_t RoundsOf(keyInstance const& key) {
    return static_cast<std::size_t>(key.numRounds);
}

void EncryptWords(keyInstance const& key, Words& words) {
    for (std::size_t i = 0; i < 4; ++i) {
        words[i] ^= key.subKeys[i];
    }
    for (std::size_t round = 0; round < RoundsOf(key); ++round) {
        auto const [first, second] = SumsOfRound(key, round, words[0], words[1]);
        words = {std::rotr(words[2] ^ first, 1), std::rotl(words[3], 1) ^ second, words[0],
                 words[1]};
    }
    words = {words[2], words[3], words[0], words[1]};
    for (std::size_t i = 0; i < 4; ++i) {
        words[i] ^= key.subKeys[4 + i];
    }
}

void DecryptWords(keyInstance const& key, Words& words) {
    for (std::size_t i = 0; i < 4; ++i) {
        words[i] ^= key.subKeys[4 + i];
    }
    words = {words[2], words[3], words[0], words[1]};
    for (std::size_t round = RoundsOf(key); round-- > 0;) {
        auto const [first, second] = SumsOfRound(key, round, words[2], words[3]);
        words = {words[2], words[3], std::rotl(words[0], 1) ^ first,
                 std::rotr(words[1] ^ second, 1)};
    }
    for (std::size_t i = 0; i < 4; ++i) {
        words[i] ^= key.subKeys[i];
    }
}

Words LoadWords(std::uint8_t const* bytes) {
    return {LoadWord(bytes), LoadWord(bytes + 4), LoadWord(bytes + 8), LoadWord(bytes + 12)};
}

void StoreWords(Words const& words, std::uint8_t* bytes) {
    for (std::size_t i = 0; i < 4; ++i) {
        StoreWord(words[i], bytes + 4 * i);
    }
}

Words Sum(Words const& left, Words const& right) {
    return {left[0] ^ right[0], left[1] ^ right[1], left[2] ^ right[2], left[3] ^ right[3]};
}

// ECB, and CBC, which adds the chain.
void CryptBlocks(cipherInstance& cipher, keyInstance const& key, bool decrypt,
                 std::uint8_t const* in, std::size_t size, std::uint8_t* out) {
    bool const isChained = cipher.mode == MODE_CBC;
    Words words{};
    Words given{};
    WipeAtEnd const wipeWords(words);
    WipeAtEnd const wipeGiven(given);
    for (std::size_t at = 0; at < size; at += kTwofishBlockSize) {
        words = LoadWords(in + at);
        given = words;
        if (decrypt) {
            DecryptWords(key, words);
            words = isChained ? Sum(words, cipher.iv32) : words;
            cipher.iv32 = isChained ? given : cipher.iv32;
        } else {
            words = isChained ? Sum(words, cipher.iv32) : words;
            EncryptWords(key, words);
            cipher.iv32 = isChained ? words : cipher.iv32;
        }
        StoreWords(words, out + at);
    }
    StoreWords(cipher.iv32, cipher.IV.data());
}

void ShiftIn(Block& bits, bool bit) {
    unsigned carry = bit ? 1U : 0U;
    for (std::size_t i = bits.size(); i-- > 0;) {
        unsigned const shifted = bits[i] * 2U + carry;
        bits[i] = static_cast<std::uint8_t>(shifted);
        carry = shifted >> 8U;
    }
}

// Bit by bit: each is added to the first bit of the enciphered register, into which the bit of the
// cipher text then goes.
void CryptBits(cipherInstance& cipher, keyInstance const& key, bool decrypt, std::uint8_t const* in,
               std::size_t bits, std::uint8_t* out) {
    for (std::size_t at = 0; at < bits; ++at) {
        Words words = LoadWords(cipher.IV.data());
        WipeAtEnd const wipe(words);
        EncryptWords(key, words);
        auto const mask = static_cast<std::uint8_t>(0x80U >> at % 8);
        bool const given = (in[at / 8] & mask) != 0;
        bool const made = given != ((words[0] & 0x80U) != 0);
        out[at / 8] = static_cast<std::uint8_t>((out[at / 8] & ~mask) | (made ? mask : 0));
        ShiftIn(cipher.IV, decrypt ? given : made);
    }
    cipher.iv32 = LoadWords(cipher.IV.data());
}

bool IsCipherMode(std::uint8_t mode) {
    return mode >= MODE_ECB && mode <= MODE_CFB1;
}

bool IsKeyLength(int bits) {
    return bits >= 8 && bits <= kTwofishMaximumKeyBits;
}

bool IsKey(keyInstance const* key) {
    return key != nullptr && key->keySig == kTwofishSignature && IsKeyLength(key->keyLen) &&
           key->keyLen % 64 == 0 &&
           key->numRounds == numRounds[static_cast<std::size_t>(key->keyLen / 64 - 1)];
}

// What stands against a call, or 1.
int CheckCall(cipherInstance const* cipher, keyInstance const* key, std::uint8_t const* in,
              int bits, std::uint8_t const* out) {
    if (cipher == nullptr || cipher->cipherSig != kTwofishSignature) {
        return BAD_CIPHER_STATE;
    }
    if (!IsKey(key)) {
        return BAD_KEY_INSTANCE;
    }
    if (!IsCipherMode(cipher->mode)) {
        return BAD_CIPHER_MODE;
    }
    if (bits < 0 || (cipher->mode != MODE_CFB1 && bits % kTwofishBlockBits != 0)) {
        return BAD_INPUT_LEN;
    }
    return bits > 0 && (in == nullptr || out == nullptr) ? BAD_PARAMS : 1;
}

int Crypt(cipherInstance* cipher, keyInstance const* key, bool decrypt, std::uint8_t const* in,
          int bits, std::uint8_t* out) {
    if (int const result = CheckCall(cipher, key, in, bits, out); result != 1) {
        return result;
    }
    auto const count = static_cast<std::size_t>(bits);
    if (cipher->mode == MODE_CFB1) {
        CryptBits(*cipher, *key, decrypt, in, count, out);
    } else {
        CryptBlocks(*cipher, *key, decrypt, in, count / 8, out);
    }
    return bits;
}

}  // namespace

int makeKey(keyInstance* key, std::uint8_t direction, int keyLen, char const* keyMaterial) {
    if (key == nullptr) {
        return BAD_KEY_INSTANCE;
    }
    *key = keyInstance{};
    if (direction != DIR_ENCRYPT && direction != DIR_DECRYPT) {
        return BAD_KEY_DIR;
    }
    if (!IsKeyLength(keyLen)) {
        return BAD_KEY_MAT;
    }
    key->direction = direction;
    key->keyLen = (keyLen + 63) / 64 * 64;
    key->keySig = kTwofishSignature;
    key->numRounds = numRounds[static_cast<std::size_t>(key->keyLen / 64 - 1)];
    if (keyMaterial == nullptr || *keyMaterial == '\0') {
        return 1;
    }
    auto const digits = static_cast<std::size_t>((keyLen + 3) / 4);
    if (!ParseHex(keyMaterial, digits, key->key32.data())) {
        Wipe(key, sizeof *key);
        return BAD_KEY_MAT;
    }
    std::copy_n(keyMaterial, digits, key->keyMaterial.begin());
    return reKey(key);
}

int cipherInit(cipherInstance* cipher, std::uint8_t mode, char const* IV) {
    if (cipher == nullptr) {
        return BAD_CIPHER_STATE;
    }
    *cipher = cipherInstance{};
    if (!IsCipherMode(mode)) {
        return BAD_CIPHER_MODE;
    }
    if (mode != MODE_ECB) {
        if (IV == nullptr || !ParseHex(IV, kTwofishBlockBits / 4, cipher->iv32.data())) {
            return BAD_IV_MAT;
        }
        StoreWords(cipher->iv32, cipher->IV.data());
    }
    cipher->mode = mode;
    cipher->cipherSig = kTwofishSignature;
    return 1;
}

int reKey(keyInstance* key) {
    if (!IsKey(key)) {
        return BAD_KEY_INSTANCE;
    }
    constexpr std::uint32_t kStep = 0x01010101;
    std::size_t const count = KeyLengthInPairs(*key);
    for (std::size_t i = 0; i < count; ++i) {
        key->sboxKeys[count - 1 - i] = ReedSolomon(key->key32[2 * i], key->key32[2 * i + 1]);
    }
    for (std::uint32_t i = 0; i < key->subKeys.size(); i += 2) {
        std::uint32_t const even = H(i * kStep, key->key32.data(), 2, count);
        std::uint32_t const odd = std::rotl(H((i + 1) * kStep, key->key32.data() + 1, 2, count), 8);
        key->subKeys[i] = even + odd;
        key->subKeys[i + 1] = std::rotl(even + 2 * odd, 9);
    }
    return 1;
}

int blockEncrypt(cipherInstance* cipher, keyInstance const* key, std::uint8_t const* input,
                 int inputLen, std::uint8_t* out) {
    return Crypt(cipher, key, false, input, inputLen, out);
}

int blockDecrypt(cipherInstance* cipher, keyInstance const* key, std::uint8_t const* input,
                 int inputLen, std::uint8_t* out) {
    return Crypt(cipher, key, true, input, inputLen, out);
}

int TableOp(int op) {
    switch (op) {
        case TAB_DISABLE:
        case TAB_ENABLE:
            tabEnable = op == TAB_ENABLE;
            return 1;
        case TAB_RESET:
            tabUsed.fill(0);
            return 1;
        case TAB_QUERY:
            return std::ranges::all_of(tabUsed, [](auto used) { return used == kAllUsed; }) ? 1 : 0;
        default:
            return 0;
    }
}
