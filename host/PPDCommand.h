// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

#include <nlohmann/json_fwd.hpp>

#include "host/JsonText.h"
#include "host/Outcome.h"
#include "host/ReadOptions.h"

class ZUBPPD;

// A command that reads one PPD, makes the user's choices in it, and prints one JSON document about
// what came of it.
class PPDCommand {
  public:
    virtual ~PPDCommand() = default;
    PPDCommand(PPDCommand const&) = delete;
    PPDCommand& operator=(PPDCommand const&) = delete;

    virtual Outcome Run();

  protected:
    // All must outlive the command.
    // With `anyPPD` also a PPD that isn't valid is answered for.
    PPDCommand(ReadOptions const& options, bool anyPPD, std::ostream& out, std::ostream& err)
        : mReadOptions(options), mAnyPPD(anyPPD), mOut(out), mErr(err) {}

    // Puts the answer into `answer`; nothing is printed unless the outcome is good.
    virtual Outcome Answer(ZUBPPD& ppd, Json& answer) = 0;

  private:
    ReadOptions const& mReadOptions;
    bool mAnyPPD;
    std::ostream& mOut;
    std::ostream& mErr;
};
