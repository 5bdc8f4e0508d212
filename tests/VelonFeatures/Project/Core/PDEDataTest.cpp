// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PDEData.h"

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "tests/PPDLines.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"

namespace {

class PDEDataTest : public CoreFixture {};

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

TEST_F(PDEDataTest, AProfileBeyondASCIIKeepsItsTextAndThePPDsOwnItsCode) {
    struct {
        char const* keyword;  // in the PPD
        char const* asked;
        char const* value;
        char const* framed;  // the job has the keyword's own bytes
    } const cases[] = {
        {"B\x9Fro", "", "Büro", "B\x9Fro\ncode\n"},
        {"Büro", "", "Büro", "Büro\ncode\n"},
        {"None", "Büro", "Büro", "Büro\n\n"},
    };
    for (auto const& row : cases) {
        std::string const option = std::string("*ZUOutProfile ") + row.keyword;
        Open(TestSession::Head() +
             "*%ZUBFlags *ZUOutProfile: Dynamic\n"
             "*OpenUI *ZUOutProfile/P: PickOne\n*DefaultZUOutProfile: " +
             row.keyword + "\n" + option + "/P: \"code\"\n*CloseUI: *ZUOutProfile\n");
        PPDXControl* const control = ControlOf(*mPPD, "*ZUOutProfile");
        std::string value = *row.asked != '\0' ? row.asked : row.value;
        for (int dialog = 0; dialog < 3; ++dialog) {
            control->SetCurrentControlWithCFString(CFRef<CFStringRef>(
                CFStringCreateWithCString(nullptr, value.c_str(), kCFStringEncodingUTF8)));
            mData->MakeJobNotesForSpecialControls();
            value = ValueOf(*mPPD, "*ZUOutProfile");
        }
        EXPECT_EQ(row.value, value);
        std::string code(static_cast<std::size_t>(control->PostScript(nullptr)), '\0');
        control->PostScript(reinterpret_cast<unsigned char*>(code.data()));
        EXPECT_EQ(std::string("%%BeginFeature: *ZUOutProfile ") + row.framed + "%%EndFeature\n",
                  code);
    }
}

TEST_F(PDEDataTest, TheServersProfilesStandInOneNoteEach) {
    std::string lines;
    for (std::string const keyword : {"*ZUOutProfile", "*ZUSimulation"}) {
        lines += PPDLines::Popup(keyword, {"B\xC3\xBCro", "b"});
    }
    Open(TestSession::Head() + lines + PPDLines::Popup("*ZURGBOverride", {"c"}));
    PPDXControls& controls = *mPPD->GetControls();
    EXPECT_EQ(controls.JobNoteCount(), 3);
    auto* const note = controls.FindJobNote("*ZUOutProfile", true);
    ASSERT_NE(note, nullptr);
    EXPECT_STREQ(note->GetNotes(), "B\xC3\xBCro");
    EXPECT_EQ(note->MaxLength(), 700);
    EXPECT_STREQ(note->GetDefaultNotes(), "");
    controls.FindPopup("*ZUOutProfile", true)->SetCurrentControlWithCFString(CFSTR("b"));
    mData->MakeJobNotesForSpecialControls();
    EXPECT_EQ(controls.JobNoteCount(), 3);
    EXPECT_STREQ(note->GetNotes(), "b");
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
