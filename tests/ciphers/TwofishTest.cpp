// SPDX-License-Identifier: Apache-2.0
#include "ciphers/Twofish.h"

#include <gtest/gtest.h>

#include <map>

#include "OtherCiphers.h"

namespace {

int AlgorithmOf(ByteVector const& key) {
    return key.size() == 16 ? GCRY_CIPHER_TWOFISH128 : GCRY_CIPHER_TWOFISH;
}

ByteVector Crypted(bool decrypt, std::uint8_t mode, ByteVector const& key, ByteVector const& vector,
                   ByteVector const& in) {
    keyInstance instance{};
    cipherInstance cipher{};
    int const bits = static_cast<int>(in.size()) * 8;
    EXPECT_EQ(makeKey(&instance, DIR_ENCRYPT, static_cast<int>(key.size()) * 8, ToHex(key).c_str()),
              1);
    EXPECT_EQ(cipherInit(&cipher, mode, ToHex(vector).c_str()), 1);
    ByteVector out(in.size());
    auto* const work = decrypt ? blockDecrypt : blockEncrypt;
    EXPECT_EQ(work(&cipher, &instance, in.data(), bits, out.data()), bits);
    return out;
}

TEST(TwofishTest, TheTablesTestOf49StepsUsesEveryTableEntryAndEndsAsPublished) {
    std::map<int, std::string> const published = {
        {1, "57FF739D4DC92C1BD7FC01700CC8216F"}, {2, "D43BB7556EA32E46F2A282B7D45B4E0D"},
        {3, "90AFE91BB288544F2C32DC239B2635E6"}, {4, "6CB4561C40BF0A9705931CB6D408E7FA"},
        {5, "3059D6D61753B958D92F4781C8640E58"}, {49, "37FE26FF1CF66175F5DDF4C33B97A205"},
    };
    EXPECT_EQ(TableOp(TAB_RESET), 1);
    EXPECT_EQ(TableOp(TAB_QUERY), 0);
    EXPECT_EQ(TableOp(TAB_ENABLE), 1);
    ByteVector key(32);
    ByteVector plain(16);
    for (int step = 1; step <= 49; ++step) {
        ByteVector const enciphered = Crypted(false, MODE_ECB, key, {}, plain);
        ASSERT_EQ(enciphered, Gcrypt(GCRY_CIPHER_TWOFISH, false, key, {}, plain)) << step;
        if (auto const found = published.find(step); found != published.end()) {
            EXPECT_EQ(ToHex(enciphered), found->second) << step;
        }
        ASSERT_EQ(Crypted(true, MODE_ECB, key, {}, enciphered), plain);
        key.insert(key.begin(), plain.begin(), plain.end());
        key.resize(32);
        plain = enciphered;
    }
    EXPECT_EQ(TableOp(TAB_QUERY), 1);
    EXPECT_EQ(TableOp(TAB_DISABLE), 1);
    TableOp(TAB_RESET);
    Crypted(false, MODE_ECB, key, {}, plain);
    EXPECT_EQ(TableOp(TAB_QUERY), 0) << "nothing is recorded when it is off";
    EXPECT_EQ(TableOp(4), 0);
}

TEST(TwofishTest, PublishedVectorsOfAllKeyLengths) {
    struct Case {
        char const* key;
        char const* enciphered;
    };
    Case const cases[] = {
        {"00000000000000000000000000000000", "9F589F5CF6122C32B6BFEC2F2AE8C35A"},
        {"0123456789ABCDEFFEDCBA98765432100011223344556677", "CFD1D2E5A9BE9CDF501F13B892BD2248"},
        {"0123456789ABCDEFFEDCBA987654321000112233445566778899AABBCCDDEEFF",
         "37527BE0052334B89F0CFCCAE87CFA20"},
    };
    for (Case const& c : cases) {
        ByteVector const key = FromHex(c.key);
        EXPECT_EQ(ToHex(Crypted(false, MODE_ECB, key, {}, ByteVector(16))), c.enciphered);
        EXPECT_EQ(Crypted(true, MODE_ECB, key, {}, FromHex(c.enciphered)), ByteVector(16));
    }
}

TEST(TwofishTest, BlocksOfEveryNumberAreEncipheredAsElsewhere) {
    std::mt19937 random = Random();
    for (std::size_t size = 0; size <= 304; size += 16) {
        ByteVector const key = RandomBytes(random, size % 32 == 0 ? 32 : 16);
        ByteVector const vector = RandomBytes(random, 16);
        ByteVector const plain = RandomBytes(random, size);
        ByteVector const chained = Gcrypt(AlgorithmOf(key), false, key, vector, plain);
        ASSERT_EQ(Crypted(false, MODE_CBC, key, vector, plain), chained);
        ASSERT_EQ(Crypted(true, MODE_CBC, key, vector, chained), plain);
        ASSERT_EQ(Crypted(false, MODE_ECB, key, {}, plain),
                  Gcrypt(AlgorithmOf(key), false, key, {}, plain));
    }
    // A key of another length is filled up with zeros.
    ByteVector const odd = RandomBytes(random, 20);
    ByteVector filled = odd;
    filled.resize(24);
    EXPECT_EQ(Crypted(false, MODE_ECB, odd, {}, ByteVector(16)),
              Crypted(false, MODE_ECB, filled, {}, ByteVector(16)));
}

TEST(TwofishTest, CFB1TakesBitByBitAndGoesOnWhereItStopped) {
    std::mt19937 random = Random();
    ByteVector const key = RandomBytes(random, 32);
    ByteVector const vector = RandomBytes(random, 16);
    ByteVector const plain = RandomBytes(random, 38);
    // The register as a text of bits.
    std::string bits;
    auto const append = [&bits](ByteVector const& bytes) {
        for (int i = 0; i < static_cast<int>(bytes.size()) * 8; ++i) {
            bits += (bytes[static_cast<std::size_t>(i) / 8] >> (7 - i % 8) & 1) != 0 ? '1' : '0';
        }
    };
    append(plain);
    std::string const given = bits;
    bits.clear();
    append(vector);
    std::string expected;
    for (char const bit : given) {
        ByteVector state;
        for (std::size_t i = 0; i < 128; i += 8) {
            state.push_back(static_cast<std::uint8_t>(std::stoi(bits.substr(i, 8), nullptr, 2)));
        }
        bool const first = Gcrypt(GCRY_CIPHER_TWOFISH, false, key, {}, state)[0] >= 0x80;
        expected += first == (bit == '1') ? '0' : '1';
        bits = bits.substr(1) + expected.back();
    }
    ByteVector wanted;
    for (std::size_t i = 0; i < expected.size(); i += 8) {
        wanted.push_back(static_cast<std::uint8_t>(std::stoi(expected.substr(i, 8), nullptr, 2)));
    }
    EXPECT_EQ(Crypted(false, MODE_CFB1, key, vector, plain), wanted);
    EXPECT_EQ(Crypted(true, MODE_CFB1, key, vector, wanted), plain);

    keyInstance instance{};
    cipherInstance cipher{};
    makeKey(&instance, DIR_ENCRYPT, 256, ToHex(key).c_str());
    cipherInit(&cipher, MODE_CFB1, ToHex(vector).c_str());
    ByteVector out(plain.size(), 0xFF);
    EXPECT_EQ(blockEncrypt(&cipher, &instance, plain.data(), 8, out.data()), 8);
    EXPECT_EQ(blockEncrypt(&cipher, &instance, plain.data() + 1, 3, out.data() + 1), 3);
    EXPECT_EQ(out[0], wanted[0]);
    EXPECT_EQ(out[1], (wanted[1] & 0xE0) | 0x1F);
}

TEST(TwofishTest, EachWrongArgumentHasItsNumber) {
    keyInstance key{};
    cipherInstance cipher{};
    std::string const hex(64, 'a');
    EXPECT_EQ(makeKey(nullptr, DIR_ENCRYPT, 256, nullptr), BAD_KEY_INSTANCE);
    EXPECT_EQ(makeKey(&key, 2, 256, nullptr), BAD_KEY_DIR);
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 7, nullptr), BAD_KEY_MAT);
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 257, nullptr), BAD_KEY_MAT);
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 256, hex.substr(1).c_str()), BAD_KEY_MAT);
    EXPECT_EQ(makeKey(&key, DIR_ENCRYPT, 8, "aG"), BAD_KEY_MAT);
    EXPECT_EQ(reKey(&key), BAD_KEY_INSTANCE);
    EXPECT_EQ(cipherInit(nullptr, MODE_ECB, nullptr), BAD_CIPHER_STATE);
    EXPECT_EQ(cipherInit(&cipher, 0, nullptr), BAD_CIPHER_MODE);
    EXPECT_EQ(cipherInit(&cipher, MODE_CBC, nullptr), BAD_IV_MAT);
    EXPECT_EQ(cipherInit(&cipher, MODE_CFB1, "12"), BAD_IV_MAT);
    ByteVector block(16);
    EXPECT_EQ(blockEncrypt(&cipher, &key, block.data(), 128, block.data()), BAD_CIPHER_STATE);
    ASSERT_EQ(cipherInit(&cipher, MODE_ECB, "not read"), 1);
    EXPECT_EQ(blockEncrypt(&cipher, &key, block.data(), 128, block.data()), BAD_KEY_INSTANCE);
    ASSERT_EQ(makeKey(&key, DIR_DECRYPT, 200, ""), 1);
    EXPECT_EQ(key.keyLen, 256);
    EXPECT_EQ(key.key32, decltype(key.key32){});
    EXPECT_EQ(blockDecrypt(&cipher, &key, block.data(), 127, block.data()), BAD_INPUT_LEN);
    EXPECT_EQ(blockDecrypt(&cipher, &key, nullptr, 128, block.data()), BAD_PARAMS);
    cipher.mode = 9;
    EXPECT_EQ(blockDecrypt(&cipher, &key, block.data(), 128, block.data()), BAD_CIPHER_MODE);
}

}  // namespace
