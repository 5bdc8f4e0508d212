// SPDX-License-Identifier: Apache-2.0
// What the session data keeps beside the PPD: in the print settings and in the printer's record.
#include <algorithm>
#include <climits>
#include <memory>

#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PPDTree.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"

namespace {

constexpr char kRecords[] = "home/Library/Preferences/ZUB.TolvanePrinterV2.plist";

std::wstring WideOf(wchar_t const* text) {
    return text == nullptr ? L"(null)" : text;
}

class SessionDataTest : public CoreFixture {
  protected:
    SessionDataTest() { mSession.SetPrinter("Demo", nullptr); }

    void SetNumber(std::string const& key, std::int32_t number) const {
        PMTicketSetSInt32(mSession.Settings(), Str("test"), Str(key), number, false);
    }
    void SetText(std::string const& key, std::string const& text) const {
        mSession.SetItem(key, Str(text).Get());
    }
    // A text or a number of the settings, "(null)" without the item.
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
};

TEST_F(SessionDataTest, EmptySettingsGiveNoSelectionAndKeepThePairs) {
    auto const data = MakeData();
    data->Watermarks().Select(5);
    data->Watermarks().SetFirstPageOnly(1);
    data->SetStoredPairCount(7);
    EXPECT_EQ(noErr, data->RestoreNonPSSettings(&mSettings));
    EXPECT_EQ(-1, data->Watermarks().SelectedIndex());
    EXPECT_EQ(0, data->Watermarks().FirstPageOnly());
    EXPECT_EQ(0, data->StoredPairCount());
    EXPECT_STREQ(L"*ZUPCMID", data->PCPairs()[0].Key());
    EXPECT_STREQ(L"-1", data->PCPairs()[0].Value());
}

TEST_F(SessionDataTest, APairComesBackWholeOrNotAtAll) {
    struct {
        std::wstring wide;
        std::string stored;  // "(null)" for one without room, or that is no text
    } const cases[] = {
        {L"\u00DCberl\u00E4nge \u65E5\u672C", "\u00DCberl\u00E4nge \u65E5\u672C"},
        {L"\uFFFD\U00010000\U0001F600\U0010FFFF", "\uFFFD\U00010000\U0001F600\U0010FFFF"},
        {std::wstring(255, L'x'), std::string(255, 'x')},
        {std::wstring(256, L'x'), "(null)"},
        {std::wstring(128, L'\u00E9'), "(null)"},
        {std::wstring(64, L'\U0001F600'), "(null)"},
        {std::wstring(1, static_cast<wchar_t>(0xD83D)), "(null)"},
        {std::wstring(1, static_cast<wchar_t>(0x110000)), "(null)"},
        {std::wstring(100000, L'x'), "(null)"},
    };
    for (auto const& row : cases) {
        for (bool const isKey : {false, true}) {
            bool const isWhole = row.stored != "(null)";
            std::wstring const key = isKey ? row.wide : L"*Key";
            std::wstring const value = isKey ? L"value" : row.wide;
            SetText("MMKey0", "an earlier dialog's");
            SetText("MMValue0", "an earlier dialog's");
            auto const data = MakeData();
            data->SetStoredPairCount(2);
            for (std::size_t i : {0, 1}) {
                data->StoredPairs()[i].SetKey(i == 0 ? key.c_str() : L"*Next");
                data->StoredPairs()[i].SetValue(i == 0 ? value.c_str() : L"next");
            }
            EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
            EXPECT_EQ(row.stored, Item(isKey ? "MMKey0" : "MMValue0"));
            EXPECT_EQ(isWhole, Item(isKey ? "MMValue0" : "MMKey0") != "(null)");
            auto const next = MakeData();
            EXPECT_EQ(noErr, next->RestoreNonPSSettings(&mSettings));
            ASSERT_EQ(2, next->StoredPairCount());
            OptionPair const& stored = next->StoredPairs()[0];
            EXPECT_EQ(isWhole ? key : L"(null)", WideOf(stored.Key()));
            EXPECT_EQ(isWhole ? value : L"(null)", WideOf(stored.Value()));
            EXPECT_STREQ(L"next", next->StoredPairs()[1].Value());
        }
    }
}

TEST_F(SessionDataTest, APairThatIsTooLongInTheSettingsIsNotTaken) {
    std::string const tooLong(256, 'x');
    SetText("PCKey0", tooLong);
    SetText("PCValue0", "7");
    SetText("PCKey1", "*Other");
    SetText("PCValue1", tooLong);
    auto const data = MakeData();
    EXPECT_EQ(noErr, data->RestoreNonPSSettings(&mSettings));
    EXPECT_STREQ(L"*ZUPCMID", data->PCPairs()[0].Key());
    EXPECT_STREQ(L"-1", data->PCPairs()[0].Value());
    EXPECT_STREQ(L"*ZUPCName", data->PCPairs()[1].Key());
    EXPECT_STREQ(L"-1", data->PCPairs()[1].Value());
}

TEST_F(SessionDataTest, TheNumberOfStoredPairsStaysWithinTheirRoom) {
    for (std::size_t i : {0, 254, 255}) {
        SetText("MMKey" + std::to_string(i), "*Key" + std::to_string(i));
        SetText("MMValue" + std::to_string(i), std::to_string(i));
    }
    for (std::int32_t const stored : {3, 255, 256, -1, INT_MAX, INT_MIN}) {
        SetNumber(".MMKey", stored);
        auto const data = MakeData();
        std::int32_t const count = std::clamp(stored, 0, 255);
        EXPECT_EQ(noErr, data->RestoreNonPSSettings(&mSettings));
        EXPECT_EQ(count, data->StoredPairCount()) << stored;
        EXPECT_EQ(count > 254 ? L"254" : L"(null)", WideOf(data->StoredPairs()[254].Value()));
        EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
        EXPECT_EQ(std::to_string(count), Item(".MMKey"));
    }
}

TEST_F(SessionDataTest, ASelectionBeyondTheRecordIsKeptAndSelectsNone) {
    SetBlock(1, Texts(3, "watermark"));
    for (std::int32_t const stored : {0, 2, 3, -1, -2, INT_MAX, INT_MIN}) {
        SetNumber(".SelectedWatermarkKey", stored);
        auto const data = MakeData();
        EXPECT_EQ(noErr, data->RestoreNonPSSettings(&mSettings));
        EXPECT_TRUE(data->GetWatermarksFromPreferences());
        EXPECT_EQ(stored == 0 || stored == 2, data->Watermarks().Selected() != nullptr) << stored;
        EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
        EXPECT_EQ(std::to_string(std::max(stored, -1)), Item(".SelectedWatermarkKey"));
    }
}

TEST_F(SessionDataTest, TheFirstPageFlagOfTheSettingsGoesForAllAndIsKeptWithASelection) {
    SetBlock(1, {"1,2,3,4,5,-,1", "b"});
    SetNumber(".SelectedWatermarkKey", 1);
    for (std::int32_t const stored : {0, 1, 2, -1, INT_MAX}) {
        SetNumber(".FirstPageOnlyKey", stored);
        bool const isSet = stored == 1 || stored == -1;
        auto const data = MakeData();
        data->RestoreNonPSSettings(&mSettings);
        EXPECT_TRUE(data->GetWatermarksFromPreferences());
        EXPECT_TRUE(data->Watermarks().At(0)->FirstPageOnly());
        EXPECT_EQ(isSet, data->Watermarks().Selected()->FirstPageOnly()) << stored;
        EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
        EXPECT_EQ("1", Item(".SelectedWatermarkKey"));
        EXPECT_EQ(isSet ? "1" : "0", Item(".FirstPageOnlyKey"));
        data->Watermarks().Selected()->SetFirstPageOnly(isSet ? L"true" : L"True");
        EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
        EXPECT_EQ(isSet ? "0" : "1", Item(".FirstPageOnlyKey")) << "what it is last";
    }
    mSession.EmptySettings();
    auto const data = MakeData();
    data->Watermarks().SetFirstPageOnly(1);
    EXPECT_EQ(noErr, data->SaveNonPSSettings(&mSettings, CFSTR("client")));
    EXPECT_EQ("-1", Item(".SelectedWatermarkKey"));
    EXPECT_EQ("(null)", Item(".FirstPageOnlyKey"));
    EXPECT_EQ("-1", Item("PCValue3"));
    EXPECT_EQ(11, CountSettings());
}

TEST_F(SessionDataTest, WithoutATicketOrClientNothingIsKept) {
    auto const data = MakeData();
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
    mSession.SetItem(".MMKey", CFSTR("locked"), true);
    EXPECT_EQ(kPMItemIsLocked, MakeData()->SaveNonPSSettings(&mSettings, CFSTR("client")));
}

// ---- The operating system's values ----

TEST_F(SessionDataTest, ThePaperFeedIsTheSecondElement) {
    std::string const longest = "\u00DC" + std::string(61, 'x');
    CFRef<CFStringRef> const fits = Str(longest);
    CFRef<CFStringRef> const tooLong = Str(longest + "x");
    auto const data = MakeData();
    EXPECT_EQ(noErr, data->GetPrimaryPaperFeedFromOS()) << "none";
    std::pair<std::vector<CFTypeRef>, std::string> const cases[] = {
        {{CFSTR("Tray1")}, ""},
        {{kCFBooleanTrue, CFSTR("Tray2"), CFSTR("Tray3")}, "Tray2"},
        {{CFSTR("Tray1")}, "Tray2"},
        {{CFSTR("a"), kCFBooleanTrue}, ""},
        {{CFSTR("a"), fits.Get()}, longest},
        {{CFSTR("a"), tooLong.Get()}, ""},
    };
    for (auto const& [feed, keyword] : cases) {
        mSession.SetPaperFeed(feed);
        EXPECT_EQ(noErr, data->GetPrimaryPaperFeedFromOS());
        EXPECT_EQ(keyword, data->PaperFeed());
    }
    SetText("com.apple.print.PrintSettings.PMPrimaryPaperFeed", "Tray2");
    EXPECT_EQ(kPMDataFormatError, data->GetPrimaryPaperFeedFromOS());
    mSession.RemoveTicket("PMPrintSettingsTicket");
    EXPECT_EQ(noErr, data->GetPrimaryPaperFeedFromOS());
    PMSessionSetDataInSession(mSession.Get(), CFSTR("PMPrintSettingsTicket"), CFSTR("text"));
    EXPECT_NE(noErr, data->GetPrimaryPaperFeedFromOS());
}

TEST_F(SessionDataTest, CopiesAreTakenFromTheSettingsAndSetToOneThere) {
    auto const data = MakeData();
    EXPECT_EQ(0, data->GetNumCopiesFromOS());
    SetNumber("com.apple.print.PrintSettings.PMCopies", INT_MAX);
    EXPECT_EQ(INT_MAX, data->GetNumCopiesFromOS());
    data->Set1CopiesToOS();
    EXPECT_EQ(1, data->GetNumCopiesFromOS());
    EXPECT_EQ(1, CountSettings()) << "no job data file";
    mSession.RemoveTicket("PMPrintSettingsTicket");
    data->Set1CopiesToOS();
    EXPECT_EQ(0, data->GetNumCopiesFromOS());
}

// ---- The printer's record ----

TEST_F(SessionDataTest, AnAddressLastsAndIsFoundByName) {
    auto const data = MakeData();
    bool enabled = true;
    EXPECT_EQ("", Text(data->GetTolvanePrinterAddress(CFSTR("Demo"), &enabled)));
    EXPECT_FALSE(enabled);
    EXPECT_FALSE(data->GetIPAddressEnabled());
    data->SetIPAddressEnabled(true);
    EXPECT_FALSE(std::filesystem::exists(mSession.Path(kRecords))) << "no record, nothing to keep";

    EXPECT_TRUE(data->SetTolvanePrinterCFAddress(nullptr, CFSTR("host"), true));
    EXPECT_FALSE(data->SetTolvanePrinterCFAddress(CFSTR("Other"), Str("a\x01"), true));
    EXPECT_TRUE(data->GetIPAddressEnabled());
    auto const next = MakeData();
    EXPECT_EQ("host", Text(next->GetTolvanePrinterAddress(CFSTR("demo"), &enabled)));
    EXPECT_TRUE(enabled);
    // What another dialog changes is seen after a reset.
    next->SetIPAddressEnabled(false);
    EXPECT_TRUE(data->GetIPAddressEnabled());
    EXPECT_TRUE(data->ResetTolvanePrinterList());
    EXPECT_FALSE(data->GetIPAddressEnabled());
    EXPECT_TRUE(data->SaveTolvanePrinterList());
}

TEST_F(SessionDataTest, WithoutAHomeOrAPrinterNothingIsRemembered) {
    {
        ScopedVariable const none("HOME", nullptr);
        auto const data = MakeData();
        EXPECT_TRUE(data->IsValid());
        EXPECT_FALSE(data->SetTolvanePrinterCFAddress(nullptr, CFSTR("host"), true));
        EXPECT_FALSE(data->SaveTolvanePrinterList());
        EXPECT_TRUE(data->GetIPAddressEnabled()) << "known as long as the dialog lasts";
        EXPECT_FALSE(data->SetPPDShortcuts(PPDTree()));
        EXPECT_TRUE(data->ResetTolvanePrinterList());
        EXPECT_FALSE(data->GetIPAddressEnabled());
    }
    mSession.RemovePrinter();
    auto const data = MakeData();
    PPDTree tree;
    EXPECT_FALSE(data->GetPPDShortcuts(tree));
    EXPECT_FALSE(data->SetPPDShortcuts(tree));
    EXPECT_EQ(nullptr, data->GetTolvanePrinterAddress(CFSTR("Demo")));
    EXPECT_FALSE(data->SetTolvanePrinterCFAddress(CFSTR("Demo"), CFSTR("host"), true));
    data->SetIPAddressEnabled(true);
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
        Open(ppd);
    }
    ~QuickAccessTest() override { Empty(); }
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
        SetBlock(0, items);
        EXPECT_TRUE(mData->ResetTolvanePrinterList());
        EXPECT_TRUE(mData->GetPPDShortcuts(mTree));
        return Keywords();
    }

    std::string const mLongest = "*" + std::string(62, 'k');
    PPDTree mTree;
};

TEST_F(QuickAccessTest, TheBasicPanelOffersWhatAUserMaySet) {
    for (char const* keyword : {"*Duplex", "*ZUPaperSimX", "*ZUMMInUseX", "*Orphan"}) {
        EXPECT_TRUE(PDEData::IsValidBasicPanelControl(ControlOf(*mPPD, keyword))) << keyword;
    }
    for (char const* keyword : {"*Bidi", "*xBidi", "*ZUPaperSim", "*ZUPureBlack", "*ZUMMInUse",
                                "*ZUSubsetFinishingInUse", "*Hidden", "*Tray"}) {
        ASSERT_NE(nullptr, ControlOf(*mPPD, keyword)) << keyword;
        EXPECT_FALSE(PDEData::IsValidBasicPanelControl(ControlOf(*mPPD, keyword))) << keyword;
    }
    EXPECT_FALSE(PDEData::IsValidBasicPanelControl(nullptr));
}

TEST_F(QuickAccessTest, ARecordsKeywordsAreTakenAsFarAsThePaneMayOfferThem) {
    struct {
        Texts items;
        Texts shortcuts;
    } const cases[] = {
        {{"*Sort", "*Duplex"}, {"*Sort", "*Duplex"}},
        {{"*Absent", "*Sort", "*duplex", "", "*Tray", "*xBidi", "*Orphan"}, {"*Sort", "*Orphan"}},
        {{mLongest, mLongest + "k", std::string(1023, 'x')}, {mLongest}},
        {{"*S\u00F6rt", "*Sort\u00A0"}, {}},
    };
    for (auto const& row : cases) {
        Empty();
        Add("*Old");
        EXPECT_EQ(row.shortcuts, Read(row.items));
    }
    EXPECT_EQ(Texts(kTreeShortcuts, "*Sort"), Read(Texts(120, "*Sort")));
    // Nothing of an option remains without its PPD.
    mData->SetPPD(nullptr);
    EXPECT_TRUE(mData->GetPPDShortcuts(mTree));
    EXPECT_EQ(Texts(), Keywords());
}

TEST_F(QuickAccessTest, WithoutItemsTheTreeStaysAsItIs) {
    Add("*Duplex");
    EXPECT_TRUE(mData->GetPPDShortcuts(mTree)) << "no record";
    EXPECT_EQ(Texts{"*Duplex"}, Keywords());
    EXPECT_EQ(Texts{"*Duplex"}, Read({}));
    EXPECT_EQ(101, mTree.mShortcuts[0]->mItemID);
}

TEST_F(QuickAccessTest, TheTreesShortcutsGoIntoThePrintersRecord) {
    Add("*Duplex");
    Add(mLongest);
    EXPECT_TRUE(mData->SetPPDShortcuts(mTree)) << "without a record there is nothing to change";
    EXPECT_EQ(Texts(), Block(0));
    SetBlock(1, {"watermark"});
    mData->ResetTolvanePrinterList();
    EXPECT_TRUE(mData->SetPPDShortcuts(mTree));
    EXPECT_EQ((Texts{"*Duplex", mLongest}), Block(0));
    Empty();
    EXPECT_TRUE(mData->SetPPDShortcuts(mTree));
    EXPECT_EQ(Texts(), Block(0));
    EXPECT_EQ(Texts{"watermark"}, Block(1)) << "the other blocks stay";
}

}  // namespace
