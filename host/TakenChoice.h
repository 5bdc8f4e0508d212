// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

class PPDXControl;

// Whether the control stands at what was asked for in UTF-8: a number neither clamped nor snapped,
// two numbers with a blank between them for a custom size, True or False in any case for a boolean,
// one of its options for a list. Job notes take any text.
bool StandsAt(PPDXControl& control, std::string_view asked);
