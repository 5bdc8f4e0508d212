// SPDX-License-Identifier: Apache-2.0
#include "platform/CryptoService.h"

#include <algorithm>

#include "tests/platform/TestSupport.h"

namespace {

constexpr CSSM_VERSION kVersion = {2, 0};

// Memory that counts what it has given and sees whether what comes back was wiped.
struct Memory {
    int blocks = 0;
    int blocksLeft = 1000;  // to give
    bool isWiped = true;
    std::size_t size = 0;  // of the block given last

    CSSM_API_MEMORY_FUNCS Functions() {
        return {[](std::size_t wanted, void* memory) {
                    return static_cast<Memory*>(memory)->Allocate(wanted);
                },
                [](void* block, void* memory) { static_cast<Memory*>(memory)->Free(block); },
                nullptr, nullptr, this};
    }
    void* Allocate(std::size_t wanted) {
        if (blocksLeft-- <= 0) {
            return nullptr;
        }
        ++blocks;
        size = wanted;
        return std::malloc(wanted);
    }
    void Free(void* block) {
        auto const* const bytes = static_cast<std::uint8_t const*>(block);
        isWiped = isWiped && std::count(bytes, bytes + size, 0) == static_cast<long>(size);
        --blocks;
        std::free(block);
    }
};

CSSM_DATA DataOf(std::string& bytes) {
    return {bytes.size(), reinterpret_cast<std::uint8_t*>(bytes.data())};
}

std::string Hexadecimal(CSSM_DATA const& data) {
    std::string text;
    for (std::size_t i = 0; i < data.Length; ++i) {
        for (int const digit : {data.Data[i] >> 4, data.Data[i] & 0xF}) {
            text += "0123456789abcdef"[digit];
        }
    }
    return text;
}

class CryptoServiceTest : public OwnershipTest {
  protected:
    void SetUp() override {
        CSSM_GUID const self{};
        ASSERT_EQ(CSSM_Init(&kVersion, CSSM_PRIVILEGE_SCOPE_NONE, &self), CSSM_OK);
        ASSERT_EQ(CSSM_ModuleLoad(&gGuidAppleCSP), CSSM_OK);
        auto const functions = mMemory.Functions();
        ASSERT_EQ(CSSM_ModuleAttach(&gGuidAppleCSP, &kVersion, &functions, &mModule), CSSM_OK);
    }
    void TearDown() override {
        EXPECT_EQ(CSSM_ModuleDetach(mModule), CSSM_OK);
        EXPECT_EQ(mMemory.blocks, 0);
        OwnershipTest::TearDown();
    }

    CSSM_RETURN Derive(std::string phrase, std::string salt, std::uint32_t iterations,
                       std::uint32_t bits, CSSM_KEY& key) {
        CSSM_DATA const saltData = DataOf(salt);
        CSSM_CC_HANDLE context = nullptr;
        EXPECT_EQ(CSSM_CSP_CreateDeriveKeyContext(mModule, CSSM_ALGID_PKCS5_PBKDF2, CSSM_ALGID_AES,
                                                  bits, iterations, &saltData, &context),
                  CSSM_OK);
        CSSM_PKCS5_PBKDF2_PARAMS const parameters = {DataOf(phrase),
                                                     CSSM_PKCS5_PBKDF2_PRF_HMAC_SHA1};
        CSSM_RETURN const status = CSSM_DeriveKey(context, &parameters, CSSM_KEYUSE_ANY,
                                                  CSSM_KEYATTR_RETURN_DATA, nullptr, &key);
        EXPECT_EQ(CSSM_DeleteContext(context), CSSM_OK);
        return status;
    }

    Memory mMemory;
    CSSM_CSP_HANDLE mModule = nullptr;
};

TEST_F(CryptoServiceTest, KeysComeOutAsPublishedAndAreWipedInTheEnd) {
    struct Case {
        std::string phrase;
        std::string salt;
        std::uint32_t iterations;
        std::string key;
    };
    // From RFC 6070.
    Case const cases[] = {
        {"password", "salt", 1, "0c60c80f961f0e71f3a9b524af6012062fe037a6"},
        {"password", "salt", 4096, "4b007901b765489abead49d926f721d065a429c1"},
        {"passwordPASSWORDpassword", "saltSALTsaltSALTsaltSALTsaltSALTsalt", 4096,
         "3d2eec4fe41c849b80c8d83662c0e44a8b291a96"},
    };
    for (auto const& [phrase, salt, iterations, expected] : cases) {
        CSSM_KEY key{};
        ASSERT_EQ(Derive(phrase, salt, iterations, 160, key), CSSM_OK);
        EXPECT_EQ(Hexadecimal(key.KeyData), expected);
        EXPECT_EQ(CSSM_FreeKey(mModule, &key), CSSM_OK);
        EXPECT_EQ(key.KeyData.Data, nullptr);
        EXPECT_TRUE(mMemory.isWiped);
    }
}

TEST_F(CryptoServiceTest, WhatItDoesNotKnowIsRefused) {
    CSSM_VERSION const later = {2, 1};
    CSSM_GUID const other{};
    EXPECT_EQ(CSSM_Init(&later, CSSM_PRIVILEGE_SCOPE_NONE, &other),
              CSSMERR_CSSM_INCOMPATIBLE_VERSION);
    EXPECT_EQ(CSSM_ModuleLoad(&other), CSSMERR_CSSM_ADDIN_LOAD_FAILED);
    auto const functions = mMemory.Functions();
    CSSM_CSP_HANDLE module = mModule;
    EXPECT_EQ(CSSM_ModuleAttach(&other, &kVersion, &functions, &module),
              CSSMERR_CSSM_ADDIN_LOAD_FAILED);
    EXPECT_EQ(module, nullptr);

    std::string bytes(16, 'x');
    CSSM_DATA const block = DataOf(bytes);
    CSSM_CC_HANDLE context = nullptr;
    EXPECT_EQ(CSSM_CSP_CreateDeriveKeyContext(mModule, CSSM_ALGID_PKCS5_PBKDF2, CSSM_ALGID_AES, 12,
                                              1, &block, &context),
              CSSMERR_CSP_INVALID_KEY);
    EXPECT_EQ(
        CSSM_CSP_CreateDeriveKeyContext(mModule, 104, CSSM_ALGID_AES, 128, 1, &block, &context),
        CSSMERR_CSP_INVALID_ALGORITHM);
    CSSM_KEY key = {CSSM_ALGID_AES, 128, CSSM_KEYUSE_ANY, 0, {15, block.Data}};
    EXPECT_EQ(CSSM_CSP_CreateSymmetricContext(mModule, CSSM_ALGID_AES, CSSM_ALGMODE_CBCPadIV8, &key,
                                              &block, CSSM_PADDING_PKCS7, &context),
              CSSMERR_CSP_INVALID_KEY);
    EXPECT_EQ(context, nullptr);
}

TEST_F(CryptoServiceTest, WithoutMemoryNothingIsGivenOutAndNothingKept) {
    CSSM_KEY key{};
    mMemory.blocksLeft = 0;
    EXPECT_EQ(Derive("p", "s", 1, 128, key), CSSMERR_CSP_MEMORY_ERROR);
    EXPECT_EQ(key.KeyData.Data, nullptr);

    std::string bytes(16, 'x');
    CSSM_DATA const block = DataOf(bytes);
    key = {CSSM_ALGID_AES, 128, CSSM_KEYUSE_ANY, 0, block};
    CSSM_CC_HANDLE context = nullptr;
    ASSERT_EQ(CSSM_CSP_CreateSymmetricContext(mModule, CSSM_ALGID_AES, CSSM_ALGMODE_CBCPadIV8, &key,
                                              &block, CSSM_PADDING_PKCS7, &context),
              CSSM_OK);
    for (int const blocks : {0, 1}) {
        mMemory.blocksLeft = blocks;
        CSSM_DATA output = block;
        CSSM_DATA remainder = block;
        EXPECT_EQ(CSSM_EncryptData(context, &block, &output, &remainder), CSSMERR_CSP_MEMORY_ERROR);
        EXPECT_EQ(output.Data, nullptr);
        EXPECT_EQ(remainder.Data, nullptr);
    }
    CSSM_KEY derived{};
    CSSM_PKCS5_PBKDF2_PARAMS const parameters = {block, CSSM_PKCS5_PBKDF2_PRF_HMAC_SHA1};
    EXPECT_EQ(CSSM_DeriveKey(context, &parameters, CSSM_KEYUSE_ANY, 0, nullptr, &derived),
              CSSMERR_CSP_INVALID_CONTEXT);
    EXPECT_EQ(CSSM_DeleteContext(context), CSSM_OK);
}

}  // namespace
