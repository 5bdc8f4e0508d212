// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/ControlLookup.h"

#include <cstring>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXSpecialOption.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/CString.h"

PPDXControls* ControlsOf(ZUBPPD* ppd) {
    return ppd == nullptr ? nullptr : ppd->GetControls();
}

PPDXControl* FindAnyControl(ZUBPPD* ppd, char const* keyword) {
    DisplayOptionsScope const everything(kDisplayAll);
    CNTL_TYPE type = kControlType;
    return Find(ControlsOf(ppd), keyword, type, true);
}

char const* SpecialOptionText(ZUBPPD* ppd, char const* keyword) {
    PPDXControls* const controls = ControlsOf(ppd);
    PPDXSpecialOption* const option =
        controls == nullptr ? nullptr : controls->FindSpecialOption(keyword, true);
    char const* const text = option == nullptr || option->GetValue() == nullptr
                                 ? nullptr
                                 : option->GetValue()->GetCharData();
    return option != nullptr && text == nullptr ? "" : text;
}

bool IsSpecialOptionTrue(ZUBPPD* ppd, char const* keyword) {
    char const* const text = SpecialOptionText(ppd, keyword);
    return text != nullptr && std::strcmp(text, "True") == 0;
}
