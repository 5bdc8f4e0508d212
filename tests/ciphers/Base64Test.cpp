// SPDX-License-Identifier: Apache-2.0
#include <gtest/gtest.h>

#include "OtherCiphers.h"
#include "ciphers/Base64Decoder.h"
#include "ciphers/Base64Encoder.h"

namespace {

std::string Encoded(ByteVector const& bytes, bool lineBreaks = false) {
    std::string text(Base64Encoder::EncodedLength(bytes.size()) * 65 / 64 + 1, '?');
    text.resize(Base64Encoder::Encode(bytes.data(), bytes.size(), text.data(), lineBreaks));
    return text;
}

std::string Decoded(Base64Decoder& decoder, std::string_view text) {
    ByteVector bytes(Base64Decoder::MaximumLength(text.size()) + 1);
    bytes.resize(decoder.Decode(text.data(), text.size(), bytes.data()));
    return {bytes.begin(), bytes.end()};
}

TEST(Base64Test, EveryLengthIsWrittenAsElsewhereAndReadBack) {
    std::mt19937 random = Random();
    for (std::size_t length = 1; length <= 300; ++length) {
        ByteVector const bytes = RandomBytes(random, length);
        ByteVector expected(length * 2 + 8);
        expected.resize(static_cast<std::size_t>(
            EVP_EncodeBlock(expected.data(), bytes.data(), static_cast<int>(length))));
        std::string const text = Encoded(bytes);
        ASSERT_EQ(text, std::string(expected.begin(), expected.end()));
        Base64Decoder decoder;
        ASSERT_EQ(Decoded(decoder, text), std::string(bytes.begin(), bytes.end()));
    }
    EXPECT_EQ(Encoded({}), "");
    std::string const lines = Encoded(ByteVector(97), true);
    EXPECT_EQ(lines.size(), 132U + 2U);
    EXPECT_EQ(lines.find('\n'), 64U);
    EXPECT_EQ(lines.rfind('\n'), 129U);
}

TEST(Base64Test, OddInputIsReadAsFarAsItGoes) {
    struct Case {
        std::string_view text;
        std::string_view bytes;
    };
    Case const cases[] = {
        {"Zm9vYmFy", "foobar"},
        {"Zm9vYg==", "foob"},
        {" Zm\n9v\tYm\r\nE= ", "fooba"},
        {"Zm9vYmFy=Zm9v", "foobar"},
        {"Zm9vY", "foo"},
        {"Zm9vYg", "foo"},
        {"Z=", ""},
        {"Zm=9v", "f"},
        {"====", ""},
        {"\xFFZm9v-_.", "foo"},
        {"Zg==Zg==", "f"},
        {"", ""},
    };
    for (Case const& c : cases) {
        Base64Decoder decoder;
        EXPECT_EQ(Decoded(decoder, c.text), c.bytes) << c.text;
    }
    Base64Decoder pieces;
    EXPECT_EQ(Decoded(pieces, "Zm9vY"), "foo");
    EXPECT_EQ(Decoded(pieces, "g="), "b");
    EXPECT_EQ(Decoded(pieces, "Zm9v"), "");
}

}  // namespace
