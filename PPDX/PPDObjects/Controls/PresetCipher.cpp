// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PresetCipher.h"

#include "ciphers/KeyMaterial.h"
#include "ciphers/ZUCFStringCipher.h"
#include "platform/CFRef.h"

namespace {

CFRef<CFStringRef> PassPhrase() {
    return CFRef<CFStringRef>(CFStringCreateWithBytes(
        nullptr, reinterpret_cast<std::uint8_t const*>(kPresetKey.data()),
        static_cast<CFIndex>(kPresetKey.size()), kCFStringEncodingASCII, false));
}

}  // namespace

CFStringRef PresetCipher::CopyEnciphered(CFStringRef text) {
    return ZUCFCreateEncryptedString(text, PassPhrase());
}

CFStringRef PresetCipher::CopyDeciphered(CFStringRef text) {
    return ZUCFCreateDecryptedString(text, PassPhrase());
}
