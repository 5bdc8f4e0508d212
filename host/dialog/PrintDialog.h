// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <vector>

#include "host/DialogSession.h"
#include "host/JobDataFile.h"
#include "host/Outcome.h"
#include "platform/Events.h"
#include "platform/UserInput.h"

// The print dialog's own window: the plug-in's pane, a Print and a Cancel button. Print commits and
// closes the dialog, Cancel closes it.
class PrintDialog {
  public:
    // The session must have started and outlive the dialog. What a job carries may be secret: its
    // pairs are kept only for who wants to see them.
    explicit PrintDialog(DialogSession& session, bool keepsPairs = false);
    PrintDialog(PrintDialog const&) = delete;
    PrintDialog& operator=(PrintDialog const&) = delete;
    ~PrintDialog();

    enum class End { kNone, kPrint, kCancel };

    // Shows the window with the pane.
    Outcome Show();
    End HowEnded() const { return mEnd; }
    // The first thing that failed since the dialog stands open.
    Outcome const& Failure() const { return mFailure; }

    // ---- What a hand or the host does; all but the first two need an open dialog ----

    InputResult PressPrint();
    InputResult PressCancel();
    void Cancel() { Close(End::kCancel); }
    // Commits; the dialog stays open.
    void Commit();
    void Rebuild();
    void HidePane();
    void ShowPane();
    // The job of the last commit; empty where it wrote none.
    std::string const& JobDataPath() const { return mSession.JobDataPath(); }
    // Its pairs; null where they aren't kept.
    JobDataFile const* Job() const { return mKeepsPairs ? &mJob : nullptr; }

  private:
    static OSStatus HearHit(EventHandlerCallRef call, EventRef event, void* dialog);
    OSStatus Hear(ControlRef control);
    ControlRef AddButton(std::int32_t number, CFStringRef title, int right);
    void Close(End end);
    void Note(Outcome outcome);

    DialogSession& mSession;
    bool mKeepsPairs;
    ControlRef mPrint = nullptr;  // the window's, as the next
    ControlRef mCancel = nullptr;
    EventHandlerRef mHandler = nullptr;  // owned
    bool mIsPaneOpen = false;
    End mEnd = End::kNone;
    Outcome mFailure;
    JobDataFile mJob;
};
