// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// How many controls of one kind a registry holds, by what a display option asks for.
struct CountArray {
    std::int32_t mTotal = 0;
    std::int32_t mOrphans = 0;
    std::int32_t mHidden = 0;
    std::int32_t mHiddenOrphans = 0;
};
