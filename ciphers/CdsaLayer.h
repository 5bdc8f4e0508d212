// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/CryptoService.h"

// The crypto service's calls put together as the string cipher wants them. Results are those of the
// first call that fails; what a failed function gives out is null or empty.

// Memory for what the service gives out, from malloc and its kin; `reference` is ignored.
void* appMalloc(std::size_t size, void* reference);
void appFree(void* block, void* reference);
void* appRealloc(void* block, std::size_t size, void* reference);
void* appCalloc(std::uint32_t count, std::size_t size, void* reference);

// Starts the service, once in a process however often it is asked; after a failure the next call
// tries again.
CSSM_RETURN cssmStartup();
// One line on standard error: what failed, a literal, and the status.
void cssmPerror(char const* what, CSSM_RETURN status);

// Starts the service if need be, and attaches the module; the caller detaches it.
CSSM_RETURN cdsaCspAttach(CSSM_CSP_HANDLE* handle);
CSSM_RETURN cdsaCspDetach(CSSM_CSP_HANDLE handle);

// A key by PBKDF2 with HMAC-SHA1 from `length` bytes of pass phrase. The caller gives it to
// cdsaFreeKey, which wipes it; that takes a key that was never made, too.
CSSM_RETURN cdsaDeriveKey(CSSM_CSP_HANDLE handle, void const* passPhrase, std::size_t length,
                          CSSM_ALGORITHMS keyType, std::uint32_t keySizeInBits, CSSM_KEY* key);
CSSM_RETURN cdsaFreeKey(CSSM_CSP_HANDLE handle, CSSM_KEY* key);

// A whole text with the cipher that goes with the key's algorithm: AES in CBC mode with the fixed
// initialisation vector and padding; CSSMERR_CSP_INTERNAL_ERROR for other algorithms. `out` is one
// new block, which the caller frees with appFree, or empty and null.
CSSM_RETURN cdsaEncrypt(CSSM_CSP_HANDLE handle, CSSM_KEY const* key, CSSM_DATA const* in,
                        CSSM_DATA* out);
CSSM_RETURN cdsaDecrypt(CSSM_CSP_HANDLE handle, CSSM_KEY const* key, CSSM_DATA const* in,
                        CSSM_DATA* out);
