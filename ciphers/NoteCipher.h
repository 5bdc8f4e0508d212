// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>

// The cipher of job notes: DES without chaining, or AES-256 in CBC mode, under a key that the PPD
// selects by number. Plain texts are bytes that end at a zero; cipher texts are digits of
// "0123456789ABCDEF", two for each byte, high one first.
//
// The alphabet, the padding and the selection are what a print server that deciphers a note has
// too; see docs/security.md for what the cipher is worth.

// What selects algorithm and key. The texts are read during the call only; null where the PPD has
// no such option.
struct NoteCipherChoice {
    char const* specialAlgorithm = nullptr;  // value of *UseSpecialAlgorithm
    char const* specialKey = nullptr;        // value of *UseSpecialKey
    bool hasAESFlag = false;                 // what decides without a special algorithm
};

// 128 bytes of cipher text; 256 digits fill the buffer to its end, without a terminator.
constexpr std::size_t kNoteCipherSize = 128;
constexpr std::size_t kNoteDigitsSize = 2 * kNoteCipherSize;
// The longest plain texts whose cipher text fits.
constexpr std::size_t kLongestDESNote = 127;
constexpr std::size_t kLongestAESNote = 126;

bool IsAESNote(NoteCipherChoice const& choice);

// Writes the digits, and zeros behind them. False for null and for a text that is too long: then
// `digits` is all zeros, and the note must be left out of the job, for neither a part of it nor the
// plain text is what the reader is to get.
bool EncipherNote(char const* text, NoteCipherChoice const& choice,
                  char (&digits)[kNoteDigitsSize]);
// The digits in a buffer that EncipherNote filled.
std::string_view NoteDigits(char const (&digits)[kNoteDigitsSize]);

// The inverse, for who has the same keys: a terminated text, which the caller wipes. False, with
// zeros in `text`, unless `digits` are upper case digits of whole blocks and what they hold is a
// text with the padding of the chosen algorithm.
bool DecipherNote(std::string_view digits, NoteCipherChoice const& choice,
                  char (&text)[kNoteCipherSize]);
