// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/Options.h"
#include "host/PPDCommand.h"

// `zubprint why`: says what stands against a choice, and why that can't be changed.
class WhyCommand : public PPDCommand {
  public:
    WhyCommand(ChoiceOptions const& options, std::ostream& out, std::ostream& err)
        : PPDCommand(options, false, out, err), mOptions(options) {}

  private:
    Outcome Answer(ZUBPPD& ppd, std::ostream& out) override;

    ChoiceOptions const& mOptions;
};

// `zubprint fix`: says which further changes a choice needs, and why there are none where it can't
// be made.
class FixCommand : public PPDCommand {
  public:
    FixCommand(ChoiceOptions const& options, std::ostream& out, std::ostream& err)
        : PPDCommand(options, false, out, err), mOptions(options) {}

  private:
    Outcome Answer(ZUBPPD& ppd, std::ostream& out) override;

    ChoiceOptions const& mOptions;
};
