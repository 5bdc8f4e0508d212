// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <unordered_set>

#include <nlohmann/json.hpp>

#include "host/JsonText.h"
#include "host/Outcome.h"
#include "host/PrintSession.h"
#include "host/dialog/PrintDialog.h"
#include "host/dialog/ScriptReader.h"
#include "platform/HeadlessFace.h"
#include "platform/UserInput.h"

// Acts out a script in an open print dialog and answers each line with a JSON object, once nothing
// is due any more and before the next line is read. A line that opens a dialog is answered when
// that stands open, and the lines behind it go there.
class ScriptPlayer {
  public:
    // Hears of each job data file whose path is told: before it is written, and again, with false,
    // if it couldn't be.
    using PathTold = std::function<void(std::string const& path, bool isTold)>;

    // All must outlive the player; the face has to be the platform's.
    ScriptPlayer(PrintDialog& dialog, DialogSession& session, HeadlessFace& face,
                 ScriptSource script, std::ostream& out);

    // The commands of a script; null for no command.
    static ScriptForm const* FormOf(std::string_view name);

    void WhenPathIsTold(PathTold hear) { mPathTold = std::move(hear); }
    // Until the script has ended; the dialog is over then. kUsage for a wrong line, kFailed where
    // the script can't be read or a reply can't be written.
    Outcome Play();
    // The last line, with how it came out in the end.
    void TellEnd(Outcome const& outcome);

  private:
    struct Reply {
        std::string result = "done";
        Json extra = Json::object();
        std::string path = {};  // that of a job, which it tells
    };
    struct Command {
        ScriptForm form;
        Reply (ScriptPlayer::*act)(ScriptLine const& line);
    };
    static const Command kCommands[];
    static Command const* Find(std::string_view name);
    static Reply Of(InputResult result);

    bool Step();
    void Perform(ScriptLine const& line);
    bool CancelInnermost();
    void PlayOn();
    void EndScript(ScriptReader::Found why);
    void Answer();
    void Write(std::string const& line, std::string const& path);
    bool IsUnanswered(ScriptLine const& line) const;
    bool IsOver() const { return mDialog.HowEnded() != PrintDialog::End::kNone; }

    static WindowRef WindowOf(ScriptTarget const& target);
    static ControlRef ControlOf(ScriptLine const& line);
    // Runs `act` unless a modal loop stands in the way.
    template <typename Act>
    Reply AsHost(Act act);

    Reply Click(ScriptLine const& line);
    Reply Choose(ScriptLine const& line);
    Reply Focus(ScriptLine const& line);
    Reply Select(ScriptLine const& line);
    Reply Type(ScriptLine const& line);
    Reply Key(ScriptLine const& line);
    Reply Rows(ScriptLine const& line);
    Reply OpenRow(ScriptLine const& line);
    Reply Sort(ScriptLine const& line);
    Reply CloseWindow(ScriptLine const& line);
    Reply SendCommand(ScriptLine const& line);
    Reply Tick(ScriptLine const& line);
    Reply Print(ScriptLine const& line);
    Reply Cancel(ScriptLine const& line);
    Reply Commit(ScriptLine const& line);
    Reply Rebuild(ScriptLine const& line);
    Reply Hide(ScriptLine const& line);
    Reply Show(ScriptLine const& line);
    Reply Paper(ScriptLine const& line);
    Reply Feed(ScriptLine const& line);
    Reply Copies(ScriptLine const& line);
    Reply Orientation(ScriptLine const& line);
    Reply Dump(ScriptLine const& line);
    Reply Options(ScriptLine const& line);

    PrintDialog& mDialog;
    DialogSession& mSession;
    PrintSession& mTickets;
    HeadlessFace& mFace;
    ScriptReader mReader;
    std::ostream& mOut;
    PathTold mPathTold = [](std::string const&, bool) {};

    bool mIsCutShort = false;  // the script ended before the dialog
    bool mHasEnded = false;    // no more lines are read
    Outcome mOutcome;
    std::optional<ScriptLine> mUnanswered;
    Reply mReply;
    // Windows whose Cancel button the script's end has pressed.
    std::unordered_set<WindowRef> mCancelled;
};
