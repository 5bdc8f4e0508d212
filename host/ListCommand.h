// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/Options.h"
#include "host/PPDCommand.h"

// `zubprint list`: a page about a printer's options, for a person to read.
class ListCommand : public PPDCommand {
  public:
    ListCommand(ListOptions const& options, std::ostream& out, std::ostream& err)
        : PPDCommand(options, false, out, err), mOptions(options) {}

  private:
    Outcome Answer(ZUBPPD& ppd, std::ostream& out) override;

    ListOptions const& mOptions;
};
