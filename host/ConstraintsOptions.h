// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/ReadOptions.h"

// What `zubprint constraints` was told.
struct ConstraintsOptions : ReadOptions {
    bool customPaper = false;
};
