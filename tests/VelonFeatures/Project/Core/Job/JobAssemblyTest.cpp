// SPDX-License-Identifier: Apache-2.0
// What one commit puts into the job, and in which order.
#include <sys/stat.h>

#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "tests/VelonFeatures/Project/Core/Job/JobFixture.h"

namespace {

constexpr char kMarker[] =
    "%%EndVelonPreparse1: True\n"
    "/KTXPPDInsertionComplete where { pop KTXPPDInsertionComplete } if\n";
constexpr char kSameSize[] = "%%BeginFeature: *ZUPrintSize SameAsPageSize\n\n%%EndFeature\n";
constexpr char kPaperFeed[] = "com.apple.print.PrintSettings.PMPrimaryPaperFeed";

std::string Without(std::string text, std::string const& part) {
    std::size_t const start = text.find(part);
    EXPECT_NE(std::string::npos, start) << part;
    return text.erase(start, part.size());
}

std::string Times(int times, std::string const& text) {
    std::string repeated;
    for (int i = 0; i < times; ++i) {
        repeated += text;
    }
    return repeated;
}

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

class JobAssemblyTest : public JobFixture {
  protected:
    static std::string CustomSizeLines() {
        return "*%ParamCustomPrintSize Width: 1 points 36 1000\n"
               "*%ParamCustomPrintSize Height: 2 points 50 1500\n";
    }
    void SetCustomSize(float width, float height) {
        auto* const size =
            dynamic_cast<PPDXCustomPageSizeControl*>(ControlOf(*mPPD, "*CustomPrintSize"));
        ASSERT_NE(nullptr, size);
        size->SetWidth(width);
        size->SetHeight(height);
    }
    void SetPCValue(std::size_t index, wchar_t const* key, wchar_t const* value) {
        mData->PCPairs()[index].SetKey(key);
        mData->PCPairs()[index].SetValue(value);
    }
    void SetStored(std::size_t index, wchar_t const* key, wchar_t const* value) {
        mData->StoredPairs()[index].SetKey(key);
        mData->StoredPairs()[index].SetValue(value);
    }
    void SetFeed(std::vector<CFTypeRef> const& elements) {
        CFRef<CFMutableArrayRef> const feed(CFArrayCreateMutable(nullptr, 0));
        for (CFTypeRef element : elements) {
            CFArrayAppendValue(feed, element);
        }
        PMTicketSetCFArray(mSession.Settings(), CFSTR("test"), Str(kPaperFeed), feed, false);
    }
};

TEST_F(JobAssemblyTest, AJobThatHasEverythingHasItInOrder) {
    SetMainBundleIdentifier(CFSTR("com.example.InDesign"));
    mSession.SetOrientation(2);
    std::string const path = mSession.Path("printed.ps");
    std::string ppd = TestSession::Head("*%ZUVersion: 3.1\n");
    for (char const* keyword : {"Duplex", "ZURGBOverride", "ZUPrintSize", "Collate",
                                "ZUOrientation", "PageSize", "ZUDestination", "ZUSimulation"}) {
        ppd += TestSession::Popup(keyword);
    }
    Open(ppd + Range("ZUScale", "0;400;1;85") + CustomSizeLines() +
         SpecialOption("ZUUTF8_Version", "1.0") + SpecialOption("ZUMailboxName", path) +
         TestSession::Popup("ZUOutProfile"));
    SetTwoWay(true);
    Give("*ZUPrintSize", "CustomPrintSize");
    Give("*ZUDestination", "File");
    SetCustomSize(200, 300.5);
    SetPCValue(1, L"ZUPCName", L"Card");
    SetStored(0, L"*RangeProp1", L"Value");
    mData->SetStoredPairCount(1);
    TestSession::Pairs expected;
    for (char const* keyword :
         {"*Duplex", "*ZURGBOverride", "*ZUPrintSize", "*Collate", "*ZUOrientation",
          "*ZUDestination", "*ZUSimulation", "*ZUScale", "*ZUOutProfile"}) {
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
        {81, OptionA("ZUOutProfile")},
        {81, OptionA("ZUSimulation")},
        {81, OptionA("ZURGBOverride")},
        {81, ScaleText("85", "0.85")},
        {81, Plain("*ZUPCName", "Card")},
        {81, Plain("*ZUPCPPDSize", "CustomPageSize0")},
        {81, CustomSizeText("200.00 300.50")},
        {81, "%%BeginFeature: *ZUPrintSize CustomPrintSize\n\n%%EndFeature\n"},
        {900, path},
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
    SetFeed({CFSTR("x"), CFSTR("B")});
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
    SetFeed({CFSTR("x"), CFSTR("B")});
    SetPCValue(1, L"ZUPCName", L"Card");
    mData->SetPPD(nullptr);
    TestSession::Pairs const expected = {{81, SourceApplication("PREVIEW")},
                                         {81, Plain("*ZUPCName", "Card")},
                                         {501, "%%ZUBDriver\n"},
                                         {72, kMarker},
                                         {73, kMarker}};
    EXPECT_EQ(expected, Job());
}

TEST_F(JobAssemblyTest, ALackOfMemoryCostsTheEntryAloneThatItMeets) {
    std::string ppd = TestSession::Head("*%ZUVersion: 3\n") + CustomSizeLines() +
                      SpecialOption("ZUUTF8_Version", "1.0") +
                      SpecialOption("ZUMailboxName", mSession.Path("printed.ps"));
    for (char const* keyword : {"Duplex", "InputSlot", "ZUPrintSize", "PageSize", "ZUOutProfile"}) {
        ppd += TestSession::Popup(keyword);
    }
    Open(ppd + SpecialOption("ZUDestination", "File") + Range("ZUScale", "0;400;1;85"));
    SetTwoWay(true);
    Give("*ZUPrintSize", "CustomPrintSize");
    SetPCValue(1, L"ZUPCName", L"Card");
    SetStored(0, L"*RangeProp1", L"Value");
    mData->SetStoredPairCount(1);
    Job();
    std::size_t const all = Job().size();
    std::size_t fewest = all;
    for (long creations = 0; creations < 100; ++creations) {
        PrintSettingsTicket settings(mSession.Get());
        ZUBJobTicket ticket(&settings, CFSTR("job"));
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
    struct {
        char const* name;
        std::vector<CFTypeRef> feed;
        char const* value;
    } const cases[] = {
        {"known", {CFSTR("x"), CFSTR("B")}, "B"},
        {"third", {CFSTR("x"), CFSTR("B"), CFSTR("A")}, "B"},
        {"unknown", {CFSTR("x"), CFSTR("C")}, "A"},
        {"other case", {CFSTR("x"), CFSTR("b")}, "A"},
        {"one element", {CFSTR("B")}, "A"},
        {"no text", {CFSTR("x"), kCFBooleanTrue}, "A"},
        {"nothing", {}, "A"},
    };
    for (auto const& row : cases) {
        Open(TestSession::Head() + TestSession::Popup("InputSlot"));
        SetFeed(row.feed);
        // The value is in place before the code is taken.
        EXPECT_EQ("%%BeginFeature: *InputSlot " + std::string(row.value) + "\n",
                  At(Job(), 81).at(0).substr(0, 29))
            << row.name;
        EXPECT_EQ(row.value, ValueOf(*mPPD, "*InputSlot")) << row.name;
        bool const isA = row.value == std::string("A");
        SetFeed({CFSTR("x"), isA ? CFSTR("B") : CFSTR("A")});
        Job();
        EXPECT_EQ(row.value, ValueOf(*mPPD, "*InputSlot")) << row.name;
    }
    // One that was already asked for counts.
    Open(TestSession::Head() + TestSession::Popup("InputSlot"));
    SetFeed({CFSTR("x"), CFSTR("B")});
    EXPECT_EQ(noErr, mData->GetPrimaryPaperFeedFromOS());
    SetFeed({CFSTR("x"), CFSTR("A")});
    Job();
    EXPECT_EQ("B", ValueOf(*mPPD, "*InputSlot"));
    Open(TestSession::Head() + TestSession::Popup("Duplex"));
    EXPECT_EQ(OptionA("Duplex"), At(Job(), 81).at(0));
    EXPECT_STREQ("\xFF", mData->PaperFeed());
}

TEST_F(JobAssemblyTest, ALongNameOfTheApplicationIsLeftOutWhole) {
    struct {
        std::string name;
        Texts texts;
    } const cases[] = {
        {"a b-\xC3\xBC", {SourceApplication("A B-\xC3\xBC")}},
        {std::string(207, 'x'), {SourceApplication(std::string(207, 'X'))}},
        {std::string(208, 'x'), {}},
        {std::string(300, 'x'), {}},
    };
    Open(TestSession::Head());
    SetMainBundleIdentifier(nullptr);
    for (auto const& row : cases) {
        SetCurrentProcessName(row.name.c_str());
        EXPECT_EQ(row.texts, At(Job(), 81)) << row.name;
    }
}

TEST_F(JobAssemblyTest, HiddenControlsStayOutAfterTheSearchForAWorkflow) {
    Open(TestSession::Head() + TestSession::Popup("Duplex") +
         TestSession::Popup("Orphan", "", true) + SpecialOption("Secret", "1"));
    DisplayOptions::Options(kDisplayAll);
    TestSession::Pairs const job = Job();
    EXPECT_EQ((Texts{"*Duplex", "*Orphan", "*Secret"}), At(job, -9));
    EXPECT_EQ((Texts{OptionA("Duplex"), SourceApplication("PREVIEW"), OptionA("Orphan")}),
              At(job, 81));
    EXPECT_EQ(kDisplayOrphans, DisplayOptions::Options());
}

TEST_F(JobAssemblyTest, TheScaleHasTwoDecimals) {
    struct {
        long value;
        char const* factor;
    } const cases[] = {
        {0, "0.00"},   {5, "0.05"},   {85, "0.85"},        {100, "1.00"},
        {250, "2.50"}, {399, "3.99"}, {100001, "1000.01"}, {2147483647, "21474836.47"}};
    Open(TestSession::Head() + TestSession::Popup("Duplex") +
         Range("ZUScale", "0;2147483647;1;100"));
    auto* const scale = dynamic_cast<PPDXRangeControl*>(ControlOf(*mPPD, "*ZUScale"));
    ASSERT_NE(nullptr, scale);
    for (auto const& row : cases) {
        scale->SetValue(row.value);
        EXPECT_EQ(Texts{ScaleText(std::to_string(row.value), row.factor)}, Features());
    }
}

TEST_F(JobAssemblyTest, SpecialColourOptionsComeInTheirOwnOrderWhicheverThereAre) {
    Texts const all = {OptionA("ZUOutProfile"), OptionA("ZUSimulation"), OptionA("ZURGBOverride")};
    std::string const profile = TestSession::Popup("ZUOutProfile");
    std::string const simulation = TestSession::Popup("ZUSimulation", "Dynamic", true);
    std::string const rgb = TestSession::Popup("ZURGBOverride");
    struct {
        std::string lines;
        Texts texts;
    } const cases[] = {
        {rgb + simulation + profile, all},
        {rgb + profile, {all[0], all[2]}},
        {rgb, {all[2]}},
        {TestSession::Popup("ZUSimulationSpeed"), {}},
    };
    for (auto const& row : cases) {
        for (bool const isTwoWay : {false, true}) {
            Open(TestSession::Head() + TestSession::Popup("Duplex") + row.lines);
            SetTwoWay(isTwoWay);
            EXPECT_EQ(row.texts, Features()) << row.lines;
        }
    }
}

// ---- Pairs ----

TEST_F(JobAssemblyTest, StoredPairsComeInOrderAndWhole) {
    Open(TestSession::Head() + TestSession::Popup("Duplex") + TestSession::Popup("Sort"));
    SetStored(0, L"*RangeProp1", L"first");
    SetStored(2, L"*KeyAlone", nullptr);  // 1 isn't set at all
    SetStored(3, nullptr, L"value alone");
    SetStored(4, L"*MM_A", L"\u00FCber \u65E5\u672C \U0001F600 50%s");
    SetStored(5, L"*K", std::wstring(222, L'x').c_str());
    SetStored(6, L"*K", std::wstring(223, L'x').c_str());
    SetStored(7, L"*K", std::wstring(5000, L'x').c_str());
    SetStored(8, L"*K", (L"y" + std::wstring(111, L'\u00E9')).c_str());
    SetStored(9, L"*Chapters", L"");
    SetStored(10, L"*Behind", L"not counted");
    mData->SetStoredPairCount(10);
    Texts const expected = {
        OptionA("Sort"),
        Plain("*RangeProp1", "first"),
        Plain("*MM_A", "\u00FCber \u65E5\u672C \U0001F600 50%s"),
        Plain("*K", std::string(222, 'x')),
        Plain("*Chapters", ""),
    };
    EXPECT_EQ(expected, Features());
    mData->SetStoredPairCount(0);
    EXPECT_EQ(Texts{OptionA("Sort")}, Features());
}

TEST_F(JobAssemblyTest, PCPairsOfMinusOneAndThoseWithoutRoomAreLeftOut) {
    struct {
        std::wstring value;
        std::string text;  // "-" for one that doesn't go out
    } const cases[] = {
        {L"A4", "A4"},
        {L"7", "7"},
        {L"", ""},
        {L"-10", "-10"},
        {L"1-1", "1-1"},
        {L"-1", "-"},
        {L" -1x", "-"},
        {L"-1.5", "-"},
        {L"4294967295", "-"},
        {L"4294967296", "4294967296"},
        {L"\u00FCber", "\u00FCber"},
        {std::wstring(215, L'x'), std::string(215, 'x')},
        {std::wstring(216, L'x'), "-"},
        {std::wstring(107, L'\u00E9') + L"x", Times(107, "\u00E9") + "x"},
        {std::wstring(108, L'\u00E9'), "-"},
        {std::wstring(256, L'x'), "-"},
        {std::wstring(511, L'x'), "-"},
    };
    Open(TestSession::Head("*%ZUVersion: 3\n") + TestSession::Popup("Duplex") +
         TestSession::Popup("ZUPrintSize"));
    for (auto const& row : cases) {
        SetTwoWay(true);
        SetPCValue(2, L"ZUPCName", row.value.c_str());
        Texts const expected = {Plain("*ZUPCName", row.text), Plain("*ZUPCPPDSize", "A")};
        EXPECT_EQ(row.text == "-" ? Texts() : expected, Features()) << row.text;
        SetTwoWay(false);
        EXPECT_EQ(Texts(), Features()) << row.text;
    }
    // Each of the four, in order, whatever its key.
    SetTwoWay(true);
    wchar_t const* const keys[] = {L"ZUPCMID", L"Other", L"ZUPCName", L"*ZUCoverSizePCName"};
    for (std::size_t i = 0; i < std::size(keys); ++i) {
        SetPCValue(i, keys[i], std::to_wstring(i).c_str());
    }
    EXPECT_EQ((Texts{Plain("*ZUPCMID", "0"), Plain("*Other", "1"), Plain("*ZUPCName", "2"),
                     Plain("**ZUCoverSizePCName", "3"), Plain("*ZUPCPPDSize", "A")}),
              Features());
    SetPCValue(0, nullptr, L"1");
    SetPCValue(1, L"Other", nullptr);
    SetPCValue(2, std::wstring(300, L'k').c_str(), L"1");
    SetPCValue(3, L"*ZUCoverSizePCName", L"-1");
    EXPECT_EQ(Texts(), Features());
}

TEST_F(JobAssemblyTest, APCPairBringsThePrintSizeAlongForSomeVersions) {
    std::string const longest(63, 'x');
    struct {
        char const* version;
        char const* printSize;
        std::string text;  // "-" for none
    } const cases[] = {
        {"", "A4", "A4"},
        {"*%ZUVersion: 3\n", "A4", "A4"},
        {"*%ZUVersion: 3.9\n", "A4", "A4"},
        {"*%ZUVersion: 3\n", "CustomPrintSize", "CustomPageSize0"},
        {"", "customprintsize", "CustomPageSize0"},
        {"", "CustomPrintSizeX", "CustomPrintSizeX"},
        {"", longest.c_str(), longest},
        {"", "xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx", "-"},
        {"*%ZUVersion: 4\n", "A4", "-"},
        {"*%ZUVersion: 2.6\n", "A4", "-"},
        {"*%ZUVersion: 43\n", "A4", "-"},
        {"", nullptr, "-"},
    };
    for (auto const& row : cases) {
        // Without a version there are no popups; such a text is found all the same.
        Open(TestSession::Head(row.version) + Range("Duplex", "0;1;1;0") +
             (row.printSize == nullptr ? "" : SpecialOption("ZUPrintSize", row.printSize)));
        SetTwoWay(true);
        EXPECT_EQ(Texts(), Features()) << row.version << row.text;
        SetPCValue(0, L"ZUPCMID", L"12");
        Texts expected = {Plain("*ZUPCMID", "12")};
        if (row.text != "-") {
            expected.push_back(Plain("*ZUPCPPDSize", row.text));
        }
        EXPECT_EQ(expected, Features()) << row.version << row.text;
    }
    Open(Without(
        TestSession::Head("") + TestSession::Popup("Duplex") + TestSession::Popup("ZUPrintSize"),
        "*DefaultZUPrintSize: A\n"));
    SetTwoWay(true);
    SetPCValue(0, L"ZUPCMID", L"12");
    EXPECT_EQ("(none)", ValueOf(*mPPD, "*ZUPrintSize"));
    EXPECT_EQ(Texts{Plain("*ZUPCMID", "12")}, Features());
}

TEST_F(JobAssemblyTest, PCPairsOfAJapanesePPDAreInMacJapanese) {
    struct {
        char const* language;
        wchar_t const* value;
        Texts texts;
    } const cases[] = {
        {"Japanese", L"\u65E5\u672C 1", {Plain("*ZUPCName", "\x93\xFA\x96\x7B 1")}},
        {"Japanese", L"A4", {Plain("*ZUPCName", "A4")}},
        {"Japanese", L"\U0001F600", {}},
        {"Japanese", L"-1", {}},
        {"English", L"\u65E5\u672C", {Plain("*ZUPCName", "\u65E5\u672C")}},
        {"japanese", L"\u65E5", {Plain("*ZUPCName", "\u65E5")}},
        {"JapaneseX", L"\u65E5", {Plain("*ZUPCName", "\u65E5")}},
    };
    std::string const english = "*LanguageVersion: English";
    for (auto const& row : cases) {
        std::string ppd = TestSession::Head("*%ZUVersion: 3\n") + TestSession::Popup("Duplex") +
                          TestSession::Popup("ZUPrintSize");
        ppd.replace(ppd.find(english), english.size(),
                    std::string("*LanguageVersion: ") + row.language);
        Open(ppd);
        SetTwoWay(true);
        SetPCValue(1, L"ZUPCName", row.value);
        Texts expected = row.texts;
        if (!expected.empty()) {
            expected.push_back(Plain("*ZUPCPPDSize", "A"));
        }
        EXPECT_EQ(expected, Features()) << row.language;
    }
}

// ---- Sizes ----

TEST_F(JobAssemblyTest, ACustomPrintSizeIsWrittenWithTwoDecimalsWhenItIsChosen) {
    struct {
        char const* printSize;
        float width;
        float height;
        char const* size;
    } const cases[] = {
        {"CustomPrintSize", 595.276F, 841.89F, "595.28 841.89"},
        {"customPRINTsize", 200, 300.5F, "200.00 300.50"},
        {"CustomPrintSize", 0, 0.004F, "0.00 0.00"},
        {"CustomPrintSize", 612.345F, 1e7F, "612.34 10000000.00"},
        {"CustomPrintSizes", 200, 300, ""},
        {"A4", 200, 300, ""},
    };
    for (auto const& row : cases) {
        Open(TestSession::Head() + TestSession::Popup("Duplex") +
             TestSession::Popup("ZUPrintSize") + CustomSizeLines());
        Give("*ZUPrintSize", row.printSize);
        SetCustomSize(row.width, row.height);
        Texts const expected = {CustomSizeText(row.size)};
        EXPECT_EQ(*row.size == '\0' ? Texts() : expected, Features()) << row.printSize << row.size;
    }
    Open(TestSession::Head() + TestSession::Popup("Duplex") + TestSession::Popup("ZUPrintSize"));
    Give("*ZUPrintSize", "CustomPrintSize");
    EXPECT_EQ(Texts(), Features());
    Open(TestSession::Head() + TestSession::Popup("Duplex") + CustomSizeLines());
    EXPECT_EQ(Texts(), Features());
}

TEST_F(JobAssemblyTest, ThePrintSizeIsSaidToBeThePageSizesUnlessItDiffers) {
    struct {
        char const* pageSize;  // null without the option, "" without a value
        char const* printSize;
        bool isCustomPaper;
        std::string text;  // "-" for none
    } const cases[] = {
        {"A", "A", false, kSameSize},
        {"a", "A", false, kSameSize},
        {"B", "A", false, OptionA("ZUPrintSize")},
        {"AB", "A", false, OptionA("ZUPrintSize")},
        {"A", "A", true, OptionA("ZUPrintSize")},
        {"B", "A", true, OptionA("ZUPrintSize")},
        {"", "A", false, OptionA("ZUPrintSize")},
        {"A", "", false, "-"},
        {"", "", false, kSameSize},
        {nullptr, "A", false, "-"},
        {nullptr, "A", true, "-"},
        {"A", nullptr, true, "-"},
    };
    for (auto const& row : cases) {
        // The page size is the first control, whose code stands before the application.
        std::string ppd = TestSession::Head();
        for (auto const& [keyword, value] :
             {std::pair{"PageSize", row.pageSize}, std::pair{"ZUPrintSize", row.printSize}}) {
            std::string const popup = value == nullptr ? "" : TestSession::Popup(keyword);
            bool const isUnset = value != nullptr && *value == '\0';
            ppd += isUnset ? Without(popup, std::string("*Default") + keyword + ": A\n") : popup;
        }
        Open(row.pageSize == nullptr ? ppd + TestSession::Popup("Duplex") : ppd);
        for (auto const& [keyword, value] :
             {std::pair{"*PageSize", row.pageSize}, std::pair{"*ZUPrintSize", row.printSize}}) {
            if (value != nullptr && *value != '\0' && std::string(value) != "A") {
                Give(keyword, value);
            }
        }
        mPPD->SetCustomPaper(row.isCustomPaper);
        Texts texts = Features();
        if (row.pageSize == nullptr) {
            ASSERT_EQ(OptionA("Duplex"), texts.at(0));
            texts.erase(texts.begin());
        }
        EXPECT_EQ(row.text == "-" ? Texts() : Texts{row.text}, texts)
            << (row.pageSize == nullptr ? "(none)" : row.pageSize) << row.isCustomPaper;
    }
}

// ---- A file as the destination ----

TEST_F(JobAssemblyTest, PrintingIntoAFileMakesItForEveryone) {
    // A path of that many bytes.
    auto const padded = [this](std::size_t size, std::string const& name) {
        std::string const folder = mSession.Path("");
        return folder + std::string(size - folder.size() - name.size(), '/') + name;
    };
    struct {
        char const* destination;
        std::string path;
        bool isInJob;
        bool isMade;
    } const cases[] = {
        {"File", mSession.Path("new.ps"), true, true},
        {"FILE", mSession.Path("old.ps"), true, true},
        {"Files", mSession.Path("other.ps"), false, false},
        {"A", mSession.Path("queue.ps"), false, false},
        {"File", mSession.Path("absent/new.ps"), true, false},
        {"File", padded(1023, "l1.ps"), true, true},
        {"File", padded(1024, "l2.ps"), false, false},
        {"File", "", false, false},
    };
    std::ofstream(mSession.Path("old.ps")) << "the job before";
    mode_t const mask = umask(077);
    for (auto const& row : cases) {
        Open(TestSession::Head() + TestSession::Popup("ZUDestination") +
             TestSession::Popup("ZUMailboxName", "Dynamic", true));
        Give("*ZUDestination", row.destination);
        Give("*ZUMailboxName", row.path);
        EXPECT_EQ(row.isInJob ? Texts{row.path} : Texts(), At(Job(), 900)) << row.path;
        struct stat status = {};
        EXPECT_EQ(row.isMade, stat(row.path.c_str(), &status) == 0) << row.path;
        if (row.isMade) {
            EXPECT_EQ(0777U, status.st_mode & 07777U) << row.path;
            EXPECT_EQ(0, status.st_size) << row.path;
        }
    }
    umask(mask);
    // One of the two alone is no destination.
    Open(TestSession::Head() + TestSession::Popup("ZUDestination"));
    Give("*ZUDestination", "File");
    EXPECT_EQ(Texts(), At(Job(), 900));
    Open(TestSession::Head() + SpecialOption("ZUMailboxName", mSession.Path("alone.ps")));
    EXPECT_EQ(Texts(), At(Job(), 900));
    EXPECT_FALSE(std::filesystem::exists(mSession.Path("alone.ps")));
}

// ---- The end of the job ----

TEST_F(JobAssemblyTest, TheUTF8VersionEndsTheJob) {
    struct {
        std::string lines;
        std::string text;  // "-" for none
    } const cases[] = {
        {SpecialOption("ZUUTF8_Version", "1.0"), "1.0"},
        {SpecialOption("ZUUTF8_Version", "2 %s"), "2 %s"},
        {SpecialOption("ZUUTF8_Version", std::string(127, '1')), std::string(127, '1')},
        {SpecialOption("ZUUTF8_Version", std::string(128, '1')), "-"},
        {SpecialOption("ZUUTF8_Version", "\xA5"), "-"},
        {SpecialOption("ZUUTF8_VersionX", "1.0"), "-"},
        {TestSession::Popup("ZUUTF8_Version"), "-"},
    };
    for (auto const& row : cases) {
        Open(TestSession::Head() + row.lines);
        TestSession::Pairs const job = Job();
        Texts expected = {"%%ZUBDriver\n"};
        if (row.text != "-") {
            expected.push_back("%%ZUUTF8_Version: " + row.text + " \n");
            EXPECT_EQ((std::pair{501, expected.back()}), job.back());
        }
        EXPECT_EQ(expected, At(job, 501)) << row.lines;
    }
}

}  // namespace
