// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "host/Options.h"
#include "host/Outcome.h"
#include "host/PresetFile.h"
#include "host/RunNotes.h"

class DialogSession;
class JobDataFile;
class PrintedDocument;
class TicketFile;

// `zubprint print`: runs one dialog and prints what its last commit wrote.
class PrintCommand {
  public:
    // All must outlive the command.
    PrintCommand(PrintOptions const& options, std::ostream& out, std::ostream& err);

    Outcome Run();

  protected:
    // Reads what the choices take from files, and checks the PPD's file before; `inputIsTaken` if
    // something else reads standard input.
    Outcome ReadFiles(bool inputIsTaken);
    // Reads the tickets file, if one is named, opens the dialog and makes the choices in it.
    Outcome Open(DialogSession& dialog, TicketFile& tickets);
    // After the dialog's last commit, where a tickets file is named.
    Outcome KeepTickets(DialogSession const& dialog, TicketFile& tickets);

    PrintOptions const& mOptions;
    std::vector<ControlSetting> mSettings;  // with their values, as long as a dialog wants them
    std::ostream& mOut;
    std::ostream& mErr;
    PresetFile mPreset;  // with nothing in it when none is asked for
    RunNotes mNotes;

  private:
    std::optional<std::string> MakeAndModel() const;
    Outcome StartWithoutRecord(DialogSession& dialog, TicketFile const& tickets) const;
    Outcome Show(PrintedDocument const& document, JobDataFile const& job);
    Outcome RunDialog(std::string& path, JobDataFile& job);
    Outcome TryChoices(TicketFile const& tickets);
    // Tells on `err` what doesn't come out as it was asked for.
    Outcome MakeChoices(DialogSession& dialog, std::ostream& err, std::size_t& warnings);
    std::size_t ChooseWatermark(DialogSession& dialog, std::ostream& err);
    void Report(std::string const& path, JobDataFile const& job);
};
