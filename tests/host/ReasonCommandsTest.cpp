// SPDX-License-Identifier: Apache-2.0
#include "host/ReasonCommands.h"

#include <string>
#include <vector>

#include "tests/PPDLines.h"
#include "tests/host/HostFixture.h"

using nlohmann::json;

namespace {

// Questions about choices that rules forbid.
class ReasonCommandsTest : public HostFixture {
  protected:
    std::string Rules(std::string const& rules) const {
        return Write("reasons.ppd", Head() + PPDLines::Popup("*A", {"a1", "a2"}) +
                                        PPDLines::Popup("*B", {"b1", "b2"}) +
                                        PPDLines::Popup("*C", {"c1", "c2", "c3"}) + rules);
    }
    // The rules of these files begin in the line of this number.
    static constexpr int kFirst = 31;

    static json Row(std::string const& key, std::string const& option, int line,
                    std::string const& rule, json forcedBy) {
        return {{"pair", {key, option}}, {"line", line}, {"rule", rule}, {"forcedBy", forcedBy}};
    }
};

TEST_F(ReasonCommandsTest, EveryRuleIsNamedWithItsLineAndWhatForcesTheBlocker) {
    std::string const ppd = Rules(
        "*UIConstraints: *A a2 *B b1\n"
        "*% between\n"
        "*UIConstraints: *B b2 *C\n"
        "*UIConstraints: *A a2 *C c1\n");
    json const forced = Row("*C", "c1", kFirst + 2, "*UIConstraints: *B b2 *C", json::array());
    json const expected = {
        Row("*B", "b1", kFirst, "*UIConstraints: *A a2 *B b1", json::array({forced})),
        Row("*C", "c1", kFirst + 3, "*UIConstraints: *A a2 *C c1", json::array())};
    json const answer = RunForJSON({"why", ppd, "--json", "A=a2"});
    EXPECT_EQ(expected, answer["blockers"]) << answer.dump(1);
    EXPECT_EQ(true, answer["constrained"]);

    Result const text = Run({"why", ppd, "*A=a2"});
    for (char const* part : {"*A=a2) can't be chosen now", "the only choice left there"}) {
        EXPECT_NE(std::string::npos, text.out.find(part)) << text.out;
    }
    EXPECT_NE(std::string::npos, text.out.find(ppd + ":" + std::to_string(kFirst + 2) + ": *UI"));
}

TEST_F(ReasonCommandsTest, ARuleInTheOtherDirectionGreysNothingButIsToldAndFixed) {
    std::string const ppd = Rules("*UIConstraints: *B b1 *A a2\n");
    json const answer = RunForJSON({"why", ppd, "--json", "*A=a2"});
    EXPECT_EQ(false, answer["constrained"]);
    EXPECT_EQ((json{"*B", "b1"}), answer["rulesOut"][0]["pair"]);
    json const fix = RunForJSON({"fix", ppd, "--json", "*A=a2"});
    EXPECT_EQ(json::parse(R"([["*B", "b1", "b2"]])"), fix["changes"]);
}

TEST_F(ReasonCommandsTest, AFixIsTheSmallestAndItsLastLineMakesIt) {
    // The solver's own first proposal changes *C although *B alone is enough.
    std::string const ppd = Rules(
        "*UIConstraints: *A a2 *B b1\n"
        "*UIConstraints: *B b2 *C c3\n"
        "*UIConstraints: *C c3 *B b2\n");
    EXPECT_EQ(json::parse(R"({"possible": true, "changes": [["*B", "b1", "b2"]]})"),
              RunForJSON({"fix", ppd, "--json", "*A=a2"}));
    Result const text = Run({"fix", ppd, "*A=a2"});
    EXPECT_TRUE(text.out.ends_with("\n--set '*B=b2' --set '*A=a2'\n")) << text.out;
    EXPECT_EQ(json({{"possible", true}, {"changes", json::array()}}),
              RunForJSON({"fix", ppd, "--json", "--set", "*B=b2", "*A=a2"}));
}

TEST_F(ReasonCommandsTest, WhatCantBeDoneSaysWhyWithStatus1) {
    std::string const ppd = Rules("*UIConstraints: *A a2 *B b1\n*UIConstraints: *A a2 *B b2\n");
    Result const json = Run({"fix", ppd, "--json", "*A=a2"});
    EXPECT_EQ(1, json.status);
    EXPECT_EQ(nlohmann::json({{"possible", false}, {"changes", nlohmann::json::array()}}),
              nlohmann::json::parse(json.out));
    Result const text = Run({"fix", ppd, "*A=a2"});
    EXPECT_EQ(1, text.status);
    for (char const* rule : {"*UIConstraints: *A a2 *B b1", "*UIConstraints: *A a2 *B b2"}) {
        EXPECT_NE(std::string::npos, text.out.find(rule)) << text.out;
    }
    EXPECT_EQ(1, CountLines(text.err));
}

TEST_F(ReasonCommandsTest, APrintSizeThatFollowsThePageSizeCountsAsThatSize) {
    std::string const ppd =
        Write("size.ppd", Head() + PPDLines::Popup("*PageSize", {"A4", "A3"}) +
                              PPDLines::Popup("*ZUPrintSize", {"SameAsPageSize", "A4", "A3"}) +
                              PPDLines::Popup("*D", {"d1", "d2"}) +
                              "*UIConstraints: *D d2 *ZUPrintSize A4\n"
                              "*UIConstraints: *D d2 *PageSize A3\n");
    json const answer = RunForJSON({"why", ppd, "--json", "*D=d2"});
    EXPECT_EQ((json{"*ZUPrintSize", "A4"}), answer["blockers"][0]["pair"]);
    json const fix = RunForJSON({"fix", ppd, "--json", "*D=d2"});
    EXPECT_EQ(json::parse(R"([["*ZUPrintSize", "SameAsPageSize", "A3"]])"), fix["changes"]);
}

TEST_F(ReasonCommandsTest, AChainAsLongAsThePPDIsCutAndSaidToBe) {
    std::string lines = Head();
    constexpr int kLength = 3000;
    for (int index = 0; index < kLength; ++index) {
        lines += PPDLines::Popup("*K" + std::to_string(index), {"a", "b"});
    }
    for (int index = 0; index + 1 < kLength; ++index) {
        lines += "*UIConstraints: *K" + std::to_string(index) + " b *K" +
                 std::to_string(index + 1) + " a\n";
    }
    std::string const ppd = Write("chain.ppd", lines);
    Result const text = Run({"why", ppd, "K0=b"});
    EXPECT_LT(text.out.size(), 10000U);
    EXPECT_NE(std::string::npos, text.out.find("may have reasons of its own")) << text.out;
    EXPECT_NE(std::string::npos, Run({"why", ppd, "K0=b", "--json"}).out.find("\"cut\": true"));
}

TEST_F(ReasonCommandsTest, NearMissesSayWhatMayHaveBeenMeant) {
    std::string const ppd = Write("near.ppd", Head() + Duplex());
    std::string const plain = Write("plain.ppd", "*PPD-Adobe: \"4.3\"\n");
    std::string const range =
        Write("range.ppd", Head() +
                               "*%ZUBFlags *ZUScale: Dynamic\n*%ZUBGroup *ZUScale: Finish/F\n"
                               "*%ZUBRange *ZUScale/Scale: (25;400;5;100) \"<*ZUScale>\"\n");
    struct Case {
        std::vector<std::string> arguments;
        int status;
        char const* hint;
    };
    for (Case const& row : {
             Case{{"why", ppd, "Dupelx=On"}, 1, "did you mean *Duplex?"},
             Case{{"why", ppd, "two sided=On"}, 1, "did you mean *Duplex?"},
             Case{{"fix", ppd, "duplex=On"}, 1, "did you mean *Duplex?"},
             Case{{"why", ppd, "Duplex=tumbled"}, 1, "did you mean Tumble?"},
             Case{{"why", ppd, "Duplex=xyz"}, 1, "it takes None, On or Tumble"},
             Case{{"why", ppd, "Zoom=1"}, 1, "zubprint list"},
             Case{{"why", range, "ZUScale=500"}, 1, "it takes 25 to 400"},
             Case{{"fix", range, "ZUScale=abc"}, 1, "it takes 25 to 400"},
             Case{{"list", ppd, "--all", "x", "y"}, 2, "zubprint list PPD [WORD]"},
             Case{{ppd, "list"}, 2, "the command comes first: zubprint list"},
             Case{{"why", ppd}, 2, "zubprint why PPD KEY=OPTION"},
             Case{{"print", "--ppd", ppd, "--copies", "x", "-oout"}, 2, "--copies"},
             Case{{"inspect", ppd, "--set", "Dplex=On"}, 1, "did you mean *Duplex?"},
             Case{{"inspect", ppd, "--set", "Duplex=on"}, 0, "did you mean On"},
             Case{{"solve", ppd, "Duplx=On"}, 1, "did you mean *Duplex?"},
             Case{{"why", plain, "*Duplex=On"}, 1, "zubprint adopt"},
             Case{{"why", Write("no.ppd", "no\n"), "*A=b"}, 3, "zubprint lint"},
             Case{{"inspct", ppd}, 2, "did you mean inspect?"},
             Case{{"list", ppd, "--al"}, 2, "did you mean --all?"},
             Case{{"print", "--ppd", ppd, "--dryrun"}, 2, "did you mean --dry-run?"},
             Case{{"fix", ppd}, 2, "see zubprint fix --help"},
         }) {
        Result const result = Run(row.arguments);
        EXPECT_EQ(row.status, result.status) << json(row.arguments) << result.err;
        EXPECT_NE(std::string::npos, result.err.find(row.hint))
            << json(row.arguments) << result.err;
        EXPECT_EQ(1, CountLines(result.err)) << result.err;
    }
    // The star may be left off.
    json const answer = RunForJSON({"inspect", ppd, "--set", "Duplex=On"});
    EXPECT_EQ("On", answer["controls"][0]["value"]);
    EXPECT_EQ(0, Run({"solve", ppd, "Duplex=On", "--lock", "Duplex=None"}).status);
}

}  // namespace
