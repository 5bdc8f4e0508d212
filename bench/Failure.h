// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>

// Ends the program with status 1: a measurement of work that wasn't done is worth nothing.
[[noreturn]] inline void Fail(std::string const& message) {
    std::fprintf(stderr, "%s: %s\n", program_invocation_short_name, message.c_str());
    std::exit(1);
}
