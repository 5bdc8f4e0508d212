// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "host/LoadedPlugIn.h"
#include "host/Options.h"
#include "host/Outcome.h"
#include "host/PrintSession.h"
#include "platform/Controls.h"

class ZUBPPD;

// One run of a print dialog: the plug-in in a window that stays hidden unless somebody shows it.
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
    // Puts the watermarks of these records, if there are any, in the place of the printer's, whose
    // record stays as it is.
    static void TakeWatermarks(std::vector<std::string> const& records);
    // Selects a watermark, -1 for none. Else the selection stays, and why is told.
    // Selected, all of them are on the pages that their records tell.
    std::string SelectWatermark(int number);
    // What a job wouldn't have of the watermarks that aren't selected.
    static std::vector<std::string> DoubtsOfOtherWatermarks();
    Outcome Commit();
    Outcome Rebuild();
    // What goes with showing and hiding the pane; no more than one Close follows an Open.
    Outcome OpenPane();
    Outcome ClosePane();
    WindowRef Window() const { return mWindow; }  // with room below the pane
    ControlRef Pane() const { return mPane; }
    PrintSession& Tickets() { return mSession; }
    Outcome KeepTickets(TicketFile& file) const { return mSession.Keep(file); }
    // The file that the last Commit wrote; empty if it wrote none.
    std::string const& JobDataPath() const { return mJobDataPath; }
    // Its pairs as the session has them, for JobDataFile; borrowed, null if it wrote none.
    static CFTypeRef JobPairs();

    // Makes the notes and the watermark of a job that nobody gets; how many lines of warning came
    // of it. They have the texts then that a commit leaves them, so only for a dialog that makes
    // none.
    std::size_t TryJob();

  private:
    static Outcome WriteRecord(PrintOptions const& options);
    Outcome MakeContext();
    Outcome Initialize(std::string const& ppd);
    void MakePane(std::uint32_t width, std::uint32_t height);
    std::string PathInTicket() const;

    char const* mFormerPresets;
    std::string mCommonPresets;  // while the dialog lasts
    PrintSession mSession;
    LoadedPlugIn mPlugIn;
    WindowRef mWindow = nullptr;  // owned, as the pane in it
    ControlRef mPane = nullptr;
    PlugInContext mContext = nullptr;  // the plug-in's, between Prologue and Terminate
    bool mMustClose = false;
    std::string mJobDataPath;
};
