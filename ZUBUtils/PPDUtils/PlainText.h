// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// Texts on their way into lines and comments of PostScript. Bytes; a control character is one
// below 0x20, or 0x7F: a line end among them would end the comment, and what follows would run.

bool IsControlCharacter(char byte);
bool HasControlCharacters(std::string_view text);
// The text with a blank in the place of each control character.
std::string BlankControlCharacters(std::string text);
// Whether the text can stand in a comment and in a PostScript string as it is: no control
// characters, no backslash, and parentheses in pairs.
bool IsPlainProfileText(std::string_view text);

// As much of the text as `limit` bytes hold. A text in UTF-8 isn't cut within a character.
std::string_view CutText(std::string_view text, std::size_t limit);
