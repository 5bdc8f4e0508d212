// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/PPDXUserAuthLib.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "platform/Wiping.h"

namespace {

using FieldBuffer = std::array<char, 256>;

void CopyField(char const* text, FieldBuffer& buffer) {
    std::copy_n(text, strnlen(text, buffer.size() - 1), buffer.begin());
}

}  // namespace

int AUTH_packAndEncrypt(char const* user, char const* password, char const* /*domain*/,
                        UAL_DomainType domainType, int /*reserved*/, char** out) {
    if (out == nullptr) {
        return -1;
    }
    FieldBuffer userField{};
    FieldBuffer passwordField{};
    WipeAtEnd const wipeUser(userField);
    WipeAtEnd const wipePassword(passwordField);
    std::array<unsigned char, kGUIDSize> guid{};
    if (!CreateGUID(guid.data())) {
        guid.fill(0);
    }
    if (domainType == kUALUserDomain && user != nullptr && password != nullptr && *user != '\0') {
        CopyField(user, userField);
        CopyField(password, passwordField);
    }
    return UAL_PackAndEncrypt(userField.data(), passwordField.data(), "", kUALUserDomain,
                              guid.data(), out);
}

void AUTH_freeBuffer(char** buffer) {
    if (buffer == nullptr || *buffer == nullptr) {
        return;
    }
    Wipe(*buffer, std::strlen(*buffer));
    std::free(*buffer);
    *buffer = nullptr;
}
