// SPDX-License-Identifier: Apache-2.0
#include "host/InspectCommand.h"

#include <filesystem>

#include "PPDX/PPDObjects/Controls/DisplayOptions.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/PPDCommand.h"
#include "host/TreeJson.h"
#include "tests/host/HostFixture.h"

using nlohmann::json;

namespace {

class InspectCommandTest : public HostFixture {
  protected:
    static json Control(json const& document, std::string const& keyword) {
        for (json const& control : document["controls"]) {
            if (control["keyword"] == keyword) {
                return control;
            }
        }
        ADD_FAILURE() << keyword << " isn't among " << document["controls"];
        return {};
    }

    static constexpr char kCustomPrintSize[] = "*CustomPrintSize";

    // Takes a control out of an object's list, if it has one. The list holds keywords, or objects
    // that have them as this field.
    static void Drop(json& object, std::string const& field, std::string const& keyword) {
        json kept = json::array();
        for (json const& control : object.value("controls", json::array())) {
            if ((field.empty() ? control : control[field]) != keyword) {
                kept.push_back(control);
            }
        }
        if (object.contains("controls")) {
            object["controls"] = kept;
        }
    }
    // What is left of a document when its PPD went through an archive.
    static json Archived(json document) {
        document["errors"] = json::array();
        document["header"]["APDialogExtension"] = nullptr;
        for (json& group : document["groups"]) {
            Drop(group, "", kCustomPrintSize);
        }
        Drop(document, "keyword", kCustomPrintSize);
        for (json& control : document["controls"]) {
            if (control.contains("installable")) {
                control["installable"] = false;
            }
        }
        // The list may have more than the walk of it.
        document["shortcutCount"] = document["shortcuts"].size();
        return document;
    }

    // A boolean outside all groups, with a text and code for one state only.
    static std::string Collate() {
        return "*%ZUBFlags *Collate: Spooler|Command\n"
               "*OpenUI *Collate/Collate: Boolean\n"
               "*DefaultCollate: True\n"
               "*Collate True/Sorted: \"true setcollate\"\n"
               "*Collate False: \"\"\n"
               "*CloseUI: *Collate\n";
    }
};

TEST_F(InspectCommandTest, WhatAControlMakesOfAChoiceIsSaid) {
    auto const range = [](std::string const& kind, std::string const& key) {
        return "*%ZUBFlags " + key + ": Dynamic\n*%ZUBGroup " + key + ": Finish/F\n*%ZUB" + kind +
               " " + key + "/R: (5;400;5;100) \"x\"\n";
    };
    std::string const ppd = Write(
        "a.ppd", Head() + Duplex() + range("Range", "*ZUScale") + range("FloatRange", "*Gamma") +
                     Collate() + "*%ParamCustomPrintSize Width: 1 points 72 900\n" +
                     "*%ZUBSpecialOption *Special: 1.0\n*%ZUBFlags *ZUSimulation: Dynamic\n"
                     "*OpenUI *ZUSimulation/S: PickOne\n*DefaultZUSimulation: A\\\n"
                     "*ZUSimulation A\\/One: \"\"\n*CloseUI: *ZUSimulation\n");
    struct {
        char const* setting;
        char const* end;  // of the warning; null for none
    } const cases[] = {
        {"*ZUScale=85", nullptr},
        {"*ZUScale=87", "doesn't take 87 and is now 85; it takes 5 to 400"},
        {"*ZUScale=999", "doesn't take 999 and is now 400; it takes 5 to 400"},
        {"*ZUScale=abc", "doesn't take abc and is now 5; it takes 5 to 400"},
        {"*ZUScale=85x", "doesn't take 85x and is now 85; it takes 5 to 400"},
        {"*Gamma=7.5", nullptr},
        {"*Gamma=4", "doesn't take 4 and is now 5.000; it takes 5 to 400"},
        {"*Gamma=1e", "doesn't take 1e and is now 5.000; it takes 5 to 400"},
        {"*CustomPrintSize=300 500.5", nullptr},
        {"*CustomPrintSize=300,500",
         "doesn't take 300,500 and is now 300.000000 0.000000; it takes width and height with a "
         "blank between them"},
        {"*Collate=FALSE", nullptr},
        {"*Collate=maybe", "doesn't take maybe and is now False; it takes True or False"},
        {"*Special=1.0", nullptr},
        {"*Special=2.0", "doesn't take 2.0 and stays at 1.0"},
        {"*ZUSimulation=A\\", nullptr},
        {"*ZUSimulation=Mine (2)", nullptr},
        {"*ZUSimulation=a\nb\x1B[2J", "doesn't take a b?[2J and stays at A\\"},
        {"*ZUSimulation=a\\b", "doesn't take a\\b and stays at A\\"},
        {"*ZUSimulation=a)", "doesn't take a) and stays at A\\"},
    };
    for (auto const& row : cases) {
        std::string const setting = row.setting;
        std::string const keyword = setting.substr(0, setting.find('='));
        EXPECT_EQ(row.end == nullptr ? std::string()
                                     : "zubprint: warning: " + keyword + " " + row.end + "\n",
                  Run({"inspect", ppd, "--set", setting}).err)
            << setting;
    }
}

TEST_F(InspectCommandTest, ARebuiltTreeIsTheOneThatWasReadButForWhatNoArchiveHolds) {
    namespace fs = std::filesystem;
    int files = 0;
    for (fs::directory_entry const& sample : fs::directory_iterator(ZUB_SAMPLES)) {
        std::string const path = sample.path().string();
        if (sample.path().extension() != ".ppd") {
            continue;
        }
        ++files;
        for (char const* options : {"0", "3"}) {
            json const plain = RunForJSON({"inspect", path, "--parse-options", options});
            ASSERT_FALSE(plain["controls"].empty());
            json const rebuilt =
                RunForJSON({"inspect", path, "--rebuilt", "--parse-options", options});
            EXPECT_EQ(json::array(), json::diff(Archived(plain), rebuilt)) << path << options;
        }
    }
    EXPECT_GE(files, 3);
}

TEST_F(InspectCommandTest, ARebuiltTreeHasTheChoicesThatWereMade) {
    std::string const ppd = Write("a.ppd", Head() + Duplex() + Collate());
    json const rebuilt =
        RunForJSON({"inspect", ppd, "--rebuilt", "--set", "*Duplex=On", "--set", "*Collate=no"});
    EXPECT_EQ("On", Control(rebuilt, "*Duplex")["value"]);
    EXPECT_EQ("None", Control(rebuilt, "*Duplex")["default"]);
    EXPECT_EQ("False", Control(rebuilt, "*Collate")["value"]);
    EXPECT_EQ(true, Control(rebuilt, "*Collate")["default"]);
}

TEST_F(InspectCommandTest, WhatWasReadOfARefusedFileComesBackToo) {
    std::string const good = Write("a.ppd", Head() + Duplex());
    std::string const bad = Write("b.ppd", "*PPD-Adobe: \"4.2\"\n");
    EXPECT_EQ(json::array(), RunForJSON({"inspect", bad, "--rebuilt"})["controls"]);
    json const foreign = RunForJSON({"inspect", good, "--rebuilt", "--accept", "OTHER"});
    EXPECT_EQ(false, foreign["validPrinterName"]);
    EXPECT_EQ(json::array(), foreign["groups"]);
}

TEST_F(InspectCommandTest, WhatCantBeOpenedIsAFailureAndWhatCantBeReadAnError) {
    std::string const file = Write("empty.ppd", "");
    for (std::string const& path : {PathOf("missing.ppd"), PathOf(""), file + "/below.ppd"}) {
        Result const result = Run({"inspect", path});
        EXPECT_EQ(1, result.status) << path;
        EXPECT_EQ("", result.out);
        EXPECT_TRUE(result.err.starts_with("zubprint: can't open " + path + ": ")) << result.err;
        EXPECT_EQ(1, CountLines(result.err));
    }
    json const empty = RunForJSON({"inspect", file});
    EXPECT_EQ(false, empty["valid"]);
    EXPECT_EQ(json::parse(R"({"code": 18, "fatal": true, "keyword": null})"),
              empty["errors"].at(0));
}

TEST_F(InspectCommandTest, TheProcessIsLeftAsItWas) {
    std::string const path = Write("a.ppd", Head() + Duplex());
    ZUBPPD::SetExtensions(kExtensionsLevel1);
    RunForJSON({"inspect", path, "--extensions", "2"});
    EXPECT_EQ(kExtensionsLevel1, ZUBPPD::GetExtensions());
    ZUBPPD::SetExtensions(kExtensionsAll);

    ParsedPPD const ppd(path, kParseAll, {});
    DisplayOptions::Options(kDisplayOrphans);
    std::ostringstream out;
    TreeJson::Write(ppd.Get(), out);
    EXPECT_EQ(1U, Json::parse(out.str())["controls"].size());
    EXPECT_EQ(kDisplayOrphans, DisplayOptions::Options());
}

}  // namespace
