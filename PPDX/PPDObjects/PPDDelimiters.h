// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/ByteSet.h"

// A set of bytes at which a field of a line ends, as the end of the line does anyway.
class Delimiters {
  public:
    constexpr Delimiters(char const* bytes)  // not explicit: most are written as a text
        : mBytes(bytes),
          mStops(mBytes | ByteSet("\n\r")),
          mOnly(bytes != nullptr && bytes[0] != '\0' && bytes[1] == '\0' ? bytes[0] : '\0') {}

    constexpr bool Has(char byte) const { return mBytes.Has(byte); }
    constexpr char Only() const { return mOnly; }  // the one byte of the set; NUL for other sets
    constexpr ByteSet const& Stops() const { return mStops; }  // line ends included

  private:
    ByteSet mBytes;
    ByteSet mStops;
    char mOnly;
};

constexpr Delimiters kKeywordDelimiters(" \t:");
constexpr Delimiters kNameDelimiters("/:");        // a name in front of a translation
constexpr Delimiters kTranslationDelimiters(":");  // a translation, or the whole head of an option
constexpr Delimiters kWordDelimiters("|:\"");      // flags and values
constexpr Delimiters kTypeDelimiters(";(;)");      // the type of a block
constexpr Delimiters kRestOfLineDelimiters("\n\r");
