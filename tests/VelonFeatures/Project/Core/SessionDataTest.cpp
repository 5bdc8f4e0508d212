// SPDX-License-Identifier: Apache-2.0
// What the session data keeps beside the PPD: in the print settings and in the printer's record.
#include <climits>
#include <memory>

#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "panel/PPDTree.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"
#include "twoway/ZUBTolvanePrinterPList.h"

namespace {

using Texts = std::vector<std::string>;

constexpr char kRecords[] = "home/Library/Preferences/ZUB.TolvanePrinterV2.plist";

std::wstring WideOf(wchar_t const* text) {
    return text == nullptr ? L"(null)" : text;
}

std::string Repeated(std::string const& text, int times) {
    std::string repeated;
    for (int i = 0; i < times; ++i) {
        repeated += text;
    }
    return repeated;
}

class SessionDataTest : public CoreFixture {
  protected:
    SessionDataTest() { mSession.SetPrinter("Demo", nullptr); }

    std::unique_ptr<PDEData> Data(ZUBPPD* ppd = nullptr) const {
        return std::make_unique<PDEData>(mSession.Get(), ppd, nullptr);
    }
    void SetNumber(std::string const& key, std::int32_t number) const {
        PMTicketSetSInt32(mSession.Settings(), Str("test"), Str(key), number, false);
    }
    void SetText(std::string const& key, std::string const& text) const {
        PMTicketSetCFString(mSession.Settings(), Str("test"), Str(key), Str(text), false);
    }
    // A text or a number of the settings, "(none)" without the item.
    std::string Item(std::string const& key) const {
        CFTypeRef item = nullptr;
        PMTicketGetItem(mSession.Settings(), Str(key), 0, 0, &item);
        std::int32_t number = 0;
        if (item != nullptr && CFGetTypeID(item) == CFNumberGetTypeID() &&
            CFNumberGetValue(static_cast<CFNumberRef>(item), kCFNumberSInt32Type, &number)) {
            return std::to_string(number);
        }
        return Text(static_cast<CFStringRef>(item));
    }
    CFIndex CountSettings() const {
        CFRef<CFDictionaryRef> items;
        PMTicketCopyItems(mSession.Settings(), items.Receive());
        return CFDictionaryGetCount(items);
    }

    // ---- Records ----
    void WriteRecords(std::string const& content) const {
        std::filesystem::path const path(mSession.Path(kRecords));
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary) << content;
    }
    // Gives the printer a record with one block.
    static void SetBlock(std::string const& printer, std::int32_t block, Texts const& texts) {
        ZUBTolvanePrinterPList records;
        auto const items = std::make_unique<ZUBTolvanePrinterPList::DataItem[]>(texts.size() + 1);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            texts[i].copy(items[i], sizeof(items[i]) - 1);
        }
        EXPECT_TRUE(records.Add(Str(printer), Str("address"), true));
        EXPECT_TRUE(records.AddDataBlob(Str(printer), static_cast<std::int32_t>(texts.size()),
                                        block, items.get()));
        EXPECT_TRUE(records.Save());
    }

    PrintSettingsTicket mSettings{mSession.Get()};
};

TEST_F(SessionDataTest, EmptySettingsGiveNoSelectionAndKeepThePairs) {
    auto const data = Data();
    data->Watermarks().mSelected = 5;
    data->Watermarks().mFirstPageOnly = 1;
    data->SetStoredPairCount(7);
    EXPECT_EQ(noErr, data->RestoreNonPSSettings(&mSettings));
    EXPECT_EQ(-1, data->Watermarks().mSelected);
    EXPECT_EQ(0, data->Watermarks().mFirstPageOnly);
    EXPECT_EQ(0, data->StoredPairCount());
    wchar_t const* const keys[] = {L"*ZUPCMID", L"*ZUPCName", L"*ZUCoverSizePCMID",
                                   L"*ZUCoverSizePCName"};
    for (std::size_t i = 0; i < std::size(keys); ++i) {
        EXPECT_STREQ(keys[i], data->PCPairs()[i].Key());
        EXPECT_STREQ(L"-1", data->PCPairs()[i].Value());
    }
    // One entry alone takes its place.
    SetText("PCValue2", "7");
    SetText("PCKey3", "*Other");
    EXPECT_EQ(noErr, data->RestoreNonPSSettings(&mSettings));
    EXPECT_STREQ(L"*ZUCoverSizePCMID", data->PCPairs()[2].Key());
    EXPECT_STREQ(L"7", data->PCPairs()[2].Value());
    EXPECT_STREQ(L"*Other", data->PCPairs()[3].Key());
}

TEST_F(SessionDataTest, APairComesBackWholeOrNotAtAll) {
    struct {
        std::wstring wide;
        std::string stored;  // "(none)" for one without room, or that is no text
    } const cases[] = {
        {L"", ""},
        {L"A4", "A4"},
        {L"\u00DCberl\u00E4nge \u65E5\u672C", "\u00DCberl\u00E4nge \u65E5\u672C"},
        {L"\uFFFD\U00010000\U0001F600\U0010FFFF", "\uFFFD\U00010000\U0001F600\U0010FFFF"},
        {std::wstring(255, L'x'), std::string(255, 'x')},
        {std::wstring(256, L'x'), "(none)"},
        {std::wstring(127, L'\u00E9'), Repeated("\u00E9", 127)},
        {std::wstring(128, L'\u00E9'), "(none)"},
        {std::wstring(85, L'\u672C'), Repeated("\u672C", 85)},
        {std::wstring(63, L'\U0001F600') + L"xyz", Repeated("\U0001F600", 63) + "xyz"},
        {std::wstring(64, L'\U0001F600'), "(none)"},
        {std::wstring(1, static_cast<wchar_t>(0xD83D)), "(none)"},
        {std::wstring(1, static_cast<wchar_t>(0x110000)), "(none)"},
        {std::wstring(100000, L'x'), "(none)"},
    };
    for (auto const& row : cases) {
        for (bool const isKey : {false, true}) {
            // What an earlier dialog left.
            for (char const* key : {"PCKey1", "PCValue1", "MMKey0", "MMValue0"}) {
                SetText(key, "old");
            }
            auto const data = Data();
            data->SetStoredPairCount(2);
            for (OptionPair* pair : {&data->PCPairs()[1], &data->StoredPairs()[0]}) {
                pair->SetKey(isKey ? row.wide.c_str() : L"*Key");
                pair->SetValue(isKey ? L"value" : row.wide.c_str());
            }
            data->StoredPairs()[1].SetKey(L"*Next");
            data->StoredPairs()[1].SetValue(L"next");
            EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
            bool const isWhole = row.stored != "(none)";
            for (char const* stem : {"PC", "MM"}) {
                std::string const number = *stem == 'P' ? "1" : "0";
                std::string const key = Item(std::string(stem) + "Key" + number);
                std::string const value = Item(std::string(stem) + "Value" + number);
                EXPECT_EQ(isKey ? row.stored : isWhole ? "*Key" : "(none)", key);
                EXPECT_EQ(!isKey ? row.stored : isWhole ? "value" : "(none)", value);
            }
            auto const next = Data();
            EXPECT_EQ(noErr, next->RestoreNonPSSettings(&mSettings));
            ASSERT_EQ(2, next->StoredPairCount());
            std::wstring const key = isKey ? row.wide : L"*Key";
            std::wstring const value = isKey ? L"value" : row.wide;
            OptionPair const& pc = next->PCPairs()[1];
            EXPECT_EQ(isWhole ? key : L"*ZUPCName", WideOf(pc.Key()));
            EXPECT_EQ(isWhole ? value : L"-1", WideOf(pc.Value()));
            OptionPair const& stored = next->StoredPairs()[0];
            EXPECT_EQ(isWhole ? key : L"(null)", WideOf(stored.Key()));
            EXPECT_EQ(isWhole ? value : L"(null)", WideOf(stored.Value()));
            EXPECT_STREQ(L"next", next->StoredPairs()[1].Value());
        }
    }
}

TEST_F(SessionDataTest, APairThatIsTooLongInTheSettingsIsNotTaken) {
    std::string const fits(255, 'x');
    std::string const tooLong(256, 'x');
    SetNumber(".MMKey", 1);
    SetText("PCKey0", tooLong);
    SetText("PCValue0", "7");
    SetText("PCKey1", "*Other");
    SetText("PCValue1", tooLong);
    SetText("PCKey2", fits);
    SetText("PCValue2", fits);
    SetText("MMKey0", "*Key");
    SetText("MMValue0", tooLong);
    auto const data = Data();
    EXPECT_EQ(noErr, data->RestoreNonPSSettings(&mSettings));
    EXPECT_STREQ(L"*ZUPCMID", data->PCPairs()[0].Key());
    EXPECT_STREQ(L"-1", data->PCPairs()[0].Value());
    EXPECT_STREQ(L"*ZUPCName", data->PCPairs()[1].Key());
    EXPECT_STREQ(L"-1", data->PCPairs()[1].Value());
    EXPECT_EQ(std::wstring(255, L'x'), WideOf(data->PCPairs()[2].Key()));
    EXPECT_EQ(std::wstring(255, L'x'), WideOf(data->PCPairs()[2].Value()));
    EXPECT_EQ(nullptr, data->StoredPairs()[0].Key());
    EXPECT_EQ(nullptr, data->StoredPairs()[0].Value());
}

TEST_F(SessionDataTest, TheNumberOfStoredPairsStaysWithinTheirRoom) {
    for (std::size_t i : {0, 2, 254, 255}) {  // 1 is missing
        SetText("MMKey" + std::to_string(i), "*Key" + std::to_string(i));
        SetText("MMValue" + std::to_string(i), std::to_string(i));
    }
    struct {
        std::int32_t stored;
        std::int32_t count;
    } const cases[] = {{0, 0},  {1, 1},       {3, 3},         {255, 255},  {256, 255},
                       {-1, 0}, {99999, 255}, {INT_MAX, 255}, {INT_MIN, 0}};
    for (auto const& row : cases) {
        SetNumber(".MMKey", row.stored);
        auto const data = Data();
        EXPECT_EQ(noErr, data->RestoreNonPSSettings(&mSettings));
        EXPECT_EQ(row.count, data->StoredPairCount()) << row.stored;
        for (std::size_t i : {0, 1, 2, 254}) {
            std::wstring const value = i == 1 || static_cast<std::int32_t>(i) >= row.count
                                           ? L"(null)"
                                           : std::to_wstring(i);
            EXPECT_EQ(value, WideOf(data->StoredPairs()[i].Value())) << row.stored << " " << i;
        }
        EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
        EXPECT_EQ(std::to_string(row.count), Item(".MMKey"));
        EXPECT_EQ("(none)", Item("MMKey1"));
    }
    SetText(".MMKey", "255");
    auto const data = Data();
    data->RestoreNonPSSettings(&mSettings);
    EXPECT_EQ(0, data->StoredPairCount());
}

TEST_F(SessionDataTest, ASelectedWatermarkMustBeOneOfThePrintersRecord) {
    struct {
        std::size_t watermarks;
        std::int32_t stored;
        std::int32_t selected;
    } const cases[] = {{0, 0, -1},   {1, 0, 0},         {1, 1, -1},       {3, 2, 2},
                       {3, 3, -1},   {3, -1, -1},       {3, -2, -1},      {20, 19, 19},
                       {20, 20, -1}, {20, INT_MAX, -1}, {20, INT_MIN, -1}};
    for (auto const& row : cases) {
        SetBlock("Demo", 1, Texts(row.watermarks, "watermark"));
        SetNumber(".SelectedWatermarkKey", row.stored);
        auto const data = Data();
        EXPECT_EQ(noErr, data->RestoreNonPSSettings(&mSettings));
        EXPECT_EQ(row.selected, data->Watermarks().mSelected) << row.watermarks << row.stored;
    }
    // Items of another block or printer are none.
    SetBlock("Other", 1, {"a", "b"});
    SetBlock("Demo", 1, {});
    SetBlock("Demo", 0, {"a", "b"});
    SetNumber(".SelectedWatermarkKey", 0);
    auto const data = Data();
    data->RestoreNonPSSettings(&mSettings);
    EXPECT_EQ(-1, data->Watermarks().mSelected);
    SetText(".SelectedWatermarkKey", "0");
    SetBlock("Demo", 1, {"a", "b"});
    data->ResetTolvanePrinterList();
    data->RestoreNonPSSettings(&mSettings);
    EXPECT_EQ(-1, data->Watermarks().mSelected);
}

TEST_F(SessionDataTest, TheFirstPageFlagIsKeptWithASelectionOnly) {
    SetBlock("Demo", 1, {"a", "b"});
    struct {
        std::int32_t stored;
        std::int32_t flag;
    } const cases[] = {{0, 0}, {1, 1}, {2, 0}, {INT_MAX, 0}};
    SetNumber(".SelectedWatermarkKey", 1);
    for (auto const& row : cases) {
        SetNumber(".FirstPageOnlyKey", row.stored);
        auto const data = Data();
        data->RestoreNonPSSettings(&mSettings);
        EXPECT_EQ(row.flag, data->Watermarks().mFirstPageOnly) << row.stored;
        EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
        EXPECT_EQ("1", Item(".SelectedWatermarkKey"));
        EXPECT_EQ(std::to_string(row.flag), Item(".FirstPageOnlyKey"));
    }
    mSession.EmptySettings();
    auto const data = Data();
    data->Watermarks().mFirstPageOnly = 1;
    EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
    EXPECT_EQ("-1", Item(".SelectedWatermarkKey"));
    EXPECT_EQ("(none)", Item(".FirstPageOnlyKey"));
    EXPECT_EQ("4", Item(".PCKey"));
    EXPECT_EQ("*ZUPCMID", Item("PCKey0"));
    EXPECT_EQ("-1", Item("PCValue3"));
    EXPECT_EQ(11, CountSettings());
}

TEST_F(SessionDataTest, WithoutATicketOrClientNothingIsKept) {
    auto const data = Data();
    TestSession empty;
    empty.RemoveTicket("PMPrintSettingsTicket");
    PrintSettingsTicket invalid(empty.Get());
    EXPECT_EQ(-1, data->SaveNonPSSettings(nullptr, CFSTR("client")));
    EXPECT_EQ(-1, data->SaveNonPSSettings(&invalid, CFSTR("client")));
    EXPECT_EQ(-1, data->SaveNonPSSettings(&mSettings, nullptr));
    EXPECT_EQ(0, CountSettings());
    data->SetStoredPairCount(3);
    EXPECT_EQ(-1, data->RestoreNonPSSettings(nullptr));
    EXPECT_EQ(-1, data->RestoreNonPSSettings(&invalid));
    EXPECT_EQ(3, data->StoredPairCount());
    // The last entry decides.
    PMTicketSetSInt32(mSession.Settings(), CFSTR("test"), CFSTR(".MMKey"), 0, true);
    EXPECT_EQ(noErr, Data()->RestoreNonPSSettings(&mSettings));
    EXPECT_EQ(kPMItemIsLocked, Data()->SaveNonPSSettings(&mSettings, CFSTR("client")));
    data->SetStoredPairCount(1);
    data->StoredPairs()[0].SetKey(L"*Key");
    data->StoredPairs()[0].SetValue(L"value");
    EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
}

// ---- The operating system's values ----

TEST_F(SessionDataTest, ThePaperFeedIsTheSecondElement) {
    std::string const key = "com.apple.print.PrintSettings.PMPrimaryPaperFeed";
    auto const feed = [](std::vector<CFTypeRef> const& elements) {
        CFRef<CFMutableArrayRef> array(CFArrayCreateMutable(nullptr, 0));
        for (CFTypeRef element : elements) {
            CFArrayAppendValue(array, element);
        }
        return array;
    };
    std::string const longest = "\u00DC" + std::string(61, 'x');
    CFRef<CFStringRef> const fits = Str(longest);
    CFRef<CFStringRef> const tooLong = Str(longest + "x");
    struct {
        CFRef<CFMutableArrayRef> value;
        std::string keyword;
    } const cases[] = {
        {feed({}), "before"},
        {feed({CFSTR("Tray1")}), "before"},
        {feed({CFSTR("Tray1"), CFSTR("Tray2")}), "Tray2"},
        {feed({kCFBooleanTrue, CFSTR("Tray2"), CFSTR("Tray3")}), "Tray2"},
        {feed({CFSTR("a"), CFSTR("")}), ""},
        {feed({CFSTR("a"), kCFBooleanTrue}), ""},
        {feed({CFSTR("a"), fits}), longest},
        {feed({CFSTR("a"), tooLong}), ""},
    };
    for (auto const& row : cases) {
        auto const data = Data();
        EXPECT_EQ(noErr, data->GetPrimaryPaperFeedFromOS());
        EXPECT_STREQ("", data->PaperFeed());
        for (auto const& value : {feed({CFSTR("a"), CFSTR("before")}), row.value}) {
            PMTicketSetCFArray(mSession.Settings(), CFSTR("test"), Str(key), value, false);
            EXPECT_EQ(noErr, data->GetPrimaryPaperFeedFromOS());
        }
        EXPECT_EQ(row.keyword, data->PaperFeed());
        mSession.EmptySettings();
    }
    SetText(key, "Tray2");
    EXPECT_EQ(kPMDataFormatError, Data()->GetPrimaryPaperFeedFromOS());
    mSession.RemoveTicket("PMPrintSettingsTicket");
    EXPECT_EQ(noErr, Data()->GetPrimaryPaperFeedFromOS());
    PMSessionSetDataInSession(mSession.Get(), CFSTR("PMPrintSettingsTicket"), CFSTR("text"));
    EXPECT_NE(noErr, Data()->GetPrimaryPaperFeedFromOS());
}

TEST_F(SessionDataTest, CopiesAreTakenFromTheSettingsAndSetToOneThere) {
    auto const data = Data();
    EXPECT_EQ(0, data->GetNumCopiesFromOS());
    SetNumber("com.apple.print.PrintSettings.PMCopies", 12);
    EXPECT_EQ(12, data->GetNumCopiesFromOS());
    data->Set1CopiesToOS();
    EXPECT_EQ(1, data->GetNumCopiesFromOS());
    EXPECT_EQ("1", Item("com.apple.print.PrintSettings.PMCopies"));
    EXPECT_EQ(1, CountSettings()) << "no job data file";
    mSession.RemoveTicket("PMPrintSettingsTicket");
    data->Set1CopiesToOS();
    EXPECT_EQ(0, data->GetNumCopiesFromOS());
}

// ---- The printer's record ----

TEST_F(SessionDataTest, AnAddressLastsAndIsFoundByName) {
    auto const data = Data();
    bool enabled = true;
    EXPECT_EQ("", Text(data->GetTolvanePrinterAddress(CFSTR("Demo"), &enabled)));
    EXPECT_FALSE(enabled);
    EXPECT_FALSE(data->GetIPAddressEnabled());
    data->SetIPAddressEnabled(true);
    EXPECT_FALSE(std::filesystem::exists(mSession.Path(kRecords))) << "no record, nothing to keep";

    EXPECT_TRUE(data->SetTolvanePrinterAddress(nullptr, CFSTR("host"), true));
    EXPECT_TRUE(data->SetTolvanePrinterAddress(Str("B\u00FCro"), CFSTR("10.0.0.1"), false));
    EXPECT_FALSE(data->SetTolvanePrinterAddress(CFSTR("Other"), CFStringRef{}, true));
    EXPECT_FALSE(data->SetTolvanePrinterAddress(CFSTR("Other"), Str("a\x01"), true));
    EXPECT_TRUE(data->GetIPAddressEnabled());
    auto const next = Data();
    struct {
        char const* name;
        char const* address;
        bool isEnabled;
    } const cases[] = {{"demo", "host", true},
                       {"B\u00FCro", "10.0.0.1", false},
                       {"Other", "", false},
                       {"host", "", false}};
    for (auto const& row : cases) {
        EXPECT_EQ(row.address, Text(next->GetTolvanePrinterAddress(Str(row.name), &enabled)));
        EXPECT_EQ(row.isEnabled, enabled) << row.name;
        EXPECT_EQ(row.address, Text(next->GetTolvanePrinterAddress(Str(row.name))));
    }
    // What another dialog changes is seen after a reset.
    next->SetIPAddressEnabled(false);
    EXPECT_TRUE(data->GetIPAddressEnabled());
    EXPECT_TRUE(data->ResetTolvanePrinterList());
    EXPECT_FALSE(data->GetIPAddressEnabled());
    EXPECT_TRUE(data->SaveTolvanePrinterList());
}

TEST_F(SessionDataTest, DamagedRecordsCountAsNoneAndDoNotStandInTheWay) {
    for (std::string const records :
         {"", "no list", "<plist version=\"1.0\"><dict/></plist>",
          "<plist version=\"1.0\"><array><string>Demo</string></array></plist>",
          "<plist version=\"1.0\"><array><string>Demo</string><integer>1</integer><true/>"
          "<string>2</string><string>1:99</string></array></plist>"}) {
        WriteRecords(records);
        auto const data = Data();
        EXPECT_TRUE(data->IsValid());
        EXPECT_EQ("", Text(data->GetTolvanePrinterAddress(data->PrinterName()))) << records;
        SetNumber(".SelectedWatermarkKey", 0);
        EXPECT_EQ(noErr, data->RestoreNonPSSettings(&mSettings));
        EXPECT_EQ(-1, data->Watermarks().mSelected) << records;
        PPDTree tree;
        EXPECT_TRUE(data->GetPPDShortcuts(tree));
        EXPECT_TRUE(data->SetTolvanePrinterAddress(nullptr, CFSTR("host"), true)) << records;
        EXPECT_EQ("host", Text(Data()->GetTolvanePrinterAddress(CFSTR("Demo")))) << records;
    }
}

TEST_F(SessionDataTest, WithoutAHomeNothingIsRemembered) {
    HomeScope const none(nullptr);
    auto const data = Data();
    EXPECT_TRUE(data->IsValid());
    EXPECT_EQ("", Text(data->GetTolvanePrinterAddress(CFSTR("Demo"))));
    EXPECT_FALSE(data->SetTolvanePrinterAddress(nullptr, CFSTR("host"), true));
    EXPECT_FALSE(data->SaveTolvanePrinterList());
    EXPECT_TRUE(data->GetIPAddressEnabled()) << "known as long as the dialog lasts";
    EXPECT_FALSE(data->SetPPDShortcuts(PPDTree()));
    PPDTree tree;
    EXPECT_TRUE(data->GetPPDShortcuts(tree));
    EXPECT_TRUE(data->ResetTolvanePrinterList());
    EXPECT_FALSE(data->GetIPAddressEnabled());
}

TEST_F(SessionDataTest, WithoutAPrinterThereIsNoRecord) {
    mSession.RemovePrinter();
    auto const data = Data();
    PPDTree tree;
    EXPECT_FALSE(data->GetPPDShortcuts(tree));
    EXPECT_FALSE(data->SetPPDShortcuts(tree));
    EXPECT_EQ(nullptr, data->GetTolvanePrinterAddress(CFSTR("Demo")));
    EXPECT_FALSE(data->SetTolvanePrinterAddress(CFSTR("Demo"), CFSTR("host"), true));
    EXPECT_FALSE(data->GetIPAddressEnabled());
    data->SetIPAddressEnabled(true);
    EXPECT_FALSE(data->SaveTolvanePrinterList());
    EXPECT_FALSE(std::filesystem::exists(mSession.Path("home")));
}

// ---- The quick-access list ----

class QuickAccessTest : public SessionDataTest {
  protected:
    QuickAccessTest() {
        std::string ppd = TestSession::Head() + TestSession::InstallableGroup();
        for (char const* keyword :
             {"Duplex", "Sort", "xBidi", "Bidi", "ZUPaperSim", "ZUPaperSimX", "ZUMMInUse",
              "ZUSubsetFinishingInUse", "ZUMMInUseX", "ZUPureBlack", "S\u00F6rt"}) {
            ppd += TestSession::Popup(keyword);
        }
        ppd += TestSession::Popup("Hidden", "NoVelonDriverUI") +
               TestSession::Popup("Orphan", "Dynamic", true) +
               TestSession::Popup(mLongest.substr(1)) +
               TestSession::Popup("Tray", "Dynamic", false, "ZUPPInstallableOptions");
        std::ofstream(mSession.Path("demo.ppd"), std::ios::binary) << ppd;
        mPPD = new ZUBPPD(FileURL(mSession.Path("demo.ppd")), kParseAll, nullptr);
        mData = std::make_unique<PDEData>(mSession.Get(), mPPD, nullptr);
    }
    ~QuickAccessTest() override {
        Empty();
        mData.reset();
        mPPD->Release();
    }
    void Empty() {
        for (std::int32_t i = 0; i < mTree.mShortcutCount; ++i) {
            CFRelease(mTree.mShortcuts[i]->mName);
            delete mTree.mShortcuts[i];
        }
        mTree = {};
    }
    void Add(std::string const& keyword) {
        auto* const shortcut = new PPDTreeShortcut;
        shortcut->mName = Str("name of " + keyword).Release();
        shortcut->mItemID = 101;
        keyword.copy(shortcut->mKeyword, kTreeKeywordSize - 1);
        mTree.mShortcuts[mTree.mShortcutCount++] = shortcut;
    }
    Texts Keywords() const {
        Texts keywords;
        for (std::int32_t i = 0; i < mTree.mShortcutCount; ++i) {
            keywords.emplace_back(mTree.mShortcuts[i]->mKeyword);
        }
        return keywords;
    }
    // The shortcuts that a record with these items gives.
    Texts Read(Texts const& items) {
        SetBlock("Demo", 0, items);
        EXPECT_TRUE(mData->ResetTolvanePrinterList());
        EXPECT_TRUE(mData->GetPPDShortcuts(mTree));
        return Keywords();
    }

    std::string const mLongest = "*" + std::string(62, 'k');
    ZUBPPD* mPPD = nullptr;  // owned
    std::unique_ptr<PDEData> mData;
    PPDTree mTree;
};

TEST_F(QuickAccessTest, TheBasicPanelOffersWhatAUserMaySet) {
    struct {
        char const* keyword;
        bool isOffered;
    } const cases[] = {
        {"*Duplex", true},      {"*Bidi", false},       {"*xBidi", false},
        {"*ZUPaperSim", false}, {"*ZUPaperSimX", true}, {"*ZUPureBlack", false},
        {"*ZUMMInUse", false},  {"*ZUMMInUseX", true},  {"*ZUSubsetFinishingInUse", false},
        {"*Hidden", false},     {"*Orphan", true},      {"*Tray", false},
    };
    for (auto const& row : cases) {
        PPDXControl* const control = ControlOf(*mPPD, row.keyword);
        ASSERT_NE(nullptr, control) << row.keyword;
        EXPECT_EQ(row.isOffered, PDEData::IsValidBasicPanelControl(control)) << row.keyword;
    }
    EXPECT_FALSE(PDEData::IsValidBasicPanelControl(nullptr));
}

TEST_F(QuickAccessTest, ARecordsKeywordsAreTakenAsFarAsThePaneMayOfferThem) {
    struct {
        Texts items;
        Texts shortcuts;
    } const cases[] = {
        {{"*Sort", "*Duplex"}, {"*Sort", "*Duplex"}},
        {{"*Absent", "*Sort", "*duplex", "Duplex", "", "*Dup"}, {"*Sort"}},
        {{"*Tray", "*xBidi", "*ZUPaperSim", "*Hidden", "*ZUMMInUse", "*Orphan"}, {"*Orphan"}},
        {{mLongest, mLongest + "k", std::string(1023, 'x')}, {mLongest}},
        {{"*S\u00F6rt", "*Sort\u00A0"}, {}},
    };
    for (auto const& row : cases) {
        Empty();
        Add("*Old");
        EXPECT_EQ(row.shortcuts, Read(row.items));
        for (std::int32_t i = 0; i < mTree.mShortcutCount; ++i) {
            EXPECT_EQ(nullptr, mTree.mShortcuts[i]->mName);
            EXPECT_EQ(0, mTree.mShortcuts[i]->mItemID);
        }
    }
    EXPECT_EQ(Texts(kTreeShortcuts, "*Sort"), Read(Texts(120, "*Sort")));
    EXPECT_EQ(Texts{"*Sort"}, Read({"*Sort"})) << "after a full list";
    // Nothing of an option remains without its PPD.
    mData->SetPPD(nullptr);
    EXPECT_TRUE(mData->GetPPDShortcuts(mTree));
    EXPECT_EQ(Texts(), Keywords());
}

TEST_F(QuickAccessTest, ShortcutsThatGoAreReleased) {
    long const before = LiveObjectCount();
    Add("*Old");
    Add("*Older");
    EXPECT_EQ(before + 2, LiveObjectCount());
    SetBlock("Demo", 0, {"*Sort"});
    auto const data = Data(mPPD);
    long const between = LiveObjectCount();
    EXPECT_TRUE(data->GetPPDShortcuts(mTree));
    EXPECT_EQ(between - 2, LiveObjectCount());
}

TEST_F(QuickAccessTest, WithoutItemsTheTreeStaysAsItIs) {
    Add("*Duplex");
    EXPECT_TRUE(mData->GetPPDShortcuts(mTree)) << "no record";
    EXPECT_EQ(Texts{"*Duplex"}, Keywords());
    EXPECT_EQ(Texts{"*Duplex"}, Read({}));
    SetBlock("Other", 0, {"*Sort"});
    mData->ResetTolvanePrinterList();
    EXPECT_TRUE(mData->GetPPDShortcuts(mTree));
    EXPECT_EQ(Texts{"*Duplex"}, Keywords());
    EXPECT_EQ(101, mTree.mShortcuts[0]->mItemID);
}

TEST_F(QuickAccessTest, TheTreesShortcutsGoIntoThePrintersRecord) {
    Add("*Duplex");
    Add(mLongest);
    EXPECT_TRUE(mData->SetPPDShortcuts(mTree)) << "without a record there is nothing to change";
    auto const count = [this] {
        auto const data = Data(mPPD);
        PPDTree tree;
        EXPECT_TRUE(data->GetPPDShortcuts(tree));
        std::swap(tree, mTree);
        Texts const keywords = Keywords();
        Empty();
        mTree = tree;
        return keywords;
    };
    EXPECT_EQ(Texts(), count());
    SetBlock("Demo", 1, {"watermark"});
    mData->ResetTolvanePrinterList();
    EXPECT_TRUE(mData->SetPPDShortcuts(mTree));
    EXPECT_EQ((Texts{"*Duplex", mLongest}), count());
    while (mTree.mShortcutCount < static_cast<std::int32_t>(kTreeShortcuts)) {
        Add("*Sort");
    }
    EXPECT_TRUE(mData->SetPPDShortcuts(mTree));
    EXPECT_EQ(kTreeShortcuts, count().size());
    Empty();
    EXPECT_TRUE(mData->SetPPDShortcuts(mTree));
    EXPECT_EQ(Texts(), count());
    CFRef<CFMutableArrayRef> const others(CFArrayCreateMutable(nullptr, 0));
    EXPECT_TRUE(ZUBTolvanePrinterPList().GetDataBlob(CFSTR("Demo"), 1, others));
    EXPECT_EQ(1, CFArrayGetCount(others)) << "the other blocks stay";
}

}  // namespace
