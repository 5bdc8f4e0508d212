// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/Options.h"
#include "host/PPDCommand.h"

// `zubprint constraints`: prints which choices would conflict with the present selection.
class ConstraintsCommand : public PPDCommand {
  public:
    ConstraintsCommand(ConstraintsOptions const& options, std::ostream& out, std::ostream& err)
        : PPDCommand(options, false, out, err), mOptions(options) {}

  private:
    Outcome Answer(ZUBPPD& ppd, std::ostream& out) override;

    ConstraintsOptions const& mOptions;
};

// `zubprint solve`: proposes a change of options and prints what makes it consistent, or what
// stands in its way.
class SolveCommand : public PPDCommand {
  public:
    SolveCommand(SolveOptions const& options, std::ostream& out, std::ostream& err)
        : PPDCommand(options, false, out, err), mOptions(options) {}

  private:
    Outcome Answer(ZUBPPD& ppd, std::ostream& out) override;

    SolveOptions const& mOptions;
};
