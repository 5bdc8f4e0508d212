// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/KeywordIndex.h"

#include "PPDX/PPDObjects/Controls/PPDXControl.h"

void KeywordIndex::Add(PPDXControl* control) {
    if (control->Keyword() != nullptr) {
        mControls[control->Keyword()].push_back(control);
    }
}

std::vector<PPDXControl*> const& KeywordIndex::Find(char const* keyword) const {
    static std::vector<PPDXControl*> const kNone;
    auto const found = mControls.find(std::string_view(keyword));
    return found != mControls.end() ? found->second : kNone;
}
