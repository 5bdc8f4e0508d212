// SPDX-License-Identifier: Apache-2.0
#include "ciphers/SHA1.h"

#include <gtest/gtest.h>

#include "OtherCiphers.h"

namespace {

std::string DigestOf(SHA1& sha) {
    std::uint32_t words[SHA1::kDigestWords] = {};
    if (!sha.Result(words)) {
        return "(corrupted)";
    }
    char text[41];
    std::snprintf(text, sizeof text, "%08X%08X%08X%08X%08X", words[0], words[1], words[2], words[3],
                  words[4]);
    return text;
}

TEST(SHA1Test, PublishedDigestsComeOutOfAnyMixOfPieces) {
    SHA1 sha;
    sha << 'a' << static_cast<std::uint8_t>('b') << "c";
    EXPECT_EQ(DigestOf(sha), "A9993E364706816ABA3E25717850C26C9CD0D89D");
    EXPECT_EQ(DigestOf(sha), "A9993E364706816ABA3E25717850C26C9CD0D89D");
    sha.Reset();
    sha << "abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq";
    EXPECT_EQ(DigestOf(sha), "84983E441C3BD26EBAAE4AA1F95129E5E54670F1");
    sha.Reset();
    std::string const many(1000, 'a');
    for (int i = 0; i < 1000; ++i) {
        sha.Input(many.data(), many.size());
    }
    EXPECT_EQ(DigestOf(sha), "34AA973CD4C4DAA4F61EEB2BDBAD27316534016F");
}

TEST(SHA1Test, InputBehindAResultCorruptsUntilReset) {
    SHA1 sha;
    EXPECT_EQ(DigestOf(sha), "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709");
    sha.Input("more", 0);
    EXPECT_NE(DigestOf(sha), "(corrupted)");
    sha.Input('x');
    EXPECT_EQ(DigestOf(sha), "(corrupted)");
    sha.Reset();
    EXPECT_EQ(DigestOf(sha), "DA39A3EE5E6B4B0D3255BFEF95601890AFD80709");
}

TEST(SHA1Test, EveryLengthGivesTheDigestThatItGivesElsewhere) {
    std::mt19937 random = Random();
    for (std::size_t length = 0; length <= 300; ++length) {
        ByteVector const bytes = RandomBytes(random, length);
        SHA1 sha;
        std::size_t const cut = length == 0 ? 0 : random() % length;
        sha.Input(bytes.data(), cut);
        sha.Input(bytes.data() + cut, length - cut);
        ASSERT_EQ(DigestOf(sha), ToHex(OpenSSLSHA1(bytes))) << length;
    }
}

}  // namespace
