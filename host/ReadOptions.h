// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "host/ControlSetting.h"

// Which PPD a command reads, and what is set in it before anything is asked.
struct ReadOptions {
    std::string ppd;
    std::vector<std::string> accepted;  // *PCFileName fragments; none accept every file
    int parseOptions = 3;               // 0 to 3
    std::vector<ControlSetting> settings;
};
