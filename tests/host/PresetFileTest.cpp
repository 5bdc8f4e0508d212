// SPDX-License-Identifier: Apache-2.0
#include "host/PresetFile.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>

#include "tests/PPDLines.h"
#include "tests/host/HostFixture.h"

using nlohmann::json;

namespace {

// Choices that print makes by itself, and what it leaves behind.
class PresetFileTest : public HostFixture {
  protected:
    std::string const mName = UniqueName("ZUB");
    std::string const mPPD =
        Write("preset.ppd", Head(mName) + Duplex() + PPDLines::Popup("*Loose", {"l1", "l2"}) +
                                "*UIConstraints: *Duplex On *Loose l1\n");

    json ReadJSON(std::string const& name) const {
        std::ifstream file(PathOf(name));
        return json::parse(std::string(std::istreambuf_iterator<char>(file), {}));
    }
    static bool Holds(std::string const& text, std::string const& part) {
        return text.find(part) != std::string::npos;
    }
    std::set<std::string> FilesInFolder() const {
        std::set<std::string> names;
        for (auto const& entry : std::filesystem::directory_iterator(PathOf(""))) {
            names.insert(entry.path().filename());
        }
        return names;
    }
};

TEST_F(PresetFileTest, FixMakesWhatAChoiceNeedsAndSaysSo) {
    Result const bare =
        Run({"print", "--dry-run", "--strict", "--ppd", mPPD, "--set", "Duplex=On"});
    EXPECT_EQ(1, bare.status);
    Result const fixed =
        Run({"print", "--dry-run", "--strict", "--fix", "--ppd", mPPD, "--set", "Duplex=On"});
    EXPECT_EQ(0, fixed.status) << fixed.err;
    EXPECT_EQ("zubprint: fixed: *Loose=l2 instead of l1, for *Duplex=On\n", fixed.err);
    EXPECT_TRUE(Holds(fixed.out, "%%BeginFeature: *Loose l2")) << fixed.out;
    // A choice of the user's own isn't changed for another.
    Result const both = Run({"print", "--dry-run", "--strict", "--fix", "--ppd", mPPD, "--set",
                             "Duplex=On", "--set", "Loose=l1"});
    EXPECT_EQ(1, both.status);
    EXPECT_TRUE(Holds(both.err, "stands against")) << both.err;
}

TEST_F(PresetFileTest, ADryRunPrintsTheJobAndLeavesNothing) {
    std::string const job = UniqueName("job");
    std::vector<std::string> const arguments = {
        "print",         "--dry-run", "--ppd",          mPPD,    "--tickets",
        PathOf("t"),     "--address", "10.0.0.1",       "--set", "*Duplex=On",
        "--save-preset", PathOf("p"), "--process-name", job};
    Result const text = Run(arguments);
    EXPECT_EQ(0, text.status) << text.err;
    EXPECT_TRUE(Holds(text.out, "%%BeginFeature: *Duplex On\ntrue setduplex\n")) << text.out;
    // The notes of a run lie there too.
    EXPECT_EQ((std::set<std::string>{"preset.ppd", "zubprint"}), FilesInFolder());
    EXPECT_TRUE(JobsWith(job).empty());

    std::string const document =
        Write("document.ps", "%!PS-Adobe-3.0\n%%EndComments\n%%BeginSetup\n%%EndSetup\nshowpage\n");
    Result const merged =
        Run({"print", "--dry-run", "--ppd", mPPD, document, "-o", PathOf("o.ps")});
    EXPECT_TRUE(merged.out.starts_with("%!PS-Adobe-3.0\n")) << merged.err;
    EXPECT_TRUE(Holds(merged.out, "%%BeginFeature: *Duplex None"));
    EXPECT_FALSE(std::filesystem::exists(PathOf("o.ps")));
}

TEST_F(PresetFileTest, AnotherPrinterTakesWhatItKnowsByKeywordOrName) {
    std::string const saved = PathOf("preset.json");
    std::string const job = UniqueName("job");
    Result const made = Run({"print", "--ppd", mPPD, "--set", "*Duplex=Tumble", "--save-preset",
                             saved, "--process-name", job});
    EXPECT_EQ(0, made.status) << made.err;
    JobsWith(job);  // takes its file away
    EXPECT_EQ(json::array({{{"keyword", "*Duplex"},
                            {"name", "Two Sided"},
                            {"value", "Tumble"},
                            {"valueName", "Tumbled"},
                            {"byDefault", false}}}),
              ReadJSON("preset.json")["choices"]);

    std::string const other = Write(
        "other.ppd", Head(UniqueName("ZUB")) +
                         "*%ZUBFlags *Sides: Dynamic\n*%ZUBGroup *Sides: Finish/F\n"
                         "*OpenUI *Sides/Two Sided: PickOne\n*DefaultSides: 1\n*Sides 1/One: \"\"\n"
                         "*Sides 2/Tumbled: \"\"\n*CloseUI\n");
    Result const taken = Run({"print", "--dry-run", "--ppd", other, "--preset", saved});
    EXPECT_EQ(0, taken.status);
    EXPECT_TRUE(Holds(taken.out, "%%BeginFeature: *Sides 2")) << taken.out << taken.err;
    EXPECT_TRUE(Holds(taken.err, "(*Duplex=Tumble) is taken by its name as *Sides=2")) << taken.err;
    // What --set says wins.
    Result const set =
        Run({"print", "--dry-run", "--ppd", other, "--preset", saved, "--set", "Sides=1"});
    EXPECT_TRUE(Holds(set.out, "%%BeginFeature: *Sides 1")) << set.out;

    std::string const third = Write("third.ppd", Head(UniqueName("ZUB")) + Duplex("Third"));
    std::vector<std::string> arguments = {"print", "--dry-run", "--ppd", third, "--preset", saved};
    Result const missed = Run(arguments);
    EXPECT_EQ(0, missed.status);
    EXPECT_TRUE(Holds(missed.err, "as *Duplex=Third")) << missed.err;  // that is Tumbled too
    std::string const fourth = Write("fourth.ppd", Head(UniqueName("ZUB")) +
                                                       "*%ZUBFlags *Duplex: Dynamic\n"
                                                       "*%ZUBGroup *Duplex: Finish/F\n"
                                                       "*OpenUI *Duplex/Sides: Boolean\n"
                                                       "*DefaultDuplex: True\n*CloseUI\n");
    arguments[3] = fourth;
    Result const none = Run(arguments);
    EXPECT_TRUE(Holds(none.err,
                      "not taken: Two Sided: Tumbled (*Duplex=Tumble), this printer's "
                      "Sides has no such choice"))
        << none.err;
    arguments.emplace_back("--strict");
    EXPECT_EQ(1, Run(arguments).status);
}

TEST_F(PresetFileTest, WhatIsNoPresetIsAFailureThatSaysHowToGetOne) {
    std::string const deep(20000, '[');
    struct {
        std::string text;
        char const* told;
    } const cases[] = {
        {"", "--save-preset writes one"},
        {"{", "--save-preset writes one"},
        {"[]", "--save-preset writes one"},
        {deep, "--save-preset writes one"},
        {"{\"preset\": 1, \"choices\": [" + deep, "--save-preset writes one"},
        {"{\"preset\": 2, \"choices\": []}", "another form"},
        {"{\"preset\": 1}", "another form"},
        {R"({"preset": 1, "choices": [{"keyword": "Duplex", "value": "On"}, 1]})",
         "choice 2 has no"},
        {R"({"preset": 1, "choices": [{"keyword": 2}, {"value": 1}]})", "choice 2 has no keyword"},
    };
    for (auto const& row : cases) {
        Result const result =
            Run({"print", "--dry-run", "--ppd", mPPD, "--preset", Write("bad.json", row.text)});
        EXPECT_EQ(1, result.status) << row.text.substr(0, 80);
        EXPECT_TRUE(Holds(result.err, row.told)) << result.err;
    }
}

TEST_F(PresetFileTest, ItIsSavedOverNothingThatIsReadOrWritten) {
    std::string const document = Write("document.ps", "%!PS-Adobe-3.0\nshowpage\n");
    for (std::string const& path :
         {mPPD, document, PathOf("t"), PathOf("o.ps"), std::string("-"), std::string()}) {
        EXPECT_EQ(2, Run({"print", "--ppd", mPPD, document, "-o", PathOf("o.ps"), "--tickets",
                          PathOf("t"), "--save-preset", path})
                         .status)
            << path;
    }
    EXPECT_EQ((std::set<std::string>{"preset.ppd", "document.ps", "zubprint"}), FilesInFolder());
}

}  // namespace
