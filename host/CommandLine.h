// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <ostream>

#include "host/Options.h"
#include "host/Outcome.h"

// The command's arguments.
class CommandLine {
  public:
    enum class Command {
        kNone,
        kInspect,
        kConstraints,
        kSolve,
        kPrint,
        kDialog,
        kList,
        kWhy,
        kFix,
        kLint,
        kAdopt,
        kUnpack,
        kDecryptNote
    };

    // None when there is a command to run. Otherwise the exit status, after help went to `out` or
    // one line about a wrong argument to `err`.
    std::optional<ExitStatus> Parse(int argc, char const* const* argv, std::ostream& out,
                                    std::ostream& err);

    Command Chosen() const { return mCommand; }
    InspectOptions const& Inspect() const { return mInspect; }
    ConstraintsOptions const& Constraints() const { return mConstraints; }
    SolveOptions const& Solve() const { return mSolve; }
    PrintOptions const& Print() const { return mPrint; }
    DialogOptions const& Dialog() const { return mDialog; }
    ListOptions const& List() const { return mList; }
    ChoiceOptions const& Choice() const { return mChoice; }  // of why and of fix
    LintOptions const& Lint() const { return mLint; }
    AdoptOptions const& Adopt() const { return mAdopt; }
    UnpackOptions const& Unpack() const { return mUnpack; }
    DecryptNoteOptions const& DecryptNote() const { return mDecryptNote; }

  private:
    Command mCommand = Command::kNone;
    InspectOptions mInspect;
    ConstraintsOptions mConstraints;
    SolveOptions mSolve;
    PrintOptions mPrint;
    DialogOptions mDialog;
    ListOptions mList;
    ChoiceOptions mChoice;
    LintOptions mLint;
    AdoptOptions mAdopt;
    UnpackOptions mUnpack;
    DecryptNoteOptions mDecryptNote;
};
