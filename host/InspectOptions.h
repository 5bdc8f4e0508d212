// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "host/ControlSetting.h"

// What `zubprint inspect` was told.
struct InspectOptions {
    std::string ppd;
    std::vector<std::string> accepted;  // *PCFileName fragments; none accept every file
    int parseOptions = 3;               // 0 to 3
    int extensions = -1;                // 0, 1, 2 or any other number for all
    std::vector<ControlSetting> settings;
};
