// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstdint>

// Twofish ("Twofish: A 128-Bit Block Cipher", Schneier, Kelsey, Whiting, Wagner, Hall, Ferguson,
// 1998) behind the programming interface that NIST asked of the candidates for AES. Blocks are 16
// bytes. Words are made of bytes with the first one lowest.
//
// An instance is a plain object of the caller, who wipes a key instance after use. Nothing is
// allocated, and nothing is shared but the record of table use.

enum TwofishDirection : std::uint8_t { DIR_ENCRYPT = 0, DIR_DECRYPT = 1 };
enum TwofishMode : std::uint8_t { MODE_ECB = 1, MODE_CBC = 2, MODE_CFB1 = 3 };

constexpr int BAD_KEY_DIR = -1;
constexpr int BAD_KEY_MAT = -2;  // key text
constexpr int BAD_KEY_INSTANCE = -3;
constexpr int BAD_CIPHER_MODE = -4;
constexpr int BAD_CIPHER_STATE = -5;  // cipher instance
constexpr int BAD_INPUT_LEN = -6;
constexpr int BAD_PARAMS = -7;
constexpr int BAD_IV_MAT = -8;

constexpr int kTwofishBlockBits = 128;
constexpr int kTwofishBlockSize = kTwofishBlockBits / 8;
constexpr int kTwofishMaximumKeyBits = 256;
constexpr std::array<char, 4> kTwofishSignature = {'F', 'I', 'S', 'H'};

struct keyInstance {
    std::uint8_t direction;
    int keyLen;                                                    // in bits, a multiple of 64
    std::array<char, kTwofishMaximumKeyBits / 4 + 1> keyMaterial;  // hexadecimal, terminated
    std::array<char, 4> keySig;
    int numRounds;
    std::array<std::uint32_t, 8> key32;
    std::array<std::uint32_t, 4> sboxKeys;
    std::array<std::uint32_t, 40> subKeys;
};

struct cipherInstance {
    std::uint8_t mode;
    std::array<std::uint8_t, kTwofishBlockSize> IV;  // goes on from call to call
    std::array<char, 4> cipherSig;
    std::array<std::uint32_t, 4> iv32;  // the same as words
};

// All of these return 1 for success and one of the negative numbers above otherwise. They take null
// for a bad instance.

// `keyLen` is 8 to 256 bits; a key is filled up with zeros to 128, 192 or 256. `keyMaterial` holds
// a hexadecimal digit for each 4 bits; more are passed over. Null or empty: the key words are left
// zero for the caller to set before a reKey, and no subkeys are made.
int makeKey(keyInstance* key, std::uint8_t direction, int keyLen, char const* keyMaterial);
// `IV` has 32 hexadecimal digits; ECB doesn't read it.
int cipherInit(cipherInstance* cipher, std::uint8_t mode, char const* IV);
// Subkeys and S-box keys from the key words.
int reKey(keyInstance* key);

// They return the number of bits processed, or a negative number. `inputLen` is in bits, and but
// for CFB-1 a multiple of 128; CFB-1 takes the highest bit of a byte first and leaves the bits
// behind the last one in `out` alone. `input` and `out` may be the same place.
int blockEncrypt(cipherInstance* cipher, keyInstance const* key, std::uint8_t const* input,
                 int inputLen, std::uint8_t* out);
int blockDecrypt(cipherInstance* cipher, keyInstance const* key, std::uint8_t const* input,
                 int inputLen, std::uint8_t* out);

// A test aid: records which entries of the two permutations are looked up. Process-wide.
enum TwofishTableOp : int { TAB_DISABLE = 0, TAB_ENABLE = 1, TAB_RESET = 2, TAB_QUERY = 3 };
// 1, for TAB_QUERY only if every entry of both was used since the last TAB_RESET; 0 otherwise, and
// for another operation.
int TableOp(int op);
