// SPDX-License-Identifier: Apache-2.0
#include "host/RuleCommands.h"

#include <string>
#include <vector>

#include "tests/PPDLines.h"
#include "tests/host/HostFixture.h"

using nlohmann::json;

namespace {

// Questions about the rules of a PPD, put to the command.
class RuleCommandsTest : public HostFixture {
  protected:
    // *A at a2, *B at b1, *C off, and a rule.
    std::string const mPPD =
        Write("rules.ppd", Head() + PPDLines::Popup("*A", {"a2", "a1"}) +
                               PPDLines::Popup("*B", {"b1", "b2", "b3"}) + PPDLines::Boolean("*C") +
                               "*UIConstraints: *A a1 *B b1\n");
};

TEST_F(RuleCommandsTest, UnknownTextsAndRefusedFilesAreToldInOneLine) {
    struct Case {
        std::vector<std::string> arguments;
        int status;
    };
    std::string const refused = Write("refused.ppd", "*PPD-Adobe: \"4.2\"\n");
    for (Case const& row :
         {Case{{"solve", refused}, 3}, Case{{"constraints", refused}, 3},
          Case{{"solve", mPPD, "*A=x\ny"}, 1}, Case{{"solve", mPPD, "--lock", "*A=x"}, 1},
          Case{{"solve", mPPD + ".missing"}, 1}, Case{{"constraints", mPPD, "--set", "*D=x"}, 1}}) {
        Result const result = Run(row.arguments);
        EXPECT_EQ(result.status, row.status) << json(row.arguments);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(CountLines(result.err), 1) << result.err;
    }
}

}  // namespace
