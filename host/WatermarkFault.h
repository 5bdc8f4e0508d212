// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>

// What keeps a watermark's record from being taken from a user: bytes that a printer's record can't
// hold, control characters from U+0080 on, and a number that is none, by its field. Empty for any
// other. What else is wrong with it is for WatermarkList::DoubtsOf.
std::string WatermarkFault(std::string_view record);
