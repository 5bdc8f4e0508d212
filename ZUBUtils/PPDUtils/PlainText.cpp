// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/PlainText.h"

#include <algorithm>

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
