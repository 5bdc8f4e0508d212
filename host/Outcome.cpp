// SPDX-License-Identifier: Apache-2.0
#include "host/Outcome.h"

#include <algorithm>

#include "host/PeopleText.h"

std::string Outcome::Line(std::string text) {
    std::ranges::replace_if(
        text, [](char byte) { return byte == '\n' || byte == '\r'; }, ' ');
    return "zubprint: " + PeopleText::Plain(std::string_view(text)) + '\n';
}
