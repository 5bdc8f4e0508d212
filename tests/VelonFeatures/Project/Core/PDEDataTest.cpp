// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PDEData.h"

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "tests/VelonFeatures/Project/Core/Job/JobFixture.h"

namespace {

constexpr char kMarker[] =
    "%%EndVelonPreparse1: True\n"
    "/KTXPPDInsertionComplete where { pop KTXPPDInsertionComplete } if\n";

class PDEDataTest : public JobFixture {};

TEST_F(PDEDataTest, ThePPDsCopyLivesAsLongAsTheData) {
    struct {
        char const* name;
        char const* copy;
    } const cases[] = {
        {"core-test.ppd", "/tmp/core-test.ppd"},
        {"core-test", "/tmp/core-test.ppd"},
        {"core-test.ppd.txt", "/tmp/core-test.ppd.txt"},
        {"core-test.PPD", "/tmp/core-test.PPD.ppd"},
    };
    for (auto const& row : cases) {
        mSession.SetPPD(TestSession::Head(), row.name);
        std::ofstream(row.copy) << "something older and longer than nothing";
        ZUBPPD ppd(FileURL(mSession.Path(row.name)), kParseAll, nullptr);
        {
            PDEData const data(mSession.Get(), &ppd, nullptr);
            EXPECT_TRUE(data.IsValid());
            EXPECT_STREQ(row.copy, data.TempPPDPath());
            EXPECT_EQ(TestSession::Head(), ReadFile(row.copy)) << row.name;
        }
        EXPECT_FALSE(std::filesystem::exists(row.copy)) << row.name;
    }
    // A PPD that already lies where its copy would go.
    std::string const own = "/tmp/core-test-own.ppd";
    std::ofstream(own) << TestSession::Head();
    ZUBPPD ppd(FileURL(own), kParseAll, nullptr);
    { PDEData const data(mSession.Get(), &ppd, nullptr); }
    EXPECT_EQ(TestSession::Head(), ReadFile(own));
    unlink(own.c_str());
}

TEST_F(PDEDataTest, KeepsThePrintersNameAndNeedsOne) {
    mSession.SetPrinter("Demo", nullptr);
    PDEData data(mSession.Get(), nullptr, nullptr);
    EXPECT_TRUE(data.IsValid());
    EXPECT_STREQ(L"*ZUCoverSizePCName", data.PCPairs().back().Key());
    EXPECT_STREQ(L"-1", data.PCPairs().back().Value());
    mSession.RemovePrinter();
    EXPECT_EQ("Demo", Text(data.PrinterName()));
    EXPECT_FALSE(PDEData(mSession.Get(), nullptr, nullptr).IsValid());
}

TEST_F(PDEDataTest, TheOrientationControlFollowsThePageFormat) {
    struct {
        std::int32_t number;
        char const* value;
    } const cases[] = {{1, "Portrait"},  {2, "Landscape"}, {3, "Portrait"},
                       {4, "Landscape"}, {5, "Other"},     {0, "Other"}};
    std::string ppd = TestSession::Head() +
                      "*%ZUBFlags *ZUOrientation: Dynamic\n"  // no parent
                      "*OpenUI *ZUOrientation/Orientation: PickOne\n"
                      "*DefaultZUOrientation: Other\n";
    for (char const* value : {"Other", "Portrait", "Landscape"}) {
        ppd += std::string("*ZUOrientation ") + value + "/x: \"\"\n";
    }
    mSession.SetPPD(ppd + "*CloseUI: *ZUOrientation\n");
    for (auto const& row : cases) {
        mSession.SetOrientation(row.number);
        ProjectPDE project;
        ASSERT_EQ(noErr, Initialize(project));
        EXPECT_EQ(row.number, gPDEData->PageOrientation());
        DisplayOptionsScope const everything(kDisplayAll);
        CNTL_TYPE type;
        PPDXControl* const control =
            project.GetPPD()->GetControls()->Find("*ZUOrientation", type, true);
        ASSERT_NE(nullptr, control);
        CFRef<CFStringRef> const value(control->CopyCurrentControlValueString());
        EXPECT_EQ(row.value, Text(value)) << row.number;
    }
}

TEST_F(PDEDataTest, TheJobHasEveryControlInItsPlace) {
    mSession.SetPPD(TestSession::Head() + TestSession::Popup("Duplex") +
                    TestSession::Popup("PageSize") + TestSession::Popup("Collate") +
                    TestSession::Popup("ZUOrientation") + TestSession::Popup("ZUPrintSize") +
                    TestSession::Popup("ZUScale") + TestSession::Popup("ZUOutProfileX") +
                    TestSession::Popup("ZUOrphan", "Dynamic", true));
    ProjectPDE project;
    ASSERT_EQ(noErr, Initialize(project));
    ASSERT_EQ(noErr, project.Sync(mSession.Get(), false));
    TestSession::Pairs const first = mSession.TakeJob();
    std::vector<std::string> suppressed = {"*Duplex",      "*Collate", "*ZUOrientation",
                                           "*ZUPrintSize", "*ZUScale", "*ZUOutProfileX"};
    TestSession::Pairs expected;
    for (std::string const& keyword : suppressed) {
        expected.emplace_back(-9, keyword);
    }
    TestSession::Pairs const rest = {
        {81, "%%BeginFeature: *Duplex A\nDuplex A\n%%EndFeature\n"},
        {81, SourceApplication("PREVIEW")},
        {81, "%%BeginFeature: *PageSize A\nPageSize A\n%%EndFeature\n"},
        {81, "%%BeginFeature: *ZUOrientation False\n%%EndFeature\n"},
        {81, "%%BeginFeature: *ZUOrphan A\nZUOrphan A\n%%EndFeature\n"},
        {81, "%%BeginFeature: *ZUPrintSize SameAsPageSize\n\n%%EndFeature\n"},
        {501, "%%ZUBDriver\n"},
        {72, kMarker},
        {73, kMarker},
    };
    expected.insert(expected.end(), rest.begin(), rest.end());
    EXPECT_EQ(expected, first);
    // The first commit has let orphans into every walk that follows.
    ASSERT_EQ(noErr, project.Sync(mSession.Get(), false));
    suppressed.emplace_back("*ZUOrphan");
    EXPECT_EQ(suppressed, At(mSession.TakeJob(), -9));
}

TEST_F(PDEDataTest, TheFirstControlIsAddedUnlessItIsCollate) {
    std::string const application = SourceApplication("PREVIEW");
    std::string const scale = "%%BeginFeature: *ZUScale A\nZUScale A\n%%EndFeature\n";
    EXPECT_EQ((std::vector<std::string>{scale, application}),
              At(Commit(TestSession::Head() + TestSession::Popup("ZUScale")), 81));
    EXPECT_EQ((std::vector<std::string>{application}),
              At(Commit(TestSession::Head() + TestSession::Popup("Collate")), 81));
    EXPECT_EQ(std::vector<std::string>({scale, application}),
              At(Commit(TestSession::Head() + TestSession::Popup("ZUScale") +
                        TestSession::Popup("ZUOrientation", "NoVelonDriverUI")),
                 81));
}

TEST_F(PDEDataTest, WithoutControlsTheMarkersRemain) {
    struct {
        char const* version;
        bool hasMarker;
    } const cases[] = {{"*%ZUVersion: 2.6\n", false}, {"*%ZUVersion: 3\n", true}, {"", true}};
    for (auto const& row : cases) {
        TestSession::Pairs expected = {{81, SourceApplication("PREVIEW")}};
        if (row.hasMarker) {
            expected.emplace_back(501, "%%ZUBDriver\n");
        }
        expected.emplace_back(72, kMarker);
        expected.emplace_back(73, kMarker);
        EXPECT_EQ(expected, Commit(TestSession::Head(row.version))) << row.version;
    }
}

TEST_F(PDEDataTest, LandscapeInDesignGetsTheNUpReset) {
    std::string const reset =
        "%%Begin ZUBDoing_N_Up \n userdict /VelonKTdict known \n { \n  VelonKTdict "
        "/ZUBDoing_N_Up known \n  { 1 false VelonKTdict /ZUBDoing_N_Up get exec } if \n } if "
        "\n%%End \n";
    struct {
        char const* host;
        std::int32_t orientation;
        bool isReset;
    } const cases[] = {{"com.example.indesign.cs", 2, true},
                       {"com.example.InDesign", 1, false},
                       {"com.example.InDesign", 3, false},
                       {"com.example.editor", 2, false}};
    for (auto const& row : cases) {
        SetMainBundleIdentifier(Str(row.host));
        mSession.SetOrientation(row.orientation);
        auto const texts = At(Commit(TestSession::Head() + TestSession::Popup("Duplex")), 81);
        EXPECT_EQ(row.isReset, texts.at(1) == reset) << row.host << row.orientation;
    }
}

TEST(JobKeywordsTest, KeywordsAreToldByTheWholeAPartOrTheirEnd) {
    EXPECT_TRUE(PDEData::isSpecialChromvaleControl("x*ZUSimulationSpeed"));
    EXPECT_FALSE(PDEData::isSpecialChromvaleControl("*ZUSim"));
    EXPECT_TRUE(isExpertChromvaleControl("*ZUPaperSim"));
    EXPECT_FALSE(isExpertChromvaleControl("*ZUPaperSimX"));
    EXPECT_TRUE(isBidiKeyword("*Bidi"));
    EXPECT_FALSE(isBidiKeyword("Bidi"));
}

}  // namespace
