// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

#include "host/Options.h"
#include "host/Outcome.h"
#include "host/PrintCommand.h"
#include "host/dialog/ScriptReader.h"

// `zubprint dialog`: opens one dialog and acts out a script in it, on a face without a screen.
class DialogCommand : private PrintCommand {
  public:
    // All must outlive the command.
    DialogCommand(DialogOptions const& options, std::ostream& out, std::ostream& err);

    Outcome Run();

  private:
    Outcome Play(ScriptSource const& script);

    DialogOptions const& mDialogOptions;
};
