// SPDX-License-Identifier: Apache-2.0
#include "host/CommandLine.h"

#include <sstream>

#include "host/Zubprint.h"
#include "tests/host/HostFixture.h"

namespace {

class CommandLineTest : public HostFixture {
  protected:
    CommandLine mLine;
    std::ostringstream mOut;
    std::ostringstream mErr;

    void Parse(std::vector<char const*> argv) {
        argv.insert(argv.begin(), "zubprint");
        auto const status = mLine.Parse(static_cast<int>(argv.size()), argv.data(), mOut, mErr);
        ASSERT_FALSE(status.has_value()) << mErr.str();
    }
};

TEST_F(CommandLineTest, EachSetTakesOneArgumentAndSplitsAtTheFirstEqualSign) {
    Parse({"inspect", "--set", "*A=b=c", "--set", "*B=", "file.ppd", "--set=*C=[1,2]"});
    InspectOptions const& options = mLine.Inspect();
    EXPECT_EQ("file.ppd", options.ppd);
    ASSERT_EQ(3U, options.settings.size());
    EXPECT_EQ("*A", options.settings[0].keyword);
    EXPECT_EQ("b=c", options.settings[0].value.View());
    EXPECT_EQ("", options.settings[1].value.View());
    EXPECT_EQ("[1,2]", options.settings[2].value.View());
}

TEST_F(CommandLineTest, DefaultsAreThoseOfAPlainDialog) {
    Parse({"print", "--ppd", "file.ppd"});
    PrintOptions const& options = mLine.Print();
    EXPECT_EQ("Demo", options.printer);
    EXPECT_EQ("ipp://localhost/printers/Demo", options.deviceURI);
    EXPECT_EQ("zubprint", options.processName);
    EXPECT_EQ("com.zub.print", options.bundleID);
    EXPECT_TRUE(options.compiledPPD);
    EXPECT_FALSE(options.makeAndModel.has_value());
    EXPECT_EQ(1, options.commits);
}

TEST_F(CommandLineTest, WrongUsageIsTellingAndRunsNothing) {
    std::string const ppd = Write("a.ppd", Head() + Duplex());
    std::vector<std::vector<std::string>> cases = {
        {},
        {"frobnicate"},
        {"inspect"},
        {"inspect", ppd, ppd},
        {"inspect", ppd, "--parse-options", "4"},
        {"inspect", ppd, "--extensions", "x"},
        {"inspect", ppd, "--set", "*Duplex"},
        {"inspect", ppd, "--set", "=On"},
        {"inspect", ppd, "--set", "*Duplex=\xFF"},
        {"inspect", ppd, "--unknown"},
        {"print"},
        {"print", "--ppd", ppd, "--commits", "0"},
        {"print", "--ppd", ppd, "--device-uri", "nowhere"},
        {"print", "--ppd", ppd, "--printer", "\xC3"},
        {"print", "--ppd", ppd, "--bundle", ""},
        {"print", "--ppd", ppd, "--copies", "0"},
        {"print", "--ppd", ppd, "--orientation", "up"},
        {"print", "--ppd", ppd, "--no-address", "--address", "a"},
        {"solve"},
        {"solve", ppd, "*A"},
        {"solve", ppd, "=a1"},
        {"solve", ppd, "--lock", ""},
        {"constraints", ppd, "*A=a1"},
    };
    for (char const* layout :
         {"2", "2x", "0x1", "2x2x2", "x2", "-1x2", "2x2 ", " 2x2", "+2x2", "2x+2"}) {
        cases.push_back({"print", "--ppd", ppd, "--layout", layout});
    }
    for (std::vector<std::string> const& arguments : cases) {
        SCOPED_TRACE(::testing::PrintToString(arguments));
        Result const result = Run(arguments);
        EXPECT_EQ(2, result.status);
        EXPECT_EQ("", result.out);
        EXPECT_TRUE(result.err.starts_with("zubprint: ")) << result.err;
        EXPECT_EQ(1, CountLines(result.err));
    }
}

TEST_F(CommandLineTest, HelpNamesTheCommandsAndTheirOptions) {
    Result const help = Run({"--help"});
    EXPECT_EQ(0, help.status);
    EXPECT_NE(std::string::npos, help.out.find("inspect"));
    Result const print = Run({"print", "--help"});
    EXPECT_EQ(0, print.status);
    EXPECT_NE(std::string::npos, print.out.find("--pairs"));
    EXPECT_EQ("", print.err);
}

TEST_F(CommandLineTest, OutputThatCantBeWrittenIsAFailure) {
    std::string const ppd = Write("a.ppd", Head() + Duplex());
    char const* const argv[] = {"zubprint", "inspect", ppd.c_str()};
    std::ostringstream out;
    std::ostringstream err;
    out.setstate(std::ios::badbit);
    EXPECT_EQ(1, Zubprint::Run(3, argv, out, err));
    EXPECT_EQ(1, CountLines(err.str())) << err.str();
}

}  // namespace
