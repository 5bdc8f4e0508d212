// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/ProcessManager.h"

// The Job Properties application as a process.

constexpr std::int32_t kNoJobProperties = -1;

// The number of the application found after `psn`, whose process `psn` then holds;
// kNoJobProperties when there is none.
std::int32_t FindJobProperties(ProcessSerialNumber* psn);
bool EndJobProperties();  // false when there was none, or it couldn't be ended
