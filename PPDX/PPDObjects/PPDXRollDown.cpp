// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDXRollDown.h"

#include <new>

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "ZUBUtils/PPDUtils/Settings.h"

namespace {

constexpr unsigned char kMark = 1;  // the item counts, not its value

}  // namespace

PPDXRollDown::PPDXRollDown(char const* keyword, CFStringRef localName, bool const& visible)
    : PPDXGroup(keyword, localName, visible) {}

PPDXRollDown::PPDXRollDown(Settings& settings, long const& id) : PPDXGroup(settings, id) {}

PPDXRollDown::~PPDXRollDown() {
    delete mControls;
}

PPDXControls* PPDXRollDown::Controls() const {
    if (mControls == nullptr) {
        mControls = new PPDXControls;
    }
    return mControls;
}

short PPDXRollDown::Save(Settings& settings, long const& id) {
    short const status = PPDXElement::Save(settings, id);
    return status != 0
               ? status
               : static_cast<short>(settings.Add(ArchiveTags::kRollDown, id, &kMark, sizeof kMark));
}

bool IsRollDown(PPDXElement* element) {
    return dynamic_cast<PPDXRollDown*>(element) != nullptr;
}

PPDXControls* GetRollDownControlList(PPDXRollDown* rollDown) {
    try {
        return rollDown == nullptr ? nullptr : rollDown->Controls();
    } catch (std::bad_alloc const&) {
        return nullptr;
    }
}
