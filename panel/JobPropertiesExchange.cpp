// SPDX-License-Identifier: Apache-2.0
#include "panel/JobPropertiesExchange.h"

#include "PPDX/PPDObjects/Controls/ListFromJP.h"
#include "VelonFeatures/Project/Core/ServerPreset.h"

// Nothing here starts the application, so it never answers.
bool HasListFromJP() {
    return false;
}

bool CheckForChangeInListFromJP(char const* /*keyword*/, char const* /*value*/) {
    return HasListFromJP();
}

bool ServerPresetKeywordShouldBeDiscarded(unsigned char const* /*text*/, unsigned long /*length*/) {
    return HasListFromJP();
}
