// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// The watermarks of a printer, as far as the job chooses among them.
struct WatermarkList {
    std::int32_t mCount = 0;
    std::int32_t mSelected = -1;  // -1 for none
    std::int32_t mFirstPageOnly = 0;
};
