// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDXProperty.h"

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "ZUBUtils/PPDUtils/Settings.h"

PPDXProperty::PPDXProperty(char const* keyword, CFStringRef localName, bool const& visible,
                           bool const& showInPrintProperties, bool const& showInApplication)
    : PPDXElement(keyword, localName, visible),
      mShowInPrintProperties(showInPrintProperties ? 1 : 0),
      mShowInApplication(showInApplication ? 1 : 0) {}

PPDXProperty::PPDXProperty(Settings& settings, long const& id) : PPDXElement(settings, id) {
    GetSettingsField(settings, ArchiveTags::kShowInPrintProperties, id, &mShowInPrintProperties,
                     sizeof mShowInPrintProperties);
    GetSettingsField(settings, ArchiveTags::kShowInApplication, id, &mShowInApplication,
                     sizeof mShowInApplication);
}

PPDXProperty::~PPDXProperty() = default;

short PPDXProperty::Save(Settings& settings, long const& id) {
    short const status = PPDXElement::Save(settings, id);
    if (status != 0) {
        return status;
    }
    settings.Add(ArchiveTags::kShowInPrintProperties, id, &mShowInPrintProperties,
                 sizeof mShowInPrintProperties);
    return static_cast<short>(settings.Add(ArchiveTags::kShowInApplication, id, &mShowInApplication,
                                           sizeof mShowInApplication));
}

bool IsPropertyPage(PPDXElement* element) {
    return dynamic_cast<PPDXProperty*>(element) != nullptr;
}

PPDXScrollPane* GetPropertyScrollDown(PPDXProperty* property) {
    return property == nullptr ? nullptr : property->GetScrollDown();
}

void SetPropertyScrollDown(PPDXProperty* property, PPDXScrollPane* pane) {
    if (property != nullptr) {
        property->SetScrollDown(pane);
    }
}

bool ShowPropInPrintProp(PPDXProperty* property) {
    return property != nullptr && property->ShowInPrintProp();
}

bool ShowPropInApp(PPDXProperty* property) {
    return property != nullptr && property->ShowInApp();
}
