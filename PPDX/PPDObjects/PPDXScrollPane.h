// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/PPDXGroup.h"

class PPDXGroups;

// The one pane of a property page; holds roll-downs.
class PPDXScrollPane : public PPDXGroup {
  public:
    PPDXScrollPane(char const* keyword, CFStringRef localName, bool const& visible);
    PPDXScrollPane(Settings& settings, long const& id);
    ~PPDXScrollPane() override;

    short Save(Settings& settings, long const& id) override;
    // The list belongs to the pane, the roll-downs in it don't.
    PPDXGroups* RollDowns() const { return mRollDowns; }

  private:
    PPDXGroups* mRollDowns;  // owned
};

extern "C" {
bool IsScrollPane(PPDXElement* element);
PPDXGroups* GetScrollPaneRollDowns(PPDXScrollPane* pane);
}
