// SPDX-License-Identifier: Apache-2.0
#include "host/dialog/ScriptPlayer.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <iterator>
#include <limits>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/TreeJson.h"
#include "host/dialog/WindowJson.h"
#include "platform/CFRef.h"
#include "platform/Face.h"
#include "platform/Menus.h"

namespace {

constexpr char kDone[] = "done";
constexpr char kBlocked[] = "blocked";
constexpr char kOver[] = "over";

// In the order of InputResult.
constexpr std::array<char const*, 6> kResults = {kDone,      "missing", "hidden",
                                                 "disabled", kBlocked,  "refused"};

std::string ThreeDecimals(double seconds) {
    char text[32];
    std::snprintf(text, sizeof text, "%.3f", seconds);
    return text;
}

std::u16string UnitsOf(std::string const& utf8) {
    CFRef<CFStringRef> const text = JsonText::FromUTF8(utf8);
    std::u16string units;
    for (CFIndex at = 0; at < CFStringGetLength(text); ++at) {
        units.push_back(CFStringGetCharacterAtIndex(text, at));
    }
    return units;
}

template <typename Number>
Number Kept(std::int64_t number) {
    return static_cast<Number>(std::min<std::int64_t>(number, std::numeric_limits<Number>::max()));
}

// The first item of that title, from 1; 0 for none.
std::uint16_t ItemTitled(ControlRef control, std::string const& title) {
    ControlView view;
    DescribeControl(control, &view);
    for (ItemView const& item : view.items) {
        if (JsonText::ToUTF8(item.title) == title) {
            return item.number;
        }
    }
    return 0;
}

Json PathJson(std::string const& path) {
    return path.empty() ? Json() : Json(path);
}

// The UTF-8 characters of a text.
std::vector<std::string> CharactersOf(std::string const& utf8) {
    std::vector<std::string> characters;
    for (char const byte : utf8) {
        bool const isFirst = (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
        if (isFirst || characters.empty()) {
            characters.emplace_back();
        }
        characters.back().push_back(byte);
    }
    return characters;
}

// What a face does next, as long as the script lasts.
class StepScope {
  public:
    StepScope(HeadlessFace& face, HeadlessFace::Step step) : mFace(face) {
        mFace.SetNextStep(std::move(step));
    }
    StepScope(StepScope const&) = delete;
    StepScope& operator=(StepScope const&) = delete;
    ~StepScope() { mFace.SetNextStep(nullptr); }

  private:
    HeadlessFace& mFace;
};

// Null for no job.
Json Pairs(JobDataFile const* job) {
    if (job == nullptr) {
        return {};
    }
    Json pairs = Json::array();
    for (JobDataFile::Pair const& pair : job->Pairs()) {
        pairs.push_back({{"site", pair.site}, {"text", JsonText::Bytes(pair.text)}});
    }
    return pairs;
}

}  // namespace

constexpr ScriptPlayer::Command ScriptPlayer::kCommands[] = {
    {{"click", "TPO", "T [part=N] [out]"}, &ScriptPlayer::Click},
    {{"choose", "TI", "T N, or T \"TITLE\""}, &ScriptPlayer::Choose},
    {{"focus", "T", "T"}, &ScriptPlayer::Focus},
    {{"select", "TNN", "T FROM TO"}, &ScriptPlayer::Select},
    {{"type", "W", "\"TEXT\""}, &ScriptPlayer::Type},
    {{"key", "KM", "NAME [MOD...]"}, &ScriptPlayer::Key},
    {{"rows", "TR", "T ITEM..."}, &ScriptPlayer::Rows},
    {{"open", "TN", "T ITEM"}, &ScriptPlayer::OpenRow},
    {{"shut", "TN", "T ITEM"}, &ScriptPlayer::OpenRow},
    {{"sort", "TC", "T COLUMN"}, &ScriptPlayer::Sort},
    {{"close", "", ""}, &ScriptPlayer::CloseWindow},
    {{"command", "C", "CODE"}, &ScriptPlayer::SendCommand},
    {{"tick", "S", "SECONDS"}, &ScriptPlayer::Tick},
    {{"print", "", ""}, &ScriptPlayer::Print},
    {{"cancel", "", ""}, &ScriptPlayer::Cancel},
    {{"commit", "", ""}, &ScriptPlayer::Commit},
    {{"rebuild", "", ""}, &ScriptPlayer::Rebuild},
    {{"hide", "", ""}, &ScriptPlayer::Hide},
    {{"show", "", ""}, &ScriptPlayer::Show},
    {{"paper", "WL", "\"NAME\" [HEIGHT WIDTH]"}, &ScriptPlayer::Paper},
    {{"feed", "W", "KEYWORD"}, &ScriptPlayer::Feed},
    {{"copies", "n", "N"}, &ScriptPlayer::Copies},
    {{"orientation", "n", "N"}, &ScriptPlayer::Orientation},
    {{"dump", "t", "[T]"}, &ScriptPlayer::Dump},
    {{"options", "", ""}, &ScriptPlayer::Options},
};

ScriptPlayer::ScriptPlayer(PrintDialog& dialog, DialogSession& session, HeadlessFace& face,
                           ScriptSource script, std::ostream& out)
    : mDialog(dialog),
      mSession(session),
      mTickets(session.Tickets()),
      mFace(face),
      mReader(std::move(script), FormOf),
      mOut(out) {}

ScriptPlayer::Command const* ScriptPlayer::Find(std::string_view name) {
    for (Command const& command : kCommands) {
        if (command.form.name == name) {
            return &command;
        }
    }
    return nullptr;
}

ScriptForm const* ScriptPlayer::FormOf(std::string_view name) {
    Command const* const command = Find(name);
    return command == nullptr ? nullptr : &command->form;
}

ScriptPlayer::Reply ScriptPlayer::Of(InputResult result) {
    return {kResults.at(static_cast<std::size_t>(result))};
}

// ---- The road of a line ----

Outcome ScriptPlayer::Play() {
    {
        StepScope const scope(mFace, [this] { return Step(); });
        mIsCutShort = !mFace.RunUntil([this] { return IsOver(); });
    }
    mDialog.Cancel();
    mFace.Settle();
    PlayOn();
    return mOutcome.Ok() ? mDialog.Failure() : mOutcome;
}

// What a loop does where nothing is due.
bool ScriptPlayer::Step() {
    Answer();
    ScriptLine line;
    auto const found = mHasEnded ? ScriptReader::Found::kEnd : mReader.Next(line);
    if (found == ScriptReader::Found::kLine) {
        Perform(line);
        return true;
    }
    EndScript(found);
    return CancelInnermost();
}

// While the line is performed a dialog may open, in which it is answered and others follow.
void ScriptPlayer::Perform(ScriptLine const& line) {
    mUnanswered = line;
    mReply = {};
    Reply reply = (this->*Find(line.command)->act)(line);
    if (IsUnanswered(line)) {
        mReply = std::move(reply);
    }
}

bool ScriptPlayer::IsUnanswered(ScriptLine const& line) const {
    return mUnanswered && mUnanswered->number == line.number;
}

// A dialog that can't be cancelled so, or comes back, ends for want of steps.
bool ScriptPlayer::CancelInnermost() {
    WindowRef const window = ModalWindow();
    return window != nullptr && mCancelled.insert(window).second &&
           UserClosedWindow(window) == InputResult::kDone;
}

// The lines behind the dialog's end.
void ScriptPlayer::PlayOn() {
    Answer();
    while (!mHasEnded) {
        ScriptLine line;
        auto const found = mReader.Next(line);
        if (found == ScriptReader::Found::kLine) {
            mUnanswered = line;
            mReply = {kOver};
            Answer();
        } else {
            EndScript(found);
        }
    }
}

void ScriptPlayer::EndScript(ScriptReader::Found why) {
    mHasEnded = true;
    if (why == ScriptReader::Found::kWrongLine) {
        mOutcome = {ExitStatus::kUsage, mReader.Fault()};
    } else if (why == ScriptReader::Found::kUnreadable) {
        mOutcome = Outcome::Failed(mReader.Fault());
    }
}

void ScriptPlayer::Answer() {
    if (!mUnanswered) {
        return;
    }
    std::string text = "{\"line\":" + std::to_string(mUnanswered->number) +
                       ",\"command\":" + Json(mUnanswered->command).dump() + ",\"result\":\"" +
                       mReply.result + "\",\"time\":" + ThreeDecimals(mFace.Now());
    Json posted = Json::array();
    for (OSType const command : mFace.TakePosted()) {
        posted.push_back(WindowJson::Code(command));
    }
    Json rest = {{"beeps", mFace.TakeBeeps()},
                 {"loops", ModalLoopCount()},
                 {"front", WindowJson::Number(FrontWindow())},
                 {"cursor", mFace.Cursor()},
                 {"posted", posted}};
    if (mUnanswered->command == "type" && !mReply.extra.contains("taken")) {
        rest["taken"] = 0;
    }
    rest.update(mReply.extra);
    mUnanswered.reset();
    Write(text + ',' + rest.dump().substr(1), mReply.path);
}

// The job's file stays from before its path is told. When nobody hears of it any more, nothing else
// is done.
void ScriptPlayer::Write(std::string const& line, std::string const& path) {
    if (!path.empty()) {
        mPathTold(path, true);
    }
    mOut << line << '\n' << std::flush;
    if (mOut) {
        return;
    }
    if (!path.empty()) {
        mPathTold(path, false);
    }
    mHasEnded = true;
    if (mOutcome.Ok()) {
        mOutcome = Outcome::Failed("can't write to standard output");
    }
}

void ScriptPlayer::TellEnd(Outcome const& outcome) {
    bool const isPrinted = !mIsCutShort && mDialog.HowEnded() == PrintDialog::End::kPrint;
    bool const hasJob = isPrinted && outcome.status != ExitStatus::kFailed;
    std::string const path = hasJob ? mDialog.JobDataPath() : std::string();
    Json end = {{"end", mIsCutShort ? "script"
                        : isPrinted ? "print"
                                    : "cancel"},
                {"status", static_cast<int>(outcome.status)},
                {"jobData", PathJson(path)},
                {"pairs", hasJob ? Pairs(mDialog.Job()) : Json()}};
    Write(end.dump(), path);
}

// ---- Where a line goes ----

WindowRef ScriptPlayer::WindowOf(ScriptTarget const& target) {
    if (!target.window) {
        return FrontWindow();
    }
    for (WindowRef const window : WindowsInOrder()) {
        if (WindowJson::Number(window) == *target.window) {
            return window;
        }
    }
    return nullptr;
}

ControlRef ScriptPlayer::ControlOf(ScriptLine const& line) {
    ControlRef control = nullptr;
    GetControlByID(WindowOf(*line.target), &line.target->id, &control);
    return control;
}

template <typename Act>
ScriptPlayer::Reply ScriptPlayer::AsHost(Act act) {
    if (ModalLoopCount() > 0) {
        return {kBlocked};
    }
    act();
    return {};
}

// ---- What the commands do ----

ScriptPlayer::Reply ScriptPlayer::Click(ScriptLine const& line) {
    return Of(UserPressed(ControlOf(line), line.part, !line.isOutside));
}

ScriptPlayer::Reply ScriptPlayer::Choose(ScriptLine const& line) {
    ControlRef const control = ControlOf(line);
    return Of(UserPicked(control, line.text ? ItemTitled(control, *line.text)
                                            : Kept<std::uint16_t>(line.numbers[0])));
}

ScriptPlayer::Reply ScriptPlayer::Focus(ScriptLine const& line) {
    return Of(UserFocused(ControlOf(line)));
}

ScriptPlayer::Reply ScriptPlayer::Select(ScriptLine const& line) {
    return Of(UserSelectedText(ControlOf(line), Kept<std::int32_t>(line.numbers[0]),
                               Kept<std::int32_t>(line.numbers[1])));
}

// One by one, since a character may open a dialog, in which the line is answered.
ScriptPlayer::Reply ScriptPlayer::Type(ScriptLine const& line) {
    WindowRef const window = FrontWindow();
    TypedResult whole = UserTyped(window, u"");
    bool isGoing = whole.result == InputResult::kRefused;
    for (std::string const& character : CharactersOf(*line.text)) {
        if (!isGoing) {
            break;
        }
        TypedResult const one = UserTyped(window, UnitsOf(character));
        isGoing = one.result == InputResult::kDone || one.result == InputResult::kRefused;
        whole.taken += one.taken;
        if (IsUnanswered(line)) {
            mReply.extra["taken"] = whole.taken;
        }
    }
    Reply reply = Of(whole.taken > 0 ? InputResult::kDone : whole.result);
    reply.extra["taken"] = whole.taken;
    return reply;
}

ScriptPlayer::Reply ScriptPlayer::Key(ScriptLine const& line) {
    return Of(UserPressedKey(FrontWindow(), line.key, line.modifiers));
}

ScriptPlayer::Reply ScriptPlayer::Rows(ScriptLine const& line) {
    std::vector<DataBrowserItemID> items;
    for (std::int64_t const number : line.numbers) {
        items.push_back(Kept<DataBrowserItemID>(number));
    }
    return Of(
        UserSelectedRows(ControlOf(line), Kept<std::uint32_t>(std::ssize(items)), items.data()));
}

ScriptPlayer::Reply ScriptPlayer::OpenRow(ScriptLine const& line) {
    return Of(UserOpenedRow(ControlOf(line), Kept<DataBrowserItemID>(line.numbers[0]),
                            line.command == "open"));
}

ScriptPlayer::Reply ScriptPlayer::Sort(ScriptLine const& line) {
    return Of(UserSorted(ControlOf(line), line.code));
}

ScriptPlayer::Reply ScriptPlayer::CloseWindow(ScriptLine const&) {
    return Of(UserClosedWindow(FrontWindow()));
}

ScriptPlayer::Reply ScriptPlayer::SendCommand(ScriptLine const& line) {
    return Of(UserSentCommand(FrontWindow(), line.code));
}

ScriptPlayer::Reply ScriptPlayer::Tick(ScriptLine const& line) {
    mFace.Advance(line.seconds);
    return {};
}

ScriptPlayer::Reply ScriptPlayer::Print(ScriptLine const&) {
    return Of(mDialog.PressPrint());
}

ScriptPlayer::Reply ScriptPlayer::Cancel(ScriptLine const&) {
    return Of(mDialog.PressCancel());
}

ScriptPlayer::Reply ScriptPlayer::Commit(ScriptLine const&) {
    Reply reply = AsHost([&] { mDialog.Commit(); });
    if (reply.result == kDone) {
        reply.path = mDialog.JobDataPath();
        reply.extra["jobData"] = PathJson(reply.path);
        if (mDialog.Job() != nullptr) {
            reply.extra["pairs"] = Pairs(mDialog.Job());
        }
    }
    return reply;
}

ScriptPlayer::Reply ScriptPlayer::Rebuild(ScriptLine const&) {
    return AsHost([&] { mDialog.Rebuild(); });
}

ScriptPlayer::Reply ScriptPlayer::Hide(ScriptLine const&) {
    return AsHost([&] { mDialog.HidePane(); });
}

ScriptPlayer::Reply ScriptPlayer::Show(ScriptLine const&) {
    return AsHost([&] { mDialog.ShowPane(); });
}

ScriptPlayer::Reply ScriptPlayer::Paper(ScriptLine const& line) {
    std::optional<FloatSize> size;
    if (!line.lengths.empty()) {
        size = {line.lengths[1], line.lengths[0]};
    }
    mTickets.SetPaper(*line.text, size);
    return {};
}

ScriptPlayer::Reply ScriptPlayer::Feed(ScriptLine const& line) {
    mTickets.SetPaperFeed(*line.text);
    return {};
}

ScriptPlayer::Reply ScriptPlayer::Copies(ScriptLine const& line) {
    mTickets.SetCopies(Kept<std::int32_t>(line.numbers[0]));
    return {};
}

ScriptPlayer::Reply ScriptPlayer::Orientation(ScriptLine const& line) {
    mTickets.SetOrientation(Kept<std::int32_t>(line.numbers[0]));
    return {};
}

ScriptPlayer::Reply ScriptPlayer::Dump(ScriptLine const& line) {
    Reply reply;
    if (!line.target) {
        reply.extra["windows"] = WindowJson::Windows();
        return reply;
    }
    Json control = WindowJson::Control(ControlOf(line));
    reply.result = control.is_null() ? "missing" : kDone;
    reply.extra["control"] = std::move(control);
    return reply;
}

ScriptPlayer::Reply ScriptPlayer::Options(ScriptLine const&) {
    ZUBPPD* const ppd = mSession.PPD();
    Reply reply;
    reply.extra["options"] = ppd == nullptr ? Json::array() : TreeJson::Controls(*ppd);
    return reply;
}
