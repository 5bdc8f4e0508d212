// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/ControlLookup.h"

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/ZUBPPD.h"

PPDXControls* ControlsOf(ZUBPPD* ppd) {
    return ppd == nullptr ? nullptr : ppd->GetControls();
}

PPDXControl* FindAnyControl(ZUBPPD* ppd, char const* keyword) {
    DisplayOptionsScope const everything(kDisplayAll);
    CNTL_TYPE type = kControlType;
    return Find(ControlsOf(ppd), keyword, type, true);
}
