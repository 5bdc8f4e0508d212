// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/ReadOptions.h"

// What `zubprint inspect` was told.
struct InspectOptions : ReadOptions {
    int extensions = -1;   // 0, 1, 2 or any other number for all
    bool rebuilt = false;  // print what comes back from an archive of the PPD
};
