// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "host/adopt/AdoptedNames.h"
#include "host/adopt/PlainPPD.h"

// Writes an ordinary PPD's option as a block of the extension grammar, within the limits of its
// reader on lines and values. What doesn't keep them is left out and told.
class AdoptedOption {
  public:
    // The references must outlive the object. Without `hasCode` its choices come to nothing in a
    // job. `keyword` is the one that the option gets.
    AdoptedOption(PlainPPD const& ppd, PlainPPD::Option const& option, std::string keyword,
                  bool hasCode, AdoptedNames const& names, AdoptTell tell)
        : mPPD(ppd),
          mOption(option),
          mKeyword(std::move(keyword)),
          mHasCode(hasCode),
          mNames(names),
          mTell(std::move(tell)) {}

    // Makes the block; false, and told, when nothing of it can stand.
    bool Make();
    // The block with its flags and group lines.
    std::string Block(std::string const& group) const;
    std::vector<std::string> const& Choices() const { return mChoices; }  // those in the block

    // Whether the reader takes every line of the text.
    static bool Fits(std::string const& text);
    // Code with no line that is too long, broken at blanks that aren't in strings or comments, and
    // a line feed behind the last one; none when there is no such place.
    static std::optional<std::string> Folded(std::string code);

  private:
    bool IsSwitch() const;
    std::string Head() const;
    std::string ChoiceLines(PlainPPD::Choice const& choice) const;
    std::optional<std::string> CodeOf(PlainPPD::Choice const& choice, std::string& why) const;
    std::string Default() const;

    PlainPPD const& mPPD;
    PlainPPD::Option const& mOption;
    std::string mKeyword;
    bool mHasCode;
    AdoptedNames const& mNames;
    AdoptTell mTell;
    std::vector<std::string> mChoices;
    std::string mLines;
};
