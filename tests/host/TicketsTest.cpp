// SPDX-License-Identifier: Apache-2.0
#include <filesystem>
#include <fstream>

#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "host/TicketFile.h"
#include "platform/CFRef.h"
#include "tests/host/HostFixture.h"
#include "twoway/ZUBTolvanePrinterPList.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

// Dialogs one after the other, whose tickets lie in a file.
class TicketsTest : public HostFixture {
  protected:
    ~TicketsTest() override {
        JobsWith(mMark);
        // A process stays with its identity; the tests of one process don't.
        gUseCommonPresets = false;
        MyFreeBundle();
    }

    // Values in the job of one dialog, by keyword; `arguments` come behind those for the tickets.
    json Print(std::vector<std::string> const& arguments) const {
        std::vector<std::string> all{"print", "--ppd", mPPD, "--tickets", mTickets, "--pairs"};
        all.insert(all.end(), arguments.begin(), arguments.end());
        json values;
        for (json const& pair : RunForJSON(all)) {
            std::string const text = pair["text"];
            std::string const head = "%%BeginFeature: ";
            if (text.starts_with(head)) {
                std::string const line = text.substr(head.size(), text.find('\n') - head.size());
                values[line.substr(0, line.find(' '))] = line.substr(line.find(' ') + 1);
            }
        }
        return values;
    }
    std::string ReadTickets() const {
        std::ifstream file(mTickets);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::string const mMark = UniqueName("Tumble");
    std::string const mTickets = PathOf("tickets.plist");
    std::string const mPPD =
        Write(UniqueName("tickets-test") + ".ppd",
              Head() + Duplex(mMark) +
                  "*%ZUBFlags *Sort: Dynamic\n*%ZUBGroup *Sort: Finish/F\n"
                  "*OpenUI *Sort/Sort: Boolean\n*DefaultSort: False\n*Sort True/On: \"s\"\n"
                  "*Sort False/Off: \"\"\n*CloseUI: *Sort\n");
};

}  // namespace

TEST_F(TicketsTest, EachMakeAndModelHasItsOwnChoicesUnlessAllShareOneSet) {
    Print({"--make-and-model", "ZUB One", "--set", "*Duplex=" + mMark});
    EXPECT_EQ(Print({"--make-and-model", "ZUB Two"})["*Duplex"], "None");
    EXPECT_EQ(Print({"--make-and-model", "ZUB One"})["*Duplex"], mMark);
    EXPECT_EQ(Print({"--make-and-model", "zub  one"})["*Duplex"], "None");

    std::string const shared = Write("CommonPresets.txt", "");
    Print({"--common-presets", shared, "--make-and-model", "ZUB One", "--set", "*Duplex=On"});
    EXPECT_EQ(Print({"--common-presets", shared, "--make-and-model", "ZUB Two"})["*Duplex"], "On");
}

TEST_F(TicketsTest, ThePPDsOwnModelWinsOverTheOneThatTheFileKeeps) {
    auto const print = [this](std::string const& model, std::vector<std::string> more) {
        std::string const ppd = Write(UniqueName("model-test") + ".ppd",
                                      Head() + "*ModelName: \"" + model + "\"\n" + Duplex(mMark));
        more.insert(more.begin(), {"print", "--ppd", ppd, "--tickets", mTickets, "--pairs"});
        return RunForJSON(more).dump();
    };
    print("ZUB One", {"--set", "*Duplex=" + mMark});
    EXPECT_EQ(std::string::npos, print("ZUB Two", {}).find(mMark));
    EXPECT_NE(std::string::npos, print("ZUB One", {}).find(mMark));
    // A PPD without a model prints as the file's.
    EXPECT_EQ(mMark, Print({})["*Duplex"]);
}

TEST_F(TicketsTest, AChoiceOfTheInputSlotDropsTheKeptPaperFeed) {
    std::string slot = Head() + Duplex(mMark);
    for (std::size_t at = 0; (at = slot.find("Duplex", at)) != std::string::npos; ++at) {
        slot.replace(at, 6, "InputSlot");
    }
    std::string const ppd = Write(UniqueName("feed-test") + ".ppd", slot);
    auto const print = [&](std::vector<std::string> more, std::string const& err) {
        more.insert(more.begin(), {"print", "--ppd", ppd, "--tickets", mTickets, "--pairs"});
        Result const result = Run(more);
        EXPECT_EQ(err.empty() ? "" : "zubprint: warning: " + err + "\n", result.err);
        std::string const head = "%%BeginFeature: *InputSlot ";
        std::size_t const at = result.out.find(head) + head.size();
        return result.out.substr(at, result.out.find("\\n", at) - at);
    };
    EXPECT_EQ("On", print({"--paper-feed", "On"}, ""));
    EXPECT_EQ("On", print({}, ""));
    EXPECT_EQ("None", print({"--set", "*InputSlot=None"}, ""));
    EXPECT_EQ("None", print({}, "")) << "and stays dropped";
    EXPECT_EQ("On", print({"--paper-feed", "On", "--set", "*InputSlot=None"},
                          "the paper feed On wins over *InputSlot=None"));
    EXPECT_EQ("On", print({"--paper-feed", "Tray9"},
                          ppd + " has no paper feed Tray9; it takes None, On or " + mMark));
}

TEST_F(TicketsTest, AChoiceThatARuleForbidsIsSaidAndStrictlyRefused) {
    std::string const ppd = Write(
        UniqueName("rules-test") + ".ppd",
        Head() + Duplex(mMark) +
            "*%ZUBFlags *Sort: Dynamic\n*%ZUBGroup *Sort: Finish/F\n"
            "*OpenUI *Sort/Sort: Boolean\n*DefaultSort: True\n*Sort True/On: \"s\"\n"
            "*Sort False/Off: \"\"\n*CloseUI: *Sort\n*UIConstraints: *Sort True *Duplex On\n");
    auto const run = [&](std::vector<std::string> more) {
        more.insert(more.begin(), {"print", "--ppd", ppd, "--tickets", mTickets, "--set",
                                   "*Duplex=" + mMark, "--address", "host.invalid"});
        return Run(more);
    };
    std::string const warning =
        "zubprint: warning: *Duplex=On stands against *Sort=True; zubprint fix says what to "
        "change\n";
    Result const refused = run({"--set", "*Duplex=On", "--strict"});
    EXPECT_EQ(1, refused.status);
    EXPECT_TRUE(refused.err.starts_with(warning)) << refused.err;
    EXPECT_EQ(2, CountLines(refused.err));
    EXPECT_FALSE(fs::exists(mTickets));
    EXPECT_FALSE(ZUBTolvanePrinterPList().getIPEnabled(CFStringConstant("Demo")));
    Result const warned = run({"--set", "*Duplex=On"});
    EXPECT_EQ(0, warned.status);
    EXPECT_EQ(warning, warned.err);
    EXPECT_EQ(0, run({"--strict"}).status);
    EXPECT_EQ(1, run({"--strict", "--set", "*Sort=maybe"}).status);
}

TEST_F(TicketsTest, TheOperatingSystemsValuesLieUnderTheirKeys) {
    std::string const arguments[] = {"--orientation", "2",     "--layout",   "3x2",
                                     "--paper-feed",  "Tray2", "--paper",    "A4",
                                     "--copies",      "7",     "--job-name", "Brief"};
    Print({std::begin(arguments), std::end(arguments)});
    std::string const written = ReadTickets();
    for (char const* item :
         {"PMOrientation</key>\n\t\t<integer>2<", "PMLayoutRows</key>\n\t\t<integer>3<",
          "PMLayoutColumns</key>\n\t\t<integer>2<", "PMCopies</key>\n\t\t<integer>7<",
          "PMJobName</key>\n\t\t<string>Brief<",
          "PMPrimaryPaperFeed</key>\n\t\t<array>\n\t\t\t<string>Tray2</"
          "string>\n\t\t\t<string>Tray2<",
          "PMPaperName</key>\n\t\t\t<string>A4<", "<key>com.apple.print.PaperInfoTicket</key>",
          "<key>ZUB.PSData."}) {
        EXPECT_NE(written.find(item), std::string::npos) << item << " in " << written;
    }
    // The file wins over defaults, the command line over the file.
    Print({"--copies", "3"});
    EXPECT_NE(ReadTickets().find("PMCopies</key>\n\t\t<integer>3<"), std::string::npos);
    EXPECT_NE(ReadTickets().find("PMOrientation</key>\n\t\t<integer>2<"), std::string::npos);
}

TEST_F(TicketsTest, ABadTicketsFileIsRefusedAndStays) {
    for (char const* bytes : {"", "no property list", "<plist><array></array></plist>",
                              "<plist><dict><key>PMPageFormatTicket</key><string>x</string></dict>"
                              "</plist>"}) {
        Write("tickets.plist", bytes);
        Result const result = Run({"print", "--ppd", mPPD, "--tickets", mTickets});
        EXPECT_EQ(1, result.status) << bytes;
        EXPECT_EQ(1, CountLines(result.err)) << result.err;
        EXPECT_NE(result.err.find(mTickets), std::string::npos) << result.err;
        EXPECT_EQ(bytes, ReadTickets());
    }
    Result const folder =
        Run({"print", "--ppd", mPPD, "--tickets", PathOf("no/such/folder/tickets.plist")});
    EXPECT_EQ(1, folder.status);
    EXPECT_EQ(1, CountLines(folder.err)) << folder.err;
    // Values of other types than a session would have are passed over.
    Write("tickets.plist",
          "<plist version=\"1.0\"><dict><key>PMPrintSettingsTicket</key><dict>"
          "<key>com.zub.print.pde.645EBB97-CCEC-44A1-ADE0-29E4901A642D.Demo.PInf</key>"
          "<dict><key>*Duplex</key><integer>5</integer><key>*Sort</key><string>True</string></dict>"
          "<key>.MMKey</key><integer>99999</integer><key>.SelectedWatermarkKey</key>"
          "<string>x</string></dict></dict></plist>");
    json const values = Print({"--set", "*Duplex=" + mMark});
    EXPECT_EQ(values["*Sort"], "True");
}

TEST_F(TicketsTest, RunsThatWriteOneFileKeepEachOthersChanges) {
    auto const set = [](TicketFile& file, std::initializer_list<char const*> keys) {
        PMTicketRef ticket = 0;
        ASSERT_EQ(noErr, PMTicketCreate(CFSTR("test"), &ticket));
        ASSERT_EQ(noErr, file.Fill(CFSTR("PMPrintSettingsTicket"), ticket));
        for (char const* key : keys) {
            CFStringRef const text = CFStringConstant(key);
            ASSERT_EQ(noErr, PMTicketSetItem(ticket, TicketFile::Client(), text, text, false));
        }
        EXPECT_EQ(noErr, file.Take(CFSTR("PMPrintSettingsTicket"), ticket));
        PMTicketReleaseAndClear(&ticket);
    };
    Write("tickets.plist",
          "<plist version=\"1.0\"><dict><key>PMPrintSettingsTicket</key><dict>"
          "<key>one</key><string>former</string></dict></dict></plist>");
    TicketFile one;
    TicketFile other;
    ASSERT_TRUE(one.Read(mTickets).Ok() && other.Read(mTickets).Ok());
    set(one, {"one", "two"});
    set(other, {"three"});
    ASSERT_TRUE(one.Write(mTickets).Ok() && other.Write(mTickets).Ok());
    for (char const* text : {"<string>one<", "<string>two<", "<string>three<"}) {
        EXPECT_NE(ReadTickets().find(text), std::string::npos) << text << ReadTickets();
    }
    // Damaged since it was read.
    Write("tickets.plist", "<plist>");
    EXPECT_FALSE(one.Write(mTickets).Ok());
    EXPECT_EQ("<plist>", ReadTickets());
    fs::remove(mTickets);
    EXPECT_TRUE(one.Write(mTickets).Ok());
    EXPECT_EQ(fs::perms::owner_read | fs::perms::owner_write, fs::status(mTickets).permissions());
}

TEST_F(TicketsTest, TheRecordOfThePrinterTakesAnAddress) {
    auto const run = [this](std::vector<std::string> arguments) {
        arguments.insert(arguments.begin(), {"print", "--ppd", mPPD, "--printer", "Büro"});
        arguments.insert(arguments.end(), {"--set", "*Duplex=" + mMark});
        return Run(arguments);
    };
    auto const expect = [](char const* address, bool enabled) {
        ZUBTolvanePrinterPList const records;
        EXPECT_TRUE(CFEqual(records.Find(CFStringConstant("x")), CFSTR("")));
        CFRef<CFStringRef> const name(
            CFStringCreateWithCString(nullptr, "büro", kCFStringEncodingUTF8));
        EXPECT_TRUE(CFEqual(records.Find(name), CFStringConstant(address)));
        EXPECT_EQ(enabled, records.getIPEnabled(name));
    };
    EXPECT_EQ(0, run({"--address", "server.example"}).status);
    expect("server.example", true);
    EXPECT_EQ(0, run({}).status);
    expect("server.example", true);
    EXPECT_EQ(0, run({"--no-address"}).status);
    expect("", false);
    EXPECT_EQ(2, run({"--no-address", "--address", "a"}).status);
}
