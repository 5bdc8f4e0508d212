// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "host/Options.h"
#include "host/Outcome.h"

class PPDXControl;
class ZUBPPD;

// Finds controls and choices by what people write, and says what they may have meant. Keywords and
// options are bytes as they stand in the PPD.
class ControlNames {
  public:
    // The control of this keyword, hidden ones and orphans too; the star may be left off. Null for
    // none.
    static PPDXControl* Find(ZUBPPD& ppd, std::string const& keyword);
    // "FILE has no control KEYWORD", and what may have been meant.
    static std::string Unknown(ZUBPPD& ppd, std::string const& file, std::string const& keyword);

    // Which controls have a keyword or name near the text; empty when none has.
    static std::string Ask(ZUBPPD& ppd, std::string const& text);

    // All controls in their order.
    static std::vector<PPDXControl*> All(ZUBPPD& ppd);
    // Whether it tells what is built into the printer; by its group where nothing else says so.
    static bool IsHardware(PPDXControl& control);
    // What a control offers to choose from; empty for one that isn't a list or a switch.
    static std::vector<std::string> Choices(PPDXControl& control);
    // The nearest of these choices, or what it takes where that is short; empty when nothing is to
    // be said.
    static std::string AskChoice(ZUBPPD const& ppd, PPDXControl& control,
                                 std::string const& option);

    // Writes the choice as the PPD does: with the star, and without one that it doesn't have. Fails
    // for a keyword or a choice that isn't there.
    static Outcome Resolve(ZUBPPD& ppd, std::string const& file, OptionChoice& choice);
    // The same for the keyword alone.
    static Outcome ResolveKeyword(ZUBPPD& ppd, std::string const& file, std::string& keyword);
};
