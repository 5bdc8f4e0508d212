// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Warning.h"

#include <cstdio>

#include "ZUBUtils/PPDUtils/PlainText.h"

namespace {

std::size_t gCount = 0;

}  // namespace

void Warn(std::string const& text) {
    ++gCount;
    std::fprintf(stderr, "zubprint: warning: %s\n", BlankControlCharacters(text).c_str());
}

std::size_t WarningCount() {
    return gCount;
}
