// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <string_view>

// Blanks are spaces and tabs. What is cut off is cut from the view alone.

constexpr bool IsBlank(char byte) {
    return byte == ' ' || byte == '\t';
}

constexpr std::string_view WithoutLeadingBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.front())) {
        text.remove_prefix(1);
    }
    return text;
}

constexpr std::string_view WithoutTrailingBlanks(std::string_view text) {
    while (!text.empty() && IsBlank(text.back())) {
        text.remove_suffix(1);
    }
    return text;
}

// What stands in front of the first blank, which is taken off the text too.
constexpr std::string_view TakeWord(std::string_view& text) {
    std::string_view word = text.substr(0, text.find(' '));
    word = word.substr(0, word.find('\t'));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    return word;
}

constexpr std::string_view WithoutBlanksAround(std::string_view text) {
    return WithoutTrailingBlanks(WithoutLeadingBlanks(text));
}
