// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <vector>

#include "tests/PPDLines.h"
#include "tests/host/HostFixture.h"

using nlohmann::json;

namespace {

// Questions about the rules of a PPD, put to the command.
class SolveCommandTest : public HostFixture {
  protected:
    // *A at a1, *B at b1, *C off, and these rules.
    std::string WriteRules(std::string const& rules) const {
        return Write("rules.ppd", Head() + PPDLines::Popup("*A", {"a2", "a1"}) +
                                      PPDLines::Popup("*B", {"b1", "b2", "b3"}) +
                                      PPDLines::Boolean("*C") + rules);
    }

    static json Pairs(std::vector<std::vector<std::string>> const& pairs) { return pairs; }
};

std::string const kRule = "*UIConstraints: *A a1 *B b1\n";

}  // namespace

TEST_F(SolveCommandTest, ConstraintsListsWhatIsRuledOutNow) {
    std::string const ppd = WriteRules(kRule +
                                       "*UIConstraints: *C *B b2\n"
                                       "*UIConstraints: *B b3 *C False\n"
                                       "*UIConstraints: *B b3 *A a2\n");
    EXPECT_EQ(RunForJSON({"constraints", ppd}),
              json({{"constrained", Pairs({{"*A", "a1"}, {"*B", "b3"}})}}));
    EXPECT_EQ(RunForJSON({"constraints", ppd, "--set", "*B=b2"})["constrained"],
              Pairs({{"*B", "b3"}, {"*C", "True"}}));
    EXPECT_EQ(RunForJSON({"constraints", ppd, "--set", "*C=True", "--set", "*A=a1"})["constrained"],
              Pairs({{"*A", "a1"}}));
    Result const unknown = Run({"constraints", ppd, "--set", "*D=x"});
    EXPECT_EQ(unknown.status, 1);
    EXPECT_EQ(CountLines(unknown.err), 1);
    EXPECT_EQ(unknown.out, "");
}

TEST_F(SolveCommandTest, CustomPaperStandsForThePageSize) {
    std::string const ppd = Write(
        "a.ppd", Head() +
                     PPDLines::Popup("*ZUPrintSize", {"SameAsPageSize", "A4", "CustomPrintSize"}) +
                     PPDLines::Popup("*PageSize", {"A4"}) + PPDLines::Boolean("*C") +
                     "*UIConstraints: *C True *ZUPrintSize CustomPrintSize\n");
    EXPECT_EQ(RunForJSON({"constraints", ppd})["constrained"], json::array());
    EXPECT_EQ(RunForJSON({"constraints", ppd, "--custom-paper"})["constrained"],
              Pairs({{"*C", "True"}}));
}

TEST_F(SolveCommandTest, SolvePrintsTheChangeOrWhatStandsInItsWay) {
    struct Case {
        char const* rules;
        std::vector<std::string> arguments;
        json expected;
    };
    json const none = json::array();
    auto const answer = [](bool solved, json delta, json conflicts, json alternatives) {
        return json{{"solved", solved},
                    {"delta", delta},
                    {"conflicts", conflicts},
                    {"alternatives", alternatives}};
    };
    std::vector<Case> const cases = {
        {"", {}, answer(true, none, none, none)},
        {"", {"*A=a1"}, answer(true, Pairs({{"*A", "a1"}, {"*B", "b3"}}), none, none)},
        {"",
         {"*A=a1", "--test"},
         answer(false, Pairs({{"*A", "a1"}}), Pairs({{"*B", "b1"}}),
                Pairs({{"*B", "b3"}, {"*B", "b2"}}))},
        {"*UIConstraints: *A a1 *B b3\n",
         {"--test", "*A=a1"},
         answer(false, Pairs({{"*A", "a1"}}), Pairs({{"*B", "b1"}}), Pairs({{"*B", "b2"}}))},
        {"", {"*A=a1", "--set", "*B=b2"}, answer(true, Pairs({{"*A", "a1"}}), none, none)},
        {"",
         {"*A=a1", "*B=b2", "--test"},
         answer(true, Pairs({{"*A", "a1"}, {"*B", "b2"}}), none, none)},
        {"",
         {"--lock", "*B", "*A=a1"},
         answer(false, Pairs({{"*A", "a1"}}), Pairs({{"*B", "b1"}}), none)},
        {"",
         {"--lock", "*B=b2", "--lock", "*C=True", "*A=a1"},
         answer(false, Pairs({{"*A", "a1"}}), Pairs({{"*B", "b1"}}), none)},
        {"",
         {"--keep-delta", "*A=a1", "*B=b1"},
         answer(false, Pairs({{"*A", "a1"}, {"*B", "b1"}}), Pairs({{"*B", "b1"}}), none)},
        {"",
         {"*A=a2", "*A=a1", "*B=b2"},
         answer(true, Pairs({{"*A", "a1"}, {"*B", "b2"}}), none, none)},
    };
    for (Case const& row : cases) {
        std::vector<std::string> arguments{"solve", WriteRules(kRule + row.rules)};
        arguments.insert(arguments.end(), row.arguments.begin(), row.arguments.end());
        EXPECT_EQ(RunForJSON(arguments), row.expected) << json(arguments);
    }
}

TEST_F(SolveCommandTest, ALockedKeyWithoutASelectionStandsWithMinusOne) {
    std::string const ppd =
        Write("a.ppd", Head() + PPDLines::Popup("*A", {"a2", "a1"}) +
                           "*%ZUBFlags *B:\n*OpenUI *B/B: PickOne\n*B b1/1: \"\"\n*B b2/2: \"\"\n"
                           "*CloseUI: *B\n" +
                           kRule);
    json const answer = RunForJSON({"solve", ppd, "*A=a1", "*B=b1", "--lock", "*B"});
    EXPECT_EQ(answer["conflicts"], json::parse(R"([["*B", -1]])"));
}

TEST_F(SolveCommandTest, UnknownTextsAndWrongArgumentsAreRefused) {
    struct Case {
        std::vector<std::string> arguments;
        int status;
    };
    std::string const ppd = WriteRules(kRule);
    std::string const refused = Write("refused.ppd", "*PPD-Adobe: \"4.2\"\n");
    for (Case const& row :
         {Case{{"solve", refused}, 3}, Case{{"constraints", refused}, 3},
          Case{{"solve", ppd, "*A=x\ny"}, 1}, Case{{"solve", ppd, "*D=a1"}, 1},
          Case{{"solve", ppd, "*A=x"}, 1}, Case{{"solve", ppd, "*A=a1", "--lock", "*D"}, 1},
          Case{{"solve", ppd, "--lock", "*A=x"}, 1}, Case{{"solve", ppd + ".missing"}, 1},
          Case{{"constraints", ppd + ".missing"}, 1}, Case{{"solve", ppd, "*A"}, 2},
          Case{{"solve", ppd, "=a1"}, 2}, Case{{"solve", ppd, "--lock", ""}, 2}, Case{{"solve"}, 2},
          Case{{"constraints", ppd, "*A=a1"}, 2}}) {
        Result const result = Run(row.arguments);
        EXPECT_EQ(result.status, row.status) << json(row.arguments);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(CountLines(result.err), 1) << result.err;
    }
}
