// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <ostream>

#include "host/Options.h"
#include "host/Outcome.h"

// The command's arguments.
class CommandLine {
  public:
    enum class Command { kNone, kInspect, kConstraints, kSolve, kPrint, kUnpack, kDecryptNote };

    // None when there is a command to run. Otherwise the exit status, after help went to `out` or
    // one line about a wrong argument to `err`.
    std::optional<ExitStatus> Parse(int argc, char const* const* argv, std::ostream& out,
                                    std::ostream& err);

    Command Chosen() const { return mCommand; }
    InspectOptions const& Inspect() const { return mInspect; }
    ConstraintsOptions const& Constraints() const { return mConstraints; }
    SolveOptions const& Solve() const { return mSolve; }
    PrintOptions const& Print() const { return mPrint; }
    UnpackOptions const& Unpack() const { return mUnpack; }
    DecryptNoteOptions const& DecryptNote() const { return mDecryptNote; }

  private:
    Command mCommand = Command::kNone;
    InspectOptions mInspect;
    ConstraintsOptions mConstraints;
    SolveOptions mSolve;
    PrintOptions mPrint;
    UnpackOptions mUnpack;
    DecryptNoteOptions mDecryptNote;
};
