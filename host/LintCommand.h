// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

#include "host/Options.h"
#include "host/Outcome.h"

// `zubprint lint`: looks for all that is wrong with a PPD, line by line.
class LintCommand {
  public:
    // Both must outlive the command.
    LintCommand(LintOptions const& options, std::ostream& out) : mOptions(options), mOut(out) {}

    Outcome Run();

  private:
    LintOptions const& mOptions;
    std::ostream& mOut;
};
