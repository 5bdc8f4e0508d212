// SPDX-License-Identifier: Apache-2.0
#include "host/ListCommand.h"

#include "tests/PPDLines.h"
#include "tests/host/HostFixture.h"

using nlohmann::json;

namespace {

class ListCommandTest : public HostFixture {
  protected:
    std::string const mPPD = Write(
        "list.ppd", Head() + Duplex("Evil\x1B[2J") +
                        "*%ZUBFlags *ZUScale: Dynamic\n*%ZUBGroup *ZUScale: Finish/F\n"
                        "*%ZUBRange *ZUScale/Scale \xD6\x9B: (25;400;5;100) \"<*ZUScale>\"\n" +
                        PPDLines::Popup("*Loose", {"l1", "l2"}) +
                        "*%ZUBGroupName Veil/Secret: False\n"
                        "*%ZUBParent Veil/Pane1: False|Rolldown\n"
                        "*%ZUBFlags *Veiled: Dynamic\n*%ZUBGroup *Veiled: Veil/Secret\n"
                        "*OpenUI *Veiled/Veiled: Boolean\n*DefaultVeiled: True\n*CloseUI\n" +
                        "*UIConstraints: *Duplex On *Loose l1\n");

    static bool Holds(Result const& result, std::string const& text) {
        return result.out.find(text) != std::string::npos;
    }
};

TEST_F(ListCommandTest, ThePageShowsWhatIsChosenAndWhyOtherChoicesCantBeMade) {
    Result const page = Run({"list", mPPD});
    EXPECT_EQ(0, page.status) << page.err;
    for (char const* line : {"\nLayout\n  Finishing\n    Two Sided  *Duplex\n", "\n      * None",
                             " Off\n", "\n      x On", "  not with Option: O\n",
                             "\n    Scale Ö?  *ZUScale: 100 (25 to 400)\n"}) {
        EXPECT_TRUE(Holds(page, line)) << line << page.out;
    }
    EXPECT_FALSE(Holds(page, "*Loose"));
    Result const all = Run({"list", mPPD, "--all"});
    EXPECT_TRUE(Holds(all, "Outside of all pages\n    Option  *Loose\n"));
    // A hidden group stays where it is behind a choice that had to be explained.
    EXPECT_TRUE(Holds(all, "  Secret\n    Veiled  *Veiled\n")) << all.out;
    EXPECT_TRUE(
        Holds(Run({"list", mPPD, "--set", "*Duplex=On"}), "* On  stands against Option: O"));
}

TEST_F(ListCommandTest, NothingOfAPPDReachesTheTerminalAsACommand) {
    EXPECT_TRUE(
        Run({"fix", mPPD, "*Duplex=Evil\x1B[2J"}).out.ends_with("$'*Duplex=Evil\\033[2J'\n"));
    for (std::vector<std::string> const& arguments :
         {std::vector<std::string>{"list", mPPD, "--all"},
          {"why", mPPD, "*Duplex=Evil\x1B[2J"},
          {"fix", mPPD, "*Duplex=Evil\x1B[2J"},
          {"why", mPPD, "*Duplex=\x1B[2K"}}) {
        Result const result = Run(arguments);
        EXPECT_EQ(std::string::npos, (result.out + result.err).find('\x1B')) << result.out;
        EXPECT_EQ(std::string::npos, (result.out + result.err).find("\xC2\x9B")) << result.out;
    }
}

TEST_F(ListCommandTest, AWordNarrowsThePageAndJsonHasItWhole) {
    Result const scale = Run({"list", mPPD, "scALE"});
    EXPECT_TRUE(Holds(scale, "*ZUScale"));
    EXPECT_FALSE(Holds(scale, "*Duplex"));
    EXPECT_TRUE(Holds(Run({"list", mPPD, "tumbled"}), "*Duplex"));  // the name of a choice
    EXPECT_TRUE(Holds(Run({"list", mPPD, "zzz"}), "Nothing to show for zzz; --all"));
    json const list = RunForJSON({"list", mPPD, "--json"});
    json const& duplex = list["groups"][0]["options"][0];
    EXPECT_EQ((json{{"keyword", "On"},
                    {"name", "On"},
                    {"selected", false},
                    {"constrained", true},
                    {"blockers", json::array({{"*Loose", "l1"}})}}),
              duplex["choices"][1]);
    EXPECT_EQ("None", duplex["value"]);
}

TEST_F(ListCommandTest, AnOrdinaryPPDIsToldToBeAdopted) {
    Result const page = Run({"list", Write("plain.ppd", "*PPD-Adobe: \"4.3\"\n")});
    EXPECT_EQ(0, page.status);
    EXPECT_TRUE(Holds(page, "zubprint adopt")) << page.out;
}

}  // namespace
