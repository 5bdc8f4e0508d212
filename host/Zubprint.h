// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

// The command zubprint: reads its arguments and runs what they ask for.
class Zubprint {
  public:
    // The exit status. What is asked for goes to `out`, one line about a failure to `err`.
    static int Run(int argc, char const* const* argv, std::ostream& out, std::ostream& err);
};
