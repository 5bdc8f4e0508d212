// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/Options.h"
#include "host/PPDCommand.h"

// `zubprint inspect`: prints all that came of reading a PPD, or of reading it, saving it into an
// archive and making it again from the archive's bytes.
class InspectCommand : public PPDCommand {
  public:
    InspectCommand(InspectOptions const& options, std::ostream& out, std::ostream& err)
        : PPDCommand(options, true, out, err), mOptions(options) {}

    Outcome Run() override;

  private:
    Outcome Answer(ZUBPPD& ppd, std::ostream& out) override;
    Outcome AnswerRebuilt(ZUBPPD& ppd, std::ostream& out);

    InspectOptions const& mOptions;
};
