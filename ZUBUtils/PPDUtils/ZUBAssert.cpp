// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/ZUBAssert.h"

#include <cstdio>
#include <cstdlib>

ZUBAssert::~ZUBAssert() = default;

void ZUBAssert::Fail(char const* expression, char const* sourcePath, unsigned line) {
    std::fprintf(stderr, "%s:%u: failed assertion `%s'\n", sourcePath, line, expression);
    std::abort();
}
