// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/PlainText.h"

#include <algorithm>
#include <cstdint>

#include "platform/CFRef.h"
#include "platform/CoreFoundation.h"

bool IsControlCharacter(char byte) {
    auto const number = static_cast<unsigned char>(byte);
    return number < 0x20 || number == 0x7F;
}

bool HasControlCharacters(std::string_view text) {
    return std::ranges::any_of(text, IsControlCharacter);
}

std::string BlankControlCharacters(std::string text) {
    std::ranges::replace_if(text, IsControlCharacter, ' ');
    return text;
}

bool IsPlainProfileText(std::string_view text) {
    long open = 0;
    for (char const byte : text) {
        open += byte == '(' ? 1 : byte == ')' ? -1 : 0;
        if (open < 0 || byte == '\\' || IsControlCharacter(byte)) {
            return false;
        }
    }
    return open == 0;
}

std::string_view CutText(std::string_view text, std::size_t limit) {
    if (text.size() <= limit) {
        return text;
    }
    CFRef<CFStringRef> const isUTF8(
        CFStringCreateWithBytes(nullptr, reinterpret_cast<std::uint8_t const*>(text.data()),
                                static_cast<CFIndex>(text.size()), kCFStringEncodingUTF8, false));
    auto const continues = [text](std::size_t at) {
        return (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
    };
    while (isUTF8 && limit > 0 && continues(limit)) {
        --limit;
    }
    return text.substr(0, limit);
}
