// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/Controls/PPDXElement.h"

// A named group of options. A plain group is only a name; roll-downs and scroll panes hold others.
class PPDXGroup : public PPDXElement {
  public:
    PPDXGroup(char const* keyword, CFStringRef localName, bool const& visible);
    PPDXGroup(Settings& settings, long const& id);
    ~PPDXGroup() override;

    short Save(Settings& settings, long const& id) override;
};
