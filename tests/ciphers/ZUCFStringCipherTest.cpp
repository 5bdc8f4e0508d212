// SPDX-License-Identifier: Apache-2.0
#include "ciphers/ZUCFStringCipher.h"

#include <gcrypt.h>

#include "ciphers/KeyMaterial.h"
#include "ciphers/ZUCFBase64.h"
#include "tests/platform/TestSupport.h"

namespace {

constexpr std::size_t kBlockSize = 16;

// The same ciphers by libgcrypt, with the padding by hand.
class ReferenceCipher {
  public:
    explicit ReferenceCipher(std::string_view passPhrase) {
        gcry_check_version(nullptr);
        std::uint8_t key[kBlockSize];
        EXPECT_EQ(gcry_kdf_derive(passPhrase.data(), passPhrase.size(), GCRY_KDF_PBKDF2,
                                  GCRY_MD_SHA1, kPresetSalt.data(), 8, 1000, sizeof key, key),
                  0U);
        EXPECT_EQ(gcry_cipher_open(&mCipher, GCRY_CIPHER_AES128, GCRY_CIPHER_MODE_CBC, 0), 0U);
        EXPECT_EQ(gcry_cipher_setkey(mCipher, key, sizeof key), 0U);
    }
    ReferenceCipher(ReferenceCipher const&) = delete;
    ReferenceCipher& operator=(ReferenceCipher const&) = delete;
    ~ReferenceCipher() { gcry_cipher_close(mCipher); }

    std::string Encrypted(std::string text) {
        std::size_t const padding = kBlockSize - text.size() % kBlockSize;
        text.append(padding, static_cast<char>(padding));
        SetVector();
        EXPECT_EQ(gcry_cipher_encrypt(mCipher, text.data(), text.size(), nullptr, 0), 0U);
        return text;
    }
    // Nothing where length or padding are wrong.
    std::optional<std::string> Decrypted(std::string bytes) {
        SetVector();
        if (bytes.empty() ||
            gcry_cipher_decrypt(mCipher, bytes.data(), bytes.size(), nullptr, 0) != 0) {
            return std::nullopt;
        }
        auto const padding = static_cast<unsigned char>(bytes.back());
        if (padding == 0 || padding > kBlockSize ||
            bytes.substr(bytes.size() - padding) != std::string(padding, bytes.back())) {
            return std::nullopt;
        }
        return bytes.substr(0, bytes.size() - padding);
    }

  private:
    void SetVector() {
        EXPECT_EQ(gcry_cipher_setiv(mCipher, kPresetInitialisationVector.data(), kBlockSize), 0U);
    }

    gcry_cipher_hd_t mCipher = nullptr;
};

CFRef<CFStringRef> Key(std::string_view text = kPresetKey) {
    return Str(text);
}

CFRef<CFStringRef> Encrypted(CFStringRef text, CFStringRef key) {
    return CFRef<CFStringRef>(ZUCFCreateEncryptedString(text, key));
}

CFRef<CFStringRef> Decrypted(CFStringRef text, CFStringRef key) {
    return CFRef<CFStringRef>(ZUCFCreateDecryptedString(text, key));
}

std::string Bytes64(CFStringRef text) {
    return Text(CFRef<CFDataRef>(ZUCFBase64CreateDecodedData(text)));
}

class ZUCFStringCipherTest : public OwnershipTest {
  protected:
    void TearDown() override {
        FailCryptoCall(nullptr, noErr);
        OwnershipTest::TearDown();
    }
};

TEST_F(ZUCFStringCipherTest, EveryLengthIsEncryptedAsAnotherLibraryDoesIt) {
    ReferenceCipher reference(kPresetKey);
    std::string text;
    for (int length = 0; length <= 100; ++length) {
        auto const encrypted = Encrypted(Str(text), Key());
        EXPECT_EQ(Bytes64(encrypted), reference.Encrypted(text)) << length;
        EXPECT_EQ(Text(Decrypted(encrypted, Key())), text);
        text += static_cast<char>(' ' + length % 90);
    }
}

TEST_F(ZUCFStringCipherTest, TextsAndPassPhrasesAreTakenAsUTF8) {
    for (std::string_view const text :
         {std::string_view("p\xC3\xA4ssw\xC3\xB6rd"), std::string_view("\xE6\x9A\x97\xE5\x8F\xB7"),
          std::string_view("\xF0\x9F\x94\x91"), std::string_view("a\0b", 3)}) {
        for (std::string_view const key : {"k\xC3\xA9y", "", "another"}) {
            auto const encrypted = Encrypted(Str(text), Key(key));
            EXPECT_EQ(Bytes64(encrypted), ReferenceCipher(key).Encrypted(std::string(text)));
            EXPECT_EQ(Text(Decrypted(encrypted, Key(key))), text);
        }
    }
    auto const ofNull = Encrypted(nullptr, Key());
    EXPECT_EQ(CFStringGetLength(ofNull), 24);
    EXPECT_TRUE(CFEqual(ofNull, Encrypted(CFSTR(""), Key())));
}

TEST_F(ZUCFStringCipherTest, WhatCannotBeEncryptedOrDecryptedIsNull) {
    char16_t const half[] = {'a', 0xD83D};
    CFRef<CFStringRef> const noText(CFStringCreateWithCharacters(nullptr, half, 2));
    auto const encrypted = Encrypted(Str("a secret"), Key());
    testing::internal::CaptureStderr();
    EXPECT_FALSE(Encrypted(noText, Key()));
    EXPECT_FALSE(Encrypted(CFSTR("a"), nullptr));
    EXPECT_FALSE(Encrypted(CFSTR("a"), noText));
    EXPECT_FALSE(Decrypted(encrypted, nullptr));
    EXPECT_FALSE(Decrypted(encrypted, CFSTR("wrong")));
    EXPECT_FALSE(Decrypted(nullptr, Key()));
    EXPECT_FALSE(Decrypted(CFSTR(""), Key()));
    // Well padded, but no UTF-8.
    EXPECT_FALSE(Decrypted(CFRef<CFStringRef>(ZUCFBase64CreateEncodedString(
                               Data(ReferenceCipher(kPresetKey).Encrypted("\xFF")))),
                           Key()));
    std::string const said = testing::internal::GetCapturedStderr();
    EXPECT_NE(said.find("cdsaDecrypt: error 0x80010846\n"), said.npos);
    EXPECT_EQ(said.find("secret"), said.npos);
}

TEST_F(ZUCFStringCipherTest, DamageIsNoticedWhereThePaddingOrTheUTF8TellsIt) {
    ReferenceCipher reference(kPresetKey);
    std::string const whole = Text(Encrypted(Str("seventeen letters"), Key()));
    ASSERT_EQ(whole.size(), 44U);
    std::vector<std::string> damaged = {whole.substr(4), "AAAA" + whole, ' ' + whole,
                                        whole + "AAAA", whole.substr(0, 43)};
    for (std::size_t at = 0; at < whole.size(); ++at) {
        damaged.push_back(whole.substr(0, at));
        for (std::string_view const other : {"A", "/", "=", "\n", "\xC3\xA9"}) {
            damaged.push_back(std::string(whole).replace(at, 1, other));
        }
    }
    testing::internal::CaptureStderr();
    for (auto const& text : damaged) {
        auto const expected = reference.Decrypted(Bytes64(Str(text)));
        EXPECT_EQ(Text(Decrypted(Str(text), Key())),
                  expected ? Text(Str(*expected)) : std::string("(null)"))
            << text;
    }
    testing::internal::GetCapturedStderr();
}

TEST_F(ZUCFStringCipherTest, AServiceThatFailsIsReportedByTheStepAndGivesNull) {
    struct Case {
        char const* call;
        char const* whenEncrypting;  // the step; null where the text comes out all the same
        char const* whenDecrypting;
    };
    constexpr Case kCases[] = {
        {"CSSM_Init", nullptr, nullptr},  // has long been called
        {"CSSM_ModuleLoad", "Attach to CSP", "Attach to CSP"},
        {"CSSM_ModuleAttach", "Attach to CSP", "Attach to CSP"},
        {"CSSM_CSP_CreateDeriveKeyContext", "DeriveKey", "DeriveKey"},
        {"CSSM_DeriveKey", "DeriveKey", "DeriveKey"},
        {"CSSM_CSP_CreateSymmetricContext", "cdsaEncrypt", "cdsaDecrypt"},
        {"CSSM_EncryptData", "cdsaEncrypt", nullptr},
        {"CSSM_DecryptData", nullptr, "cdsaDecrypt"},
        {"CSSM_DeleteContext", nullptr, nullptr},
        {"CSSM_FreeKey", nullptr, nullptr},
        {"CSSM_ModuleDetach", nullptr, nullptr},
    };
    auto const encrypted = Encrypted(CFSTR("text"), Key());
    for (auto const& [call, whenEncrypting, whenDecrypting] : kCases) {
        FailCryptoCall(call, -4711);
        for (bool const isEncrypting : {true, false}) {
            testing::internal::CaptureStderr();
            auto const result =
                isEncrypting ? Encrypted(CFSTR("text"), Key()) : Decrypted(encrypted, Key());
            char const* const step = isEncrypting ? whenEncrypting : whenDecrypting;
            std::string const good = isEncrypting ? Text(encrypted) : "text";
            EXPECT_EQ(Text(result), step == nullptr ? good : "(null)") << call;
            EXPECT_EQ(testing::internal::GetCapturedStderr(),
                      step == nullptr ? "" : std::string(step) + ": error 0xFFFFED99\n")
                << call;
        }
    }
}

// In a process of its own, in which the service hasn't been started yet.
TEST(ZUCFStringCipherDeathTest, AServiceThatDoesNotStartIsTriedAgain) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(
        {
            FailCryptoCall("CSSM_Init", -4711);
            bool const failed = !Encrypted(CFSTR("text"), Key());
            FailCryptoCall(nullptr, noErr);
            std::exit(failed && Encrypted(CFSTR("text"), Key()) ? 0 : 1);
        },
        testing::ExitedWithCode(0), "^Attach to CSP: error 0xFFFFED99\n$");
}

TEST_F(ZUCFStringCipherTest, NothingIsLeftBehindWhenMemoryRunsOut) {
    auto const encrypted = Encrypted(CFSTR("text"), Key());
    auto const key = Key();
    testing::internal::CaptureStderr();
    for (auto* const work : {ZUCFCreateEncryptedString, ZUCFCreateDecryptedString}) {
        long failures = 0;
        FailCreationAfter(failures);
        CFRef<CFStringRef> result(work(encrypted, key));
        while (!result && failures < 20) {
            FailCreationAfter(++failures);
            result = CFRef<CFStringRef>(work(encrypted, key));
        }
        FailCreationAfter(-1);
        EXPECT_TRUE(result);
        EXPECT_GT(failures, 3);
    }
    testing::internal::GetCapturedStderr();
}

}  // namespace
