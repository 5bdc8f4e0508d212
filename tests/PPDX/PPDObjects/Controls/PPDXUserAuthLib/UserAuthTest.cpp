// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <array>
#include <cstring>

#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/PPDXUserAuthLib.h"
#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/UniqueTime.h"
#include "ciphers/KeyMaterial.h"
#include "platform/EthernetTesting.h"
#include "tests/ZUBUtils/PPDUtils/FailingNew.h"
#include "tests/ciphers/OtherCiphers.h"

namespace {

constexpr int kTwofish = GCRY_CIPHER_TWOFISH;

ByteVector FixedKey() {
    return {kUserAuthFixedKey.begin(), kUserAuthFixedKey.end()};
}

ByteVector Cut(ByteVector const& bytes, std::size_t at, std::size_t size) {
    auto const begin = bytes.begin() + static_cast<std::ptrdiff_t>(at);
    return {begin, begin + static_cast<std::ptrdiff_t>(size)};
}

std::size_t Number(ByteVector const& bytes, std::size_t at) {
    return static_cast<std::size_t>(bytes.at(at)) << 24 | bytes.at(at + 1) << 16 |
           bytes.at(at + 2) << 8 | bytes.at(at + 3);
}

ByteVector NumberBytes(std::size_t number) {
    return {static_cast<std::uint8_t>(number >> 24), static_cast<std::uint8_t>(number >> 16),
            static_cast<std::uint8_t>(number >> 8), static_cast<std::uint8_t>(number)};
}

ByteVector Base64Bytes(std::string const& text) {
    ByteVector bytes(text.size());
    int const length = EVP_DecodeBlock(bytes.data(), ByteVector(text.begin(), text.end()).data(),
                                       static_cast<int>(text.size()));
    EXPECT_GE(length, 0);
    bytes.resize(static_cast<std::size_t>(length - std::ranges::count(text, '=')));
    return bytes;
}

std::string Base64Text(ByteVector const& bytes) {
    std::string text(bytes.size() * 2 + 8, '\0');
    text.resize(
        static_cast<std::size_t>(EVP_EncodeBlock(reinterpret_cast<unsigned char*>(text.data()),
                                                 bytes.data(), static_cast<int>(bytes.size()))));
    return text;
}

// The session key is written with the highest byte of a word first and used with the lowest first.
ByteVector SessionKey(ByteVector const& outer) {
    ByteVector key = Cut(outer, 8, 32);
    for (std::size_t at = 0; at < key.size(); at += 4) {
        std::reverse(key.data() + at, key.data() + at + 4);
    }
    return key;
}

// What a reader on the other side takes out of a record, step by step.
struct Record {
    explicit Record(std::string const& text)
        : outer(Gcrypt(kTwofish, true, FixedKey(), {}, Base64Bytes(text))),
          middle(Gcrypt(kTwofish, true, SessionKey(outer), {}, Cut(outer, 40, Number(outer, 4)))),
          inner(Cut(middle, 4, Number(middle, 0))) {}

    ByteVector outer;
    ByteVector middle;
    ByteVector inner;
};

std::string Seal(ByteVector outer, ByteVector const& middle) {
    ByteVector const enciphered = Gcrypt(kTwofish, false, SessionKey(outer), {}, middle);
    std::ranges::copy(enciphered, outer.begin() + 40);
    return Base64Text(Gcrypt(kTwofish, false, FixedKey(), {}, outer));
}

// A middle block around `inner`, whose length is said to be `length`, with a digest that fits.
ByteVector Middle(ByteVector const& inner, std::size_t length) {
    ByteVector middle = NumberBytes(length);
    middle.insert(middle.end(), inner.begin(), inner.end());
    ByteVector const digest = OpenSSLSHA1(inner);
    middle.insert(middle.end(), digest.begin(), digest.end());
    middle.resize(middle.size() / 16 * 16 + 16);
    return middle;
}

struct Unpacked {
    explicit Unpacked(std::string const& text) {
        char* texts[] = {&filler, &filler, &filler};
        status =
            UAL_UnpackAndDecrypt(text.c_str(), &texts[0], &texts[1], &texts[2], &type, guid.data());
        for (std::size_t i = 0; i < 3; ++i) {
            EXPECT_EQ(texts[i] == nullptr, status != 0);
            fields[i] = texts[i] == nullptr ? "(null)" : texts[i];
            AUTH_freeBuffer(&texts[i]);
        }
    }

    char filler = 'x';
    int status;
    std::array<std::string, 3> fields;
    UAL_DomainType type{77};
    std::array<unsigned char, kGUIDSize> guid{};
};

using Fields = std::array<std::string, 3>;

class UserAuthTest : public OwnershipTest {
  protected:
    void TearDown() override {
        ReplaceEthernetRegistry(nullptr);
        FailAnyNewAfter(-1);
        OwnershipTest::TearDown();
    }

    static std::string Packed(char const* user, char const* password,
                              UAL_DomainType type = kUALUserDomain) {
        char* text = nullptr;
        EXPECT_EQ(AUTH_packAndEncrypt(user, password, "ignored", type, 5, &text), 0);
        std::string const packed = text == nullptr ? "" : text;
        AUTH_freeBuffer(&text);
        EXPECT_EQ(text, nullptr);
        return packed;
    }

    EthernetRegistry mRegistry{{{{2, 4, 6, 8, 10, 12}, true}}};
};

TEST_F(UserAuthTest, ARecordComesApartWithOtherCiphers) {
    ReplaceEthernetRegistry(&mRegistry);
    for (std::size_t length = 1; length <= 40; ++length) {
        SCOPED_TRACE(length);
        std::string const user(length, 'u');
        Record const record(Packed(user.c_str(), "p\xC3\xA4ss"));
        std::size_t const size = 36 + length + 5;
        ASSERT_EQ(record.inner.size(), size);
        ASSERT_EQ(record.middle.size(), (size + 24) / 16 * 16 + 16);
        ASSERT_EQ(record.outer.size(), record.middle.size() + 48);
        ASSERT_EQ(Number(record.outer, 0), 1U);
        ASSERT_EQ(Cut(record.outer, 8, 4), Cut(record.outer, 36, 4)) << "one random number twice";
        ASSERT_EQ(Cut(record.outer, record.outer.size() - 8, 8), ByteVector(8));
        ASSERT_EQ(Cut(record.middle, 4 + size, 20), OpenSSLSHA1(record.inner));
        std::size_t const zeros = record.middle.size() - size - 24;
        ASSERT_EQ(Cut(record.middle, 24 + size, zeros), ByteVector(zeros));
        ASSERT_EQ(ToHex(Cut(record.inner, 0, 26)).substr(0, 40),
                  "00000001" + ToHex(NumberBytes(length)) + "000000050000000000000002");
        ASSERT_EQ(ToHex(Cut(record.inner, 20, 6)), "020406080A0C");
        ASSERT_EQ(Cut(record.inner, 30, 6), ByteVector(6));
        ASSERT_EQ(std::string(record.inner.begin() + 36, record.inner.end()), user + "p\xC3\xA4ss");
    }
}

TEST_F(UserAuthTest, OnlyAUserOfTheKnownDomainTypeIsPackedAndThatUpTo255Bytes) {
    std::string const longText(300, 'x');
    std::string const cut(255, 'x');
    EXPECT_EQ(Unpacked(Packed(longText.c_str(), longText.c_str())).fields, (Fields{cut, cut, ""}));
    for (std::string const& text :
         {Packed("", "secret"), Packed(nullptr, "secret"), Packed("user", nullptr),
          Packed("user", "secret", {}), Packed("user", "secret", UAL_DomainType{3})}) {
        EXPECT_EQ(text.size(), 152U);
        Unpacked const unpacked(text);
        EXPECT_EQ(unpacked.fields, Fields{});
        EXPECT_EQ(unpacked.type, kUALUserDomain);
    }
    EXPECT_EQ(Unpacked(Packed("user", "")).fields, (Fields{"user", "", ""}));
    EXPECT_NE(Packed("user", "secret"), Packed("user", "secret"));
}

TEST_F(UserAuthTest, WhatWasPackedComesBack) {
    unsigned char const guid[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16};
    std::string const longText(5000, 'z');
    char* text = nullptr;
    ASSERT_EQ(
        UAL_PackAndEncrypt("user", longText.c_str(), "domain", UAL_DomainType{-9}, guid, &text), 0);
    Unpacked const unpacked(text);
    EXPECT_EQ(unpacked.status, 0);
    EXPECT_EQ(unpacked.fields, (Fields{"user", longText, "domain"}));
    EXPECT_EQ(unpacked.type, UAL_DomainType{-9});
    EXPECT_TRUE(std::ranges::equal(unpacked.guid, guid));
    // Line ends in the text don't matter.
    EXPECT_EQ(Unpacked(std::string(text).insert(7, "\r\n ")).fields, unpacked.fields);
    AUTH_freeBuffer(&text);
}

TEST_F(UserAuthTest, NoByteOfARecordCanBeChangedAtAnyLevel) {
    // 4 + 36 + 4 + 4 and 20 of digest leave 16 zeros that no digest covers.
    std::string const text = Packed("user", "word");
    Record const record(text);
    ASSERT_EQ(Unpacked(text).fields, (Fields{"user", "word", ""}));
    ByteVector const sealed = Base64Bytes(text);
    for (std::size_t i = 0; i < sealed.size(); ++i) {
        ByteVector changed = sealed;
        changed[i] ^= 0x55;
        ASSERT_EQ(Unpacked(Base64Text(changed)).status, -1) << i;
        ASSERT_EQ(Unpacked(Base64Text(Cut(sealed, 0, i))).status, -1) << i;
    }
    for (std::size_t i = 0; i < record.middle.size(); ++i) {
        ByteVector changed = record.middle;
        changed[i] ^= 1;
        ASSERT_EQ(Unpacked(Seal(record.outer, changed)).status, -1) << i;
    }
    for (std::size_t i = 0; i < 40; ++i) {
        ByteVector changed = record.outer;
        changed[i] ^= 1;
        ByteVector const forged = Gcrypt(kTwofish, false, FixedKey(), {}, changed);
        ASSERT_EQ(Unpacked(Base64Text(forged)).status, -1) << i;
    }
}

TEST_F(UserAuthTest, LengthsThatLieAreRefusedThoughTheDigestFits) {
    Record const record(Packed("user", "word"));
    for (std::size_t const at : {0U, 4U, 8U, 12U}) {
        for (std::size_t const value : {3UL, 5UL, 9UL, 0x7FFFFFFFUL, 0xFFFFFFFFUL, 0xFFFFFFFCUL}) {
            ByteVector inner = record.inner;
            std::ranges::copy(NumberBytes(value), inner.begin() + static_cast<std::ptrdiff_t>(at));
            ASSERT_EQ(Unpacked(Seal(record.outer, Middle(inner, inner.size()))).status, -1);
        }
    }
    for (std::size_t const length : {0UL, 35UL, 45UL, 64UL, 0x7FFFFFFFUL, 0xFFFFFFFFUL}) {
        ASSERT_EQ(Unpacked(Seal(record.outer, Middle(record.inner, length))).status, -1);
    }
    ASSERT_EQ(Unpacked(Seal(record.outer, Middle(record.inner, record.inner.size()))).status, 0);
    ByteVector const block = NumberBytes(1);
    for (std::size_t size = 0; size <= 160; size += 16) {
        ByteVector plain(size);
        std::copy_n(block.begin(), std::min<std::size_t>(size, 4), plain.begin());
        ASSERT_EQ(Unpacked(Base64Text(Gcrypt(kTwofish, false, FixedKey(), {}, plain))).status, -1);
    }
}

TEST_F(UserAuthTest, MissingArgumentsAndMemoryLeaveNull) {
    char filler = 'x';
    char* text = &filler;
    EXPECT_EQ(AUTH_packAndEncrypt("u", "p", "", kUALUserDomain, 0, nullptr), -1);
    EXPECT_EQ(UAL_PackAndEncrypt("u", "p", "", kUALUserDomain, nullptr, nullptr), -1);
    EXPECT_EQ(UAL_PackAndEncrypt(nullptr, "p", "", kUALUserDomain, nullptr, &text), -1);
    EXPECT_EQ(text, nullptr);
    text = &filler;
    EXPECT_EQ(UAL_PackAndEncrypt("u", nullptr, "", kUALUserDomain, nullptr, &text), -1);
    EXPECT_EQ(text, nullptr);
    AUTH_freeBuffer(nullptr);
    AUTH_freeBuffer(&text);
    EXPECT_EQ(UAL_UnpackAndDecrypt(nullptr, &text, &text, &text, nullptr, nullptr), -1);
    EXPECT_EQ(UAL_UnpackAndDecrypt("text", nullptr, nullptr, nullptr, nullptr, nullptr), -1);
    EXPECT_FALSE(CreateGUID(nullptr));
    std::string const packed = Packed("user", "secret");
    int failures = 0;
    for (bool hasFailed = true; hasFailed; ++failures) {
        UAL_DomainType type{};
        unsigned char guid[kGUIDSize];
        char* fields[3] = {};
        text = &filler;
        FailAnyNewAfter(failures);
        int const status = UAL_PackAndEncrypt("u", "p", nullptr, kUALUserDomain, nullptr, &text);
        bool const packingFailed = HasAnyNewFailed();
        FailAnyNewAfter(failures);
        int const unpacking =
            UAL_UnpackAndDecrypt(packed.c_str(), &fields[0], &fields[1], &fields[2], &type, guid);
        bool const unpackingFailed = HasAnyNewFailed();
        FailAnyNewAfter(-1);
        EXPECT_EQ(status, packingFailed ? -1 : 0);
        EXPECT_EQ(unpacking, unpackingFailed ? -1 : 0);
        EXPECT_EQ(text == nullptr, packingFailed);
        hasFailed = packingFailed || unpackingFailed;
        AUTH_freeBuffer(&text);
        std::ranges::for_each(fields, [](char*& field) { AUTH_freeBuffer(&field); });
    }
    EXPECT_GT(failures, 2);
}

TEST_F(UserAuthTest, AMomentNeverComesTwice) {
    UniqueTime last{100, 999998};
    EXPECT_EQ(TakeUniqueTime({100, 999999}, last), (UniqueTime{100, 999999}));
    EXPECT_EQ(TakeUniqueTime({100, 999999}, last), (UniqueTime{101, 0}));
    EXPECT_EQ(TakeUniqueTime({100, 999999}, last), (UniqueTime{101, 1}));
    EXPECT_EQ(TakeUniqueTime({105, 7}, last), (UniqueTime{105, 7}));
    EXPECT_EQ(IdentifierWord({0x12345678, 0xABC00}), 0x2C456780U);
}

TEST_F(UserAuthTest, TheLastMatchingInterfaceGivesTheAddressAndTroubleIsPrinted) {
    struct Case {
        EthernetRegistry registry;
        int status;
        char const* address;
        char const* output;
    };
    Case const cases[] = {
        {{}, 5, "000000000000", ""},
        {{{{{1, 2, 3, 4, 5, 6}, false}}}, 5, "000000000000", ""},
        {{{{{1, 2, 3, 4, 5, 6}, true}, {{9, 8, 7, 6, 5, 4}, true}}}, 0, "090807060504", ""},
        {{{{{1, 2, 3, 4, 5, 6}, true}, {{}, true}}}, 0, "010203040506", ""},
        {{{{{1, 2, 3, 4, 5, 6, 7}, true}, {{9}, true, 0xBAD}}},
         0xBAD,
         "010203040506",
         "IORegistryEntryGetParentEntry returned 0x00000bad\n"},
        {{{{{1, 2, 3, 4, 5, 6}, true}}, 0x2C2},
         0x2C2,
         "(untouched)",
         "IOServiceGetMatchingServices returned 0x000002c2\n"
         "FindEthernetInterfaces returned 0x000002c2\n"},
    };
    for (Case const& c : cases) {
        ReplaceEthernetRegistry(&c.registry);
        unsigned char* mac = nullptr;
        testing::internal::CaptureStdout();
        EXPECT_EQ(goGetMACAddress(&mac), c.status);
        EXPECT_EQ(testing::internal::GetCapturedStdout(), c.output);
        EXPECT_EQ(mac == nullptr ? "(untouched)" : ToHex(ByteVector(mac, mac + 6)), c.address);
    }
    ReplaceEthernetRegistry(&mRegistry);
    for (auto const& [creations, sentence] :
         {std::pair(0, "IOServiceMatching returned a NULL dictionary."),
          std::pair(2, "CFDictionaryCreateMutable returned a NULL dictionary.")}) {
        FailCreationAfter(creations);
        testing::internal::CaptureStdout();
        goGetMACAddress(nullptr);
        EXPECT_NE(testing::internal::GetCapturedStdout().find(sentence), std::string::npos);
    }
}

}  // namespace
