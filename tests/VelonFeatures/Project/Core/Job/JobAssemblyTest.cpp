// SPDX-License-Identifier: Apache-2.0
// What one commit puts into the job, and in which order.
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "tests/VelonFeatures/Project/Core/Job/JobFixture.h"

namespace {

constexpr char kMarker[] =
    "%%EndVelonPreparse1: True\n"
    "/KTXPPDInsertionComplete where { pop KTXPPDInsertionComplete } if\n";

std::string ScaleText(std::string const& number, std::string const& factor) {
    return "%%BeginFeature: *ZUScale " + number +
           "\n userdict /KTXZUBsetpageproperties known {  << /KTXSetZUScale [ " + factor +
           " ] >> KTXZUBsetpageproperties } { /KTXSetZUScale where { pop " + factor +
           " KTXSetZUScale } if } ifelse \n%%EndFeature\n";
}

std::string CustomSizeText(std::string const& size) {
    return "%%BeginFeature: *CustomPrintSize " + size +
           "\n   userdict /KTXZUBsetpageproperties known\n   {<< /KTXsetPrintSize [ " + size +
           " 0 0 1 ] >> KTXZUBsetpageproperties} if\n%%EndFeature\n";
}

std::string DynamicOption(std::string const& name, std::string const& value) {
    return "%%BeginFeature: *" + name + " " + value +
           "\n /KTXsetDynamicOption where\n        { pop (*" + name + ") (" + value +
           ") KTXsetDynamicOption } if\n%%EndFeature\n";
}

class JobAssemblyTest : public JobFixture {
  protected:
    // A PPD, settings and a record that every step of the job has something of.
    void OpenEverything() {
        std::string ppd = TestSession::Head("*%ZUVersion: 3.1\n");
        for (char const* keyword : {"Duplex", "ZURGBOverride", "ZUPrintSize", "Collate",
                                    "ZUOrientation", "PageSize", "ZUDestination", "ZUSimulation"}) {
            ppd += TestSession::Popup(keyword);
        }
        Open(ppd + Range("ZUScale", "0;400;1;85") +
             "*%ParamCustomPrintSize Width: 1 points 36 1000\n"
             "*%ParamCustomPrintSize Height: 2 points 50 1500\n" +
             SpecialOption("ZUUTF8_Version", "1.0") +
             SpecialOption("ZUMailboxName", mSession.Path("printed.ps")) +
             TestSession::Popup("ZUOutProfile"));
        SetTwoWay(true);
        Give("*ZUPrintSize", "CustomPrintSize");
        Give("*ZUDestination", "File");
        ControlOf(*mPPD, "*CustomPrintSize")->SetCurrentControlWithCFString(CFSTR("200 300.5"));
        SetPCValue(1, L"ZUPCName", L"Card");
        SetStored(0, L"*RangeProp1", L"Value");
        mData->SetStoredPairCount(1);
    }
    static void Set(OptionPair& pair, wchar_t const* key, wchar_t const* value) {
        pair.SetKey(key);
        pair.SetValue(value);
    }
    void SetPCValue(std::size_t index, wchar_t const* key, wchar_t const* value) {
        Set(mData->PCPairs()[index], key, value);
    }
    void SetStored(std::size_t index, wchar_t const* key, wchar_t const* value) {
        Set(mData->StoredPairs()[index], key, value);
    }
};

TEST_F(JobAssemblyTest, AJobThatHasEverythingHasItInOrder) {
    SetMainBundleIdentifier(CFSTR("com.example.InDesign"));
    mSession.SetOrientation(2);
    OpenEverything();
    TestSession::Pairs expected;
    for (char const* keyword :
         {"*Duplex", "*ZURGBOverride", "*ZUPrintSize", "*Collate", "*ZUOrientation",
          "*ZUDestination", "*ZUSimulation", "*ZUScale", "*ZUOutProfile", "*ZUOutProfile",
          "*ZUSimulation", "*ZURGBOverride"}) {
        expected.emplace_back(-9, keyword);
    }
    TestSession::Pairs const rest = {
        {81, OptionA("Duplex")},
        {81,
         "%%Begin ZUBDoing_N_Up \n userdict /VelonKTdict known \n { \n  VelonKTdict "
         "/ZUBDoing_N_Up known \n  { 1 false VelonKTdict /ZUBDoing_N_Up get exec } if \n } if "
         "\n%%End \n"},
        {81, SourceApplication("PREVIEW")},
        {81, "%%BeginFeature: *ZUOrientation False\n%%EndFeature\n"},
        {81, OptionA("PageSize")},
        {81, "%%BeginFeature: *ZUDestination File\n\n%%EndFeature\n"},
        {81, Plain("*RangeProp1", "Value")},
        {81, DynamicOption("ZUOutProfile", "A")},
        {81, DynamicOption("ZUSimulation", "A")},
        {81, DynamicOption("ZURGBOverride", "A")},
        {504, "%%Orientation: Landscape\n"},
        {81, ScaleText("85", "0.85")},
        {81, Plain("*ZUPCName", "Card")},
        {81, Plain("*ZUPCPPDSize", "CustomPageSize0")},
        {81, CustomSizeText("200.00 300.50")},
        {81, "%%BeginFeature: *ZUPrintSize CustomPrintSize\n\n%%EndFeature\n"},
        {900, mSession.Path("printed.ps")},
        {501, "%%ZUBDriver\n"},
        {72, kMarker},
        {73, kMarker},
        {501, "%%ZUUTF8_Version: 1.0 \n"},
    };
    expected.insert(expected.end(), rest.begin(), rest.end());
    EXPECT_EQ(expected, Job());
}

TEST_F(JobAssemblyTest, AnUnusableTicketTakesThePaperFeedAndNothingElse) {
    std::string const path = mSession.Path("printed.ps");
    Open(TestSession::Head() + TestSession::Popup("InputSlot") +
         TestSession::Popup("ZUDestination") + SpecialOption("ZUMailboxName", path));
    Give("*ZUDestination", "File");
    mSession.SetPaperFeed({CFSTR("x"), CFSTR("B")});
    ZUBJobTicket ticket(nullptr, CFSTR("job"));
    EXPECT_EQ(-50, mData->OutPostscriptData(ticket));
    EXPECT_EQ(0U, ticket.Count());
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_EQ("B", ValueOf(*mPPD, "*InputSlot"));
    EXPECT_STREQ("\xFF", mData->PaperFeed());
}

TEST_F(JobAssemblyTest, WithoutAPPDTheMarkersAndThePairsRemain) {
    Open(TestSession::Head("*%ZUVersion: 2\n") + TestSession::Popup("InputSlot"));
    SetTwoWay(true);
    mSession.SetPaperFeed({CFSTR("x"), CFSTR("B")});
    SetPCValue(1, L"ZUPCName", L"Card");
    mData->SetPPD(nullptr);
    TestSession::Pairs const expected = {{81, SourceApplication("PREVIEW")},
                                         {504, "%%Orientation: Portrait\n"},
                                         {81, Plain("*ZUPCName", "Card")},
                                         {501, "%%ZUBDriver\n"},
                                         {72, kMarker},
                                         {73, kMarker}};
    EXPECT_EQ(expected, Job());
}

TEST_F(JobAssemblyTest, ALackOfMemoryCostsTheEntryAloneThatItMeets) {
    OpenEverything();
    Job();
    std::size_t const all = Job().size();
    std::size_t fewest = all;
    for (long creations = 0; creations < 100; ++creations) {
        ZUBJobTicket ticket(&mSettings, CFSTR("job"));
        FailCreationAfter(creations);
        EXPECT_EQ(noErr, mData->OutPostscriptData(ticket));
        FailCreationAfter(-1);
        std::size_t const count = TestSession::PairsOf(ticket.List()).size();
        EXPECT_LE(all - 2, count) << creations << ": a pair takes its print size along";
        fewest = std::min(fewest, count);
    }
    EXPECT_EQ(all - 2, fewest);
}

TEST_F(JobAssemblyTest, ThePaperFeedIsTakenAtTheFirstCommitOnly) {
    // What was asked for before the commit counts; without an answer the commit asks.
    for (bool const isAsked : {true, false}) {
        Open(TestSession::Head() + TestSession::Popup("InputSlot"));
        mSession.SetPaperFeed({CFSTR("x"), isAsked ? CFSTR("B") : CFSTR("b")});
        if (isAsked) {
            EXPECT_EQ(noErr, mData->GetPrimaryPaperFeedFromOS());
            mSession.SetPaperFeed({CFSTR("x"), CFSTR("A")});
        }
        Job();
        EXPECT_EQ(isAsked ? "B" : "A", ValueOf(*mPPD, "*InputSlot"));
        mSession.SetPaperFeed({CFSTR("x"), isAsked ? CFSTR("A") : CFSTR("B")});
        Job();
        EXPECT_EQ(isAsked ? "B" : "A", ValueOf(*mPPD, "*InputSlot"));
    }
}

TEST_F(JobAssemblyTest, StoredPairsComeInOrderAndWhole) {
    Open(TestSession::Head() + TestSession::Popup("Duplex"));
    SetStored(0, L"*RangeProp1", L"first");
    SetStored(2, L"*KeyAlone", nullptr);  // 1 isn't set at all
    SetStored(3, nullptr, L"value alone");
    SetStored(4, L"*MM_A", L"\u00FCber \u65E5\u672C \U0001F600 50%s");
    SetStored(5, L"*K", std::wstring(5000, L'x').c_str());
    SetStored(6, L"*K", (L"y" + std::wstring(111, L'\u00E9')).c_str());
    SetStored(7, L"*Chapters", L"");
    SetStored(8, L"*Behind", L"not counted");
    mData->SetStoredPairCount(8);
    EXPECT_EQ(
        (Texts{Plain("*RangeProp1", "first"),
               Plain("*MM_A", "\u00FCber \u65E5\u672C \U0001F600 50%s"), Plain("*Chapters", "")}),
        Features());
}

TEST_F(JobAssemblyTest, PCPairsOfMinusOneAndThoseWithoutRoomAreLeftOut) {
    struct {
        std::wstring value;
        std::string text;  // "-" for one that doesn't go out
    } const cases[] = {
        {L"", ""},
        {L"1-1", "1-1"},
        {L"-1.5", "-"},
        {L"4294967295", "-"},
        {L"4294967296", "4294967296"},
        {std::wstring(215, L'x'), std::string(215, 'x')},
        {std::wstring(216, L'x'), "-"},
        {std::wstring(108, L'\u00E9'), "-"},
        {std::wstring(511, L'x'), "-"},
    };
    Open(TestSession::Head("*%ZUVersion: 4\n") + TestSession::Popup("Duplex"));
    SetTwoWay(true);
    for (auto const& row : cases) {
        SetPCValue(2, L"ZUPCName", row.value.c_str());
        EXPECT_EQ(row.text == "-" ? Texts() : Texts{Plain("*ZUPCName", row.text)}, Features())
            << row.text;
    }
    SetPCValue(0, nullptr, L"1");
    SetPCValue(1, L"Other", nullptr);
    SetPCValue(2, std::wstring(300, L'k').c_str(), L"1");
    EXPECT_EQ(Texts(), Features());
}

TEST_F(JobAssemblyTest, APCPairOfAJapanesePPDThatHasNoMacJapaneseIsLeftOut) {
    std::string ppd = TestSession::Head("*%ZUVersion: 4\n") + TestSession::Popup("Duplex");
    ppd.replace(ppd.find("English"), 7, "Japanese");
    Open(ppd);
    SetTwoWay(true);
    SetPCValue(1, L"ZUPCName", L"\U0001F600");
    SetPCValue(2, L"ZUPCMID", L"\u65E5\u672C 1");
    EXPECT_EQ(Texts{Plain("*ZUPCMID", "\x93\xFA\x96\x7B 1")}, Features());
}

TEST_F(JobAssemblyTest, NumbersKeepTheirDigitsWhateverTheirSize) {
    Open(TestSession::Head() + TestSession::Popup("Duplex") +
         Range("ZUScale", "0;2147483647;1;2147483647") + SpecialOption("ZUUTF8_Version", "\xA5"));
    EXPECT_EQ(Texts{ScaleText("2147483647", "21474836.47")}, Features());
    EXPECT_EQ(Texts{"%%ZUBDriver\n"}, At(Job(), 501)) << "no version that isn't ASCII";
}

// Behind the end of a comment there would be PostScript.
TEST_F(JobAssemblyTest, NoControlCharacterComesIntoTheJobFromOutsideThePPD) {
    SetCurrentProcessName("Pre\nview");
    Open(TestSession::Head("*%ZUVersion: 4\n") + TestSession::Popup("Duplex") +
         TestSession::Popup("ZUOutProfile") + SpecialOption("ZUUTF8_Version", "1\x01.0"));
    SetTwoWay(true);
    SetStored(0, L"*Stored", L"a\nshowpage");
    SetStored(1, L"*St\x7F", L"a");
    mData->SetStoredPairCount(2);
    SetPCValue(1, L"ZUPCName", L"b\rshowpage");
    for (char const* profile : {"c\nshowpage", "c\\", "c) showpage (", "(c"}) {
        GetFindJobNote(mPPD->GetControls(), "*ZUOutProfile", true)->SetNotes(profile);
        ::testing::internal::CaptureStderr();
        TestSession::Pairs const job = Job();
        std::string const warnings = ::testing::internal::GetCapturedStderr();
        EXPECT_EQ((Texts{OptionA("Duplex"), SourceApplication("PRE VIEW")}), At(job, 81));
        EXPECT_EQ("%%ZUUTF8_Version: 1 .0 \n", At(job, 501).back());
        EXPECT_EQ(6, std::ranges::count(warnings, '\n')) << warnings;
    }
    SetTwoWay(false);
    Give("*ZUOutProfile", "c\nshowpage");
    EXPECT_EQ((Texts{OptionA("Duplex"), SourceApplication("PRE VIEW")}), At(Job(), 81));
    Give("*ZUOutProfile", "c (2)");
    EXPECT_EQ("%%BeginFeature: *ZUOutProfile c (2)\n\n%%EndFeature\n", At(Job(), 81).back());
}

TEST_F(JobAssemblyTest, OnlyAFileOfTheUsersOwnIsEmptiedForTheDestination) {
    namespace fs = std::filesystem;
    std::string const path = mSession.Path("printed.ps");
    std::string const other = mSession.Path("other");
    auto const open = [&](bool isChosen) {
        std::string destination = TestSession::Popup("ZUDestination");
        if (!isChosen) {
            // The PPD's own default.
            std::string const option = "*ZUDestination A";
            destination.replace(destination.find(option), option.size(), "*ZUDestination File");
            std::string const standard = "*DefaultZUDestination: A";
            destination.replace(destination.find(standard), standard.size(),
                                "*DefaultZUDestination: File");
        }
        Open(TestSession::Head() + destination + SpecialOption("ZUMailboxName", path));
        if (isChosen) {
            Give("*ZUDestination", "File");
        }
        EXPECT_EQ(Texts{path}, At(Job(), 900)) << "whatever comes of the file";
    };
    auto const write = [](std::string const& file) {
        std::ofstream(file) << "content";
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write);
    };
    write(path);
    open(false);
    EXPECT_EQ("content", ReadFile(path)) << "nobody chose it";
    open(true);
    EXPECT_EQ("", ReadFile(path));
    EXPECT_EQ(fs::perms(0777), fs::status(path).permissions());
    fs::remove(path);
    write(other);
    fs::create_symlink(other, path);
    open(true);
    EXPECT_EQ("content", ReadFile(other));
    EXPECT_EQ(fs::perms(0600), fs::status(other).permissions());
    fs::remove(path);
    ASSERT_EQ(0, mkfifo(path.c_str(), 0600));
    open(true);
    int const reader = ::open(path.c_str(), O_RDONLY | O_NONBLOCK);
    open(true);
    close(reader);
    EXPECT_EQ(fs::perms(0600), fs::status(path).permissions());
    fs::remove(path);
    open(false);
    EXPECT_EQ(fs::perms(0777), fs::status(path).permissions());
}

TEST_F(JobAssemblyTest, APathWithoutRoomIsNoDestination) {
    std::string const folder = mSession.Path("");
    for (std::size_t const size : {1023U, 1024U}) {
        std::string const path = folder + std::string(size - folder.size() - 1, '/') + "f";
        Open(TestSession::Head() + TestSession::Popup("ZUDestination") +
             TestSession::Popup("ZUMailboxName", "Dynamic", true));
        Give("*ZUDestination", "File");
        Give("*ZUMailboxName", path);
        EXPECT_EQ(size == 1023 ? Texts{path} : Texts(), At(Job(), 900));
        EXPECT_EQ(size == 1023, std::filesystem::remove(mSession.Path("f")));
    }
}

}  // namespace
