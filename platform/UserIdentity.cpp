// SPDX-License-Identifier: Apache-2.0
#include "platform/UserIdentity.h"

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "platform/Testing.h"

namespace {

constexpr std::size_t kFirstAccountSize = 1024;
constexpr std::size_t kLargestAccountSize = 1 << 20;

std::optional<std::string> gUserName;  // in the account's place

CFStringRef CopyText(char const* text) {
    return CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8);
}

}  // namespace

CFStringRef CSCopyUserName() {
    if (gUserName) {
        return CopyText(gUserName->c_str());
    }
    try {
        for (std::size_t size = kFirstAccountSize; size <= kLargestAccountSize; size *= 2) {
            std::vector<char> texts(size);
            passwd account = {};
            passwd* found = nullptr;
            int const error = getpwuid_r(getuid(), &account, texts.data(), texts.size(), &found);
            if (error != ERANGE) {
                return error == 0 && found != nullptr ? CopyText(found->pw_name) : nullptr;
            }
        }
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
    return nullptr;
}

void SetUserName(char const* name) {
    gUserName = name != nullptr ? std::optional<std::string>(name) : std::nullopt;
}
