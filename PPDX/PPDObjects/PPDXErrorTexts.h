// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <span>

// What people are told of an error that the reader reports: what it means and what to do about it.
// docs/errors.md has the same, with examples.
struct PPDXErrorText {
    short code;
    char const* text;
    char const* remedy;
    char const* fatal;  // when it makes the file unusable; empty for never
};

std::span<PPDXErrorText const> ErrorTexts();  // all codes, ascending
char const* ErrorTextOf(short code);          // null for a code without a text
char const* ErrorRemedyOf(short code);        // null as well
