// SPDX-License-Identifier: Apache-2.0
#include "ciphers/CdsaLayer.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "ciphers/KeyMaterial.h"
#include "platform/Wiping.h"

namespace {

constexpr CSSM_VERSION kVersion = {2, 0};
constexpr CSSM_GUID kCaller = {
    0x3F2A9C61U, 0x07D4U, 0x4B8EU, {0xA1, 0x6C, 0x52, 0xE9, 0x0B, 0x7D, 0x84, 0x36}};
constexpr CSSM_API_MEMORY_FUNCS kMemory = {appMalloc, appFree, appRealloc, appCalloc, nullptr};

constexpr std::uint32_t kIterations = 1000;
constexpr CSSM_KEYATTR_FLAGS kKeyAttributes = CSSM_KEYATTR_RETURN_DATA | CSSM_KEYATTR_EXTRACTABLE;
constexpr std::string_view kKeyLabel("tempKey\0", 8);

struct CipherOfAlgorithm {
    CSSM_ALGORITHMS keyAlgorithm;
    CSSM_ALGORITHMS algorithm;
    CSSM_ENCRYPT_MODE mode;
    CSSM_PADDING padding;
};
constexpr CipherOfAlgorithm kCiphers[] = {
    {CSSM_ALGID_AES, CSSM_ALGID_AES, CSSM_ALGMODE_CBCPadIV8, CSSM_PADDING_PKCS7},
};

// The service only reads what it is given through a pointer to mutable bytes.
CSSM_DATA DataOf(void const* bytes, std::size_t length) {
    return {length, static_cast<std::uint8_t*>(const_cast<void*>(bytes))};
}

CSSM_RETURN CreateSymmetricContext(CSSM_CSP_HANDLE handle, CSSM_KEY const* key,
                                   CSSM_CC_HANDLE* context) {
    auto const* const cipher = std::find_if(std::begin(kCiphers), std::end(kCiphers),
                                            [key](CipherOfAlgorithm const& candidate) {
                                                return candidate.keyAlgorithm == key->AlgorithmId;
                                            });
    if (cipher == std::end(kCiphers)) {
        return CSSMERR_CSP_INTERNAL_ERROR;
    }
    CSSM_DATA const vector =
        DataOf(kPresetInitialisationVector.data(), kPresetInitialisationVector.size());
    return CSSM_CSP_CreateSymmetricContext(handle, cipher->algorithm, cipher->mode, key, &vector,
                                           cipher->padding, context);
}

void WipeAndFree(CSSM_DATA& data) {
    if (data.Data != nullptr) {
        Wipe(data.Data, data.Length);
        appFree(data.Data, nullptr);
    }
    data = {};
}

// Both parts are gone afterwards.
CSSM_RETURN Join(CSSM_DATA& first, CSSM_DATA& second, CSSM_DATA* out) {
    CSSM_RETURN status = CSSM_OK;
    std::size_t const length = first.Length + second.Length;
    if (length > 0) {
        out->Data = static_cast<std::uint8_t*>(appMalloc(length, nullptr));
        if (out->Data == nullptr) {
            status = CSSMERR_CSSM_MEMORY_ERROR;
        } else {
            std::copy_n(first.Data, first.Length, out->Data);
            std::copy_n(second.Data, second.Length, out->Data + first.Length);
            out->Length = length;
        }
    }
    WipeAndFree(first);
    WipeAndFree(second);
    return status;
}

using CryptCall = CSSM_RETURN(CSSM_CC_HANDLE, CSSM_DATA const*, CSSM_DATA*, CSSM_DATA*);

CSSM_RETURN Crypt(CryptCall* call, CSSM_CSP_HANDLE handle, CSSM_KEY const* key, CSSM_DATA const* in,
                  CSSM_DATA* out) {
    *out = {};
    CSSM_CC_HANDLE context = nullptr;
    CSSM_RETURN status = CreateSymmetricContext(handle, key, &context);
    if (status != CSSM_OK) {
        return status;
    }
    CSSM_DATA main = {};
    CSSM_DATA remainder = {};
    status = call(context, in, &main, &remainder);
    CSSM_DeleteContext(context);
    return status != CSSM_OK ? status : Join(main, remainder, out);
}

}  // namespace

void* appMalloc(std::size_t size, void*) {
    return std::malloc(size);
}

void appFree(void* block, void*) {
    std::free(block);
}

void* appRealloc(void* block, std::size_t size, void*) {
    return std::realloc(block, size);
}

void* appCalloc(std::uint32_t count, std::size_t size, void*) {
    return std::calloc(count, size);
}

CSSM_RETURN cssmStartup() {
    static bool isStarted = false;
    if (isStarted) {
        return CSSM_OK;
    }
    CSSM_RETURN const status = CSSM_Init(&kVersion, CSSM_PRIVILEGE_SCOPE_NONE, &kCaller);
    isStarted = status == CSSM_OK;
    return status;
}

void cssmPerror(char const* what, CSSM_RETURN status) {
    std::fprintf(stderr, "%s: error 0x%08X\n", what, static_cast<unsigned>(status));
}

CSSM_RETURN cdsaCspAttach(CSSM_CSP_HANDLE* handle) {
    *handle = nullptr;
    CSSM_RETURN status = cssmStartup();
    if (status == CSSM_OK) {
        status = CSSM_ModuleLoad(&gGuidAppleCSP);
    }
    return status != CSSM_OK ? status
                             : CSSM_ModuleAttach(&gGuidAppleCSP, &kVersion, &kMemory, handle);
}

CSSM_RETURN cdsaCspDetach(CSSM_CSP_HANDLE handle) {
    return CSSM_ModuleDetach(handle);
}

CSSM_RETURN cdsaDeriveKey(CSSM_CSP_HANDLE handle, void const* passPhrase, std::size_t length,
                          CSSM_ALGORITHMS keyType, std::uint32_t keySizeInBits, CSSM_KEY* key) {
    *key = {};
    CSSM_DATA const salt = DataOf(kPresetSalt.data(), kPresetSalt.size());
    CSSM_CC_HANDLE context = nullptr;
    CSSM_RETURN status = CSSM_CSP_CreateDeriveKeyContext(
        handle, CSSM_ALGID_PKCS5_PBKDF2, keyType, keySizeInBits, kIterations, &salt, &context);
    if (status != CSSM_OK) {
        return status;
    }
    CSSM_PKCS5_PBKDF2_PARAMS const parameters = {DataOf(passPhrase, length),
                                                 CSSM_PKCS5_PBKDF2_PRF_HMAC_SHA1};
    CSSM_DATA const label = DataOf(kKeyLabel.data(), kKeyLabel.size());
    status = CSSM_DeriveKey(context, &parameters, CSSM_KEYUSE_ANY, kKeyAttributes, &label, key);
    CSSM_DeleteContext(context);
    return status;
}

CSSM_RETURN cdsaFreeKey(CSSM_CSP_HANDLE handle, CSSM_KEY* key) {
    return CSSM_FreeKey(handle, key);
}

CSSM_RETURN cdsaEncrypt(CSSM_CSP_HANDLE handle, CSSM_KEY const* key, CSSM_DATA const* in,
                        CSSM_DATA* out) {
    return Crypt(CSSM_EncryptData, handle, key, in, out);
}

CSSM_RETURN cdsaDecrypt(CSSM_CSP_HANDLE handle, CSSM_KEY const* key, CSSM_DATA const* in,
                        CSSM_DATA* out) {
    return Crypt(CSSM_DecryptData, handle, key, in, out);
}
