// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/DebugMessage.h"

#include <cstdio>
#include <cstdlib>

void MyDebugMessage(char const* text, int number) {
    if (std::getenv("PDEDebug") != nullptr) {
        std::printf("%s (%d)\n", text != nullptr ? text : "", number);
    }
}
