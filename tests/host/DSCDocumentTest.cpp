// SPDX-License-Identifier: Apache-2.0
#include "host/DSCDocument.h"

#include <filesystem>

#include "tests/host/HostFixture.h"

namespace {

using Pairs = std::vector<JobDataFile::Pair>;

// One pair for each place, and two features in their order.
Pairs const kJob = {{-9, "*Duplex"}, {81, "A\n"},      {30, "%%note\n"},
                    {81, "B"},       {501, "%%ZUB\n"}, {72, "M\n"},
                    {504, "%%N\n"},  {73, "T\n"},      {900, "/a/path"}};
std::string const kHeader = "%%note\n%%ZUB\n%%N\n";
std::string const kSetup = "A\nB\nM\n";

class DSCDocumentTest : public HostFixture {
  protected:
    std::string Merge(std::string const& document, Pairs const& pairs = kJob) const {
        DSCDocument read;
        Outcome const outcome = read.Read(Write("document.ps", document));
        EXPECT_TRUE(outcome.Ok()) << outcome.message;
        JobText const merged = read.Merge(pairs);
        return {merged.begin(), merged.end()};
    }
};

TEST_F(DSCDocumentTest, EveryPairGoesToItsSection) {
    EXPECT_EQ(Merge("%!PS-Adobe-3.0\n%%Title: x\n%%EndComments\n%%BeginProlog\n/a 1 def\n"
                    "%%EndProlog\n%%BeginSetup\nb\n%%EndSetup\n%%Page: 1 1\nshowpage\n%%Trailer\n"
                    "%%EOF\n"),
              "%!PS-Adobe-3.0\n%%Title: x\n" + kHeader +
                  "%%EndComments\n%%BeginProlog\n/a 1 def\n%%EndProlog\n%%BeginSetup\nb\n" +
                  kSetup + "%%EndSetup\n%%Page: 1 1\nshowpage\nT\n%%Trailer\n%%EOF\n");
}

TEST_F(DSCDocumentTest, SectionsThatAreMissingAreMade) {
    struct Case {
        char const* document;
        std::string merged;
    };
    std::string const made = "%%BeginSetup\n" + kSetup + "%%EndSetup\n";
    std::string const comments = kHeader + "%%EndComments\n";
    for (Case const& row : std::vector<Case>{
             {"%!PS-Adobe-3.0\nshowpage\n",
              "%!PS-Adobe-3.0\n" + comments + made + "showpage\nT\n%%Trailer\n"},
             {"%!PS-Adobe-3.0\n%%EndComments\n/a 1 def\n%%EndProlog\nshowpage\n%%EOF",
              "%!PS-Adobe-3.0\n" + comments + "/a 1 def\n%%EndProlog\n" + made +
                  "showpage\nT\n%%Trailer\n%%EOF"},
             {"%!PS-Adobe-3.0\n%%Pages: 1\n/a 1 def\n%%Page: 1 1\nshowpage\n",
              "%!PS-Adobe-3.0\n%%Pages: 1\n" + comments + "/a 1 def\n" + made +
                  "%%Page: 1 1\nshowpage\nT\n%%Trailer\n"},
             {"%!PS-Adobe-3.0\n%%BeginSetup\na\n%%Page: 1 1\nshowpage",
              "%!PS-Adobe-3.0\n" + comments + "%%BeginSetup\na\n" + kSetup +
                  "%%EndSetup\n%%Page: 1 1\nshowpage\nT\n%%Trailer\n"},
             {"%!PS-Adobe-3.0\n%%Pages: 0\n%%Trailer\n%%EOF\n",
              "%!PS-Adobe-3.0\n%%Pages: 0\n" + comments + made + "T\n%%Trailer\n%%EOF\n"},
             {"%!PS-Adobe-3.0\n%%Page: 1 1\n%%BeginSetup\n%%EndSetup\n",
              "%!PS-Adobe-3.0\n" + comments + made +
                  "%%Page: 1 1\n%%BeginSetup\n%%EndSetup\nT\n%%Trailer\n"},
             {"%!PS-Adobe-3.0", "%!PS-Adobe-3.0\n" + comments + made + "T\n%%Trailer\n"},
         }) {
        EXPECT_EQ(Merge(row.document), row.merged) << row.document;
    }
}

TEST_F(DSCDocumentTest, LinesMayEndAnyWayAndBytesStay) {
    std::string const head = "%!PS-Adobe-3.0\r%%EndComments\r%%BeginSetup\r\n";
    std::string const binary("\0\xFF%\r", 4);
    std::string const tail = "%%EndSetup\r\n" + binary + "%%Trailer\r";
    EXPECT_EQ(Merge(head + tail), "%!PS-Adobe-3.0\r" + kHeader + "%%EndComments\r%%BeginSetup\r\n" +
                                      kSetup + "%%EndSetup\r\n" + binary + "T\n%%Trailer\r");
    EXPECT_EQ(Merge("\x04%!PS-Adobe-3.0\n%%EndComments\n%%Trailer\n", {}),
              "\x04%!PS-Adobe-3.0\n%%EndComments\n%%BeginSetup\n%%EndSetup\n%%Trailer\n");
}

TEST_F(DSCDocumentTest, WhatLeadsIntoPostScriptAndOutOfItStaysAround) {
    std::string const exit = "\x1b%-12345X";
    std::string const pjl =
        exit + "@PJL JOB\r\n\n@PJL SET COPIES=2\n@PJL ENTER LANGUAGE = POSTSCRIPT\n";
    std::string const document = "%!PS-Adobe-3.0\n%%EndComments\n%%BeginSetup\n%%EndSetup\n";
    std::string const data = "%%BeginData: 1 Binary Lines\n" + exit + "\n%%EndData\n";
    std::string const other = exit + "@PJL EOJ\n" + exit + "%!PS-Adobe-3.0\n%%Trailer\n" + exit;
    struct Case {
        std::string ahead;
        std::string text;
        std::string behind;
    };
    for (Case const& row : std::vector<Case>{
             {pjl, data + "showpage\n", "\x04" + other},
             {exit, "showpage\n", exit + "@PJL EOJ\n" + exit},
             {"\x04" + exit, "showpage\n", "%%EOF\n\x04" + exit},
             {"", "showpage\n", "\x04\r\n\x04"},
             {"", "(\x04) show\n", "\x04"},
         }) {
        EXPECT_EQ(Merge(row.ahead + document + row.text + row.behind, {{73, "T\n"}}),
                  row.ahead + document + row.text + "T\n%%Trailer\n" + row.behind);
    }
    // Nothing is left between header and exit.
    EXPECT_EQ(Merge("%!PS-Adobe-3.0\x04" + exit, {{73, "T\n"}}),
              "%!PS-Adobe-3.0\n%%EndComments\n%%BeginSetup\n%%EndSetup\nT\n%%Trailer\n\x04" + exit);
}

TEST_F(DSCDocumentTest, FeaturesThatTheJobTakesOverLeaveTheSetup) {
    auto const feature = [](std::string const& name) {
        return "%%BeginFeature: " + name + "\ncode\n%%EndFeature\n";
    };
    std::string const head = "%!PS-Adobe-3.0\n%%EndComments\n";
    std::string const kept = feature("*PageSize A4") + feature("*DuplexMode On");
    Pairs const job = {{-9, "*Duplex"}, {-9, "*Tray"}};
    EXPECT_EQ(Merge(head + feature("*Duplex On") + "%%BeginSetup\n" + feature("*Duplex On") + kept +
                        feature("*Tray") + "%%EndSetup\n%%Page: 1 1\n" + feature("*Duplex On") +
                        "%%Trailer\n",
                    job),
              head + feature("*Duplex On") + "%%BeginSetup\n" + kept + "%%EndSetup\n%%Page: 1 1\n" +
                  feature("*Duplex On") + "%%Trailer\n");
    // So do the lines that ask for one.
    std::string const asked = "%%IncludeFeature: *Duplex On\n";
    std::string const others = "%%IncludeFeature: *PageSize A4\n%%IncludeFeature: *DuplexMode On\n";
    EXPECT_EQ(
        Merge(head + "%%BeginSetup\n" + asked + others + asked + "%%EndSetup\n%%Page: 1 1\n" +
                  asked + "%%Trailer\n",
              job),
        head + "%%BeginSetup\n" + others + "%%EndSetup\n%%Page: 1 1\n" + asked + "%%Trailer\n");
}

TEST_F(DSCDocumentTest, AFeatureThatReachesOverTheSetupStays) {
    std::string const head = "%!PS-Adobe-3.0\n%%EndComments\n%%BeginSetup\n";
    std::string const open = "%%BeginFeature: *Duplex On\n";
    std::string const rest = "%%EndFeature\n%%Page: 1 1\nshowpage\n%%Trailer\n%%EOF\n";
    Pairs const job = {{-9, "*Duplex"}, {81, "X\n"}};
    EXPECT_EQ(Merge(head + open + "%%EndSetup\n" + rest, job),
              head + open + "X\n%%EndSetup\n" + rest);
    std::string const inTrailer = "%%Trailer\n%%EndFeature\n%%EndSetup\n%%EOF\n";
    EXPECT_EQ(Merge(head + open + inTrailer, {{-9, "*Duplex"}, {73, "T\n"}}),
              head + open + "%%EndSetup\nT\n" + inTrailer);
    std::string const inEnd = "%%EOF\n%%EndFeature\n%%EndSetup\n%%Page: 1 1\nshowpage\n";
    EXPECT_EQ(Merge(head + open + inEnd, job), head + open + "X\n%%EndSetup\n%%Trailer\n" + inEnd);
}

TEST_F(DSCDocumentTest, EmbeddedDocumentsAndDataAreNotLookedInto) {
    std::string const inner =
        "%%EndComments\n%%BeginSetup\n%%EndSetup\n%%Page: 1 1\n%%Trailer\n%%EOF\n";
    std::string const lines =
        "%%BeginData: 3 ASCII Lines\n%%Trailer\n%%EndSetup\n%%EOF\n%%EndData\n";
    std::string const bytes = "%%BeginBinary: 10\n%%Trailer\n%%EndBinary\n";
    std::string const open = "%%BeginData:\n%%Trailer\n%%EndData\n";
    std::string const document = "%%BeginDocument: a\n%!PS-Adobe-3.0\n" + inner +
                                 "%%BeginDocument: b\n" + inner + "%%EndDocument\n" + inner +
                                 "%%EndDocument\n";
    std::string const head = "%!PS-Adobe-3.0\n%%EndComments\n";
    std::string const body = document + lines + bytes + open;
    EXPECT_EQ(Merge(head + "%%BeginProlog\n" + body + "%%EndProlog\n%%BeginSetup\n" + body +
                        "%%EndSetup\n%%Trailer\n",
                    {{81, "X"}, {73, "T"}}),
              head + "%%BeginProlog\n" + body + "%%EndProlog\n%%BeginSetup\n" + body +
                  "X\n%%EndSetup\nT\n%%Trailer\n");
}

TEST_F(DSCDocumentTest, WhatIsNoSuchDocumentIsRefused) {
    struct Case {
        char const* bytes;
        char const* reason;
    };
    std::string const ppd = Write(UniqueName("dsc-test") + ".ppd", Head() + Duplex());
    for (Case const& row :
         {Case{"", "no PostScript"}, Case{"%PDF-1.4\n", "no PostScript"},
          Case{"%!\nshowpage\n", "conventions"}, Case{"%!PS-Adobe3\n", "conventions"}}) {
        std::string const document = Write("document.ps", row.bytes);
        Result const result = Run({"print", "--ppd", ppd, document, "-o", PathOf("out.ps")});
        EXPECT_EQ(1, result.status) << row.bytes;
        EXPECT_EQ("", result.out);
        EXPECT_EQ(1, CountLines(result.err)) << result.err;
        EXPECT_NE(result.err.find(row.reason), std::string::npos) << result.err;
        EXPECT_NE(result.err.find(document), std::string::npos) << result.err;
        EXPECT_FALSE(std::filesystem::exists(PathOf("out.ps")));
    }
}

}  // namespace
