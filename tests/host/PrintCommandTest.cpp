// SPDX-License-Identifier: Apache-2.0
#include "host/PrintCommand.h"

#include <algorithm>
#include <fstream>
#include <new>
#include <sstream>

#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "host/HostFiles.h"
#include "host/Zubprint.h"
#include "platform/Testing.h"
#include "tests/host/HostFixture.h"

namespace fs = std::filesystem;
using nlohmann::json;

namespace {

constexpr int kFeatureSite = 81;

class PrintCommandTest : public HostFixture {
  protected:
    // A text that only this test's jobs hold: the third option of *Duplex.
    std::string const mMark = UniqueName("Tumble");
    std::string const mFeature =
        "%%BeginFeature: *Duplex " + mMark + "\ntrue settumble\n%%EndFeature\n";

    ~PrintCommandTest() override { JobsWith(mMark); }

    std::string WritePPD(std::string const& pcFileName = "ZUBDEMO.PPD") const {
        return Write(UniqueName("zubprint-test") + ".ppd", Head(pcFileName) + Duplex(mMark));
    }

    std::string Setting() const { return "*Duplex=" + mMark; }

    static bool HasFeature(json const& pairs, std::string const& text) {
        return std::ranges::count(pairs, json{{"site", kFeatureSite}, {"text", text}}) == 1;
    }

    // A bundle that accepts files of another maker and has its code from the built one.
    std::string MakeBundle(bool copyCode) const {
        fs::path const built = HostFiles::BuiltBundle(false);
        fs::path const bundle = PathOf("Other.plugin");
        fs::copy(built, bundle, fs::copy_options::recursive);
        if (!copyCode) {
            fs::path const code = bundle / "Contents/MacOS/ZUB";
            fs::remove(code);
            fs::create_symlink(built / "Contents/MacOS/ZUB", code);
        }
        std::ofstream(bundle / "Contents/PrinterList.plist")
            << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
               "<key>PCFILENAME</key><array><string>OTHER</string></array></dict></plist>\n";
        return bundle;
    }
};

TEST_F(PrintCommandTest, OnlyTheFileWhosePathIsToldStays) {
    std::string const ppd = WritePPD();
    Result const result = Run({"print", "--ppd", ppd, "--set", Setting(), "--commits", "3"});
    ASSERT_EQ(0, result.status) << result.err;
    EXPECT_EQ("", result.err);
    ASSERT_EQ(1, CountLines(result.out)) << result.out;
    JobDataFile printed;
    ASSERT_TRUE(ReadJob(result.out.substr(0, result.out.size() - 1), printed).Ok());
    std::vector<JobDataFile> const written = JobsWith(mMark);
    ASSERT_EQ(1U, written.size());
    EXPECT_EQ(written.front().JSON(), printed.JSON());
    EXPECT_FALSE(fs::exists("/tmp" / fs::path(ppd).filename())) << "the PPD's copy";

    std::vector<std::string> arguments = {"print", "--ppd", ppd, "--set", Setting(), "--pairs"};
    EXPECT_EQ(printed.JSON(), Run(arguments).out) << "from the session";
    EXPECT_EQ(0U, JobsWith(mMark).size());
    arguments.insert(arguments.end(), {"--tickets", PathOf("tickets.plist")});
    EXPECT_EQ(0, Run(arguments).status);
    EXPECT_EQ(1U, JobsWith(mMark).size()) << "its path stands in the tickets";
    arguments.back() = PathOf("no/folder");
    EXPECT_EQ(1, Run(arguments).status);
    EXPECT_EQ(0U, JobsWith(mMark).size());
}

TEST_F(PrintCommandTest, ARelativeHomeKeepsNoRecordAndMemoryThatEndsIsOneLine) {
    setenv("HOME", "home", 1);
    Result const result = Run({"print", "--ppd", WritePPD(), "--address", "host"});
    EXPECT_EQ(1, result.status);
    EXPECT_EQ(1, CountLines(result.err)) << result.err;
    EXPECT_NE(std::string::npos, result.err.find("HOME")) << result.err;
    EXPECT_FALSE(fs::exists("home"));

    struct : std::streambuf {
        int overflow(int /*character*/) override { throw std::bad_alloc(); }
    } full;
    std::ostream out(&full);
    out.exceptions(std::ios::badbit);
    std::ostringstream err;
    std::string const ppd = WritePPD();
    char const* const argv[] = {"zubprint", "inspect", ppd.c_str()};
    EXPECT_EQ(1, Zubprint::Run(3, argv, out, err));
    EXPECT_EQ("zubprint: not enough memory\n", err.str());
}

TEST_F(PrintCommandTest, ForeignPrintersAreRefusedAndTheNextDialogOpens) {
    std::string const foreign = WritePPD("OTHER.PPD");
    std::string const ours = WritePPD();
    std::vector<std::string> const cases[] = {
        {"print", "--ppd", foreign, "--set", Setting()},
        {"print", "--ppd", Write("none.ppd", "*PPD-Adobe: \"4.3\"\n"), "--set", Setting()},
        {"print", "--ppd", Write("no-file-name.ppd", "*PPD-Adobe: \"4.3\"\n*ModelName: \"A\"\n")},
        {"print", "--ppd", ours, "--set", Setting(), "--no-compiled-ppd"},
    };
    for (std::vector<std::string> const& arguments : cases) {
        SCOPED_TRACE(::testing::PrintToString(arguments));
        Result const result = Run(arguments);
        EXPECT_EQ(3, result.status);
        EXPECT_EQ("", result.out);
        EXPECT_TRUE(result.err.starts_with("zubprint: ")) << result.err;
        EXPECT_EQ(1, CountLines(result.err));
    }
    EXPECT_EQ(0U, JobsWith(mMark).size());
    EXPECT_EQ(0, Run({"print", "--ppd", ours, "--set", Setting()}).status);
}

TEST_F(PrintCommandTest, WhatFailsIsToldInOneLineAndWritesNoJob) {
    std::string const ppd = WritePPD();
    std::string const empty = PathOf("Empty.plugin");
    std::string const listless = PathOf("Listless.plugin");
    fs::create_directories(empty);
    fs::create_directories(listless + "/Contents");
    std::ofstream(listless + "/Contents/Info.plist")
        << "<plist version=\"1.0\"><dict><key>CFBundleExecutable</key><string>ZUB</string></dict>"
           "</plist>";
    struct Case {
        std::vector<std::string> arguments;
        std::string named;
    };
    Case const cases[] = {
        {{"--ppd", PathOf("missing.ppd")}, PathOf("missing.ppd")},
        {{"--ppd", ppd, "--set", "*Nothing=On"}, "*Nothing"},
        {{"--ppd", ppd, "--bundle", PathOf("missing.plugin")}, PathOf("missing.plugin")},
        {{"--ppd", ppd, "--bundle", empty}, empty},
        {{"--ppd", ppd, "--bundle", listless}, listless},
        {{"--ppd", ppd, "--set-from", "*N=" + PathOf("missing")}, "*N"},
        {{"--ppd", ppd, "--set-from", "*N=" + empty}, "*N"},
        {{"--ppd", ppd, "--set-from", "*N=" + Write("latin", "\xFCx")}, "UTF-8"},
        {{"--ppd", ppd, "--set-from", "*N=" + Write("zero", std::string("a\0b", 3))}, "UTF-8"},
        {{"--ppd", ppd, "--set-from", "*N=/dev/zero"}, "too long"},
    };
    for (auto const& [arguments, named] : cases) {
        std::vector<std::string> all = {"print", "--set", Setting()};
        all.insert(all.end(), arguments.begin(), arguments.end());
        Result const result = Run(all);
        EXPECT_EQ(1, result.status) << named;
        EXPECT_EQ("", result.out);
        EXPECT_NE(std::string::npos, result.err.find(named)) << result.err;
        EXPECT_EQ(1, CountLines(result.err)) << result.err;
    }
    EXPECT_EQ(0U, JobsWith(mMark).size());
}

TEST_F(PrintCommandTest, ADialogGivesEverythingBack) {
    std::vector<std::string> const arguments = {"print", "--ppd", WritePPD(), "--set", Setting()};
    // What the process keeps for good is made by the first dialog; later ones only replace it.
    ASSERT_EQ(0, Run(arguments).status);
    long const before = LiveObjectCount();
    ASSERT_EQ(0, Run(arguments).status);
    EXPECT_EQ(before, LiveObjectCount());
    EXPECT_FALSE(gFactoryBusy);
}

// The code of another bundle is loaded beside the one that this program is linked with, and the two
// must share one set of globals: a choice made through one reaches the job that the other writes.
TEST_F(PrintCommandTest, AnotherBundleBringsItsOwnPrinterListAndNoSecondSetOfGlobals) {
#ifdef __SANITIZE_ADDRESS__
    // A second copy of the same globals in memory is an error there, and rightly.
    constexpr bool kCopyCode = false;
#else
    constexpr bool kCopyCode = true;
#endif
    std::string const bundle = MakeBundle(kCopyCode);
    json const pairs = RunForJSON({"print", "--ppd", WritePPD("OTHER.PPD"), "--bundle", bundle,
                                   "--set", Setting(), "--pairs"});
    EXPECT_TRUE(HasFeature(pairs, mFeature)) << pairs.dump(2);
    EXPECT_EQ(3, Run({"print", "--ppd", WritePPD(), "--bundle", bundle}).status);
    EXPECT_FALSE(gFactoryBusy);
}

}  // namespace
