// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

// AES with keys of 256 bits (FIPS 197) in CBC mode (NIST SP 800-38A). An object serves one
// operation; its keys are wiped when it goes. Blocks are 16 bytes; `in` and `out` may be the same
// place. Null arguments, and an object without a key, do nothing.
class AES256CBC {
  public:
    static constexpr int kKeyLength = 32;
    static constexpr int kBlockSize = 16;

    AES256CBC();
    AES256CBC(AES256CBC const&) = delete;
    AES256CBC& operator=(AES256CBC const&) = delete;
    ~AES256CBC();

    // Does nothing unless the lengths, in bytes, are 32 and 16. `chain` is the initialisation
    // vector.
    void MakeKey(std::uint8_t const* key, std::uint8_t const* chain, int keyLength, int blockSize);

    // One block, without chaining.
    void DefEncryptBlock(std::uint8_t const* in, std::uint8_t* out);
    void DefDecryptBlock(std::uint8_t const* in, std::uint8_t* out);
    void EncryptBlock(std::uint8_t const* in, std::uint8_t* out);
    void DecryptBlock(std::uint8_t const* in, std::uint8_t* out);

    // `size` bytes, a multiple of 16 but not 0, else nothing happens. The chain goes on from call
    // to call.
    void Encrypt(std::uint8_t const* in, std::uint8_t* out, std::size_t size);
    void Decrypt(std::uint8_t const* in, std::uint8_t* out, std::size_t size);

    // The text with its terminating zero, filled up to whole blocks with 1 to 16 bytes of a value
    // one less than their number. `*outLength` is the room in `out`, all of which is zeroed first,
    // and becomes the length of the cipher text; 0 if that doesn't fit.
    static void DoAES256Encrypt(std::uint8_t const* key, std::uint8_t const* iv, char const* text,
                                std::uint8_t* out, int* outLength);
    // Zeroes the `*outLength` bytes of `out`, deciphers `size` bytes, which mustn't lie in `out`,
    // and sets `*outLength` to `size`; to 0, with nothing deciphered, if they don't fit. The
    // padding stays.
    static void DoAES256Decrypt(std::uint8_t const* key, std::uint8_t const* iv,
                                std::uint8_t const* in, int size, std::uint8_t* out,
                                int* outLength);

  private:
    static constexpr int kRounds = 14;
    static constexpr std::size_t kColumns = 4;

    using Block = std::array<std::uint8_t, kBlockSize>;
    using Columns = std::array<std::uint32_t, kColumns>;  // row 0 in the highest byte
    using RoundKeys = std::array<Columns, kRounds + 1>;
    using ByteTable = std::array<std::uint8_t, 256>;
    using WordTable = std::array<std::uint32_t, 256>;

    // What differs between the two directions.
    struct Direction {
        std::array<WordTable const*, 4> products;  // one for each row
        ByteTable const* box;
        std::size_t shift;  // which of the two of sm_shifts
    };

    void MakeEncryptionKeys(std::uint8_t const* key);
    void MakeDecryptionKeys();
    void Transform(std::uint8_t const* in, std::uint8_t* out, RoundKeys const& keys,
                   Direction const& direction);

    static constexpr ByteTable MakePowers();
    static constexpr ByteTable MakeLogarithms();
    static constexpr std::uint8_t Multiply(std::uint8_t left, std::uint8_t right);
    static constexpr ByteTable MakeSBox();
    static constexpr ByteTable MakeSame();
    static constexpr ByteTable MakeInverse(ByteTable const& box);
    static constexpr WordTable MakeProducts(ByteTable const& box, std::uint32_t factors);

    static ByteTable const sm_S;   // SubBytes
    static ByteTable const sm_Si;  // its inverse
    static WordTable const sm_T1;  // SubBytes and MixColumns, for a byte of each row
    static WordTable const sm_T2;
    static WordTable const sm_T3;
    static WordTable const sm_T4;
    static WordTable const sm_T5;  // InvSubBytes and InvMixColumns
    static WordTable const sm_T6;
    static WordTable const sm_T7;
    static WordTable const sm_T8;
    static WordTable const sm_U1;  // InvMixColumns alone
    static WordTable const sm_U2;
    static WordTable const sm_U3;
    static WordTable const sm_U4;
    // How many columns away the byte of each row comes from, enciphering and deciphering.
    static std::array<std::array<std::uint8_t, 2>, 4> const sm_shifts;
    static std::array<std::uint8_t, 7> const sm_rcon;  // round constants of the key schedule
    static ByteTable const sm_log;  // to the base 3, in the field of 256 elements
    static ByteTable const sm_alog;

    bool mKeySet = false;
    RoundKeys mEncryptionKeys{};
    RoundKeys mDecryptionKeys{};
    int mKeyLength = 0;
    int mBlockSize = 0;
    int mRounds = 0;
    Block mInitialChain{};
    Block mChain{};
    Columns mWork{};
};
