// SPDX-License-Identifier: Apache-2.0
#include "ciphers/AES256CBC.h"

#include <gtest/gtest.h>

#include "OtherCiphers.h"

namespace {

TEST(AES256CBCTest, PublishedVectorsComeOutAndBackAlsoInPieces) {
    AES256CBC block;
    ByteVector const zeros(16);
    block.MakeKey(
        FromHex("000102030405060708090A0B0C0D0E0F101112131415161718191A1B1C1D1E1F").data(),
        zeros.data(), 32, 16);
    ByteVector work = FromHex("00112233445566778899AABBCCDDEEFF");  // FIPS 197, C.3
    block.EncryptBlock(work.data(), work.data());
    EXPECT_EQ(ToHex(work), "8EA2B7CA516745BFEAFC49904B496089");
    block.DecryptBlock(work.data(), work.data());
    EXPECT_EQ(ToHex(work), "00112233445566778899AABBCCDDEEFF");

    // NIST SP 800-38A, F.2.5
    ByteVector const key =
        FromHex("603DEB1015CA71BE2B73AEF0857D77811F352C073B6108D72D9810A30914DFF4");
    ByteVector const vector = FromHex("000102030405060708090A0B0C0D0E0F");
    std::string const plain =
        "6BC1BEE22E409F96E93D7E117393172AAE2D8A571E03AC9C9EB76FAC45AF8E51"
        "30C81C46A35CE411E5FBC1191A0A52EFF69F2445DF4F9B17AD2B417BE66C3710";
    std::string const enciphered =
        "F58C4C04D6E5F1BA779EABFB5F7BFBD69CFC4E967EDB808D679F777BC6702C7D"
        "39F23369A9D9BACFA530E26304231461B2EB05E2C39BE9FCDA6C19078C6A9D1B";
    AES256CBC cipher;
    cipher.MakeKey(key.data(), vector.data(), 32, 16);
    ByteVector text = FromHex(plain);
    cipher.Encrypt(text.data(), text.data(), 16);
    cipher.Encrypt(text.data() + 16, text.data() + 16, 48);
    EXPECT_EQ(ToHex(text), enciphered);
    AES256CBC inverse;
    inverse.MakeKey(key.data(), vector.data(), 32, 16);
    inverse.Decrypt(text.data(), text.data(), 48);
    inverse.Decrypt(text.data() + 48, text.data() + 48, 16);
    EXPECT_EQ(ToHex(text), plain);
}

TEST(AES256CBCTest, WithoutAKeyOrWholeBlocksNothingHappens) {
    ByteVector const key(32, 7);
    ByteVector out(32, 0xAA);
    ByteVector const untouched = out;
    AES256CBC keyless;
    keyless.MakeKey(key.data(), key.data(), 16, 16);
    keyless.MakeKey(key.data(), key.data(), 32, 32);
    keyless.MakeKey(nullptr, key.data(), 32, 16);
    keyless.Encrypt(key.data(), out.data(), 32);
    keyless.Decrypt(key.data(), out.data(), 32);
    keyless.EncryptBlock(key.data(), out.data());
    AES256CBC cipher;
    cipher.MakeKey(key.data(), key.data(), 32, 16);
    cipher.Encrypt(key.data(), out.data(), 17);
    cipher.Decrypt(key.data(), out.data(), 0);
    EXPECT_EQ(out, untouched);
}

TEST(AES256CBCTest, TextsOfEveryLengthArePaddedAndEncipheredAsElsewhere) {
    std::mt19937 random = Random();
    for (std::size_t length = 0; length <= 300; ++length) {
        SCOPED_TRACE(length);
        ByteVector const key = RandomBytes(random, 32);
        ByteVector const vector = RandomBytes(random, 16);
        ByteVector padded = RandomBytes(random, length);
        for (std::uint8_t& byte : padded) {
            byte = byte == 0 ? 1 : byte;
        }
        std::string const text(padded.begin(), padded.end());
        padded.push_back(0);
        std::size_t const padding = 16 - padded.size() % 16;
        padded.insert(padded.end(), padding, static_cast<std::uint8_t>(padding - 1));

        ByteVector out(padded.size() + 5, 0xAA);
        int outLength = static_cast<int>(out.size());
        AES256CBC::DoAES256Encrypt(key.data(), vector.data(), text.c_str(), out.data(), &outLength);
        ByteVector expected = OpenSSLAES(key, vector, padded);
        expected.resize(out.size());
        ASSERT_EQ(out, expected);
        ASSERT_EQ(outLength, static_cast<int>(padded.size()));

        ByteVector plain(out.size(), 0xAA);
        int plainLength = static_cast<int>(plain.size());
        AES256CBC::DoAES256Decrypt(key.data(), vector.data(), out.data(), outLength, plain.data(),
                                   &plainLength);
        ASSERT_EQ(plainLength, outLength);
        padded.resize(plain.size());
        ASSERT_EQ(plain, padded);

        outLength = static_cast<int>(out.size()) - 6;
        AES256CBC::DoAES256Encrypt(key.data(), vector.data(), text.c_str(), out.data(), &outLength);
        ASSERT_EQ(outLength, 0) << "a text that doesn't fit";
    }
}

}  // namespace
