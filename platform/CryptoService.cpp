// SPDX-License-Identifier: Apache-2.0
#include "platform/CryptoService.h"

#include <openssl/evp.h>

#include <atomic>
#include <climits>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Testing.h"
#include "platform/Wiping.h"
#include "platform/internal/CFRuntime.h"

struct OpaqueCSP {
    CSSM_API_MEMORY_FUNCS memory;
};

using SecretBytes = std::vector<std::uint8_t, WipingAllocator<std::uint8_t>>;

struct OpaqueCryptoContext {
    enum class Kind { kDeriveKey, kSymmetric };

    OpaqueCryptoContext(Kind theKind, CSSM_CSP_HANDLE owner, SecretBytes theBytes,
                        SecretBytes theVector)
        : kind(theKind), csp(owner), bytes(std::move(theBytes)), vector(std::move(theVector)) {}

    Kind kind;
    CSSM_CSP_HANDLE csp;        // not owned
    SecretBytes bytes;          // the salt, or the key
    SecretBytes vector;         // of a symmetric context
    std::uint32_t keySize = 0;  // bytes of the key to derive
    std::uint32_t iterations = 0;
};

namespace platform {
namespace {

using Kind = OpaqueCryptoContext::Kind;

constexpr std::uint32_t kMajorVersion = 2;
constexpr std::size_t kAESBlockSize = 16;
constexpr std::size_t kAESKeySize = 16;
constexpr std::uint32_t kMaximumKeySize = 1024;  // bytes

std::atomic<bool> gIsInitialised{false};
std::atomic<bool> gIsLoaded{false};

std::atomic<char const*> gFailingCall{nullptr};
std::atomic<CSSM_RETURN> gFailure{CSSM_OK};

// What a test has asked the call of this name to fail with.
CSSM_RETURN AskedFailure(char const* name) {
    char const* const failing = gFailingCall.load();
    return failing != nullptr && std::string_view(failing) == name ? gFailure.load() : CSSM_OK;
}

bool SameModule(CSSM_GUID const* module) {
    return module != nullptr && std::memcmp(module, &gGuidAppleCSP, sizeof *module) == 0;
}

bool IsVersionServed(CSSM_VERSION const* version) {
    return version != nullptr && version->Major == kMajorVersion && version->Minor == 0;
}

bool IsWhole(CSSM_DATA const* data) {
    return data != nullptr && data->Length <= INT_MAX &&
           (data->Data != nullptr || data->Length == 0);
}

SecretBytes CopyOf(CSSM_DATA const& data) {
    return data.Length == 0 ? SecretBytes() : SecretBytes(data.Data, data.Data + data.Length);
}

// A block from the memory functions of the attached module; it goes back to them, wiped, unless it
// is given out.
class ModuleBlock {
  public:
    ModuleBlock(CSSM_CSP_HANDLE csp, std::size_t size) : mMemory(csp->memory), mSize(size) {
        mBytes = static_cast<std::uint8_t*>(mMemory.malloc_func(size, mMemory.AllocRef));
    }
    ModuleBlock(ModuleBlock const&) = delete;
    ModuleBlock& operator=(ModuleBlock const&) = delete;
    ~ModuleBlock() {
        if (mBytes != nullptr) {
            Wipe(mBytes, mSize);
            mMemory.free_func(mBytes, mMemory.AllocRef);
        }
    }

    std::uint8_t* Bytes() const { return mBytes; }
    // The first `length` bytes are the caller's now.
    CSSM_DATA GiveOut(int length) {
        if (length <= 0) {
            return {};
        }
        return {static_cast<std::size_t>(length), std::exchange(mBytes, nullptr)};
    }

  private:
    CSSM_API_MEMORY_FUNCS mMemory;
    std::uint8_t* mBytes;  // owned; null without memory
    std::size_t mSize;
};

// The caller fills in what its kind needs.
CSSM_RETURN CreateContext(Kind kind, CSSM_CSP_HANDLE csp, CSSM_DATA const& bytes,
                          CSSM_DATA const& vector, CSSM_CC_HANDLE* context) {
    return WithoutExceptions(CSSMERR_CSSM_MEMORY_ERROR, [&] {
        *context = NewObject<OpaqueCryptoContext>(kind, csp, CopyOf(bytes), CopyOf(vector));
        return *context == nullptr ? CSSMERR_CSSM_MEMORY_ERROR : CSSM_OK;
    });
}

struct CipherContextDeleter {
    void operator()(EVP_CIPHER_CTX* context) const { EVP_CIPHER_CTX_free(context); }
};

CSSM_RETURN Crypt(char const* name, bool isEncrypting, CSSM_CC_HANDLE context,
                  CSSM_DATA const* input, CSSM_DATA* output, CSSM_DATA* remainder) {
    if (output == nullptr || remainder == nullptr || !IsWhole(input) ||
        input->Length > INT_MAX - kAESBlockSize) {
        return CSSMERR_CSSM_INVALID_POINTER;
    }
    *output = {};
    *remainder = {};
    if (CSSM_RETURN const asked = AskedFailure(name); asked != CSSM_OK) {
        return asked;
    }
    if (context == nullptr || context->kind != Kind::kSymmetric) {
        return CSSMERR_CSP_INVALID_CONTEXT;
    }
    ModuleBlock whole(context->csp, input->Length + kAESBlockSize);
    ModuleBlock last(context->csp, kAESBlockSize);
    std::unique_ptr<EVP_CIPHER_CTX, CipherContextDeleter> const cipher(EVP_CIPHER_CTX_new());
    if (whole.Bytes() == nullptr || last.Bytes() == nullptr || cipher == nullptr) {
        return CSSMERR_CSP_MEMORY_ERROR;
    }
    int wholeLength = 0;
    int lastLength = 0;
    // Padding of PKCS #7 is libcrypto's habit.
    if (EVP_CipherInit_ex(cipher.get(), EVP_aes_128_cbc(), nullptr, context->bytes.data(),
                          context->vector.data(), isEncrypting ? 1 : 0) != 1 ||
        EVP_CipherUpdate(cipher.get(), whole.Bytes(), &wholeLength, input->Data,
                         static_cast<int>(input->Length)) != 1) {
        return CSSMERR_CSP_INTERNAL_ERROR;
    }
    if (EVP_CipherFinal_ex(cipher.get(), last.Bytes(), &lastLength) != 1) {
        return CSSMERR_CSP_INVALID_DATA;
    }
    *output = whole.GiveOut(wholeLength);
    *remainder = last.GiveOut(lastLength);
    return CSSM_OK;
}

}  // namespace
}  // namespace platform

using platform::AskedFailure;
using platform::Kind;

// This module's own name.
constinit CSSM_GUID const gGuidAppleCSP = {
    0x5C1D3A4EU, 0x8B60U, 0x4F27U, {0x9E, 0x12, 0x7A, 0xC4, 0x30, 0xD5, 0x68, 0xB1}};

void FailCryptoCall(char const* name, OSStatus status) {
    platform::gFailure = status;
    platform::gFailingCall = name;
}

CSSM_RETURN CSSM_Init(CSSM_VERSION const* version, CSSM_PRIVILEGE_SCOPE, CSSM_GUID const* caller) {
    if (CSSM_RETURN const asked = AskedFailure(__func__); asked != CSSM_OK) {
        return asked;
    }
    if (version == nullptr || caller == nullptr) {
        return CSSMERR_CSSM_INVALID_POINTER;
    }
    if (!platform::IsVersionServed(version)) {
        return CSSMERR_CSSM_INCOMPATIBLE_VERSION;
    }
    platform::gIsInitialised = true;
    return CSSM_OK;
}

CSSM_RETURN CSSM_ModuleLoad(CSSM_GUID const* module) {
    if (CSSM_RETURN const asked = AskedFailure(__func__); asked != CSSM_OK) {
        return asked;
    }
    if (!platform::gIsInitialised) {
        return CSSMERR_CSSM_NOT_INITIALIZED;
    }
    if (!platform::SameModule(module)) {
        return CSSMERR_CSSM_ADDIN_LOAD_FAILED;
    }
    platform::gIsLoaded = true;
    return CSSM_OK;
}

CSSM_RETURN CSSM_ModuleAttach(CSSM_GUID const* module, CSSM_VERSION const* version,
                              CSSM_API_MEMORY_FUNCS const* memory, CSSM_CSP_HANDLE* handle) {
    if (handle == nullptr || memory == nullptr) {
        return CSSMERR_CSSM_INVALID_POINTER;
    }
    *handle = nullptr;
    if (CSSM_RETURN const asked = AskedFailure(__func__); asked != CSSM_OK) {
        return asked;
    }
    if (!platform::gIsLoaded || !platform::SameModule(module)) {
        return CSSMERR_CSSM_ADDIN_LOAD_FAILED;
    }
    if (!platform::IsVersionServed(version)) {
        return CSSMERR_CSSM_INCOMPATIBLE_VERSION;
    }
    *handle = platform::NewObject<OpaqueCSP>(OpaqueCSP{*memory});
    return *handle == nullptr ? CSSMERR_CSSM_MEMORY_ERROR : CSSM_OK;
}

CSSM_RETURN CSSM_ModuleDetach(CSSM_CSP_HANDLE handle) {
    platform::DeleteObject(handle);
    return AskedFailure(__func__);
}

CSSM_RETURN CSSM_CSP_CreateDeriveKeyContext(CSSM_CSP_HANDLE handle, CSSM_ALGORITHMS algorithm,
                                            CSSM_ALGORITHMS keyType, std::uint32_t keySizeInBits,
                                            std::uint32_t iterations, CSSM_DATA const* salt,
                                            CSSM_CC_HANDLE* context) {
    if (context == nullptr || handle == nullptr || !platform::IsWhole(salt)) {
        return CSSMERR_CSSM_INVALID_POINTER;
    }
    *context = nullptr;
    if (CSSM_RETURN const asked = AskedFailure(__func__); asked != CSSM_OK) {
        return asked;
    }
    if (algorithm != CSSM_ALGID_PKCS5_PBKDF2 || keyType != CSSM_ALGID_AES || iterations == 0 ||
        iterations > INT_MAX) {
        return CSSMERR_CSP_INVALID_ALGORITHM;
    }
    if (keySizeInBits == 0 || keySizeInBits % 8 != 0 ||
        keySizeInBits / 8 > platform::kMaximumKeySize) {
        return CSSMERR_CSP_INVALID_KEY;
    }
    CSSM_RETURN const status =
        platform::CreateContext(Kind::kDeriveKey, handle, *salt, {}, context);
    if (status == CSSM_OK) {
        (*context)->keySize = keySizeInBits / 8;
        (*context)->iterations = iterations;
    }
    return status;
}

CSSM_RETURN CSSM_DeriveKey(CSSM_CC_HANDLE context, CSSM_PKCS5_PBKDF2_PARAMS const* parameters,
                           CSSM_KEYUSE usage, CSSM_KEYATTR_FLAGS attributes, CSSM_DATA const*,
                           CSSM_KEY* key) {
    if (key == nullptr || parameters == nullptr || !platform::IsWhole(&parameters->Passphrase)) {
        return CSSMERR_CSSM_INVALID_POINTER;
    }
    *key = {};
    if (CSSM_RETURN const asked = AskedFailure(__func__); asked != CSSM_OK) {
        return asked;
    }
    if (context == nullptr || context->kind != Kind::kDeriveKey) {
        return CSSMERR_CSP_INVALID_CONTEXT;
    }
    if (parameters->PseudoRandomFunction != CSSM_PKCS5_PBKDF2_PRF_HMAC_SHA1) {
        return CSSMERR_CSP_INVALID_ALGORITHM;
    }
    platform::ModuleBlock block(context->csp, context->keySize);
    if (block.Bytes() == nullptr) {
        return CSSMERR_CSP_MEMORY_ERROR;
    }
    int const size = static_cast<int>(context->keySize);
    CSSM_DATA const& phrase = parameters->Passphrase;
    if (PKCS5_PBKDF2_HMAC(
            reinterpret_cast<char const*>(phrase.Data), static_cast<int>(phrase.Length),
            context->bytes.data(), static_cast<int>(context->bytes.size()),
            static_cast<int>(context->iterations), EVP_sha1(), size, block.Bytes()) != 1) {
        return CSSMERR_CSP_INTERNAL_ERROR;
    }
    *key = {CSSM_ALGID_AES, context->keySize * 8, usage, attributes, block.GiveOut(size)};
    return CSSM_OK;
}

CSSM_RETURN CSSM_FreeKey(CSSM_CSP_HANDLE handle, CSSM_KEY* key) {
    if (handle == nullptr || key == nullptr) {
        return CSSMERR_CSSM_INVALID_POINTER;
    }
    if (key->KeyData.Data != nullptr) {
        Wipe(key->KeyData.Data, key->KeyData.Length);
        handle->memory.free_func(key->KeyData.Data, handle->memory.AllocRef);
    }
    *key = {};
    return AskedFailure(__func__);
}

CSSM_RETURN CSSM_CSP_CreateSymmetricContext(CSSM_CSP_HANDLE handle, CSSM_ALGORITHMS algorithm,
                                            CSSM_ENCRYPT_MODE mode, CSSM_KEY const* key,
                                            CSSM_DATA const* vector, CSSM_PADDING padding,
                                            CSSM_CC_HANDLE* context) {
    if (context == nullptr || handle == nullptr || key == nullptr ||
        !platform::IsWhole(&key->KeyData) || !platform::IsWhole(vector)) {
        return CSSMERR_CSSM_INVALID_POINTER;
    }
    *context = nullptr;
    if (CSSM_RETURN const asked = AskedFailure(__func__); asked != CSSM_OK) {
        return asked;
    }
    if (algorithm != CSSM_ALGID_AES || mode != CSSM_ALGMODE_CBCPadIV8 ||
        padding != CSSM_PADDING_PKCS7 || vector->Length != platform::kAESBlockSize) {
        return CSSMERR_CSP_INVALID_ALGORITHM;
    }
    if (key->AlgorithmId != algorithm || key->KeyData.Length != platform::kAESKeySize) {
        return CSSMERR_CSP_INVALID_KEY;
    }
    return platform::CreateContext(Kind::kSymmetric, handle, key->KeyData, *vector, context);
}

CSSM_RETURN CSSM_EncryptData(CSSM_CC_HANDLE context, CSSM_DATA const* input, CSSM_DATA* output,
                             CSSM_DATA* remainder) {
    return platform::Crypt(__func__, true, context, input, output, remainder);
}

CSSM_RETURN CSSM_DecryptData(CSSM_CC_HANDLE context, CSSM_DATA const* input, CSSM_DATA* output,
                             CSSM_DATA* remainder) {
    return platform::Crypt(__func__, false, context, input, output, remainder);
}

CSSM_RETURN CSSM_DeleteContext(CSSM_CC_HANDLE context) {
    platform::DeleteObject(context);
    return AskedFailure(__func__);
}
