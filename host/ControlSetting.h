// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

// One choice of the user: a control's keyword, bytes as they stand in the PPD, and its value in
// UTF-8.
struct ControlSetting {
    std::string keyword;
    std::string value;
};
