// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/PPDXGroup.h"

class PPDXControls;

// A group of controls inside a scroll pane.
class PPDXRollDown : public PPDXGroup {
  public:
    PPDXRollDown(char const* keyword, CFStringRef localName, bool const& visible);
    PPDXRollDown(Settings& settings, long const& id);
    ~PPDXRollDown() override;

    short Save(Settings& settings, long const& id) override;
    // The list belongs to the roll-down, the controls in it don't. Made at the first call, which
    // throws std::bad_alloc; never null.
    PPDXControls* Controls() const;

  private:
    mutable PPDXControls* mControls = nullptr;  // owned; null until asked for
};

extern "C" {
bool IsRollDown(PPDXElement* element);
// Null without memory, too.
PPDXControls* GetRollDownControlList(PPDXRollDown* rollDown);
}
