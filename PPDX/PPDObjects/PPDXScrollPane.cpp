// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDXScrollPane.h"

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "ZUBUtils/PPDUtils/Settings.h"

namespace {

constexpr unsigned char kMark = 1;  // the item counts, not its value

}  // namespace

PPDXScrollPane::PPDXScrollPane(char const* keyword, CFStringRef localName, bool const& visible)
    : PPDXGroup(keyword, localName, visible), mRollDowns(new PPDXGroups) {}

PPDXScrollPane::PPDXScrollPane(Settings& settings, long const& id)
    : PPDXGroup(settings, id), mRollDowns(new PPDXGroups) {}

PPDXScrollPane::~PPDXScrollPane() {
    delete mRollDowns;
}

short PPDXScrollPane::Save(Settings& settings, long const& id) {
    short const status = PPDXElement::Save(settings, id);
    return status != 0 ? status
                       : static_cast<short>(
                             settings.Add(ArchiveTags::kScrollPane, id, &kMark, sizeof kMark));
}

bool IsScrollPane(PPDXElement* element) {
    return dynamic_cast<PPDXScrollPane*>(element) != nullptr;
}

PPDXGroups* GetScrollPaneRollDowns(PPDXScrollPane* pane) {
    return pane == nullptr ? nullptr : pane->RollDowns();
}
