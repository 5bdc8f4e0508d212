// SPDX-License-Identifier: Apache-2.0
#include "host/dialog/DialogCommand.h"

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

#include "host/DialogSession.h"
#include "host/HostFiles.h"
#include "host/SettingFiles.h"
#include "host/dialog/PrintDialog.h"
#include "host/dialog/ScriptPlayer.h"
#include "platform/HeadlessFace.h"
#include "platform/SystemInfo.h"

namespace {

// A face without a screen as long as the dialog lasts.
class FaceScope {
  public:
    explicit FaceScope(DialogOptions const& options) {
        face.SetDisplay(options.displayWidth, options.displayHeight);
        InstallFace(&face, &face);
        SetSystemMinorVersion(options.systemMinorVersion);
    }
    FaceScope(FaceScope const&) = delete;
    FaceScope& operator=(FaceScope const&) = delete;
    ~FaceScope() {
        face.Settle();
        InstallFace(nullptr, nullptr);
        SetSystemMinorVersion(kDefaultSystemMinorVersion);
    }

    HeadlessFace face;
};

}  // namespace

DialogCommand::DialogCommand(DialogOptions const& options, std::ostream& out, std::ostream& err)
    : PrintCommand(options, out, err), mDialogOptions(options) {}

Outcome DialogCommand::Run() {
    bool const isInputTaken = SettingFiles::IsStandardInput(mDialogOptions.script);
    if (Outcome outcome = ReadFiles(isInputTaken); !outcome.Ok()) {
        return outcome;
    }
    if (mDialogOptions.script == "-") {
        return Play({std::cin, "standard input"});
    }
    std::string const& name = mDialogOptions.script;
    errno = 0;
    // A pipe is as good as a file: it is read once.
    std::ifstream script(name, std::ios::binary);
    std::error_code ignored;
    int const error = !script ? errno : std::filesystem::is_directory(name, ignored) ? EISDIR : 0;
    if (error != 0) {
        return Outcome::Failed("can't open " + name + ": " + HostFiles::Reason(error));
    }
    return Play({script, name});
}

Outcome DialogCommand::Play(ScriptSource const& script) {
    FaceScope scope(mDialogOptions);
    TicketFile tickets;
    DialogSession session;
    Outcome outcome = Open(session, tickets);
    if (!outcome.Ok()) {
        return outcome;
    }
    PrintDialog dialog(session, mOptions.pairs);
    outcome = dialog.Show();
    if (!outcome.Ok()) {
        return outcome;
    }
    ScriptPlayer player(dialog, session, scope.face, script, mOut);
    bool isInTickets = false;
    player.WhenPathIsTold([&](std::string const& path, bool isTold) {
        if (isTold) {
            mNotes.Keep(path);
        } else if (!isInTickets) {
            mNotes.Made(path);  // nobody knows of it
        }
    });
    outcome = player.Play();
    if (outcome.Ok() && dialog.HowEnded() == PrintDialog::End::kPrint) {
        outcome = KeepTickets(session, tickets);
        isInTickets = outcome.Ok() && !mOptions.tickets.empty();
    }
    player.TellEnd(outcome);
    return outcome;
}
