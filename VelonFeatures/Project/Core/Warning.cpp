// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Warning.h"

#include <cstdio>

#include "ZUBUtils/PPDUtils/PlainText.h"

void Warn(std::string const& text) {
    std::fprintf(stderr, "zubprint: warning: %s\n", BlankControlCharacters(text).c_str());
}
