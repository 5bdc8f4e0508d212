// SPDX-License-Identifier: Apache-2.0
#include "ciphers/AES256CBC.h"

#include <algorithm>
#include <bit>
#include <cstring>

#include "ciphers/BigEndian.h"
#include "platform/Wiping.h"

namespace {

constexpr std::size_t kKeyWords = AES256CBC::kKeyLength / 4;
constexpr std::uint32_t kPolynomial = 0x11B;  // of the field

constexpr std::uint8_t ByteOfRow(std::uint32_t column, std::size_t row) {
    return static_cast<std::uint8_t>(column >> (24 - 8 * row));
}

}  // namespace

// The powers of 3, which meet every element but 0.
constexpr AES256CBC::ByteTable AES256CBC::MakePowers() {
    ByteTable powers{};
    std::uint32_t power = 1;
    for (std::uint8_t& entry : powers) {
        entry = static_cast<std::uint8_t>(power);
        power ^= power << 1U;
        power ^= power > 0xFF ? kPolynomial : 0;
    }
    return powers;
}

constexpr AES256CBC::ByteTable AES256CBC::sm_alog = MakePowers();

constexpr AES256CBC::ByteTable AES256CBC::MakeLogarithms() {
    ByteTable logarithms{};
    for (std::size_t exponent = 0; exponent < 255; ++exponent) {
        logarithms[sm_alog[exponent]] = static_cast<std::uint8_t>(exponent);
    }
    return logarithms;
}

constexpr AES256CBC::ByteTable AES256CBC::sm_log = MakeLogarithms();

constexpr std::uint8_t AES256CBC::Multiply(std::uint8_t left, std::uint8_t right) {
    return left == 0 || right == 0 ? std::uint8_t{0}
                                   : sm_alog[(sm_log[left] + sm_log[right]) % 255U];
}

constexpr AES256CBC::ByteTable AES256CBC::MakeSBox() {
    ByteTable box{};
    for (std::size_t value = 0; value < box.size(); ++value) {
        std::uint8_t const inverse =
            value == 0 ? std::uint8_t{0} : sm_alog[(255U - sm_log[value]) % 255U];
        std::uint8_t sum = 0x63;
        for (int turn = 0; turn < 5; ++turn) {
            sum = static_cast<std::uint8_t>(sum ^ std::rotl(inverse, turn));
        }
        box[value] = sum;
    }
    return box;
}

constexpr AES256CBC::ByteTable AES256CBC::MakeSame() {
    ByteTable same{};
    for (std::size_t value = 0; value < same.size(); ++value) {
        same[value] = static_cast<std::uint8_t>(value);
    }
    return same;
}

constexpr AES256CBC::ByteTable AES256CBC::MakeInverse(ByteTable const& box) {
    ByteTable inverse{};
    for (std::size_t value = 0; value < box.size(); ++value) {
        inverse[box[value]] = static_cast<std::uint8_t>(value);
    }
    return inverse;
}

constexpr AES256CBC::WordTable AES256CBC::MakeProducts(ByteTable const& box,
                                                       std::uint32_t factors) {
    WordTable products{};
    for (std::size_t value = 0; value < products.size(); ++value) {
        for (std::size_t row = 0; row < 4; ++row) {
            products[value] = products[value] << 8U | Multiply(box[value], ByteOfRow(factors, row));
        }
    }
    return products;
}

constexpr AES256CBC::ByteTable AES256CBC::sm_S = MakeSBox();
constexpr AES256CBC::ByteTable AES256CBC::sm_Si = MakeInverse(sm_S);
constexpr AES256CBC::WordTable AES256CBC::sm_T1 = MakeProducts(sm_S, 0x02010103);
constexpr AES256CBC::WordTable AES256CBC::sm_T2 = MakeProducts(sm_S, 0x03020101);
constexpr AES256CBC::WordTable AES256CBC::sm_T3 = MakeProducts(sm_S, 0x01030201);
constexpr AES256CBC::WordTable AES256CBC::sm_T4 = MakeProducts(sm_S, 0x01010302);
constexpr AES256CBC::WordTable AES256CBC::sm_T5 = MakeProducts(sm_Si, 0x0E090D0B);
constexpr AES256CBC::WordTable AES256CBC::sm_T6 = MakeProducts(sm_Si, 0x0B0E090D);
constexpr AES256CBC::WordTable AES256CBC::sm_T7 = MakeProducts(sm_Si, 0x0D0B0E09);
constexpr AES256CBC::WordTable AES256CBC::sm_T8 = MakeProducts(sm_Si, 0x090D0B0E);
constexpr AES256CBC::WordTable AES256CBC::sm_U1 = MakeProducts(MakeSame(), 0x0E090D0B);
constexpr AES256CBC::WordTable AES256CBC::sm_U2 = MakeProducts(MakeSame(), 0x0B0E090D);
constexpr AES256CBC::WordTable AES256CBC::sm_U3 = MakeProducts(MakeSame(), 0x0D0B0E09);
constexpr AES256CBC::WordTable AES256CBC::sm_U4 = MakeProducts(MakeSame(), 0x090D0B0E);
constexpr std::array<std::array<std::uint8_t, 2>, 4> AES256CBC::sm_shifts = {
    {{0, 0}, {1, 3}, {2, 2}, {3, 1}}};
constexpr std::array<std::uint8_t, 7> AES256CBC::sm_rcon = {0x01, 0x02, 0x04, 0x08,
                                                            0x10, 0x20, 0x40};

AES256CBC::AES256CBC() = default;

AES256CBC::~AES256CBC() {
    Wipe(&mEncryptionKeys, sizeof mEncryptionKeys);
    Wipe(&mDecryptionKeys, sizeof mDecryptionKeys);
    Wipe(&mChain, sizeof mChain);
    Wipe(&mWork, sizeof mWork);
}

void AES256CBC::MakeKey(std::uint8_t const* key, std::uint8_t const* chain, int keyLength,
                        int blockSize) {
    if (key == nullptr || chain == nullptr || keyLength != kKeyLength || blockSize != kBlockSize) {
        return;
    }
    mKeyLength = keyLength;
    mBlockSize = blockSize;
    mRounds = kRounds;
    std::copy_n(chain, kBlockSize, mInitialChain.begin());
    mChain = mInitialChain;
    MakeEncryptionKeys(key);
    MakeDecryptionKeys();
    mKeySet = true;
}

void AES256CBC::MakeEncryptionKeys(std::uint8_t const* key) {
    auto const word = [this](std::size_t at) -> std::uint32_t& {
        return mEncryptionKeys[at / kColumns][at % kColumns];
    };
    auto const substituted = [](std::uint32_t column) {
        std::uint32_t result = 0;
        for (std::size_t row = 0; row < 4; ++row) {
            result = result << 8U | sm_S[ByteOfRow(column, row)];
        }
        return result;
    };
    for (std::size_t at = 0; at < kKeyWords; ++at) {
        word(at) = LoadBigEndian32(key + 4 * at);
    }
    for (std::size_t at = kKeyWords; at < mEncryptionKeys.size() * kColumns; ++at) {
        std::uint32_t last = word(at - 1);
        if (at % kKeyWords == 0) {
            last = substituted(std::rotl(last, 8)) ^ std::uint32_t{sm_rcon[at / kKeyWords - 1]}
                                                         << 24U;
        } else if (at % kKeyWords == 4) {
            last = substituted(last);
        }
        word(at) = word(at - kKeyWords) ^ last;
    }
}

// Those for enciphering from the end; the inner ones go through InvMixColumns, so that deciphering
// can do its steps in the same order.
void AES256CBC::MakeDecryptionKeys() {
    std::reverse_copy(mEncryptionKeys.begin(), mEncryptionKeys.end(), mDecryptionKeys.begin());
    for (std::size_t round = 1; round < kRounds; ++round) {
        for (std::uint32_t& column : mDecryptionKeys[round]) {
            column = sm_U1[ByteOfRow(column, 0)] ^ sm_U2[ByteOfRow(column, 1)] ^
                     sm_U3[ByteOfRow(column, 2)] ^ sm_U4[ByteOfRow(column, 3)];
        }
    }
}

void AES256CBC::DefEncryptBlock(std::uint8_t const* in, std::uint8_t* out) {
    Transform(in, out, mEncryptionKeys, {{&sm_T1, &sm_T2, &sm_T3, &sm_T4}, &sm_S, 0});
}

void AES256CBC::DefDecryptBlock(std::uint8_t const* in, std::uint8_t* out) {
    Transform(in, out, mDecryptionKeys, {{&sm_T5, &sm_T6, &sm_T7, &sm_T8}, &sm_Si, 1});
}

void AES256CBC::Transform(std::uint8_t const* in, std::uint8_t* out, RoundKeys const& keys,
                          Direction const& direction) {
    if (!mKeySet || in == nullptr || out == nullptr) {
        return;
    }
    for (std::size_t column = 0; column < kColumns; ++column) {
        mWork[column] = LoadBigEndian32(in + 4 * column) ^ keys[0][column];
    }
    Columns before{};
    WipeAtEnd const wipe(before);
    // The byte of a row that the shift of rows brings into a column.
    auto const shifted = [&before, &direction](std::size_t column, std::size_t row) {
        std::size_t const from = (column + sm_shifts[row][direction.shift]) % kColumns;
        return ByteOfRow(before[from], row);
    };
    for (std::size_t round = 1; round < kRounds; ++round) {
        before = mWork;
        for (std::size_t column = 0; column < kColumns; ++column) {
            mWork[column] = keys[round][column];
            for (std::size_t row = 0; row < 4; ++row) {
                mWork[column] ^= (*direction.products[row])[shifted(column, row)];
            }
        }
    }
    before = mWork;
    for (std::size_t column = 0; column < kColumns; ++column) {
        for (std::size_t row = 0; row < 4; ++row) {
            out[4 * column + row] = static_cast<std::uint8_t>(
                (*direction.box)[shifted(column, row)] ^ ByteOfRow(keys[kRounds][column], row));
        }
    }
}

void AES256CBC::EncryptBlock(std::uint8_t const* in, std::uint8_t* out) {
    if (mBlockSize == kBlockSize) {
        DefEncryptBlock(in, out);
    }
}

void AES256CBC::DecryptBlock(std::uint8_t const* in, std::uint8_t* out) {
    if (mBlockSize == kBlockSize) {
        DefDecryptBlock(in, out);
    }
}

void AES256CBC::Encrypt(std::uint8_t const* in, std::uint8_t* out, std::size_t size) {
    if (!mKeySet || in == nullptr || out == nullptr || size % kBlockSize != 0) {
        return;
    }
    for (std::size_t at = 0; at < size; at += kBlockSize) {
        for (std::size_t i = 0; i < kBlockSize; ++i) {
            mChain[i] = static_cast<std::uint8_t>(mChain[i] ^ in[at + i]);
        }
        EncryptBlock(mChain.data(), mChain.data());
        std::copy(mChain.begin(), mChain.end(), out + at);
    }
}

void AES256CBC::Decrypt(std::uint8_t const* in, std::uint8_t* out, std::size_t size) {
    if (!mKeySet || in == nullptr || out == nullptr || size % kBlockSize != 0) {
        return;
    }
    for (std::size_t at = 0; at < size; at += kBlockSize) {
        Block enciphered{};  // kept, for `out` may be the same place
        std::copy_n(in + at, kBlockSize, enciphered.begin());
        DecryptBlock(enciphered.data(), out + at);
        for (std::size_t i = 0; i < kBlockSize; ++i) {
            out[at + i] = static_cast<std::uint8_t>(out[at + i] ^ mChain[i]);
        }
        mChain = enciphered;
    }
}

void AES256CBC::DoAES256Encrypt(std::uint8_t const* key, std::uint8_t const* iv, char const* text,
                                std::uint8_t* out, int* outLength) {
    if (key == nullptr || iv == nullptr || text == nullptr || out == nullptr ||
        outLength == nullptr) {
        return;
    }
    auto const room = static_cast<std::size_t>(std::max(*outLength, 0));
    std::fill_n(out, room, std::uint8_t{0});
    *outLength = 0;
    std::size_t const length = std::strlen(text) + 1;
    std::size_t const padding = kBlockSize - length % kBlockSize;
    if (length > room || padding > room - length) {
        return;
    }
    std::copy_n(text, length, out);
    std::fill_n(out + length, padding, static_cast<std::uint8_t>(padding - 1));
    AES256CBC cipher;
    cipher.MakeKey(key, iv, kKeyLength, kBlockSize);
    cipher.Encrypt(out, out, length + padding);
    *outLength = static_cast<int>(length + padding);
}

void AES256CBC::DoAES256Decrypt(std::uint8_t const* key, std::uint8_t const* iv,
                                std::uint8_t const* in, int size, std::uint8_t* out,
                                int* outLength) {
    if (key == nullptr || iv == nullptr || in == nullptr || out == nullptr ||
        outLength == nullptr) {
        return;
    }
    int const room = std::max(*outLength, 0);
    std::fill_n(out, room, std::uint8_t{0});
    *outLength = 0;
    if (size < 0 || size > room) {
        return;
    }
    AES256CBC cipher;
    cipher.MakeKey(key, iv, kKeyLength, kBlockSize);
    cipher.Decrypt(in, out, static_cast<std::size_t>(size));
    *outLength = size;
}
