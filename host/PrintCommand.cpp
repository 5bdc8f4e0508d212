// SPDX-License-Identifier: Apache-2.0
#include "host/PrintCommand.h"

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/TextConverter.h"
#include "host/ControlSettings.h"
#include "host/DialogSession.h"
#include "host/HostFiles.h"
#include "host/JobDataFile.h"
#include "host/JsonText.h"
#include "host/PPDCommand.h"
#include "host/PrintedDocument.h"
#include "host/SettingFiles.h"
#include "platform/CFRef.h"

PrintCommand::PrintCommand(PrintOptions const& options, std::ostream& out, std::ostream& err)
    : mOptions(options), mOut(out), mErr(err) {}

Outcome PrintCommand::Run() {
    std::string path;
    PrintedDocument document(mOptions);
    Outcome outcome = HostFiles::CheckReadable(mOptions.ppd);
    if (outcome.Ok()) {
        mSettings = mOptions.settings;
        outcome = SettingFiles::Read(mSettings, SettingFiles::IsStandardInput(mOptions.document));
    }
    if (outcome.Ok()) {
        outcome = document.Open();
    }
    JobDataFile job;
    if (outcome.Ok()) {
        outcome = RunDialog(path, job);
    }
    if (outcome.Ok() && document.HasOutput()) {
        outcome = document.Write(job.Pairs(), mOut);
    }
    if (outcome.Ok() && !document.TakesStandardOutput()) {
        Report(path, job);
    }
    return outcome;
}

// What the command line tells, which the PPD's name is part of.
std::optional<std::string> PrintCommand::MakeAndModel() const {
    if (mOptions.makeAndModel) {
        return mOptions.makeAndModel;
    }
    ParsedPPD const ppd(mOptions.ppd, kParseAll, {});
    char const* const model = ppd->ModelName();
    TextConverter* const converter = ppd->GetTextConverter();
    if (model == nullptr) {
        return std::nullopt;
    }
    CFRef<CFStringRef> const text(
        converter != nullptr
            ? converter->ConvertToCFString(model, 0)
            : CFStringCreateWithCString(nullptr, model, kCFStringEncodingMacRoman));
    return text ? std::optional(JsonText::ToUTF8(text)) : std::nullopt;
}

// The dialog is over when this returns.
Outcome PrintCommand::RunDialog(std::string& path, JobDataFile& job) {
    TicketFile tickets;
    if (!mOptions.tickets.empty()) {
        if (Outcome outcome = tickets.Read(mOptions.tickets); !outcome.Ok()) {
            return outcome;
        }
    }
    if (mOptions.strict) {
        if (Outcome outcome = TryChoices(tickets); !outcome.Ok()) {
            return outcome;
        }
    }
    DialogSession dialog;
    Outcome outcome = dialog.Start(mOptions, MakeAndModel(), tickets);
    if (outcome.Ok()) {
        std::size_t warnings = 0;
        outcome = MakeChoices(dialog, warnings);
    }
    mSettings.clear();
    for (int commit = 0; outcome.Ok() && commit < mOptions.commits; ++commit) {
        outcome = dialog.Commit();
    }
    path = dialog.JobDataPath();
    bool const isAsked = mOptions.pairs || !mOptions.output.empty();
    if (outcome.Ok() && !path.empty() && isAsked) {
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

// A dialog writes the printer's record before it opens, and choices stand on what it restores: so
// they are tried in one that leaves the records alone.
Outcome PrintCommand::TryChoices(TicketFile const& tickets) {
    PrintOptions options = mOptions;
    options.address.reset();
    options.noAddress = false;
    options.watermarks.clear();
    DialogSession dialog;
    std::size_t warnings = 0;
    Outcome outcome = dialog.Start(options, MakeAndModel(), tickets);
    if (outcome.Ok()) {
        DialogSession::TakeWatermarks(mOptions.watermarks);
        outcome = MakeChoices(dialog, warnings);
        warnings += dialog.TryJob();
    }
    return outcome.Ok() && warnings > 0
               ? Outcome::Failed("not every choice for " + mOptions.ppd +
                                 " comes out as it was made, nothing is written")
               : outcome;
}

Outcome PrintCommand::MakeChoices(DialogSession& dialog, std::size_t& warnings) {
    ZUBPPD* const ppd = dialog.PPD();
    if (ppd == nullptr) {
        return Outcome::Failed("the plug-in holds no PPD for " + mOptions.ppd);
    }
    if (mOptions.customPaper) {
        ppd->SetCustomPaper(true);
    }
    ControlSettings settings(*ppd, mOptions.ppd, mErr);
    settings.NoteKept();
    if (DialogSession::IsTwoWay()) {
        settings.FillNotesOfProfiles();
    }
    Outcome outcome = settings.Apply(mSettings);
    if (std::string const feed = dialog.PaperFeed(); outcome.Ok() && !feed.empty()) {
        settings.ApplyPaperFeed(feed);
    }
    settings.CheckRules();
    warnings = settings.Warnings();
    std::string const refused = mOptions.selectedWatermark
                                    ? DialogSession::SelectWatermark(*mOptions.selectedWatermark)
                                    : std::string();
    if (!refused.empty()) {
        ++warnings;
        mErr << Outcome::Warning(refused);
    }
    return outcome;
}

void PrintCommand::Report(std::string const& path, JobDataFile const& job) {
    if (mOptions.pairs) {
        mOut << job.JSON();
    } else if (!path.empty()) {
        mNotes.Keep(path);
        mOut << path << '\n';
        if (!mOut.flush() && mOptions.tickets.empty()) {
            mNotes.Made(path);  // nobody knows of it
        }
    }
}
