// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDXGroup.h"

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "ZUBUtils/PPDUtils/Settings.h"

namespace {

constexpr unsigned char kMark = 1;  // the item counts, not its value

}  // namespace

PPDXGroup::PPDXGroup(char const* keyword, CFStringRef localName, bool const& visible)
    : PPDXElement(keyword, localName, visible) {}

PPDXGroup::PPDXGroup(Settings& settings, long const& id) : PPDXElement(settings, id) {}

PPDXGroup::~PPDXGroup() = default;

short PPDXGroup::Save(Settings& settings, long const& id) {
    short const status = PPDXElement::Save(settings, id);
    return status != 0
               ? status
               : static_cast<short>(settings.Add(ArchiveTags::kGroup, id, &kMark, sizeof kMark));
}
