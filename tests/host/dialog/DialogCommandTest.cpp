// SPDX-License-Identifier: Apache-2.0
#include "host/dialog/DialogCommand.h"

#include <fstream>
#include <iostream>
#include <map>
#include <regex>
#include <sstream>

#include "host/HostFiles.h"
#include "host/Zubprint.h"
#include "host/dialog/PrintDialog.h"
#include "host/dialog/ScriptPlayer.h"
#include "panel/dialogs/CustomCarbonEvent.h"
#include "panel/dialogs/PaneControls.h"
#include "panel/dialogs/UI_ZUBAlert.h"
#include "platform/EventLoop.h"
#include "platform/Menus.h"
#include "platform/Nibs.h"
#include "platform/SystemInfo.h"
#include "tests/host/HostFixture.h"

using nlohmann::json;

namespace {

class DialogCommandTest : public HostFixture {
  protected:
    ~DialogCommandTest() override { JobsWith(mMark); }

    std::string PPD() {
        return Write(UniqueName("zubprint-dialog") + ".ppd", Head() + Duplex(mMark));
    }

    static std::vector<json> Lines(std::string const& out) {
        std::vector<json> lines;
        std::istringstream in(out);
        for (std::string line; std::getline(in, line);) {
            lines.push_back(json::parse(line));
        }
        return lines;
    }
    static std::string Results(std::vector<json> const& lines) {
        std::string results;
        for (json const& line : lines) {
            results += line.contains("end") ? line["end"].get<std::string>()
                                            : line["result"].get<std::string>() + " ";
        }
        return results;
    }
    std::vector<json> Play(std::string const& script, std::vector<std::string> arguments = {},
                           int status = 0) {
        arguments.insert(arguments.begin(),
                         {"dialog", "--ppd", PPD(), "--script", Write("script", script)});
        Result const result = Run(arguments);
        EXPECT_EQ(status, result.status) << result.err;
        mErr = result.err;
        return Lines(result.out);
    }

    std::string const mMark = UniqueName("Tumble");
    std::string mErr;
};

TEST_F(DialogCommandTest, PrintTellsWhereTheJobIsAndWhatIsInIt) {
    auto lines = Play("print\ndump\ntype x\n", {"--pairs", "--set", "*Duplex=" + mMark});
    EXPECT_EQ("done over over print", Results(lines));
    EXPECT_EQ(0, lines[2]["taken"]);
    EXPECT_FALSE(lines[1].contains("windows"));
    json const& end = lines.back();
    EXPECT_EQ(0, end["status"]);
    JobDataFile job;
    ASSERT_TRUE(ReadJob(end["jobData"], job).Ok());
    ASSERT_FALSE(end["pairs"].empty());
    EXPECT_EQ(job.Pairs().size(), end["pairs"].size());
    EXPECT_NE(std::string::npos, end["pairs"].dump().find(mMark));
    lines = Play("print");
    EXPECT_TRUE(lines.back()["pairs"].is_null());
}

TEST_F(DialogCommandTest, ItEndsByItsButtonsItsKeysAndTheScript) {
    struct {
        char const *script, *results;
    } const cases[] = {
        {"print", "done print"},
        {"cancel", "done cancel"},
        {"click pdlg:1", "done print"},
        {"click pdlg:1 out\nclick pdlg:2", "done done cancel"},
        {"key return", "done print"},
        {"key escape", "done cancel"},
        {"close", "done cancel"},
        {"focus pdlg:2\nkey space", "done done cancel"},
        {"key tab\nkey space", "done done print"},
        {"", "script"},
        {"tick 1", "done script"},
        {"click none:1\nclick @2/pdlg:1\nchoose pdlg:1 1\nfocus none:0\ntype a\nclick @1/pdlg:2",
         "missing missing missing missing refused done cancel"},
        {"command othr\npaper A4 842 595\nfeed Tray1\ncopies 3\norientation 2\nprint",
         "done done done done done done print"},
        {"hide\nhide\nshow\nrebuild\ncancel", "done done done done done cancel"},
    };
    for (auto const& row : cases) {
        auto const lines = Play(row.script);
        EXPECT_EQ(row.results, Results(lines)) << row.script;
        EXPECT_EQ(lines.back()["end"] == "print", !lines.back()["jobData"].is_null());
    }
}

TEST_F(DialogCommandTest, AWrongLineEndsIt) {
    auto lines = Play("tick 1\nfly\nprint\n", {}, 2);
    EXPECT_EQ("done script", Results(lines));
    EXPECT_EQ(2, lines.back()["status"]);
    EXPECT_NE(std::string::npos, mErr.find("line 2: ")) << mErr;
    lines = Play("print\ndump\n\nfly\ndump\n", {}, 2);
    EXPECT_EQ("done over print", Results(lines)) << "lines behind the end are read too";
    EXPECT_NE(std::string::npos, mErr.find("line 4: ")) << mErr;
    EXPECT_FALSE(lines.back()["jobData"].is_null());
}

TEST_F(DialogCommandTest, ItsWindowIsDescribed) {
    auto lines = Play("dump\ndump pdlg:2\ndump none:0\noptions\ntick 0.5\n");
    json const& window = lines[0]["windows"][0];
    EXPECT_EQ(R"(["Print","window","Print",1,null,true,false,null,"pdlg:1","pdlg:2"])"_json,
              (json{window["name"], window["kind"], window["title"], window["window"],
                    window["parent"], window["visible"], window["modal"], window["focus"],
                    window["default"], window["cancel"]}));
    json const& pane = window["controls"][0];
    EXPECT_EQ(R"([null,"pane",true,null])"_json,
              (json{pane["id"], pane["kind"], pane["visible"], pane["picture"]}));
    EXPECT_EQ(
        R"(["pdlg:2","push","Cancel",0,0,1,true,true,null,{"size":13,"style":0,"just":0},[]])"_json,
        (json{lines[1]["control"]["id"], lines[1]["control"]["kind"], lines[1]["control"]["title"],
              lines[1]["control"]["value"], lines[1]["control"]["minimum"],
              lines[1]["control"]["maximum"], lines[1]["control"]["enabled"],
              lines[1]["control"]["visible"], lines[1]["control"]["command"],
              lines[1]["control"]["font"], lines[1]["control"]["controls"]}));
    EXPECT_EQ("missing", lines[2]["result"]);
    EXPECT_TRUE(lines[2]["control"].is_null());
    EXPECT_EQ("*Duplex", lines[3]["options"][0]["keyword"]);
    lines[4].erase("line");
    EXPECT_EQ(R"({"command":"tick","result":"done","time":0.5,"beeps":0,"loops":0,"front":1,
                  "cursor":0,"posted":[]})"_json,
              lines[4]);
    lines = Play("hide\ndump\n");
    EXPECT_EQ(false, lines[1]["windows"][0]["controls"][0]["visible"]);
}

TEST_F(DialogCommandTest, ACommitTellsItsJobAndTheDialogStaysOpen) {
    auto const lines = Play("commit\ncommit\ncancel\n", {"--pairs"});
    EXPECT_EQ("done done done cancel", Results(lines));
    JobDataFile job;
    EXPECT_NE(lines[0]["jobData"], lines[1]["jobData"]);
    EXPECT_TRUE(ReadJob(lines[1]["jobData"], job).Ok());
    EXPECT_FALSE(lines[1]["pairs"].empty());
    EXPECT_TRUE(lines.back()["jobData"].is_null());
}

// A stream that is asked for one line after the other tells whether the former was answered.
TEST_F(DialogCommandTest, AScriptFromAPipeIsReadLineByLineAndAnsweredAtOnce) {
    class Pipe : public std::streambuf {
      public:
        explicit Pipe(std::ostringstream const& out) : mOut(out) {}
        std::vector<long> answers;

      private:
        int_type underflow() override {
            static char const* const sLines[] = {"tick 1\n", "# nothing\n", "dump\n", "cancel\n"};
            std::string const told = mOut.str();
            answers.push_back(std::ranges::count(told, '\n'));
            if (mNext == std::size(sLines)) {
                return traits_type::eof();
            }
            mLine = sLines[mNext++];
            setg(mLine.data(), mLine.data(), mLine.data() + mLine.size());
            return traits_type::to_int_type(mLine[0]);
        }
        std::ostringstream const& mOut;
        std::size_t mNext = 0;
        std::string mLine;
    };
    std::ostringstream out;
    Pipe pipe(out);
    std::streambuf* const former = std::cin.rdbuf(&pipe);
    DialogOptions options;
    options.ppd = PPD();
    options.script = "-";
    std::ostringstream err;
    EXPECT_TRUE(DialogCommand(options, out, err).Run().Ok()) << err.str();
    std::cin.rdbuf(former);
    std::cin.clear();
    EXPECT_EQ((std::vector<long>{0, 1, 1, 2, 3}), pipe.answers);
    EXPECT_EQ("done done done cancel", Results(Lines(out.str())));
}

TEST_F(DialogCommandTest, WrongUsageAndWhatCannotBeOpenedIsTold) {
    std::string const ppd = PPD();
    std::string const script = Write("script", "print\n");
    EXPECT_EQ(2, Run({"dialog", "--ppd", ppd}).status);
    EXPECT_EQ(2, Run({"dialog", "--ppd", ppd, "--script", script, "--commits", "2"}).status);
    for (char const* const display : {"x", "10x", "0x10", "10x10x", "10x-1"}) {
        EXPECT_EQ(2, Run({"dialog", "--ppd", ppd, "--script", script, "--display", display}).status)
            << display;
    }
    EXPECT_EQ(2, Run({"dialog", "--ppd", ppd, "--script", script, "--os-minor", "-1"}).status);
    EXPECT_EQ(2, Run({"dialog", "--ppd", ppd, "--script", "-", "--set-from", "*Any=-"}).status)
        << "standard input would be read twice";
    for (auto const& [file, reason] : std::map<std::string, std::string>{
             {PathOf("none"), "open .*: No such file"}, {PathOf(""), "open .*: Is a directory"}}) {
        Result const result = Run({"dialog", "--ppd", ppd, "--script", file});
        EXPECT_TRUE(std::regex_search(result.err, std::regex("can't " + reason))) << result.err;
        EXPECT_EQ(1, result.status);
        EXPECT_EQ("", result.out);
        EXPECT_EQ(1, CountLines(result.err));
    }
    EXPECT_EQ(
        3,
        Run({"dialog", "--ppd", Write("other.ppd", Head("OTHER.PPD")), "--script", script}).status);
}

TEST_F(DialogCommandTest, TicketsAreKeptWhereItWasPrinted) {
    std::string const tickets = PathOf("tickets.plist");
    Play("cancel", {"--tickets", tickets});
    EXPECT_FALSE(std::filesystem::exists(tickets));
    Play("copies 7\norientation 2\nfeed Tray9\npaper \"My Paper\" 100.5 50\nprint",
         {"--tickets", tickets});
    std::ifstream file(tickets);
    std::string const kept{std::istreambuf_iterator<char>(file), {}};
    for (char const* const value :
         {"<integer>7<", "<integer>2<", ">Tray9<", ">My Paper<", "<real>100.5<"}) {
        EXPECT_NE(std::string::npos, kept.find(value)) << value << kept;
    }
}

TEST_F(DialogCommandTest, OnlyJobsThatSomebodyWasToldOfStay) {
    class Room : public std::streambuf {  // for so many lines
      public:
        explicit Room(int lines) : mLines(lines) {}

      private:
        int_type overflow(int_type byte) override {
            bool const fits = mLines > 0;
            mLines -= byte == '\n' ? 1 : 0;
            return fits ? byte : traits_type::eof();
        }
        int mLines;
    };
    struct {
        char const* script;
        int room;
        std::size_t jobs;
        bool hasTickets, keepsTickets;
        int status;
    } const cases[] = {
        {"print\n", 0, 0, true, false, 1},        {"commit\ncommit\nprint\n", 1, 1, true, false, 1},
        {"print\n", 1, 1, true, true, 1},         {"print\n", 1, 0, false, false, 1},
        {"commit\nprint\n", 3, 2, true, true, 0},
    };
    for (auto const& row : cases) {
        std::string const tickets = PathOf("tickets.plist");
        std::string const ppd = PPD();
        std::string const script = Write("script", row.script);
        std::string const set = "*Duplex=" + mMark;
        std::vector<char const*> arguments = {"zubprint", "dialog",       "--ppd", ppd.c_str(),
                                              "--script", script.c_str(), "--set", set.c_str()};
        if (row.hasTickets) {
            arguments.insert(arguments.end(), {"--tickets", tickets.c_str()});
        }
        Room room(row.room);
        std::ostream out(&room);
        std::ostringstream err;
        int const status =
            Zubprint::Run(static_cast<int>(arguments.size()), arguments.data(), out, err);
        EXPECT_EQ(row.status, status) << row.script;
        EXPECT_EQ(row.status == 0 ? "" : "zubprint: can't write to standard output\n", err.str());
        EXPECT_EQ(row.jobs, JobsWith(mMark).size()) << row.script;
        EXPECT_EQ(row.keepsTickets, std::filesystem::remove(tickets)) << row.script;
    }
}

// ---- A script in a dialog whose pane has something in it ----

class ScriptPlayerTest : public DialogCommandTest {
  protected:
    // Plays a script in a dialog that `build` has filled.
    std::vector<json> PlayIn(std::function<void(WindowRef)> const& build, std::string const& text) {
        HeadlessFace face;
        InstallFace(&face, &face);
        std::ostringstream out;
        {
            PrintOptions options;
            options.ppd = PPD();
            DialogSession session;
            EXPECT_TRUE(session.Start(options, std::nullopt, {}).Ok());
            PrintDialog dialog(session);
            build(session.Window());
            EXPECT_TRUE(dialog.Show().Ok());
            std::istringstream script(text);
            ScriptPlayer player(dialog, session, face, {script, "script"}, out);
            player.TellEnd(player.Play());
        }
        face.Settle();
        InstallFace(nullptr, nullptr);
        return Lines(out.str());
    }
    static ControlRef Identified(ControlRef control, std::int32_t id) {
        ControlID const identifier = {"Ctrl"_code, id};
        SetControlID(control, &identifier);
        return control;
    }
    // A button that shows an alert on the window, and each time its answer is kept.
    static void AddAlertButton(WindowRef window) {
        Rect const bounds = {0, 0, 20, 80};
        ControlRef button = nullptr;
        CreatePushButtonControl(window, &bounds, CFSTR("Alert"), &button);
        Identified(button, 1);
        constexpr EventTypeSpec kHit = {kEventClassControl, kEventControlHit};
        InstallEventHandler(GetControlEventTarget(button), ShowAlert, 1, &kHit, window, nullptr);
    }
    static OSStatus ShowAlert(EventHandlerCallRef, EventRef, void* window) {
        sAnswer = UI_ZUBAlert::TellUser("First", "Second", sFlags, static_cast<WindowRef>(window));
        SysBeep(1);
        return noErr;
    }
    static inline OSType sAnswer = 0;
    static inline std::uint32_t sFlags = kUsualAlert;
};

TEST_F(ScriptPlayerTest, ALineThatOpensADialogIsAnsweredWhenItStandsAndTheNextGoThere) {
    auto const lines = PlayIn(AddAlertButton,
                              "click Ctrl:1\ndump\nprint\ncommit\nclick @1/Ctrl:1\n"
                              "click Ctrl:1\nclick ok:0\nclick Ctrl:1\nkey escape\ncancel\n");
    EXPECT_EQ("done done blocked blocked blocked missing done done done done cancel",
              Results(lines));
    EXPECT_EQ(1, lines[0]["loops"]);
    EXPECT_EQ(2, lines[0]["front"]);
    json const& sheet = lines[1]["windows"][0];
    EXPECT_EQ(R"(["Two Line Sheet","sheet",1,true,[0,0,140,420],"ok:0","ok:0","canc:0"])"_json,
              (json{sheet["name"], sheet["kind"], sheet["parent"], sheet["modal"], sheet["bounds"],
                    sheet["focus"], sheet["default"], sheet["cancel"]}));
    EXPECT_EQ(1, lines[6]["beeps"]);
    EXPECT_EQ(0, lines[6]["loops"]);
    EXPECT_EQ(3, lines[7]["front"]) << "no number twice";
    EXPECT_EQ(kDialogCancelled, sAnswer);
}

TEST_F(ScriptPlayerTest, TheScriptsEndCancelsOpenDialogsFromTheInsideOut) {
    for (std::uint32_t const flags : {kUsualAlert, kAlertOKOnly}) {
        sFlags = flags;
        sAnswer = 0;
        EXPECT_EQ("done script", Results(PlayIn(AddAlertButton, "click Ctrl:1\n")));
        EXPECT_EQ(kDialogCancelled, sAnswer);
        EXPECT_EQ("done script", Results(PlayIn(AddAlertButton, "click Ctrl:1\nfly\n")));
    }
    sFlags = kUsualAlert;
}

TEST_F(ScriptPlayerTest, ItsLinesReachAllKindsOfControls) {
    auto const build = [](WindowRef window) {
        Rect const bounds = {0, 0, 20, 80};
        ControlRef popup = nullptr;
        CreatePopupButtonControl(window, &bounds, nullptr, &popup);
        Identified(popup, 1);
        MenuRef const menu = GetControlPopupMenuHandle(popup);
        for (CFStringRef const title : {CFSTR("A3"), CFSTR("A4"), CFSTR("A5")}) {
            AppendMenuItemTextWithCFString(menu, title, 0, 0, nullptr);
        }
        DisableMenuItem(menu, 1);
        SetControl32BitMinimum(popup, 0);
        SetControl32BitMaximum(popup, 3);
        ControlRef field = nullptr;
        CreateEditUnicodeTextControl(window, &bounds, CFSTR("abc"), false, nullptr, &field);
        Identified(field, 2);
        ControlRef box = nullptr;
        CreateCheckBoxControl(window, &bounds, CFSTR("Box"), 0, true, &box);
        DisableControl(Identified(box, 3));
        ControlRef text = nullptr;
        CreateStaticTextControl(window, &bounds, CFSTR("Label"), nullptr, &text);
        HideControl(Identified(text, 4));
    };
    auto const lines =
        PlayIn(build,
               "choose Ctrl:1 2\nchoose Ctrl:1 \"A5\"\nchoose Ctrl:1 1\nchoose Ctrl:1 \"B5\"\n"
               "choose Ctrl:1 4\ndump Ctrl:1\nselect Ctrl:2 1 2\ntype \"x y\"\nkey backspace\ndump "
               "Ctrl:2\n"
               "click Ctrl:3\nclick Ctrl:4\ndump Ctrl:4\nrows Ctrl:1 1\n");
    EXPECT_EQ(
        "done done refused missing missing done done done done done disabled hidden done "
        "missing script",
        Results(lines));
    EXPECT_EQ(R"([{"title":"A3","enabled":false,"why":[]},{"title":"A4","enabled":true,"why":null},
                  {"title":"A5","enabled":true,"why":null}])"_json,
              lines[5]["control"]["items"]);
    EXPECT_EQ(3, lines[5]["control"]["value"]);
    EXPECT_EQ(3, lines[7]["taken"]);
    json const& field = lines[9]["control"];
    EXPECT_EQ(R"(["ax c",[3,3],false])"_json,
              (json{field["text"], field["selection"], field["password"]}));
    EXPECT_EQ("Label", lines[12]["control"]["text"]);
    EXPECT_EQ(false, lines[12]["control"]["visible"]);
}

TEST_F(ScriptPlayerTest, ACharacterMayOpenADialogBetweenOthers) {
    auto const build = [](WindowRef window) {
        Rect const bounds = {0, 0, 20, 80};
        ControlRef field = nullptr;
        CreateEditUnicodeTextControl(window, &bounds, CFSTR(""), false, nullptr, &field);
        auto const alertAtX = [](EventHandlerCallRef, EventRef event, void* to) {
            char16_t unit = 0;
            GetEventParameter(event, kEventParamTextInputSendText, typeUnicodeText, nullptr,
                              sizeof unit, nullptr, &unit);
            return unit == u'x' ? ShowAlert(nullptr, nullptr, to) : eventNotHandledErr;
        };
        constexpr EventTypeSpec kText = {kEventClassTextInput, kEventTextInputUnicodeForKeyEvent};
        InstallEventHandler(GetControlEventTarget(Identified(field, 1)), alertAtX, 1, &kText,
                            window, nullptr);
    };
    auto const lines = PlayIn(build,
                              "focus Ctrl:1\ntype \"a\\ud83d\\ude00xbx\"\nkey escape\n"
                              "key escape\ndump Ctrl:1\nfocus Ctrl:1\ntype ab\ncancel\n");
    EXPECT_EQ("done done done done done done done done cancel", Results(lines));
    EXPECT_EQ(2, lines[1]["taken"]);
    EXPECT_EQ(
        "a\xF0\x9F\x98\x80"
        "b",
        lines[4]["control"]["text"]);
    EXPECT_EQ(2, lines[6]["taken"]);
}

TEST_F(ScriptPlayerTest, RowsOfANibsListAreOpenedSortedAndSelected) {
    std::filesystem::create_directories(PathOf("Contents/Resources"));
    Write("Contents/Info.plist", "<plist><dict/></plist>");
    std::string const bounds =
        "<key>Bounds</key><array><integer>0</integer><integer>0</integer>"
        "<integer>90</integer><integer>90</integer></array>";
    auto const control = [&](char const* kind, int id, std::string const& rest) {
        return "<dict><key>Kind</key><string>" + std::string(kind) + "</string>" + bounds +
               "<key>Signature</key><string>Ctrl</string><key>ID</key><integer>" +
               std::to_string(id) + "</integer>" + rest + "</dict>";
    };
    Write("Contents/Resources/R.nib",
          "<plist><dict><key>W</key><dict>" + bounds + "<key>Controls</key><array>" +
              control("pane", 9,
                      "<key>Controls</key><array>" +
                          control("list", 1,
                                  "<key>Columns</key><array><dict><key>Code</key><string>NAME"
                                  "</string></dict></array>") +
                          control("rgrp", 2,
                                  "<key>Controls</key><array>" +
                                      control("rado", 3, "<key>Title</key><string>A</string>") +
                                      control("rado", 4, "<key>Title</key><string>B</string>") +
                                      "</array>") +
                          "</array>") +
              "</array></dict></dict></plist>");
    auto const build = [&](WindowRef window) {
        CFRef<CFBundleRef> const bundle(CFBundleCreate(nullptr, HostFiles::URL(PathOf(""), true)));
        IBNibRef nib = nullptr;
        WindowRef from = nullptr;
        CreateNibReferenceWithCFBundle(bundle, CFSTR("R"), &nib);
        ASSERT_EQ(noErr, CreateWindowFromNib(nib, CFSTR("W"), &from));
        DisposeNibReference(nib);
        WindowView view;
        DescribeWindow(window, &view);
        MyEmbedControl(from, EmbeddedControls(view.root).at(0), {"Ctrl"_code, 9}, nullptr);
        DisposeWindow(from);
        ControlID const id = {"Ctrl"_code, 1};
        ControlRef list = nullptr;
        GetControlByID(window, &id, &list);
        DataBrowserCallbacks callbacks;
        InitDataBrowserCallbacks(&callbacks);
        // Rows from "z" downward; the first one is a container.
        callbacks.itemData = [](ControlRef, DataBrowserItemID item, DataBrowserPropertyID property,
                                DataBrowserItemDataRef data, bool) {
            if (property == kDataBrowserItemIsContainerProperty) {
                return SetDataBrowserItemDataBooleanValue(data, item == 1);
            }
            char16_t const letter = static_cast<char16_t>(u'z' - item);
            return SetDataBrowserItemDataText(
                data, CFRef<CFStringRef>(CFStringCreateWithCharacters(nullptr, &letter, 1)));
        };
        SetDataBrowserCallbacks(list, &callbacks);
        AddDataBrowserItems(list, 0, 2, nullptr, 0);
        DataBrowserItemID const inside = 7;
        AddDataBrowserItems(list, 1, 1, &inside, 0);
    };
    auto const lines = PlayIn(build,
                              "rows Ctrl:1 7\nopen Ctrl:1 2\nopen Ctrl:1 1\nrows Ctrl:1 7 2\n"
                              "sort Ctrl:1 NAME\nsort Ctrl:1 NONE\ndump Ctrl:1\nshut Ctrl:1 1\n"
                              "sort Ctrl:1 NAME\ndump Ctrl:1\ndump Ctrl:2\n");
    EXPECT_EQ("missing missing done done done missing done done done done done script",
              Results(lines));
    EXPECT_EQ(R"([["NAME"],"NAME",[
        {"item":2,"parent":0,"container":false,"open":false,"selected":true,"cells":["x"]},
        {"item":1,"parent":0,"container":true,"open":true,"selected":false,"cells":["y"]},
        {"item":7,"parent":1,"container":false,"open":false,"selected":true,"cells":["s"]}]])"_json,
              (json{lines[6]["control"]["columns"], lines[6]["control"]["sort"],
                    lines[6]["control"]["rows"]}));
    json const& rows = lines[9]["control"]["rows"];
    ASSERT_EQ(2U, rows.size());
    EXPECT_EQ(R"([1,false,2])"_json, (json{rows[0]["item"], rows[0]["open"], rows[1]["item"]}));
    json const& group = lines[10]["control"];
    EXPECT_EQ("rgrp", group["kind"]);
    EXPECT_EQ(R"([{"title":"A","enabled":true,"why":null},
                  {"title":"B","enabled":true,"why":null}])"_json,
              group["items"]);
}

TEST_F(ScriptPlayerTest, APostedCommandHasComeWhenTheLineThatPostedItIsAnswered) {
    static OSType sHeard;
    sHeard = 0;
    auto const build = [](WindowRef window) {
        constexpr EventTypeSpec kHit = {kEventClassControl, kEventControlHit};
        constexpr EventTypeSpec kCommand = {kEventClassCommand, kEventCommandProcess};
        Rect const bounds = {0, 0, 20, 80};
        ControlRef button = nullptr;
        CreatePushButtonControl(window, &bounds, CFSTR("Post"), &button);
        EventTargetRef const target = GetControlEventTarget(Identified(button, 1));
        auto const post = [](EventHandlerCallRef, EventRef, void* to) {
            return CustomCarbonEvent("late"_code, static_cast<WindowRef>(to), kEventClassCommand,
                                     kEventCommandProcess)
                .send(nullptr, kEventPriorityStandard);
        };
        InstallEventHandler(target, post, 1, &kHit, window, nullptr);
        auto const hear = [](EventHandlerCallRef, EventRef event, void*) {
            HICommand command = {};
            GetEventParameter(event, kEventParamDirectObject, typeHICommand, nullptr,
                              kHICommandSize, nullptr, &command);
            sHeard = command.commandID;
            SysBeep(1);
            return eventNotHandledErr;
        };
        InstallEventHandler(GetWindowEventTarget(window), hear, 1, &kCommand, nullptr, nullptr);
    };
    auto const lines = PlayIn(build, "click Ctrl:1\ntick 1\n");
    EXPECT_EQ("late"_code, sHeard);
    EXPECT_EQ(R"([["late"],1])"_json, (json{lines[0]["posted"], lines[0]["beeps"]}));
    EXPECT_EQ(R"([[],0])"_json, (json{lines[1]["posted"], lines[1]["beeps"]}));
}

TEST_F(ScriptPlayerTest, TimePassesByTicksAloneAndATimerMayOpenADialog) {
    static EventLoopTimerRef sTimer;
    auto const build = [](WindowRef window) {
        InstallEventLoopTimer(
            GetMainEventLoop(), 2, 0,
            [](EventLoopTimerRef, void* parent) { ShowAlert(nullptr, nullptr, parent); }, window,
            &sTimer);
    };
    auto const lines = PlayIn(build, "tick 1.5\ntick 1\ntick 0.25\nclick canc:0\ndump\ncancel\n");
    RemoveEventLoopTimer(sTimer);
    EXPECT_EQ("done done done done done done cancel", Results(lines));
    std::vector<double> times;
    for (std::size_t at = 0; at < 5; ++at) {
        times.push_back(lines[at]["time"]);
    }
    EXPECT_EQ((std::vector{1.5, 2.0, 2.25, 2.5, 2.5}), times)
        << "the tick goes on when the dialog that it opened is over";
    EXPECT_EQ(1, lines[1]["loops"]);
}

}  // namespace
