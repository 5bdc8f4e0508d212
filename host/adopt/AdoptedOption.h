// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>

#include "host/adopt/PlainPPD.h"

// Writes an ordinary PPD's option as a block of the extension grammar, within the limits of its
// reader on lines and values.
class AdoptedOption {
  public:
    // Hears what couldn't be carried, and of which line.
    using Tell = std::function<void(long line, std::string const& text)>;

    // All must outlive the object.
    // Without `hasCode` its choices come to nothing in a job.
    AdoptedOption(PlainPPD const& ppd, PlainPPD::Option const& option, bool hasCode,
                  Tell const& tell)
        : mPPD(ppd), mOption(option), mHasCode(hasCode), mTell(tell) {}

    // The block with its flags and group lines.
    std::string Block(std::string const& group) const;

    // Whether the reader takes every line of the text.
    static bool Fits(std::string const& text);
    // "keyword/text" as it stands in a line; the keyword where the text is empty or doesn't fit.
    static std::string Named(std::string const& keyword, std::string const& text);

  private:
    bool IsSwitch() const;
    std::string ChoiceLine(PlainPPD::Choice const& choice) const;
    std::string CodeOf(PlainPPD::Choice const& choice) const;
    std::string Default() const;

    PlainPPD const& mPPD;
    PlainPPD::Option const& mOption;
    bool mHasCode;
    Tell const& mTell;
};
