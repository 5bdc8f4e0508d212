// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/PPDCommand.h"
#include "host/SolveOptions.h"

// `zubprint solve`: proposes a change of options and prints what makes it consistent, or what
// stands in its way.
class SolveCommand : public PPDCommand {
  public:
    SolveCommand(SolveOptions const& options, std::ostream& out, std::ostream& err)
        : PPDCommand(options, false, out, err), mOptions(options) {}

  private:
    Outcome Answer(ZUBPPD& ppd, Json& answer) override;

    SolveOptions const& mOptions;
};
