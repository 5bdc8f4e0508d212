// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "constraints/KVCache.h"

// What a change of options runs into. A value.
struct _KVErrorSet {
    KVCache conflicts;     // selected pairs that collide with the change; empty: none
    KVCache alternatives;  // pairs that could stand in place of those
};
