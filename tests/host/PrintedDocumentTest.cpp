// SPDX-License-Identifier: Apache-2.0
#include "host/PrintedDocument.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <sstream>

#include "tests/host/HostFixture.h"

namespace fs = std::filesystem;

namespace {

constexpr char const* kDocument = "%!PS-Adobe-3.0\n%%EndComments\nshowpage\n";

class PrintedDocumentTest : public HostFixture {
  protected:
    std::string const mMark = UniqueName("Tumble");
    std::string const mPPD = Write(UniqueName("document-test") + ".ppd", Head() + Duplex(mMark));
    std::string const mDocument = Write("document.ps", kDocument);
    std::string const mMerged =
        "%%BeginSetup\n%%BeginFeature: *Duplex " + mMark + "\ntrue settumble\n%%EndFeature\n";

    ~PrintedDocumentTest() override { JobsWith(mMark); }

    Result Print(std::vector<std::string> const& more) const {
        std::vector<std::string> all = {"print", "--ppd", mPPD, "--set", "*Duplex=" + mMark};
        all.insert(all.end(), more.begin(), more.end());
        return Run(all);
    }

    static std::string Content(std::string const& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
};

TEST_F(PrintedDocumentTest, TheJobStandsInFileOrStandardOutput) {
    std::string const out = PathOf("out.ps");
    Result const toFile = Print({mDocument, "-o", out});
    EXPECT_EQ(0, toFile.status) << toFile.err;
    EXPECT_EQ(1, CountLines(toFile.out));
    EXPECT_NE(std::string::npos, Content(out).find(mMerged)) << Content(out);
    for (char const* stream : {"-", "/dev/stdout"}) {
        EXPECT_EQ(Content(out), Print({mDocument, "-o", stream}).out) << stream;
    }
    std::istringstream in(kDocument);
    std::streambuf* const former = std::cin.rdbuf(in.rdbuf());
    EXPECT_EQ(Content(out), Print({"-", "-o", "-"}).out);
    std::cin.rdbuf(former);
}

TEST_F(PrintedDocumentTest, ADocumentThatCannotBeOpenedFailsWithOrWithoutOutput) {
    std::string const missing = PathOf("missing.ps");
    for (std::vector<std::string> const& more : {std::vector<std::string>{missing},
                                                 {missing, "-o", PathOf("out.ps")},
                                                 {PathOf("")},
                                                 {mDocument, "-o", PathOf("no/folder/out.ps")}}) {
        Result const result = Print(more);
        EXPECT_EQ(1, result.status) << more.front();
        EXPECT_EQ("", result.out);
        EXPECT_EQ(1, CountLines(result.err)) << result.err;
    }
}

TEST_F(PrintedDocumentTest, AnOutputThatIsReadOrKeptIsWrongUsage) {
    std::string const tickets = PathOf("new.tickets");
    std::string const symbolic = PathOf("symbolic");
    std::string const hard = PathOf("hard");
    std::string const dangling = PathOf("dangling");
    fs::create_symlink("document.ps", symbolic);
    fs::create_hard_link(mPPD, hard);
    fs::create_symlink("new.tickets", dangling);
    std::string const ppd = Content(mPPD);
    for (std::vector<std::string> const& more : {
             std::vector<std::string>{mDocument, "-o", mDocument},
             {mDocument, "-o", symbolic},
             {mDocument, "-o", mPPD},
             {mDocument, "-o", hard},
             {mDocument, "--tickets", tickets, "-o", tickets},
             {mDocument, "--tickets", tickets, "-o", dangling},
             {mDocument, "--pairs", "-o", "-"},
             {"-o", PathOf("out.ps")},
         }) {
        Result const result = Print(more);
        EXPECT_EQ(2, result.status) << ::testing::PrintToString(more);
        EXPECT_EQ("", result.out);
        EXPECT_EQ(1, CountLines(result.err)) << result.err;
    }
    EXPECT_EQ(kDocument, Content(mDocument));
    EXPECT_EQ(ppd, Content(mPPD));
    EXPECT_FALSE(fs::exists(tickets));
    EXPECT_EQ(0U, JobsWith(mMark).size());
}

}  // namespace
