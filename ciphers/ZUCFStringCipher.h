// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

// Texts under a pass phrase, for values in presets that may be passwords: AES-128 in CBC mode under
// a key that PBKDF2 makes of the pass phrase, the cipher text in Base64. Salt and vector are fixed,
// so equal texts have equal cipher texts. The 1000 iterations of PBKDF2 run at each call.
//
// The caller releases what comes back. Null, with one line on standard error, when the service
// fails, for a null pass phrase, and for a text that has no UTF-8 form.

// A null text counts as the empty one.
CFStringRef ZUCFCreateEncryptedString(CFStringRef text, CFStringRef passPhrase);
// Null also for a wrong pass phrase or a damaged text, as far as the padding or the UTF-8 of the
// outcome tell: a digest there is none.
CFStringRef ZUCFCreateDecryptedString(CFStringRef text, CFStringRef passPhrase);
