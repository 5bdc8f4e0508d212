// SPDX-License-Identifier: Apache-2.0
#include "ciphers/NoteCipher.h"

#include <gtest/gtest.h>

#include "OtherCiphers.h"
#include "ciphers/KeyMaterial.h"

namespace {

std::string Enciphered(std::string const& text, NoteCipherChoice const& choice) {
    char digits[kNoteDigitsSize];
    return EncipherNote(text.c_str(), choice, digits) ? std::string(NoteDigits(digits)) : "(none)";
}

std::string Deciphered(std::string_view digits, NoteCipherChoice const& choice) {
    char text[kNoteCipherSize];
    bool const isDone = DecipherNote(digits, choice, text);
    EXPECT_TRUE(isDone || text[0] == '\0');
    return isDone ? text : "(refused)";
}

ByteVector Cut(auto const& table, std::size_t at, std::size_t size) {
    return {table.data() + at, table.data() + at + size};
}

std::string ByDES(std::size_t keyAt, ByteVector const& padded) {
    ByteVector key;
    for (int turn = 0; turn < 3; ++turn) {
        ByteVector const part = Cut(kNoteKeyTable, keyAt, 8);
        key.insert(key.end(), part.begin(), part.end());
    }
    return ToHex(Gcrypt(GCRY_CIPHER_3DES, false, key, {}, padded));
}

std::string ByAES(std::size_t keyAt, std::size_t vectorAt, ByteVector const& padded) {
    return ToHex(
        OpenSSLAES(Cut(kNoteKeyTable, keyAt, 32), Cut(kNoteVectorTable, vectorAt, 16), padded));
}

ByteVector Padded(std::string const& text, bool isAES) {
    ByteVector bytes(text.begin(), text.end());
    bytes.resize(bytes.size() + (isAES ? 1 : 0));
    std::size_t const block = isAES ? 16 : 8;
    std::size_t const padding = block - bytes.size() % block;
    bytes.insert(bytes.end(), padding, static_cast<std::uint8_t>(padding - (isAES ? 1 : 0)));
    return bytes;
}

TEST(NoteCipherTest, ThePPDSelectsAlgorithmKeyAndVector) {
    struct Case {
        NoteCipherChoice choice;
        bool isAES;
        std::size_t key;
        std::size_t vector;
    };
    Case const cases[] = {
        {{nullptr, nullptr, false}, false, 0, 0}, {{nullptr, nullptr, true}, true, 0, 0},
        {{"1", nullptr, true}, false, 0, 0},      {{"2", nullptr, false}, true, 0, 0},
        {{"", "1", true}, false, 0, 0},           {{"22", "22", true}, false, 0, 0},
        {{nullptr, "2", false}, false, 8, 0},     {{nullptr, "3", true}, true, 16, 0},
        {{"2", "4", false}, true, 24, 0},         {{nullptr, "5", false}, false, 56, 16},
        {{nullptr, "5", true}, true, 56, 16},     {{"2", "6", true}, true, 88, 32},
    };
    for (Case const& c : cases) {
        std::string const text = "Ring at the gate";
        ByteVector const padded = Padded(text, c.isAES);
        std::string const digits = Enciphered(text, c.choice);
        EXPECT_EQ(digits, c.isAES ? ByAES(c.key, c.vector, padded) : ByDES(c.key, padded));
        EXPECT_EQ(Deciphered(digits, c.choice), text);
    }
}

TEST(NoteCipherTest, EveryLengthThatFitsGoesThereAndBackAndNoLongerOneIsSent) {
    std::mt19937 random = Random();
    for (bool const isAES : {false, true}) {
        NoteCipherChoice const choice{nullptr, "4", isAES};
        for (std::size_t length = 0; length <= 300; ++length) {
            std::string text(length, ' ');
            for (char& c : text) {
                c = static_cast<char>(1 + random() % 255);
            }
            std::string const digits = Enciphered(text, choice);
            if (length > (isAES ? kLongestAESNote : kLongestDESNote)) {
                ASSERT_EQ(digits, "(none)") << length;
                continue;
            }
            ByteVector const padded = Padded(text, isAES);
            ASSERT_EQ(digits, isAES ? ByAES(24, 0, padded) : ByDES(24, padded)) << length;
            ASSERT_EQ(Deciphered(digits, choice), text);
        }
    }
    char digits[kNoteDigitsSize];
    EXPECT_FALSE(EncipherNote(nullptr, {}, digits));
    EXPECT_EQ(Enciphered("", {}).size(), 16U);
    EXPECT_EQ(Enciphered("8 bytes!", {}).size(), 32U);
}

TEST(NoteCipherTest, WrongDigitsLengthsAndPaddingAreRefused) {
    NoteCipherChoice const des{};
    NoteCipherChoice const aes{nullptr, nullptr, true};
    std::string const good = Enciphered("some text", des);
    std::string lower = ByDES(0, ByteVector(8, 8));
    lower[lower.find_first_of("ABCDEF")] += 'a' - 'A';
    std::string const wrong[] = {"",
                                 "0",
                                 good.substr(1),
                                 good.substr(2),
                                 good + "\n",
                                 lower,
                                 good.substr(0, 16),
                                 std::string(272, '0'),
                                 "G" + good.substr(1)};
    for (std::string const& digits : wrong) {
        EXPECT_EQ(Deciphered(digits, des), "(refused)") << digits;
        EXPECT_EQ(Deciphered(digits, aes), "(refused)") << digits;
    }
    std::vector<ByteVector> const badDES = {{1, 2, 3, 4, 5, 6, 7, 0},
                                            {1, 2, 3, 4, 5, 6, 7, 9},
                                            {1, 2, 3, 4, 5, 2, 3, 3},
                                            {1, 2, 0, 4, 5, 6, 7, 1}};
    for (ByteVector const& plain : badDES) {
        EXPECT_EQ(Deciphered(ByDES(0, plain), des), "(refused)");
    }
    ByteVector const noTerminator(16, 15);
    ByteVector tooLong = Padded("text", true);
    tooLong.back() = 16;
    ByteVector inner = Padded("te_t", true);
    inner[2] = 0;
    for (ByteVector const& plain : {noTerminator, tooLong, inner}) {
        EXPECT_EQ(Deciphered(ByAES(0, 0, plain), aes), "(refused)");
    }
}

}  // namespace
