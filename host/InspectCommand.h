// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/InspectOptions.h"
#include "host/PPDCommand.h"

// `zubprint inspect`: prints all that came of reading a PPD.
class InspectCommand : public PPDCommand {
  public:
    InspectCommand(InspectOptions const& options, std::ostream& out, std::ostream& err)
        : PPDCommand(options, true, out, err), mOptions(options) {}

    Outcome Run() override;

  private:
    Outcome Answer(ZUBPPD& ppd, Json& answer) override;

    InspectOptions const& mOptions;
};
