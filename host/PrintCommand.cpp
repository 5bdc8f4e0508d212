// SPDX-License-Identifier: Apache-2.0
#include "host/PrintCommand.h"

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/TextConverter.h"
#include "host/ControlSettings.h"
#include "host/DSCDocument.h"
#include "host/DialogSession.h"
#include "host/HostFiles.h"
#include "host/JobDataFile.h"
#include "host/JsonText.h"
#include "host/PPDCommand.h"
#include "platform/CFRef.h"

PrintCommand::PrintCommand(PrintOptions const& options, std::ostream& out, std::ostream& err)
    : mOptions(options), mOut(out), mErr(err) {}

Outcome PrintCommand::Run() {
    std::string path;
    DSCDocument document;
    Outcome outcome = HostFiles::CheckReadable(mOptions.ppd);
    if (outcome.Ok() && !mOptions.output.empty()) {
        outcome = document.Read(mOptions.document);
    }
    JobDataFile job;
    if (outcome.Ok()) {
        outcome = RunDialog(path, job);
    }
    if (outcome.Ok() && !mOptions.output.empty()) {
        outcome = HostFiles::Write(mOptions.output, document.Merge(job.Pairs()));
    }
    if (outcome.Ok()) {
        Report(path, job);
    }
    return outcome;
}

std::string PrintCommand::MakeAndModel() const {
    if (mOptions.makeAndModel) {
        return *mOptions.makeAndModel;
    }
    ParsedPPD const ppd(mOptions.ppd, kParseAll, {});
    char const* const model = ppd->ModelName();
    TextConverter* const converter = ppd->GetTextConverter();
    if (model == nullptr) {
        return "Demo";
    }
    CFRef<CFStringRef> const text(
        converter != nullptr
            ? converter->ConvertToCFString(model, 0)
            : CFStringCreateWithCString(nullptr, model, kCFStringEncodingMacRoman));
    return text ? JsonText::ToUTF8(text) : "Demo";
}

// The dialog is over when this returns.
Outcome PrintCommand::RunDialog(std::string& path, JobDataFile& job) {
    TicketFile tickets;
    if (!mOptions.tickets.empty()) {
        if (Outcome outcome = tickets.Read(mOptions.tickets); !outcome.Ok()) {
            return outcome;
        }
    }
    DialogSession dialog;
    Outcome outcome = dialog.Start(mOptions, MakeAndModel(), tickets);
    if (outcome.Ok()) {
        outcome = MakeChoices(dialog);
    }
    for (int commit = 0; outcome.Ok() && commit < mOptions.commits; ++commit) {
        outcome = dialog.Commit();
    }
    path = dialog.JobDataPath();
    if (outcome.Ok() && !path.empty()) {
        outcome = job.Take(DialogSession::JobPairs());
    }
    if (outcome.Ok() && !mOptions.tickets.empty()) {
        outcome = KeepTickets(dialog, tickets);
    }
    return outcome;
}

// The file stays whose path stands in the tickets, from before it stands there.
Outcome PrintCommand::KeepTickets(DialogSession const& dialog, TicketFile& tickets) {
    Outcome outcome = dialog.KeepTickets(tickets);
    if (outcome.Ok()) {
        mNotes.Keep(dialog.JobDataPath());
        outcome = tickets.Write(mOptions.tickets);
    }
    if (!outcome.Ok() && !dialog.JobDataPath().empty()) {
        mNotes.Made(dialog.JobDataPath());
    }
    return outcome;
}

Outcome PrintCommand::MakeChoices(DialogSession& dialog) {
    ZUBPPD* const ppd = dialog.PPD();
    if (ppd == nullptr) {
        return Outcome::Failed("the plug-in holds no PPD for " + mOptions.ppd);
    }
    if (mOptions.customPaper) {
        ppd->SetCustomPaper(true);
    }
    return ControlSettings(*ppd, mOptions.ppd, mErr).Apply(mOptions.settings);
}

void PrintCommand::Report(std::string const& path, JobDataFile const& job) {
    if (mOptions.pairs) {
        mOut << job.JSON();
    } else if (!path.empty()) {
        mNotes.Keep(path);
        mOut << path << '\n';
        if (!mOut.flush()) {
            mNotes.Made(path);  // nobody knows of it
        }
    }
}
