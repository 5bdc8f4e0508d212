// SPDX-License-Identifier: Apache-2.0
#include "host/AdoptCommand.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "tests/host/HostFixture.h"

using nlohmann::json;

namespace {

class AdoptCommandTest : public HostFixture {
  protected:
    struct Adopted {
        std::string path;
        std::string told;
    };
    // Adopts the lines behind a head; the outcome has nothing that lint calls an error.
    Adopted Adopt(std::string const& lines, std::string const& head = kHead) const {
        Result const result = Run({"adopt", Write("plain.ppd", head + lines)});
        EXPECT_EQ(0, result.status) << result.err;
        std::string const path = Write("adopted.ppd", result.out);
        for (json const& finding : RunForJSON({"lint", "--json", path})) {
            EXPECT_NE("error", finding["severity"]) << finding << result.out;
        }
        return {path, result.err};
    }
    // Of the adopted file: its controls by keyword.
    static std::map<std::string, json> Controls(std::string const& path) {
        json const tree = RunForJSON({"inspect", path});
        std::map<std::string, json> controls;
        for (json const& control : tree["controls"]) {
            controls[control["keyword"].get<std::string>()] = control;
        }
        return controls;
    }
    static std::string Line(std::string const& told, int number) {
        return told.substr(std::min(told.size(), told.find(":" + std::to_string(number) + ": ")));
    }

    static constexpr char kHead[] =
        "*PPD-Adobe: \"4.3\"\n"
        "*PCFileName: \"LASER.PPD\"\n"
        "*ModelName: \"Laser\"\n";
};

TEST_F(AdoptCommandTest, OptionsComeWithGroupsDefaultsCodeAndRules) {
    Adopted const adopted = Adopt(
        "*OpenUI *PageSize/Paper: PickOne\r\n"
        "*OrderDependency: 30 AnySetup *PageSize\r\n"
        "*PageSize A4/A4: \"<</PageSize [595 842]>>\r\n setpagedevice\"\r\n*End\r\n"
        "*PageSize A5: ^Small\r\n"
        "*CloseUI: *PageSize\r\n*DefaultPageSize: A5\r\n"
        "*OpenGroup: Finishing/Finishing Options\n"
        "*OpenUI *Duplex: PickOne\n*DefaultDuplex: None\n*DefaultOther: x\n"
        "*OrderDependency: 20 AnySetup *Duplex\n"
        "*Duplex None/Off: \"\"\n*Duplex On/On: \"true setduplex\"\n"
        "*DuplexMode: 3\n*UIConstraints: *Duplex On *PageSize A5\n"
        "*CloseUI: *Duplex\n*CloseGroup: Finishing\n"
        "*OpenGroup: InstallableOptions/Built in\n"
        "*OpenUI *Tray/Tray: Boolean\n*DefaultTray: False\n*Tray True/Yes: \"\"\n"
        "*Tray False/No: \"\"\n*CloseUI: *Tray\n*CloseGroup: InstallableOptions\n"
        "*SymbolValue ^Small: \"small\"\n"
        "*cupsUIConstraints two: \"*Tray False *Duplex On\"\n");
    auto const controls = Controls(adopted.path);
    ASSERT_EQ(3U, controls.size());
    json const& size = controls.at("*PageSize");
    EXPECT_EQ("A5", size["default"]);
    EXPECT_EQ("\n<</PageSize [595 842]>>\n setpagedevice\n\n", size["items"][0]["code"]);
    EXPECT_EQ("small\n", size["items"][1]["code"]);
    EXPECT_EQ("Duplex", controls.at("*Duplex")["name"]);
    EXPECT_EQ("ZUPPInstallableOptions", controls.at("*Tray")["parent"]);
    EXPECT_EQ(4, controls.at("*Tray")["type"]);

    json const tree = RunForJSON({"inspect", adopted.path});
    EXPECT_EQ("*Duplex", tree["controls"][0]["keyword"]);  // its code comes first
    EXPECT_EQ("Finishing Options", tree["properties"][1]["name"]);
    EXPECT_EQ((json{"*PageSize", "*Duplex"}), tree["shortcuts"]);
    EXPECT_EQ(json::parse(R"([["*Duplex", "On"]])"),
              RunForJSON({"constraints", adopted.path})["constrained"]);
    json const blockers = RunForJSON({"why", adopted.path, "--json", "*Duplex=On"})["blockers"];
    EXPECT_EQ(2U, blockers.size()) << blockers;
    json const whyTray = RunForJSON({"why", adopted.path, "--json", "--set", "*PageSize=A4",
                                     "--set", "*Tray=True", "--set", "*Duplex=On", "*PageSize=A5"});
    EXPECT_EQ(1U, whyTray["blockers"].size()) << whyTray;  // the rule's other direction
}

TEST_F(AdoptCommandTest, WhatTheReaderCouldntTakeIsMendedOrTold) {
    std::string const longCode(5000, 'x');
    std::string const folded = std::string(150, 'a') + " (b " + std::string(120, 'c') + ") d";
    Adopted const adopted = Adopt(
        "*LanguageEncoding: WindowsANSI\n"  // 4
        "*OpenUI *A/A" +
        std::string(300, 'n') +
        ": PickOne\n"  // 5
        "*A x/\xFF: \"" +
        folded +
        "\"\n"  // 6
        "*A y/Y: \"" +
        longCode +
        "\"\n"                                                        // 7
        "*A y/Again: \"twice\"\n"                                     // 8
        "*DefaultA: gone\n"                                           // 9
        "*OpenUI *B/B: Boolean\n"                                     // 10: nothing closed A
        "*B On/On: \"1\"\n*B Off/Off: \"0\"\n*CloseUI: *B\n"          // 11
        "*OpenUI *A/A: PickOne\n*A z/Z: \"z\"\n*CloseUI: *A\n"        // 14
        "*JCLOpenUI *JCLRes/R: PickOne\n*JCLRes 1/1: \"@PJL<0A>\"\n"  // 17
        "*JCLCloseUI: *JCLRes\n"                                      // 19
        "*OpenUI *Empty/E: PickOne\n*CloseUI: *Empty\n"               // 20
        "*Font " +
        std::string(300, 'f') +
        ": Standard\n"                                      // 22
        "*UIConstraints: *A x *Nowhere y\n"                 // 23
        "*cupsUIConstraints 3: \"*A x *B On *JCLRes 1\"\n"  // 24
        "*CustomPageSize True: \"pop\"\n"                   // 25
        "*de.A x/Ix: \"\"\n");                              // 26
    auto const controls = Controls(adopted.path);
    json const& a = controls.at("*A");
    ASSERT_EQ(2U, a["items"].size());  // y is left out
    EXPECT_EQ("A" + std::string(119, 'n'), a["name"]);
    EXPECT_EQ("ÿ", a["items"][0]["name"]);
    std::string const code = a["items"][0]["code"];
    EXPECT_NE(std::string::npos, code.find("a\n(b c"));  // broken ahead of the string, not in it
    EXPECT_EQ("z", a["items"][1]["keyword"]);
    EXPECT_EQ(5, controls.at("*B")["type"]);  // its states aren't True and False
    EXPECT_TRUE(controls.at("*KeptJCLRes")["items"][0]["code"].is_null());
    for (int const line : {5, 7, 10, 17, 20, 22, 23, 24, 25, 26}) {
        EXPECT_NE("", Line(adopted.told, line)) << line << "\n" << adopted.told;
    }
    EXPECT_NE(std::string::npos,
              adopted.told.find("carried 3 options with 5 choices, 0 constraints"));
    Result const page = Run({"list", adopted.path});
    EXPECT_EQ(std::string::npos, page.out.find("JCLRes"));
}

TEST_F(AdoptCommandTest, CodeIsBrokenOutsideOfStringsOnly) {
    std::string const words = [] {
        std::string text;
        for (int count = 0; count < 60; ++count) {
            text += "abcd ";
        }
        return text;
    }();
    Adopted const adopted = Adopt(
        "*OpenUI *A/A: PickOne\n*DefaultA: plain\n"
        "*A plain/P: \"(one\n(in) \\) two) " +
        words + "\"\n*End\n" + "*A string/S: \"1 (one\n" + words + ") pop\"\n*End\n" +
        "*A remark/R: \"1 % " + words + "\"\n*A hex/H: \"<41\n" + words + "> (\n) 2\"\n*End\n" +
        "*A star/T: \"1\n*2\"\n*End\n*CloseUI: *A\n");
    json const items = Controls(adopted.path).at("*A")["items"];
    ASSERT_EQ(2U, items.size()) << adopted.told;
    std::string code = items[0]["code"];
    EXPECT_NE(std::string::npos, code.find("(one\n(in) \\) two) abcd")) << code;
    std::ranges::replace(code, '\n', ' ');
    EXPECT_NE(std::string::npos, code.find(words)) << code;  // nothing else has changed
    EXPECT_EQ("hex", items[1]["keyword"]);
    for (int const line : {9, 12, 17}) {
        EXPECT_NE("", Line(adopted.told, line)) << line << "\n" << adopted.told;
    }
}

TEST_F(AdoptCommandTest, TextsComeWithTheirQuotesAndInTheirEncoding) {
    std::string umlauts;
    for (int count = 0; count < 70; ++count) {
        umlauts += "\u00E4";
    }
    Adopted const adopted = Adopt(
        "*LanguageEncoding: UTF-8\n*OpenGroup: G/Gr\xF6\xDF\x65\n*OpenUI *A/A: PickOne\n"
        "*DefaultA: w\n*A w/4\" x 6\": \"<</W 4>> set\"\n*A l/K\xFCrze: \"l\"\n*A u/x" +
        umlauts + ": \"u\"\n*CloseUI: *A\n*CloseGroup: G\n");
    json const items = Controls(adopted.path).at("*A")["items"];
    ASSERT_EQ(3U, items.size()) << adopted.told;
    EXPECT_EQ("4\" x 6\"", items[0]["name"]);
    EXPECT_EQ("<</W 4>> set\n", items[0]["code"]);
    EXPECT_EQ("K\u00FCrze", items[1]["name"]);
    EXPECT_EQ("x" + umlauts.substr(0, 118), items[2]["name"]);
    EXPECT_EQ("Gr\u00F6\u00DFe", RunForJSON({"inspect", adopted.path})["properties"][0]["name"]);
    for (int const line : {5, 9, 10}) {
        EXPECT_NE("", Line(adopted.told, line)) << line << "\n" << adopted.told;
    }
}

TEST_F(AdoptCommandTest, WhatIsCutOffIsToldAndLeftOut) {
    Adopted const quote = Adopt(
        "*OpenUI *A/A: PickOne\n*DefaultA: x\n*A x/X: \"x\"\n*A y/Y: \"y\n"
        "*CloseUI: *A\n*OpenUI *B/B: PickOne\n*DefaultB: x\n*B x/X: \"x\"\n*B y/Y: \"half\n");
    auto const controls = Controls(quote.path);
    EXPECT_EQ(1U, controls.at("*A")["items"].size());
    EXPECT_EQ(1U, controls.at("*B")["items"].size());
    EXPECT_NE(std::string::npos, quote.told.find(":7: *A=y is left out")) << quote.told;
    EXPECT_NE(std::string::npos, quote.told.find(":12: *B=y is left out")) << quote.told;
    EXPECT_NE(std::string::npos, quote.told.find(":9: nothing closes *B")) << quote.told;

    std::string const name(250, 'k');
    Adopted const wide =
        Adopt("*OpenUI *A/A: PickOne\n*DefaultA: x\n*A x/X: \"x\"\n*A " + name +
              "/Y: \"y\"\n*CloseUI: *A\n*OpenUI *" + name + "/B: PickOne\n*" + name +
              " x/X: \"\"\n*CloseUI: *A\n*UIConstraints: *A x *" + name + "\n");
    ASSERT_EQ(1U, Controls(wide.path).size());
    for (int const line : {7, 9, 12}) {
        EXPECT_NE("", Line(wide.told, line)) << line << "\n" << wide.told;
    }
}

TEST_F(AdoptCommandTest, ThePageRegionTakesBackNothing) {
    Adopted const adopted = Adopt(
        "*OpenUI *PageSize: PickOne\n*DefaultPageSize: A4\n*PageSize A4: \"a4\"\n*CloseUI\n"
        "*OpenUI *PageRegion: PickOne\n*DefaultPageRegion: A4\n*PageRegion A4: \"r4\"\n*CloseUI\n");
    EXPECT_TRUE(Controls(adopted.path).at("*PageRegion")["items"][0]["code"].is_null());
    Result const job = Run({"print", "--dry-run", "--ppd", adopted.path});
    EXPECT_EQ(0, job.status) << job.err;
    EXPECT_NE(std::string::npos, job.out.find("a4\n")) << job.out;
    EXPECT_EQ(std::string::npos, job.out.find("r4\n")) << job.out;
}

TEST_F(AdoptCommandTest, OldFilesAreTakenAndOthersRefusedInOneLine) {
    std::string const option = "*OpenUI *A/A: PickOne\n*DefaultA: x\n*A x/X: \"\"\n*CloseUI: *A\n";
    Adopted const old = Adopt(option, "*PPD-Adobe: \"4.1\"\n");
    EXPECT_NE(std::string::npos, old.told.find("4.1 becomes 4.3"));
    EXPECT_NE(std::string::npos,
              Adopt(option, "\xEF\xBB\xBF*PPD-Adobe: \"4.3\"\n").told.find("byte order mark"));
    for (auto const& [text, said] : {std::pair<std::string, std::string>{"%!PS\n", "isn't a PPD"},
                                     {"", "is empty"},
                                     {"\x1F\x8B\x08", "gunzip -c"},
                                     {kHead, "has no options"},
                                     {Head() + Duplex(), "already"}}) {
        Result const result = Run({"adopt", Write("refused.ppd", text)});
        EXPECT_NE(std::string::npos, result.err.find(said)) << result.err;
        EXPECT_EQ(1, result.status);
        EXPECT_EQ("", result.out);
        EXPECT_EQ(1, CountLines(result.err)) << result.err;
    }
}

}  // namespace
