// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>

#include "host/Options.h"
#include "host/Outcome.h"

// What a print server does with the secrets of a job, with this build's keys: for checks, and for
// those who write a server.

// `zubprint unpack`: prints what a packed user authentication record holds, as JSON.
class UnpackCommand {
  public:
    // All must outlive the command.
    UnpackCommand(UnpackOptions const& options, std::ostream& out) : mOptions(options), mOut(out) {}

    Outcome Run();

  private:
    UnpackOptions const& mOptions;
    std::ostream& mOut;
};

// `zubprint decrypt-note`: prints the plain text of an enciphered note, and nothing else.
class DecryptNoteCommand {
  public:
    // All must outlive the command.
    DecryptNoteCommand(DecryptNoteOptions const& options, std::ostream& out)
        : mOptions(options), mOut(out) {}

    Outcome Run();

  private:
    DecryptNoteOptions const& mOptions;
    std::ostream& mOut;
};
