// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "host/Options.h"
#include "host/Outcome.h"

class PPDXControl;
class ZUBPPD;

// Makes the user's choices on the controls of a parsed PPD, hidden ones and orphans too.
class ControlSettings {
  public:
    // `file` is the PPD's name for messages; one line for each choice that a control didn't take
    // goes to `err`.
    ControlSettings(ZUBPPD& ppd, std::string const& file, std::ostream& err);

    // In the order given. Stops at the first keyword that the PPD doesn't have.
    Outcome Apply(std::vector<ControlSetting> const& settings);

  private:
    Outcome Apply(ControlSetting const& setting);
    void Set(PPDXControl& control, ControlSetting const& setting);

    ZUBPPD& mPPD;
    std::string const& mFile;
    std::ostream& mErr;
};
