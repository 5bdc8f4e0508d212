// SPDX-License-Identifier: Apache-2.0
#include "host/Zubprint.h"

#include <new>

#include "host/AdoptCommand.h"
#include "host/CommandLine.h"
#include "host/InspectCommand.h"
#include "host/LintCommand.h"
#include "host/ListCommand.h"
#include "host/Outcome.h"
#include "host/PrintCommand.h"
#include "host/ReasonCommands.h"
#include "host/RuleCommands.h"
#include "host/SecretCommands.h"
#include "host/dialog/DialogCommand.h"

namespace {

Outcome RunCommand(CommandLine const& commandLine, std::ostream& out, std::ostream& err) {
    switch (commandLine.Chosen()) {
        case CommandLine::Command::kInspect:
            return InspectCommand(commandLine.Inspect(), out, err).Run();
        case CommandLine::Command::kConstraints:
            return ConstraintsCommand(commandLine.Constraints(), out, err).Run();
        case CommandLine::Command::kSolve:
            return SolveCommand(commandLine.Solve(), out, err).Run();
        case CommandLine::Command::kPrint:
            return PrintCommand(commandLine.Print(), out, err).Run();
        case CommandLine::Command::kList:
            return ListCommand(commandLine.List(), out, err).Run();
        case CommandLine::Command::kWhy:
            return WhyCommand(commandLine.Choice(), out, err).Run();
        case CommandLine::Command::kFix:
            return FixCommand(commandLine.Choice(), out, err).Run();
        case CommandLine::Command::kLint:
            return LintCommand(commandLine.Lint(), out).Run();
        case CommandLine::Command::kAdopt:
            return AdoptCommand(commandLine.Adopt(), out, err).Run();
        case CommandLine::Command::kDialog:
            return DialogCommand(commandLine.Dialog(), out, err).Run();
        case CommandLine::Command::kUnpack:
            return UnpackCommand(commandLine.Unpack(), out).Run();
        case CommandLine::Command::kDecryptNote:
            return DecryptNoteCommand(commandLine.DecryptNote(), out).Run();
        case CommandLine::Command::kNone:
            break;
    }
    return Outcome::Done();
}

// The exit status.
int ParseAndRun(int argc, char const* const* argv, std::ostream& out, std::ostream& err) {
    CommandLine commandLine;
    if (auto const status = commandLine.Parse(argc, argv, out, err)) {
        return static_cast<int>(*status);
    }
    Outcome outcome = RunCommand(commandLine, out, err);
    if (outcome.Ok() && !out.flush()) {
        outcome = Outcome::Failed("can't write to standard output");
    }
    if (!outcome.Ok()) {
        err << Outcome::Line(outcome.message);
    }
    return static_cast<int>(outcome.status);
}

}  // namespace

int Zubprint::Run(int argc, char const* const* argv, std::ostream& out, std::ostream& err) {
    try {
        return ParseAndRun(argc, argv, out, err);
    } catch (std::bad_alloc const&) {
        err << "zubprint: not enough memory\n";
        return static_cast<int>(ExitStatus::kFailed);
    }
}
