// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

// What keeps a watermark's record from being taken from a user: it names the field. Empty for one
// that is whole, whose numbers are numbers in their range, and which a printer's record can hold.
// Whether its font is there, and has the text's characters, shows in the job.
std::string WatermarkFault(std::string_view record);
