// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/ConstraintsOptions.h"
#include "host/PPDCommand.h"

// `zubprint constraints`: prints which choices would conflict with the present selection.
class ConstraintsCommand : public PPDCommand {
  public:
    ConstraintsCommand(ConstraintsOptions const& options, std::ostream& out, std::ostream& err)
        : PPDCommand(options, false, out, err), mOptions(options) {}

  private:
    Outcome Answer(ZUBPPD& ppd, Json& answer) override;

    ConstraintsOptions const& mOptions;
};
