// SPDX-License-Identifier: Apache-2.0
#include "ciphers/ZUCFStringCipher.h"

#include <cstdint>
#include <exception>
#include <vector>

#include "ciphers/CdsaLayer.h"
#include "ciphers/ZUCFBase64.h"
#include "platform/CFRef.h"
#include "platform/Wiping.h"

namespace {

constexpr std::uint32_t kKeySizeInBits = 128;
constexpr CFIndex kMaximumUTF8PerUnit = 3;

// The UTF-8 bytes of a text, wiped at the end.
class PlainBytes {
  public:
    // False for a text that has no UTF-8 form. A null text is the empty one. May throw.
    bool Take(CFStringRef text) {
        CFIndex const length = CFStringGetLength(text);
        mBytes.resize(static_cast<std::size_t>(length * kMaximumUTF8PerUnit));
        return CFStringGetBytes(text, {0, length}, kCFStringEncodingUTF8, 0, false, mBytes.data(),
                                static_cast<CFIndex>(mBytes.size()), &mUsed) == length;
    }
    CSSM_DATA Data() { return {static_cast<std::size_t>(mUsed), mBytes.data()}; }

  private:
    std::vector<std::uint8_t, WipingAllocator<std::uint8_t>> mBytes;
    CFIndex mUsed = 0;
};

// The attached module with one key and one result, given back in the end.
class CipherSession {
  public:
    CipherSession() = default;
    CipherSession(CipherSession const&) = delete;
    CipherSession& operator=(CipherSession const&) = delete;
    ~CipherSession() {
        if (mHandle == nullptr) {
            return;
        }
        cdsaFreeKey(mHandle, &mKey);
        if (mOutput.Data != nullptr) {
            Wipe(mOutput.Data, mOutput.Length);
            appFree(mOutput.Data, nullptr);
        }
        cdsaCspDetach(mHandle);
    }

    bool Start(CSSM_DATA const& passPhrase) {
        CSSM_RETURN status = cdsaCspAttach(&mHandle);
        if (status != CSSM_OK) {
            cssmPerror("Attach to CSP", status);
            return false;
        }
        status = cdsaDeriveKey(mHandle, passPhrase.Data, passPhrase.Length, CSSM_ALGID_AES,
                               kKeySizeInBits, &mKey);
        if (status != CSSM_OK) {
            cssmPerror("DeriveKey", status);
        }
        return status == CSSM_OK;
    }
    bool Encrypt(CSSM_DATA const& input) {
        return Done("cdsaEncrypt", cdsaEncrypt(mHandle, &mKey, &input, &mOutput));
    }
    bool Decrypt(CSSM_DATA const& input) {
        return Done("cdsaDecrypt", cdsaDecrypt(mHandle, &mKey, &input, &mOutput));
    }
    CSSM_DATA const& Output() const { return mOutput; }

  private:
    static bool Done(char const* what, CSSM_RETURN status) {
        if (status != CSSM_OK) {
            cssmPerror(what, status);
        }
        return status == CSSM_OK;
    }

    CSSM_CSP_HANDLE mHandle = nullptr;  // attached
    CSSM_KEY mKey = {};
    CSSM_DATA mOutput = {};  // owned
};

bool StartWith(CFStringRef passPhrase, CipherSession& session) {
    PlainBytes phrase;
    if (passPhrase == nullptr || !phrase.Take(passPhrase)) {
        cssmPerror("Pass phrase", CSSMERR_CSP_INVALID_DATA);
        return false;
    }
    return session.Start(phrase.Data());
}

CFStringRef Encrypted(CFStringRef text, CFStringRef passPhrase) {
    PlainBytes plain;
    if (!plain.Take(text)) {
        cssmPerror("Text", CSSMERR_CSP_INVALID_DATA);
        return nullptr;
    }
    CipherSession session;
    if (!StartWith(passPhrase, session) || !session.Encrypt(plain.Data())) {
        return nullptr;
    }
    CFRef<CFDataRef> const cipherText(CFDataCreate(nullptr, session.Output().Data,
                                                   static_cast<CFIndex>(session.Output().Length)));
    return cipherText ? ZUCFBase64CreateEncodedString(cipherText) : nullptr;
}

CFStringRef Decrypted(CFStringRef text, CFStringRef passPhrase) {
    CFRef<CFDataRef> const cipherText(ZUCFBase64CreateDecodedData(text));
    CSSM_DATA const input = {static_cast<std::size_t>(CFDataGetLength(cipherText)),
                             const_cast<std::uint8_t*>(CFDataGetBytePtr(cipherText))};
    CipherSession session;
    if (!cipherText || !StartWith(passPhrase, session) || !session.Decrypt(input)) {
        return nullptr;
    }
    return CFStringCreateWithBytes(nullptr, session.Output().Data,
                                   static_cast<CFIndex>(session.Output().Length),
                                   kCFStringEncodingUTF8, false);
}

}  // namespace

CFStringRef ZUCFCreateEncryptedString(CFStringRef text, CFStringRef passPhrase) {
    try {
        return Encrypted(text, passPhrase);
    } catch (std::exception const&) {
        return nullptr;
    }
}

CFStringRef ZUCFCreateDecryptedString(CFStringRef text, CFStringRef passPhrase) {
    try {
        return Decrypted(text, passPhrase);
    } catch (std::exception const&) {
        return nullptr;
    }
}
