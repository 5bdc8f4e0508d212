// SPDX-License-Identifier: Apache-2.0
#include "host/Zubprint.h"

#include "host/CommandLine.h"
#include "host/InspectCommand.h"
#include "host/Outcome.h"
#include "host/PrintCommand.h"

namespace {

Outcome RunCommand(CommandLine const& commandLine, std::ostream& out, std::ostream& err) {
    return commandLine.Chosen() == CommandLine::Command::kInspect
               ? InspectCommand(commandLine.Inspect(), out, err).Run()
               : PrintCommand(commandLine.Print(), out, err).Run();
}

}  // namespace

int Zubprint::Run(int argc, char const* const* argv, std::ostream& out, std::ostream& err) {
    CommandLine commandLine;
    if (auto const status = commandLine.Parse(argc, argv, out, err)) {
        return static_cast<int>(*status);
    }
    Outcome outcome = RunCommand(commandLine, out, err);
    if (outcome.Ok() && !out.flush()) {
        outcome = Outcome::Failed("can't write to standard output");
    }
    if (!outcome.Ok()) {
        err << "zubprint: " << outcome.message << '\n';
    }
    return static_cast<int>(outcome.status);
}
