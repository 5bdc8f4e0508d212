// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/ByteSet.h"

// A set of bytes at which a field of a line ends, as the end of the line does anyway.
class Delimiters {
  public:
    constexpr Delimiters(char const* bytes)  // not explicit: most are written as a text
        : mBytes(bytes), mStops(mBytes | ByteSet("\n\r")) {}

    constexpr bool Has(char byte) const { return mBytes.Has(byte); }
    constexpr ByteSet const& Stops() const { return mStops; }  // line ends included

  private:
    ByteSet mBytes;
    ByteSet mStops;
};

constexpr Delimiters kKeywordDelimiters(" \t:");
constexpr Delimiters kNameDelimiters("/:");        // a name in front of a translation
constexpr Delimiters kTranslationDelimiters(":");  // a translation, or the whole head of an option
constexpr Delimiters kWordDelimiters("|:\"");      // flags and values
constexpr Delimiters kTypeDelimiters(";(;)");      // the type of a block
constexpr Delimiters kRestOfLineDelimiters("\n\r");
constexpr Delimiters kBlankDelimiters(" \t");
