// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/ListFromJP.h"
#include "VelonFeatures/Project/Core/ServerPreset.h"

// The exchange of the option state with the Job Properties application. Nothing starts that
// application yet, so there is no list that could change and no server preset that could be
// outdated.

bool CheckForChangeInListFromJP(char const* /*keyword*/, char const* /*value*/) {
    return false;
}

bool ServerPresetKeywordShouldBeDiscarded(unsigned char const* /*text*/, unsigned long /*length*/) {
    return false;
}
