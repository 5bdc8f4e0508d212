// SPDX-License-Identifier: Apache-2.0
#include "ciphers/DES.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "OtherCiphers.h"

namespace {

std::string Crypted(ByteVector const& key, DESMode mode, ByteVector block) {
    deskey(key.data(), mode);
    des(block.data(), block.data());
    return ToHex(block);
}

TEST(DESTest, PublishedVectorsComeOutAndBack) {
    struct Case {
        char const* key;
        char const* plain;
        char const* enciphered;
    };
    Case const cases[] = {
        {"133457799BBCDFF1", "0123456789ABCDEF", "85E813540F0AB405"},
        {"0123456789ABCDEF", "4E6F772069732074", "3FA40E8A984D4815"},  // FIPS 81, "Now is t"
        // NIST SP 800-17: variable plaintext, variable key, permutation, substitution
        {"0101010101010101", "8000000000000000", "95F8A5E5DD31D900"},
        {"0101010101010101", "0000000000000001", "166B40B44ABA4BD6"},
        {"8001010101010101", "0000000000000000", "95A8D72813DAA94D"},
        {"1046913489980131", "0000000000000000", "88D55E54F54C97B4"},
        {"7CA110454A1A6E57", "01A1D6D039776742", "690F5B0D9A26939B"},
    };
    for (Case const& c : cases) {
        EXPECT_EQ(Crypted(FromHex(c.key), EN0, FromHex(c.plain)), c.enciphered);
        EXPECT_EQ(Crypted(FromHex(c.key), DE1, FromHex(c.enciphered)), c.plain);
    }
}

TEST(DESTest, EveryBitOfKeyAndBlockCountsAsElsewhere) {
    std::mt19937 random = Random();
    ByteVector const zeros(8);
    for (std::size_t i = 0; i < 600; ++i) {
        ByteVector key = i < 64 ? zeros : RandomBytes(random, 8);
        ByteVector block = i < 128 ? zeros : RandomBytes(random, 8);
        auto const bit = static_cast<std::uint8_t>(0x80U >> i % 8);
        if (i < 64) {
            key[i / 8] = bit;
        } else if (i < 128) {
            block[i % 64 / 8] = bit;
        }
        // Three times the same key is one.
        ByteVector threefold;
        for (int turn = 0; turn < 3; ++turn) {
            threefold.insert(threefold.end(), key.begin(), key.end());
        }
        ASSERT_EQ(Crypted(key, EN0, block),
                  ToHex(Gcrypt(GCRY_CIPHER_3DES, false, threefold, {}, block)));
        ASSERT_EQ(Crypted(key, DE1, block),
                  ToHex(Gcrypt(GCRY_CIPHER_3DES, true, threefold, {}, block)));
    }
}

TEST(DESTest, AKeyIsLoadedForABlockAndLeavesTheFormerScheduleBehind) {
    ByteVector const key = FromHex("0123456789ABCDEF");
    std::uint32_t former[kDESScheduleWords];
    std::fill(std::begin(former), std::end(former), 0x00ABCDEFU);
    usekey(former);
    std::uint32_t copy[kDESScheduleWords] = {};
    {
        LoadedDESKey const loaded(key.data(), EN0);
        cpkey(copy);
        EXPECT_NE(copy[0], former[0]);
        ByteVector block = FromHex("4E6F772069732074");
        des(block.data(), block.data());
        EXPECT_EQ(ToHex(block), "3FA40E8A984D4815");
    }
    std::uint32_t after[kDESScheduleWords] = {};
    cpkey(after);
    EXPECT_TRUE(std::ranges::equal(after, former));
    usekey(copy);
    ByteVector block = FromHex("4E6F772069732074");
    des(block.data(), block.data());
    EXPECT_EQ(ToHex(block), "3FA40E8A984D4815");
}

}  // namespace
