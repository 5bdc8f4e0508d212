// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

#include "VelonFeatures/Project/Core/ZUBWatermark.h"

// What of a watermark's record isn't as it should be. For people, in UTF-8.

// A name of 1 to 63 regular characters of PostScript, printable ASCII but for its delimiters.
bool IsFontName(std::string_view name);
// The field that must hold a number and begins with none. Empty without one; a field that a short
// record doesn't have is none.
std::string NumberThatIsNone(WatermarkFields const& parts);
// What a job won't have as it stands there, all in one line; empty for nothing.
std::string WatermarkDoubts(WatermarkFields const& parts);
