// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/Locale.h"

#include <cstdlib>

namespace platform {

std::string_view LocaleName(char const* category) {
    for (char const* variable : {"LC_ALL", category, "LANG"}) {
        char const* value = std::getenv(variable);
        if (value != nullptr && *value != '\0') {
            std::string_view name(value);
            return name.substr(0, name.find_first_of(".@"));
        }
    }
    return {};
}

}  // namespace platform
