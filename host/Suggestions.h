// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

// Near misses of a name: what somebody may have meant who wrote another.
class Suggestions {
  public:
    // The known names nearest to the text, at most three, the nearest first; none that is further
    // away than a slip of the fingers or that the text is no part of. A name that is
    // the same but for case stands alone. Upper and lower case count
    // as the same, and the star of a keyword for nothing. Distance: edits of a character and swaps
    // of two neighbours, after F. J. Damerau, "A technique for computer detection and correction of
    // spelling errors", Communications of the ACM 7 (1964).
    static std::vector<std::string> Nearest(std::string const& text,
                                            std::vector<std::string> const& known);
    // "; did you mean A, B or C?", or nothing.
    static std::string Ask(std::vector<std::string> const& nearest);
    static std::string Ask(std::string const& text, std::vector<std::string> const& known) {
        return Ask(Nearest(text, known));
    }
    // In lower case, as far as ASCII goes.
    static std::string Lower(std::string text);
    // "A, B and C".
    static std::string List(std::vector<std::string> const& names, char const* conjunction);
};
