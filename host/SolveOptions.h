// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/ReadOptions.h"

// A keyword and one of its options, or all of them; bytes as they stand in the PPD.
struct OptionChoice {
    std::string keyword;
    std::optional<std::string> option;
};

// What `zubprint solve` was told.
struct SolveOptions : ReadOptions {
    std::vector<OptionChoice> change;  // each with an option
    std::vector<OptionChoice> locked;
    bool keepDelta = false;
    bool test = false;  // search for nothing
};
