// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PlugIn/ProjectPDE.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/wait.h>

#include <functional>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"

namespace {

std::string SmallPPD() {
    return TestSession::Head() + TestSession::Popup("Duplex");
}

class ProjectPDETest : public CoreFixture {
  protected:
    ProjectPDETest() { mSession.SetPPD(SmallPPD()); }
    OSStatus Initialize(ProjectPDE& project) {
        std::uint32_t flags = 0;
        return project.Initialize(&flags, 0, nullptr, mSession.Get());
    }
};

TEST_F(ProjectPDETest, InitializeOpensThePPDAndKeepsAKeyForEachModel) {
    ProjectPDE project;
    std::uint32_t flags = 7;
    ASSERT_EQ(noErr, project.Initialize(&flags, 1, nullptr, mSession.Get()));
    EXPECT_EQ(0U, flags);
    EXPECT_TRUE(project.IsInitialized());
    ASSERT_NE(nullptr, project.GetPPD());
    ASSERT_NE(nullptr, gPDEData);
    EXPECT_EQ(project.GetPPD(), gPDEData->GetPPD());
    EXPECT_FALSE(gPDEData->IsRebuilt());
    EXPECT_EQ("", mSession.JobFile()) << "nothing was committed";
    std::string const stem = "com.zub.print.pde.645EBB97-CCEC-44A1-ADE0-29E4901A642D.";
    EXPECT_EQ(stem + "ZUB_Demo_1.PInf", Text(project.PrinterKey()));

    mSession.SetInfo("PMMakeAndModelName", "Other.pinf 2");
    EXPECT_EQ(noErr, Initialize(project));
    EXPECT_EQ(stem + "Other.pinf_2.PInf", Text(project.PrinterKey()));
    EXPECT_EQ(SmallPPD(), ReadFile(gPDEData->TempPPDPath())) << "the new data's, under one path";
    mSession.RemoveInfo("PMMakeAndModelName");
    EXPECT_EQ(noErr, Initialize(project));
    EXPECT_EQ(nullptr, project.PrinterKey());
}

TEST_F(ProjectPDETest, InitializeTakesNoPrinterThatIsNotOurs) {
    struct {
        char const* fault;
        OSStatus result;
        std::function<void(TestSession&)> make;
    } const cases[] = {
        {"no printer info", 1, [](auto& session) { session.RemoveTicket("PMPrinterInfoTicket"); }},
        {"no compiled PPD", 3, [](auto& session) { session.RemoveInfo("PMCompiledPPD"); }},
        {"no printer", 3, [](auto& session) { session.RemovePrinter(); }},
        {"no PPD", 3, [](auto& session) { session.SetPrinter("Demo", nullptr); }},
        {"missing file", 3,
         [](auto& session) { session.SetPrinter("Demo", FileURL(session.Path("none.ppd"))); }},
        {"other PC file name", 3,
         [](auto& session) {
             session.SetPPD(
                 TestSession::Head("", "*PCFileName: \"A-PRINTER-OF-QUITE-ANOTHER-MAKER.PPD\"\n"));
         }},
        {"no PPD at all", 3, [](auto& session) { session.SetPPD("*PCFileName: \"ZUB.PPD\"\n"); }},
    };
    for (auto const& row : cases) {
        TestSession session;
        session.SetPPD(SmallPPD());
        ProjectPDE project;
        std::uint32_t flags = 0;
        ASSERT_EQ(noErr, project.Initialize(&flags, 0, nullptr, session.Get()));
        row.make(session);
        EXPECT_EQ(row.result, project.Initialize(&flags, 0, nullptr, session.Get())) << row.fault;
        EXPECT_FALSE(project.IsInitialized()) << row.fault;
        if (row.result == 3) {
            EXPECT_EQ(nullptr, project.GetPPD()) << row.fault;
            EXPECT_EQ(nullptr, gPDEData->GetPPD()) << row.fault;
        }
    }
    ProjectPDE project;
    std::uint32_t flags = 0;
    EXPECT_EQ(1, project.Initialize(&flags, 0, nullptr, nullptr));
}

TEST_F(ProjectPDETest, EveryCommitWritesAFileOfItsOwn) {
    ProjectPDE project;
    EXPECT_EQ(noErr, project.Sync(mSession.Get(), false)) << "no PPD yet";
    EXPECT_EQ("", mSession.JobFile());
    ASSERT_EQ(noErr, Initialize(project));
    EXPECT_EQ(noErr, project.Sync(mSession.Get(), false));
    std::string const first = mSession.JobFile();
    struct stat status = {};
    ASSERT_EQ(0, stat(first.c_str(), &status)) << first;
    EXPECT_EQ(0666U, status.st_mode & 0777U);
    TestSession::Pairs const pairs = mSession.TakeJob();
    EXPECT_EQ(noErr, project.Sync(mSession.Get(), false));
    EXPECT_NE(first, mSession.JobFile());
    EXPECT_EQ(pairs, mSession.TakeJob());
}

TEST_F(ProjectPDETest, ARebuildFollowsTheSession) {
    ProjectPDE project;
    ASSERT_EQ(noErr, Initialize(project));
    std::string const copy = gPDEData->TempPPDPath();
    mSession.SetPPD(TestSession::Head() + TestSession::Popup("ZUSort"), "other.ppd");
    ASSERT_EQ(noErr, project.Sync(mSession.Get(), true));
    EXPECT_FALSE(std::filesystem::exists(copy));
    EXPECT_TRUE(gPDEData->IsRebuilt());
    EXPECT_EQ("", mSession.JobFile()) << "a rebuild is no commit";
    EXPECT_NE(nullptr, ControlOf(*project.GetPPD(), "*ZUSort"));
}

TEST_F(ProjectPDETest, AFailedSyncLeavesNoPPDUnlessTheSessionIsTheFault) {
    ProjectPDE project;
    ASSERT_EQ(noErr, Initialize(project));
    EXPECT_EQ(1, project.Sync(nullptr, false));
    EXPECT_NE(nullptr, project.GetPPD());
    EXPECT_EQ(project.GetPPD(), gPDEData->GetPPD());

    mSession.SetPPD("*PPD-Adobe: \"4.1\"\n*PCFileName: \"ZUB.PPD\"\n");
    EXPECT_EQ(3, project.Sync(mSession.Get(), true));
    EXPECT_EQ(nullptr, project.GetPPD());
    EXPECT_EQ(noErr, project.Sync(mSession.Get(), false)) << "nothing to commit";

    mSession.SetPPD(SmallPPD());
    ASSERT_EQ(noErr, project.Sync(mSession.Get(), true));
    mSession.RemovePrinter();
    EXPECT_EQ(-108, project.Sync(mSession.Get(), true));
    EXPECT_EQ(nullptr, project.GetPPD());
    EXPECT_EQ(nullptr, gPDEData->GetPPD());
    EXPECT_EQ(noErr, project.Sync(mSession.Get(), false));
    EXPECT_EQ("", mSession.JobFile());
}

// Lets every single creation of a whole dialog fail once.
TEST_F(ProjectPDETest, ALackOfMemoryAnywhereEndsInAResultAndLeaksNothing) {
    auto const runDialog = [this](long failAfter) {
        FailCreationAfter(failAfter);
        ProjectPDE project;
        OSStatus result = project.IsValid() ? Initialize(project) : -9530;
        EXPECT_EQ(result == noErr, project.GetPPD() != nullptr);
        for (bool const reinitialize : {false, true}) {
            if (result == noErr) {
                result = project.Sync(mSession.Get(), reinitialize);
            }
        }
        FailCreationAfter(-1);
        mSession.RemoveJobFile();
        mSession.EmptySettings();
        return result;
    };
    EXPECT_EQ(noErr, runDialog(-1));
    ForgetDialog();
    long const atRest = LiveObjectCount();
    int failures = 0;
    for (long n = 0; n < 400; ++n) {
        failures += runDialog(n) == noErr ? 0 : 1;
        ForgetDialog();
        ASSERT_EQ(atRest, LiveObjectCount()) << "creation " << n;
    }
    EXPECT_GT(failures, 20);
}

TEST_F(ProjectPDETest, AnOlderDialogDoesNotTakeThePPDOfANewerOne) {
    auto older = std::make_unique<ProjectPDE>();
    ASSERT_EQ(noErr, Initialize(*older));
    ProjectPDE newer;
    ASSERT_EQ(noErr, Initialize(newer));
    older.reset();
    EXPECT_EQ(newer.GetPPD(), gPDEData->GetPPD());
}

TEST_F(ProjectPDETest, ThereIsNoSummary) {
    ProjectPDE project;
    ASSERT_EQ(noErr, Initialize(project));
    CFRef<CFArrayRef> const former(CFArrayCreateMutable(nullptr, 0));
    CFArrayRef titles = former;
    CFArrayRef summaries = former;
    EXPECT_EQ(noErr, project.GetSummaryText(&titles, &summaries));
    EXPECT_EQ(nullptr, titles);
    EXPECT_EQ(nullptr, summaries);
}

TEST_F(ProjectPDETest, OpenMovesAWindowUpAndLeavesASheetAlone) {
    struct {
        std::int16_t top;
        bool isSheet;
        std::int16_t topAfter;
    } const cases[] = {{100, false, 63}, {61, false, 61}, {20, false, 20}, {100, true, 100}};
    for (auto const& row : cases) {
        Rect const content = {row.top, 30, static_cast<std::int16_t>(row.top + 200), 555};
        WindowRef const document = CreateHostWindow(content, nullptr);
        WindowRef const window = CreateHostWindow(content, row.isSheet ? document : nullptr);
        ControlRef const pane = CreateUserPane(window, true);
        ProjectPDE project;
        std::uint32_t flags = 0;
        ASSERT_EQ(noErr, project.Initialize(&flags, 0, pane, mSession.Get()));
        EXPECT_EQ(noErr, project.Open());
        Rect bounds = {};
        GetWindowBounds(window, kWindowContentRgn, &bounds);
        EXPECT_EQ(row.topAfter, bounds.top) << row.top;
        EXPECT_EQ(30, bounds.left);
        DisposeUserPane(pane);
        DisposeHostWindow(window);
        DisposeHostWindow(document);
    }
    EXPECT_EQ(noErr, ProjectPDE().Open()) << "no pane";
}

// A process of that name, which waits for its end.
pid_t StartProcess(char const* name) {
    int ready[2];
    EXPECT_EQ(0, pipe(ready));
    pid_t const child = fork();
    if (child == 0) {
        prctl(PR_SET_NAME, name);
        bool const told = write(ready[1], "", 1) == 1;
        while (told) {
            pause();
        }
        _exit(1);
    }
    char byte = 0;
    EXPECT_EQ(1, read(ready[0], &byte, 1));
    close(ready[0]);
    close(ready[1]);
    return child;
}

TEST_F(ProjectPDETest, CloseEndsJobPropertiesUnlessTheVersionBeginsWithTwo) {
    pid_t const child = StartProcess("ZUB VD4.2toJP");
    ProcessSerialNumber found = {0, kNoProcess};
    EXPECT_EQ(42, ProjectPDE::ReportPSNofFDNtoJP(&found));
    EXPECT_EQ(static_cast<std::uint32_t>(child), found.lowLongOfPSN);

    ProjectPDE project;
    mSession.SetPPD(TestSession::Head("*%ZUVersion: 2.4\n"));
    ASSERT_EQ(noErr, Initialize(project));
    EXPECT_EQ(noErr, project.Close());
    EXPECT_FALSE(gPDEData->HasJPEnded());
    EXPECT_EQ(0, waitpid(child, nullptr, WNOHANG)) << "still running";

    mSession.SetPPD(SmallPPD());
    ASSERT_EQ(noErr, Initialize(project));
    EXPECT_EQ(noErr, project.Close());
    EXPECT_TRUE(gPDEData->HasJPEnded());
    EXPECT_EQ(child, waitpid(child, nullptr, 0));
    EXPECT_EQ(noErr, project.Close());
    EXPECT_FALSE(gPDEData->HasJPEnded()) << "there was none to end";
}

}  // namespace
