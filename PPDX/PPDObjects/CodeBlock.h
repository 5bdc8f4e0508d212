// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdlib>
#include <memory>

// PostScript on its way from a line of the PPD to the control that will own it.
struct CodeBlock {
    struct Free {
        void operator()(unsigned char* block) const { std::free(block); }
    };

    std::unique_ptr<unsigned char, Free> bytes;  // from malloc, no terminator; null for no code
    long size = 0;
};
