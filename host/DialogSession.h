// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>

#include "host/LoadedPlugIn.h"
#include "host/Options.h"
#include "host/Outcome.h"
#include "host/PrintSession.h"
#include "platform/Controls.h"

class ZUBPPD;

// One run of a print dialog without anybody looking: the plug-in in a window that stays hidden.
// Destruction closes the dialog and gives everything back but the plug-in's session data, which
// outlives a dialog until the next one.
class DialogSession {
  public:
    DialogSession();
    DialogSession(DialogSession const&) = delete;
    DialogSession& operator=(DialogSession const&) = delete;
    ~DialogSession();

    // From the loading of the bundle to Initialize. Called once.
    Outcome Start(PrintOptions const& options, std::optional<std::string> const& makeAndModel,
                  TicketFile const& kept);
    // The PPD whose controls the user sets; borrowed, null before Start and after a failed Commit.
    ZUBPPD* PPD() const;
    // The paper source that the first Commit will take from the tickets, a keyword; empty for none.
    std::string PaperFeed() const;
    static bool IsTwoWay();  // two-way communication is on for the printer
    Outcome Commit();
    Outcome KeepTickets(TicketFile& file) const { return mSession.Keep(file); }
    // The file that the last Commit wrote; empty if it wrote none.
    std::string const& JobDataPath() const { return mJobDataPath; }
    // Its pairs as the session has them, for JobDataFile; borrowed, null if it wrote none.
    static CFTypeRef JobPairs();

    // Makes the notes of a job that nobody gets; how many lines of warning came of it. The notes
    // have the texts then that a commit leaves them, so only for a dialog that makes none.
    std::size_t TryNotes();

  private:
    Outcome WriteRecord(PrintOptions const& options) const;
    Outcome MakeContext();
    Outcome Initialize(std::string const& ppd);
    void MakePane(std::uint32_t width, std::uint32_t height);
    std::string PathInTicket() const;

    char const* mFormerPresets;
    PrintSession mSession;
    LoadedPlugIn mPlugIn;
    WindowRef mWindow = nullptr;  // owned, as the pane in it
    ControlRef mPane = nullptr;
    PlugInContext mContext = nullptr;  // the plug-in's, between Prologue and Terminate
    bool mInitialized = false;
    std::string mJobDataPath;
};
