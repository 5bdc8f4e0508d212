// SPDX-License-Identifier: Apache-2.0
#include <functional>
#include <memory>

#include "VelonFeatures/Project/Core/JobTicket.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "ZUBUtils/PPDUtils/CFDataStream.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"

namespace {

// "yes", or the status with which it failed.
std::string Outcome(bool done, ZUBJobTicket const& ticket) {
    return done ? "yes" : std::to_string(ticket.LastStatus());
}

class ChoicesTest : public CoreFixture {
  protected:
    ChoicesTest() {
        mSession.SetPPD(TestSession::Head() + TestSession::InstallableGroup() +
                        TestSession::Popup("Duplex") + TestSession::Popup("Sort") +
                        TestSession::Popup("Orphan", "Dynamic", true) +
                        TestSession::Popup("Tray", "Dynamic", false, "ZUPPInstallableOptions"));
    }
    CFRef<CFURLRef> URL() const { return FileURL(mSession.PPDPath()); }
    static void Choose(ZUBPPD& ppd, char const* keyword) {
        ControlOf(ppd, keyword)->SetCurrentControlWithCFString(CFSTR("B"));
    }
    // The values of Duplex, Sort, Tray and Orphan.
    static std::string Values(ZUBPPD& ppd) {
        std::string values;
        for (char const* keyword : {"*Duplex", "*Sort", "*Tray", "*Orphan"}) {
            values += ValueOf(ppd, keyword);
        }
        return values;
    }
    static CFRef<CFPropertyListRef> ListOf(std::string const& xml) {
        return CFRef<CFPropertyListRef>(
            CFPropertyListCreateFromXMLData(nullptr, Data(xml), kCFPropertyListImmutable, nullptr));
    }
    void StoreXML(CFStringRef key, std::string const& xml) const {
        CFRef<CFPropertyListRef> const item = ListOf(xml);
        ASSERT_TRUE(item);
        mSession.SetItem(Text(key), item);
    }
    static CFRef<CFMutableArrayRef> Keywords() {
        CFRef<CFMutableArrayRef> keywords(CFArrayCreateMutable(nullptr, 0));
        for (std::string const keyword : {"*Tray", "*Absent", "*Duplex", "*Tray"}) {
            CFArrayAppendValue(keywords, Str(keyword).Get());
        }
        CFArrayAppendValue(keywords, kCFBooleanTrue);
        return keywords;
    }

    CFRef<CFStringRef> mKey{CreatePostscriptDataFileKey()};
    ZUBJobTicket mTicket{&mSettings, mKey};
};

TEST_F(ChoicesTest, ChoicesComeBackUnderTheirKeyAndWhatIsInstalledOnlyByName) {
    PPDPtr const source = Parse();
    for (char const* keyword : {"*Duplex", "*Sort", "*Tray", "*Orphan"}) {
        Choose(*source, keyword);
    }
    CFRef<CFMutableArrayRef> const keywords = Keywords();
    ASSERT_TRUE(mTicket.SavePPDForAllKeys(source.get(), CFSTR("all")));
    ASSERT_TRUE(mTicket.SavePPDForKeys(source.get(), CFSTR("some"), keywords));
    using Restore = std::function<bool(ZUBPPD*)>;
    auto const all = [&](CFStringRef bundleID, CFStringRef printerKey) -> Restore {
        return [this, bundleID, printerKey](ZUBPPD* ppd) {
            return mTicket.RestorePPDForAllKeys(ppd, bundleID, printerKey);
        };
    };
    auto const some = [&](CFStringRef key) -> Restore {
        return [&, key](ZUBPPD* ppd) { return mTicket.RestorePPDForKeys(ppd, key, keywords); };
    };
    struct {
        Restore restore;
        char const* outcome;
        char const* values;
    } const cases[] = {
        {all(CFSTR("all"), nullptr), "yes", "BBAA"},
        {all(CFSTR("other"), CFSTR("all")), "yes", "BBAA"},
        {all(CFSTR("all"), CFSTR("other")), "-9589", "AAAA"},
        {all(nullptr, nullptr), "-9589", "AAAA"},
        {all(CFSTR("some"), nullptr), "yes", "BAAA"},
        {some(CFSTR("some")), "yes", "BABA"},
        {some(CFSTR("all")), "yes", "BABA"},
        {some(CFSTR("other")), "-9589", "AAAA"},
    };
    for (auto const& row : cases) {
        PPDPtr const target = Parse();
        EXPECT_EQ(row.outcome, Outcome(row.restore(target.get()), mTicket));
        EXPECT_EQ(row.values, Values(*target)) << &row - cases;
    }
}

TEST_F(ChoicesTest, OnlyTextsThatAControlHasAreTaken) {
    struct {
        char const* item;
        char const* outcome;
        char const* values;  // by all keys, which leave *Tray alone
    } const cases[] = {
        {"<dict><key>*Duplex</key><integer>1</integer><key>*Sort</key><string>B</string></dict>",
         "yes", "ABAA"},
        {"<dict><key>*Duplex</key><string>C</string><key>*Sort</key><string></string>"
         "<key>*Absent</key><string>B</string><key>*duplex</key><string>B</string></dict>",
         "yes", "AAAA"},
        {"<array><string>B</string></array>", "-9591", "AAAA"},
    };
    for (auto const& row : cases) {
        StoreXML(CFSTR("key"), std::string("<plist version=\"1.0\">") + row.item + "</plist>");
        PPDPtr const all = Parse();
        EXPECT_EQ(row.outcome,
                  Outcome(mTicket.RestorePPDForAllKeys(all.get(), CFSTR("key"), nullptr), mTicket))
            << row.item;
        EXPECT_EQ(row.values, Values(*all)) << row.item;
    }
}

TEST_F(ChoicesTest, WithoutSettingsOrPPDNothingIsDone) {
    PPDPtr const ppd = Parse();
    CFRef<CFMutableArrayRef> const keywords = Keywords();
    CFRef<CFURLRef> const url = URL();
    TestSession noTicket;
    noTicket.RemoveTicket("PMPrintSettingsTicket");
    PrintSettingsTicket noSettings(noTicket.Get());
    using Operation = std::function<bool(ZUBJobTicket&, ZUBPPD*)>;
    CFStringRef const k = CFSTR("k");
    Operation const operations[] = {
        [&](auto& ticket, ZUBPPD* p) { return ticket.SavePPDForAllKeys(p, k); },
        [&](auto& ticket, ZUBPPD* p) { return ticket.SavePPDForKeys(p, k, keywords); },
        [&](auto& ticket, ZUBPPD* p) { return ticket.SavePPD(p, k, url); },
        [&](auto& ticket, ZUBPPD* p) { return ticket.RestorePPDForAllKeys(p, k, nullptr); },
        [&](auto& ticket, ZUBPPD* p) { return ticket.RestorePPDForKeys(p, k, keywords); },
    };
    mSession.SetItem("k", CFSTR("locked"), true);
    for (std::size_t i = 0; i < std::size(operations); ++i) {
        EXPECT_FALSE(operations[i](mTicket, nullptr)) << i;
        EXPECT_EQ(std::to_string(i < 3 ? kPMItemIsLocked : kPMDataFormatError),
                  Outcome(operations[i](mTicket, ppd.get()), mTicket))
            << i;
        for (PrintSettingsTicket* settings :
             {static_cast<PrintSettingsTicket*>(nullptr), &noSettings}) {
            ZUBJobTicket ticket(settings, mKey);
            EXPECT_EQ(std::to_string(kNoTicket), Outcome(operations[i](ticket, ppd.get()), ticket))
                << i;
        }
    }
    EXPECT_FALSE(mTicket.SavePPDForKeys(ppd.get(), k, nullptr));
    EXPECT_FALSE(mTicket.RestorePPDForKeys(ppd.get(), k, nullptr));
    EXPECT_EQ(nullptr, mTicket.RestorePPD(k, url));
    EXPECT_EQ(nullptr, ZUBJobTicket(nullptr, mKey).RestorePPD(k, url));
}

// ---- The PPD as an archive ----

class ArchiveInTicketTest : public ChoicesTest {
  protected:
    ArchiveInTicketTest() { GetBundleRef(); }
    PPDPtr Restore(CFURLRef url) { return PPDPtr(mTicket.RestorePPD(mPDEKey, url)); }
    std::string XML() {
        CFDataRef xml = nullptr;
        mSettings.Get(mPDEKey, xml);
        return Text(xml);
    }
    void Store(std::string const& xml) { mSettings.Set(mPDEKey, mPDEKey, Data(xml).Get(), false); }
    static std::string XMLOf(CFPropertyListRef list) {
        return Text(CFRef<CFDataRef>(CFPropertyListCreateXMLData(nullptr, list)));
    }
    static std::string XMLOf(Settings& settings) {
        CFDataStream stream;
        EXPECT_EQ(noErr, settings.Save(&stream));
        return XMLOf(stream.Data());
    }

    CFStringRef mPDEKey = CFSTR("com.example.any.PInf");
};

TEST_F(ArchiveInTicketTest, ThePPDComesBackWithItsValuesForAnAcceptedFileOnly) {
    CFRef<CFURLRef> const url = URL();
    {
        PPDPtr const source = Parse();
        Choose(*source, "*Duplex");
        Choose(*source, "*Tray");
        ASSERT_TRUE(mTicket.SavePPD(source.get(), mPDEKey, url));
    }
    mSession.SetPPD("*PPD-Adobe: \"4.3\"\n*PCFileName: \"OTHER.PPD\"\n", "other.ppd");
    struct {
        CFRef<CFURLRef> url;
        char const* values;
    } const cases[] = {{url, "BABA"},
                       {FileURL(mSession.Path("other.ppd")), ""},
                       {FileURL(mSession.Path("absent.ppd")), ""},
                       {CFRef<CFURLRef>(), ""}};
    long const before = LiveObjectCount();
    for (auto const& row : cases) {
        PPDPtr const ppd = Restore(row.url);
        EXPECT_EQ(row.values, ppd == nullptr ? "" : Values(*ppd));
    }
    EXPECT_EQ(before, LiveObjectCount());
    // The bundle has the list of printers; without it no file is accepted.
    MyFreeBundle();
    EXPECT_EQ(nullptr, Restore(url));
}

TEST_F(ArchiveInTicketTest, WhatIsNoWholeArchiveGivesNoPPD) {
    CFRef<CFURLRef> const url = URL();
    PPDPtr const source = Parse();
    ASSERT_TRUE(mTicket.SavePPD(source.get(), mPDEKey, url));
    std::string const whole = XML();
    std::string const cases[] = {
        "",
        "no property list",
        whole.substr(0, whole.size() / 2),
        XMLOf(CFSTR("text")),
        XMLOf(Keywords().Get()),
        XMLOf(CFRef<CFDataRef>(CFDataCreate(nullptr, nullptr, 0)).Get()),
    };
    long const before = LiveObjectCount();
    for (std::string const& content : cases) {
        Store(content);
        EXPECT_EQ(nullptr, Restore(url)) << content;
    }
    EXPECT_EQ(before, LiveObjectCount());
    Store(whole);
    EXPECT_NE(nullptr, Restore(url)) << "it is the content that was refused";
    // An archive without its header is one all the same.
    Settings headless;
    unsigned long const tag = 0x54455354;
    long const id = 1;
    headless.Add(tag, id, "text", 4);
    Store(XMLOf(headless));
    EXPECT_NE(nullptr, Restore(url));
    StoreXML(mPDEKey, "<plist version=\"1.0\"><string>wrong type</string></plist>");
    EXPECT_EQ(nullptr, Restore(url));
    EXPECT_EQ(kPMDataFormatError, mTicket.LastStatus());
}

TEST_F(ArchiveInTicketTest, ALackOfMemoryAnywhereKeepsTheSettingsAndLeaksNothing) {
    CFRef<CFURLRef> const url = URL();
    PPDPtr const source = Parse();
    ASSERT_TRUE(mTicket.SavePPD(source.get(), mPDEKey, url));
    std::string const former = XML();
    Choose(*source, "*Duplex");
    long const before = LiveObjectCount();
    bool saved = false;
    long failures = 0;
    for (; !saved; ++failures) {
        ASSERT_LT(failures, 10000);
        FailCreationAfter(failures);
        saved = mTicket.SavePPD(source.get(), mPDEKey, url);
        FailCreationAfter(-1);
        EXPECT_EQ(saved, XML() != former) << failures;
        EXPECT_EQ(saved ? noErr : memFullErr, mTicket.LastStatus()) << failures;
        EXPECT_EQ(before, LiveObjectCount()) << failures;
    }
    EXPECT_GT(failures, 1);
    // A smaller tree may come back, but nothing stays behind.
    int refused = 0;
    for (long n = 0; n < 60; ++n) {
        FailCreationAfter(n);
        refused += Restore(url) == nullptr ? 1 : 0;
        FailCreationAfter(-1);
        EXPECT_EQ(before, LiveObjectCount()) << n;
    }
    EXPECT_GT(refused, 2);
}

// ---- The job data file where it can't be written ----

TEST_F(ChoicesTest, AJobThatCannotBeWrittenLeavesTheFormerOneInPlace) {
    mTicket.AddText(kFeatureSite, "first");
    ASSERT_TRUE(mTicket.Save(CFSTR("client")));
    std::string const first = mSession.JobFile();
    mTicket.AddText(kFeatureSite, "second");
    EXPECT_FALSE(OnSmallDisk(100, SIG_IGN, [&] { return mTicket.Save(CFSTR("client")); }));
    EXPECT_EQ(EFBIG, mTicket.LastStatus());
    EXPECT_EQ(first, mSession.JobFile());
    EXPECT_EQ((TestSession::Pairs{{81, "first"}}), mSession.TakeJob());
    EXPECT_TRUE(mTicket.Save(CFSTR("client"))) << "there is room again";
    EXPECT_EQ((TestSession::Pairs{{81, "first"}, {81, "second"}}), mSession.TakeJob());
}

}  // namespace
