// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/MacTypes.h"

// What the system says about itself.

constexpr OSType gestaltSystemVersionMajor = "sys1"_code;
constexpr OSType gestaltSystemVersionMinor = "sys2"_code;
constexpr OSErr gestaltUndefSelectorErr = -5551;
// 0 in `response` for an unknown selector.
OSErr Gestalt(OSType selector, std::int32_t* response);

// ---- What a host sets up ----

constexpr std::int32_t kDefaultSystemMinorVersion = 5;
void SetSystemMinorVersion(std::int32_t minor);
