// SPDX-License-Identifier: Apache-2.0
#include "host/PrintCommand.h"

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/ControlSettings.h"
#include "host/DialogSession.h"
#include "host/HostFiles.h"
#include "host/JobDataFile.h"
#include "host/JsonText.h"
#include "host/PPDCommand.h"
#include "host/PeopleText.h"
#include "host/PrintedDocument.h"
#include "host/SettingFiles.h"
#include "platform/CFRef.h"

PrintCommand::PrintCommand(PrintOptions const& options, std::ostream& out, std::ostream& err)
    : mOptions(options), mOut(out), mErr(err) {}

Outcome PrintCommand::Run() {
    std::string path;
    PrintedDocument document(mOptions);
    Outcome outcome = ReadFiles(SettingFiles::IsStandardInput(mOptions.document));
    if (outcome.Ok()) {
        outcome = document.Open();
    }
    JobDataFile job;
    if (outcome.Ok()) {
        outcome = RunDialog(path, job);
    }
    if (outcome.Ok() && mOptions.dryRun) {
        return Show(document, job);
    }
    if (outcome.Ok() && document.HasOutput()) {
        outcome = document.Write(job.Pairs(), mOut);
    }
    if (outcome.Ok() && !document.TakesStandardOutput()) {
        Report(path, job);
    }
    return outcome;
}

// The whole document, where there is one, else what the job would put into it. The job data file
// goes when the command ends, since nobody keeps it.
Outcome PrintCommand::Show(PrintedDocument const& document, JobDataFile const& job) {
    if (document.HasOutput() && !mOptions.pairs) {
        document.WriteTo(job.Pairs(), mOut);
        return Outcome::Done();
    }
    if (mOptions.pairs) {
        mOut << job.JSON();
        return Outcome::Done();
    }
    for (JobDataFile::Pair const& pair : job.Pairs()) {
        mOut << pair.text << (pair.text.ends_with('\n') ? "" : "\n");
    }
    return Outcome::Done();
}

Outcome PrintCommand::ReadFiles(bool inputIsTaken) {
    Outcome outcome = HostFiles::CheckReadable(mOptions.ppd);
    if (outcome.Ok()) {
        mSettings = mOptions.settings;
        outcome = SettingFiles::Read(mSettings, inputIsTaken);
    }
    if (outcome.Ok() && !mOptions.preset.empty()) {
        outcome = mPreset.Read(mOptions.preset);
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
    CFRef<CFStringRef> const text = PeopleText::InEncodingOf(ppd.Get(), model);
    return text ? std::optional(JsonText::ToUTF8(text)) : std::nullopt;
}

Outcome PrintCommand::Open(DialogSession& dialog, TicketFile& tickets) {
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
    Outcome outcome = mOptions.dryRun ? StartWithoutRecord(dialog, tickets)
                                      : dialog.Start(mOptions, MakeAndModel(), tickets);
    if (outcome.Ok()) {
        std::size_t warnings = 0;
        std::ostream told(nullptr);
        outcome = MakeChoices(dialog, mOptions.strict ? told : mErr, warnings);
    }
    if (outcome.Ok() && !mOptions.savePreset.empty() && !mOptions.dryRun) {
        outcome = PresetFile::Write(*dialog.PPD(), mOptions.savePreset);
    }
    mSettings.clear();
    return outcome;
}

// The dialog is over when this returns.
Outcome PrintCommand::RunDialog(std::string& path, JobDataFile& job) {
    TicketFile tickets;
    DialogSession dialog;
    Outcome outcome = Open(dialog, tickets);
    for (int commit = 0; outcome.Ok() && commit < mOptions.commits; ++commit) {
        outcome = dialog.Commit();
    }
    path = dialog.JobDataPath();
    bool const isAsked = mOptions.pairs || mOptions.dryRun || !mOptions.output.empty();
    if (outcome.Ok() && !path.empty() && isAsked) {
        outcome = job.Take(DialogSession::JobPairs());
    }
    return outcome.Ok() && !mOptions.dryRun ? KeepTickets(dialog, tickets) : outcome;
}

// The file stays whose path stands in the tickets, from before it stands there.
Outcome PrintCommand::KeepTickets(DialogSession const& dialog, TicketFile& tickets) {
    if (mOptions.tickets.empty()) {
        return Outcome::Done();
    }
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

// A dialog writes the printer's record before it opens. In this one the records are left alone, and
// the dialog alone has the watermarks that were to go into them.
Outcome PrintCommand::StartWithoutRecord(DialogSession& dialog, TicketFile const& tickets) const {
    PrintOptions options = mOptions;
    options.address.reset();
    options.noAddress = false;
    options.watermarks.clear();
    Outcome outcome = dialog.Start(options, MakeAndModel(), tickets);
    if (outcome.Ok()) {
        DialogSession::TakeWatermarks(mOptions.watermarks);
    }
    return outcome;
}

Outcome PrintCommand::TryChoices(TicketFile const& tickets) {
    DialogSession dialog;
    std::size_t warnings = 0;
    Outcome outcome = StartWithoutRecord(dialog, tickets);
    if (outcome.Ok()) {
        outcome = MakeChoices(dialog, mErr, warnings);
        warnings += dialog.TryJob();
    }
    return outcome.Ok() && warnings > 0
               ? Outcome::Failed("not every choice for " + mOptions.ppd +
                                 " comes out as it was made, nothing is written")
               : outcome;
}

Outcome PrintCommand::MakeChoices(DialogSession& dialog, std::ostream& err, std::size_t& warnings) {
    ZUBPPD* const ppd = dialog.PPD();
    if (ppd == nullptr) {
        return Outcome::Failed("the plug-in holds no PPD for " + mOptions.ppd);
    }
    if (mOptions.customPaper) {
        ppd->SetCustomPaper(true);
    }
    ControlSettings settings(*ppd, mOptions.ppd, err);
    settings.NoteKept();
    if (DialogSession::IsTwoWay()) {
        settings.FillNotesOfProfiles();
    }
    std::size_t missed = 0;
    Outcome outcome = settings.Apply(mPreset.SettingsFor(*ppd, err, missed));
    if (outcome.Ok()) {
        outcome = settings.Apply(mSettings);
    }
    if (std::string const feed = dialog.PaperFeed(); outcome.Ok() && !feed.empty()) {
        settings.ApplyPaperFeed(feed);
    }
    if (outcome.Ok() && mOptions.fix) {
        settings.Fix();
    }
    settings.CheckRules();
    warnings = settings.Warnings() + missed + ChooseWatermark(dialog, err);
    return outcome;
}

// How many warnings came of it. Of the selected one the job warns.
std::size_t PrintCommand::ChooseWatermark(DialogSession& dialog, std::ostream& err) {
    std::vector<std::string> told;
    if (mOptions.selectedWatermark) {
        told.push_back(dialog.SelectWatermark(*mOptions.selectedWatermark));
    }
    if (!mOptions.watermarks.empty()) {
        std::ranges::move(DialogSession::DoubtsOfOtherWatermarks(), std::back_inserter(told));
    }
    std::erase(told, "");
    for (std::string const& text : told) {
        err << Outcome::Warning(text);
    }
    return told.size();
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
