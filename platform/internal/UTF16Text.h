// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "platform/Wiping.h"

namespace platform {

// The text of a string. It may be a secret, so nothing of it stays behind in the heap.
using UTF16Text =
    std::basic_string<char16_t, std::char_traits<char16_t>, WipingAllocator<char16_t>>;

}  // namespace platform
