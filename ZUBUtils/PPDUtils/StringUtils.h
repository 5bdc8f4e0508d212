// SPDX-License-Identifier: Apache-2.0
#pragma once

// Small operations on NUL-terminated 8-bit texts.

constexpr unsigned long kNumberTextSize = 12;  // bytes that num2String can need
constexpr unsigned long kFloatTextSize = 48;   // bytes that float2String can need

// Writes the number in decimal into kNumberTextSize bytes and returns them. Numbers beyond 32 bits
// are clamped to that range.
char* num2String(long number, char* text);
// Writes the number with four decimals, at least 9 characters wide, into kFloatTextSize bytes and
// returns them.
char* float2String(float number, char* text);
// Leading blanks, a sign and digits; 0 without digits, clamped to 32 bits.
long string2Number(char const* text);

// Removes the bytes from `from` up to but not including `to`, in place, and returns `text`. A `to`
// beyond the end removes the rest. Null, with nothing changed, when both are equal or don't name a
// range of the text.
char* deleteCharRangeInStr(char* text, short from, short to);
// The first such byte, null for none. The terminator is never found.
char* findChar(char* text, char wanted);
// `count` times `fill` and a terminator. Null without memory; the caller frees it with delete[].
char* newInitalizedCString(unsigned long count, char fill);
// False when the text has a run of more than `limit` decimal digits.
bool validateRangeValues(char const* text, long limit);
// The number that a wide text begins with. At most 128 bytes of its multibyte form are read; 0
// without digits, clamped to 32 bits.
int wtoi(wchar_t const* text);

// A new text with every occurrence of `what` replaced, which the caller frees with delete[]. What a
// replacement forms together with its surroundings is searched again, so `with` must not contain
// `what`; where it does all the same, what was put in is passed over. An empty `what` replaces
// nothing. Null, with a line on the standard output stream, for a null argument or without memory.
char* _replace(char const* text, char const* what, char const* with);

// Between NUL-terminated and length-prefixed texts; source and target may be the same block. A
// text of more than 255 bytes is cut. `pascal` has room for 256 bytes. Each returns its target.
unsigned char* ctoPStr(char const* text, unsigned char* pascal);
char* ptoCStr(void const* pascal, char* text);
