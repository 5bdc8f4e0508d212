// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

#include "host/InspectOptions.h"
#include "host/Outcome.h"

// `zubprint inspect`: reads one PPD and prints all that came of it.
class InspectCommand {
  public:
    // All must outlive the command.
    InspectCommand(InspectOptions const& options, std::ostream& out, std::ostream& err);

    Outcome Run();

  private:
    InspectOptions const& mOptions;
    std::ostream& mOut;
    std::ostream& mErr;
};
