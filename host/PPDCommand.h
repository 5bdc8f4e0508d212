// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/JsonText.h"
#include "host/Options.h"
#include "host/Outcome.h"
#include "platform/CFRef.h"

struct ReleasePPD {
    void operator()(ZUBPPD* ppd) const { ppd->Release(); }
};

// A PPD that the command itself read, given up on destruction.
class ParsedPPD {
  public:
    // No accepted fragments accept every file. What stands in the way of a reading is in the
    // PPD's errors.
    ParsedPPD(std::string const& path, _PARSE_OPTIONS_ options,
              std::vector<std::string> const& accepted);

    // The fragments as the reader takes them; null for none.
    static CFRef<CFArrayRef> Names(std::vector<std::string> const& accepted);

    ZUBPPD& Get() const { return *mPPD; }
    ZUBPPD* operator->() const { return mPPD.get(); }

  private:
    std::unique_ptr<ZUBPPD, ReleasePPD> mPPD;
};

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

    // Prints the answer, or nothing unless the outcome is good.
    virtual Outcome Answer(ZUBPPD& ppd, std::ostream& out) = 0;

  private:
    ReadOptions const& mReadOptions;
    bool mAnyPPD;
    std::ostream& mOut;
    std::ostream& mErr;
};
