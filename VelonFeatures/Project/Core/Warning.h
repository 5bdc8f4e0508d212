// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

// Tells of something that the job lacks: one line on standard error, with a blank in the place of
// each control character. The session goes on.
void Warn(std::string const& text);
// Lines told by this process so far.
std::size_t WarningCount();
