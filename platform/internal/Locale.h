// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

namespace platform {

// The user's locale for a category such as "LC_MESSAGES": from LC_ALL, the category or LANG,
// without the character set and the modifier ("ja_JP"). Empty when nothing is set.
std::string_view LocaleName(char const* category);

}  // namespace platform
