// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/Options.h"
#include "host/Outcome.h"

class ZUBPPD;

// Choices in a JSON file that another printer can take too: each by keyword and option and by the
// names that people see, so that the choice is found again under either.
//
// {"preset": 1, "printer": "...", "choices": [{"keyword": "*Duplex", "name": "Two Sided",
//  "value": "On", "valueName": "On", "byDefault": false}]}
//
// Lists, switches and numbers go in that people see; not what is built into a printer, what a
// server says of itself, and job notes, which may be secrets.
class PresetFile {
  public:
    // Writes the present choices. Fails for a file that can't be written.
    static Outcome Write(ZUBPPD& ppd, std::string const& path);

    // Reads a preset, once. Fails for a file that can't be read or is none.
    Outcome Read(std::string const& path);
    // The choices of it that this PPD can take, as settings; none when nothing was read. Tells on
    // `err` how many it has here, and line by line those that it found by their name and those that
    // it didn't find, but for those that were nobody's own: they stood at their defaults. `missed`
    // is counted up by the lines of those not taken.
    std::vector<ControlSetting> SettingsFor(ZUBPPD& ppd, std::ostream& err,
                                            std::size_t& missed) const;

  private:
    struct Choice {
        std::string keyword;  // UTF-8, as all of it
        std::string name;
        std::string value;
        std::string valueName;
        bool byDefault;
    };

    static std::string Told(Choice const& choice);
    void TellCount(std::vector<ControlSetting> const& settings, std::size_t defaults,
                   std::ostream& err) const;

    std::string mPath;
    std::string mPrinter;
    std::vector<Choice> mChoices;
};
