// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "PPDX/PPDObjects/Controls/PPDXElement.h"

class PPDXScrollPane;

// A property page: where it is shown, and the scroll pane on it.
class PPDXProperty : public PPDXElement {
  public:
    PPDXProperty(char const* keyword, CFStringRef localName, bool const& visible,
                 bool const& showInPrintProperties, bool const& showInApplication);
    PPDXProperty(Settings& settings, long const& id);
    ~PPDXProperty() override;

    short Save(Settings& settings, long const& id) override;
    bool ShowInPrintProp() const { return mShowInPrintProperties != 0; }
    bool ShowInApp() const { return mShowInApplication != 0; }
    PPDXScrollPane* GetScrollDown() const { return mScrollPane; }  // null when there is none
    void SetScrollDown(PPDXScrollPane* pane) { mScrollPane = pane; }

  private:
    PPDXScrollPane* mScrollPane = nullptr;  // not owned
    std::int32_t mShowInPrintProperties = 0;
    std::int32_t mShowInApplication = 0;
};

extern "C" {
bool IsPropertyPage(PPDXElement* element);
PPDXScrollPane* GetPropertyScrollDown(PPDXProperty* property);
void SetPropertyScrollDown(PPDXProperty* property, PPDXScrollPane* pane);
bool ShowPropInPrintProp(PPDXProperty* property);
bool ShowPropInApp(PPDXProperty* property);
}
