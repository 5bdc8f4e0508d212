// SPDX-License-Identifier: Apache-2.0
#pragma once

// The sets of bytes at which the fields of a PPD's lines end.
constexpr char kKeywordDelimiters[] = " \t:";
constexpr char kNameDelimiters[] = "/:";        // a name in front of a translation
constexpr char kTranslationDelimiters[] = ":";  // a translation, or the whole head of an option
constexpr char kWordDelimiters[] = "|:\"";      // flags and values
constexpr char kTypeDelimiters[] = ";(;)";      // the type of a block
constexpr char kRestOfLineDelimiters[] = "\n\r";
constexpr char kBlankDelimiters[] = " \t";
