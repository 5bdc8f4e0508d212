// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

#include "host/Options.h"
#include "host/Outcome.h"

// `zubprint adopt`: prints an ordinary PPD in the extension grammar.
class AdoptCommand {
  public:
    // All must outlive the command. What can't be carried is told on `err`, a line each.
    AdoptCommand(AdoptOptions const& options, std::ostream& out, std::ostream& err)
        : mOptions(options), mOut(out), mErr(err) {}

    Outcome Run();

  private:
    AdoptOptions const& mOptions;
    std::ostream& mOut;
    std::ostream& mErr;
};
