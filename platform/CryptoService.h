// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/MacTypes.h"

// Keys from pass phrases (PBKDF2 of RFC 8018 with HMAC-SHA1) and AES in CBC mode with PKCS #7
// padding (FIPS 197, SP 800-38A, RFC 5652), by the cryptographic module of the system.
//
// The way through it: init, load, attach, make a context, work with it, delete it, detach. A call
// that fails leaves its out-parameters null or empty. What a call gives out in a CSSM_DATA or a
// CSSM_KEY comes from the memory functions that the module was attached with.

using CSSM_RETURN = OSStatus;
constexpr CSSM_RETURN CSSM_OK = 0;

constexpr CSSM_RETURN CSSMReturn(std::uint32_t code) {
    return static_cast<CSSM_RETURN>(code);
}
constexpr CSSM_RETURN CSSMERR_CSSM_MEMORY_ERROR = CSSMReturn(0x80010002);
constexpr CSSM_RETURN CSSMERR_CSSM_INVALID_POINTER = CSSMReturn(0x80010004);
constexpr CSSM_RETURN CSSMERR_CSSM_NOT_INITIALIZED = CSSMReturn(0x80010102);
constexpr CSSM_RETURN CSSMERR_CSSM_INCOMPATIBLE_VERSION = CSSMReturn(0x80010107);
constexpr CSSM_RETURN CSSMERR_CSSM_ADDIN_LOAD_FAILED = CSSMReturn(0x8001010B);
constexpr CSSM_RETURN CSSMERR_CSP_INTERNAL_ERROR = CSSMReturn(0x80010801);
constexpr CSSM_RETURN CSSMERR_CSP_MEMORY_ERROR = CSSMReturn(0x80010802);
constexpr CSSM_RETURN CSSMERR_CSP_INVALID_CONTEXT = CSSMReturn(0x80010840);
constexpr CSSM_RETURN CSSMERR_CSP_INVALID_ALGORITHM = CSSMReturn(0x80010841);
constexpr CSSM_RETURN CSSMERR_CSP_INVALID_KEY = CSSMReturn(0x80010845);
constexpr CSSM_RETURN CSSMERR_CSP_INVALID_DATA = CSSMReturn(0x80010846);

struct CSSM_DATA {
    std::size_t Length;  // bytes
    std::uint8_t* Data;
};

struct CSSM_GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
// The module that knows the algorithms below.
extern CSSM_GUID const gGuidAppleCSP;

struct CSSM_VERSION {
    std::uint32_t Major;
    std::uint32_t Minor;
};

// What the caller of an attached module has memory from; `reference` comes back at each call.
struct CSSM_API_MEMORY_FUNCS {
    void* (*malloc_func)(std::size_t size, void* reference);
    void (*free_func)(void* block, void* reference);
    void* (*realloc_func)(void* block, std::size_t size, void* reference);
    void* (*calloc_func)(std::uint32_t count, std::size_t size, void* reference);
    void* AllocRef;
};

using CSSM_ALGORITHMS = std::uint32_t;
constexpr CSSM_ALGORITHMS CSSM_ALGID_PKCS5_PBKDF2 = 103;
constexpr CSSM_ALGORITHMS CSSM_ALGID_AES = 0x80000001;

using CSSM_ENCRYPT_MODE = std::uint32_t;
constexpr CSSM_ENCRYPT_MODE CSSM_ALGMODE_CBCPadIV8 = 6;  // CBC with an IV and padding
using CSSM_PADDING = std::uint32_t;
constexpr CSSM_PADDING CSSM_PADDING_PKCS7 = 7;

using CSSM_KEYUSE = std::uint32_t;
constexpr CSSM_KEYUSE CSSM_KEYUSE_ANY = 0x80000000;
using CSSM_KEYATTR_FLAGS = std::uint32_t;
constexpr CSSM_KEYATTR_FLAGS CSSM_KEYATTR_EXTRACTABLE = 0x00000020;
constexpr CSSM_KEYATTR_FLAGS CSSM_KEYATTR_RETURN_DATA = 0x10000000;

struct CSSM_KEY {
    CSSM_ALGORITHMS AlgorithmId;
    std::uint32_t LogicalKeySizeInBits;
    CSSM_KEYUSE KeyUsage;
    CSSM_KEYATTR_FLAGS KeyAttr;
    CSSM_DATA KeyData;
};

constexpr std::uint32_t CSSM_PKCS5_PBKDF2_PRF_HMAC_SHA1 = 0;
struct CSSM_PKCS5_PBKDF2_PARAMS {
    CSSM_DATA Passphrase;
    std::uint32_t PseudoRandomFunction;
};

using CSSM_PRIVILEGE_SCOPE = std::uint32_t;
constexpr CSSM_PRIVILEGE_SCOPE CSSM_PRIVILEGE_SCOPE_NONE = 0;

struct OpaqueCSP;
using CSSM_CSP_HANDLE = OpaqueCSP*;
struct OpaqueCryptoContext;
using CSSM_CC_HANDLE = OpaqueCryptoContext*;

// Once for a process, with version 2.0; `caller` names who asks.
CSSM_RETURN CSSM_Init(CSSM_VERSION const* version, CSSM_PRIVILEGE_SCOPE scope,
                      CSSM_GUID const* caller);
CSSM_RETURN CSSM_ModuleLoad(CSSM_GUID const* module);
// The functions are copied. The handle lives until its detach.
CSSM_RETURN CSSM_ModuleAttach(CSSM_GUID const* module, CSSM_VERSION const* version,
                              CSSM_API_MEMORY_FUNCS const* memory, CSSM_CSP_HANDLE* handle);
// The handle is gone whatever comes back. Contexts made with it must have been deleted.
CSSM_RETURN CSSM_ModuleDetach(CSSM_CSP_HANDLE handle);

// For keys of a whole number of bytes by PBKDF2. The salt is copied.
CSSM_RETURN CSSM_CSP_CreateDeriveKeyContext(CSSM_CSP_HANDLE handle, CSSM_ALGORITHMS algorithm,
                                            CSSM_ALGORITHMS keyType, std::uint32_t keySizeInBits,
                                            std::uint32_t iterations, CSSM_DATA const* salt,
                                            CSSM_CC_HANDLE* context);
// Makes a key, which CSSM_FreeKey takes back. `label` names it where a module keeps keys; this one
// keeps none and gives every key out as its bytes.
CSSM_RETURN CSSM_DeriveKey(CSSM_CC_HANDLE context, CSSM_PKCS5_PBKDF2_PARAMS const* parameters,
                           CSSM_KEYUSE usage, CSSM_KEYATTR_FLAGS attributes, CSSM_DATA const* label,
                           CSSM_KEY* key);
// Wipes the key's bytes and gives them back; a key without bytes is left alone.
CSSM_RETURN CSSM_FreeKey(CSSM_CSP_HANDLE handle, CSSM_KEY* key);

// AES with a key of 128 bits. Key and vector (16 bytes) are copied.
CSSM_RETURN CSSM_CSP_CreateSymmetricContext(CSSM_CSP_HANDLE handle, CSSM_ALGORITHMS algorithm,
                                            CSSM_ENCRYPT_MODE mode, CSSM_KEY const* key,
                                            CSSM_DATA const* vector, CSSM_PADDING padding,
                                            CSSM_CC_HANDLE* context);
// A whole text at once. The result is the bytes of `output` and then those of `remainder`, two new
// blocks that the caller frees; either may be empty and then null. Decrypting fails with
// CSSMERR_CSP_INVALID_DATA where length or padding are wrong.
CSSM_RETURN CSSM_EncryptData(CSSM_CC_HANDLE context, CSSM_DATA const* input, CSSM_DATA* output,
                             CSSM_DATA* remainder);
CSSM_RETURN CSSM_DecryptData(CSSM_CC_HANDLE context, CSSM_DATA const* input, CSSM_DATA* output,
                             CSSM_DATA* remainder);
// Wipes what the context holds. It is gone whatever comes back.
CSSM_RETURN CSSM_DeleteContext(CSSM_CC_HANDLE context);
