// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <gtest/gtest.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/PrintManager.h"
#include "tests/Texts.h"

inline std::string ReadFile(std::string const& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Every process keeps its copy of a PPD in /tmp under the file's name.
inline std::string const kDemoPPD = "demo" + std::to_string(getpid()) + ".ppd";

// A print session as a dialog gets it, made with nothing but the platform: a printer "Demo" whose
// PPD lies in a folder of its own, and the three tickets.
class TestSession {
  public:
    using Pairs = std::vector<std::pair<int, std::string>>;

    static constexpr char kBundleID[] =
        "com.zub.print.pde.645EBB97-CCEC-44A1-ADE0-29E4901A642D.PInf";

    TestSession() {
        std::string pattern = testing::TempDir() + "session-XXXXXX";
        mFolder = mkdtemp(pattern.data());
        EXPECT_EQ(noErr, PMCreateSession(&mSession));
        for (Ticket* ticket : {&mSettings, &mInfo, &mPageFormat}) {
            EXPECT_EQ(noErr, PMTicketCreate(Str(ticket->name), &ticket->reference));
            EXPECT_EQ(noErr, PMSessionSetTicket(mSession, Str(ticket->name), ticket->reference));
        }
        SetInfo("PMCompiledPPD", "");
        SetInfo("PMMakeAndModelName", "ZUB Demo 1");
        SetOrientation(1);
    }
    TestSession(TestSession const&) = delete;
    TestSession& operator=(TestSession const&) = delete;
    ~TestSession() {
        RemoveJobFile();
        PMDisposeSession(mSession);
        for (Ticket* ticket : {&mSettings, &mInfo, &mPageFormat}) {
            PMTicketReleaseAndClear(&ticket->reference);
        }
        std::filesystem::remove_all(mFolder);
    }

    PMPrintSession Get() const { return mSession; }
    PMTicketRef Settings() const { return mSettings.reference; }
    PMTicketRef Info() const { return mInfo.reference; }
    PMTicketRef PageFormat() const { return mPageFormat.reference; }
    std::string Path(std::string const& name) const { return mFolder + "/" + name; }

    // Writes a PPD and makes it the current printer's.
    void SetPPD(std::string const& text, std::string const& name = kDemoPPD) {
        std::ofstream(Path(name), std::ios::binary) << text;
        SetPrinter("Demo", FileURL(Path(name)));
    }
    std::string PPDPath() const { return Path(kDemoPPD); }  // of a PPD set without a name
    void SetPrinter(std::string const& name, CFURLRef ppd,
                    std::string const& uri = "ipp://host/q") {
        CFRef<CFURLRef> const device(CFURLCreateWithString(nullptr, Str(uri), nullptr));
        EXPECT_EQ(noErr, PMSessionSetCurrentPrinter(mSession, Str(name), ppd, device));
    }
    void RemovePrinter() { PMSessionSetCurrentPrinter(mSession, nullptr, nullptr, nullptr); }
    void RemoveTicket(char const* name) { PMSessionSetDataInSession(mSession, Str(name), nullptr); }
    void SetInfo(std::string const& key, std::string const& text) {
        PMTicketSetCFString(mInfo.reference, Str("test"), InfoKey(key), Str(text), false);
    }
    void RemoveInfo(std::string const& key) { PMTicketReleaseItem(mInfo.reference, InfoKey(key)); }
    void SetItem(std::string const& key, CFPropertyListRef value, bool locked = false) const {
        PMTicketSetItem(mSettings.reference, Str("test"), Str(key), value, locked);
    }
    // The paper source as the operating system's pane leaves it.
    void SetPaperFeed(std::vector<CFTypeRef> const& elements) const {
        CFRef<CFMutableArrayRef> const feed(CFArrayCreateMutable(nullptr, 0));
        for (CFTypeRef element : elements) {
            CFArrayAppendValue(feed, element);
        }
        SetItem("com.apple.print.PrintSettings.PMPrimaryPaperFeed", feed);
    }
    void EmptySettings() {
        CFRef<CFDictionaryRef> items;
        PMTicketCopyItems(mSettings.reference, items.Receive());
        std::vector<CFTypeRef> keys(static_cast<std::size_t>(CFDictionaryGetCount(items)));
        CFDictionaryGetKeysAndValues(items, keys.data(), nullptr);
        for (CFTypeRef key : keys) {
            PMTicketReleaseItem(mSettings.reference, static_cast<CFStringRef>(key));
        }
    }
    void SetOrientation(std::int32_t orientation) {
        PMTicketSetSInt32(mPageFormat.reference, Str("test"),
                          Str("com.apple.print.PageFormat.PMOrientation"), orientation, false);
    }

    // The path of the job data file that the settings name; "" for none.
    std::string JobFile(std::string const& bundleID = kBundleID) const {
        CFStringRef path = nullptr;
        PMTicketGetCFString(mSettings.reference, 0, 0, Str("ZUB.PSData." + bundleID), &path);
        return path == nullptr ? "" : Text(path);
    }
    void RemoveJobFile() const { unlink(JobFile().c_str()); }
    // The pairs of that file, which goes.
    Pairs TakeJob() {
        CFRef<CFDataRef> data;
        std::int32_t error = 0;
        EXPECT_TRUE(CFURLCreateDataAndPropertiesFromResource(nullptr, FileURL(JobFile()),
                                                             data.Receive(), &error));
        CFRef<CFPropertyListRef> const list(
            CFPropertyListCreateFromXMLData(nullptr, data, kCFPropertyListImmutable, nullptr));
        RemoveJobFile();
        return PairsOf(static_cast<CFArrayRef>(list.Get()));
    }
    static Pairs PairsOf(CFArrayRef list) {
        Pairs pairs;
        for (CFIndex i = 0; i + 1 < CFArrayGetCount(list); i += 2) {
            std::int32_t site = 0;
            CFNumberGetValue(static_cast<CFNumberRef>(CFArrayGetValueAtIndex(list, i)),
                             kCFNumberSInt32Type, &site);
            auto const bytes = static_cast<CFDataRef>(CFArrayGetValueAtIndex(list, i + 1));
            auto const* const start = reinterpret_cast<char const*>(CFDataGetBytePtr(bytes));
            pairs.emplace_back(site, std::string(start, start + CFDataGetLength(bytes)));
        }
        return pairs;
    }

    // The beginning of a PPD that the extension takes, with the roll-down "Finish".
    static std::string Head(std::string const& version = "*%ZUVersion: 4.4\n",
                            std::string const& pcFileName = "*PCFileName: \"ZUBDEMO.PPD\"\n") {
        return "*PPD-Adobe: \"4.3\"\n*FormatVersion: \"4.3\"\n*LanguageVersion: English\n"
               "*LanguageEncoding: ISOLatin1\n" +
               pcFileName + version +
               "*%ZUBPropPage Layout/Layout: True\n"
               "*%ZUBGroupName Pane1/Layout Pane: True\n"
               "*%ZUBGroupName Finish/Finishing: True\n"
               "*%ZUBParent Pane1/Layout: True|Scrollpane\n"
               "*%ZUBParent Finish/Pane1: True|Rolldown\n";
    }
    // A roll-down for what is built into the printer, behind the head.
    static std::string InstallableGroup() {
        return "*%ZUBGroupName ZUPPInstallableOptions/Installed: True\n"
               "*%ZUBParent ZUPPInstallableOptions/Pane1: True|Rolldown\n";
    }
    // A popup with the options A, the default, and B.
    static std::string Popup(std::string const& keyword, std::string const& flag = "Dynamic",
                             bool isOrphan = false, std::string const& group = "Finish") {
        return "*%ZUBFlags *" + keyword + ": " + flag + "\n" +
               (isOrphan ? "" : "*%ZUBGroup *" + keyword + ": " + group + "/Group\n") +
               "*OpenUI *" + keyword + "/Name: PickOne\n*Default" + keyword + ": A\n*" + keyword +
               " A/One: \"" + keyword + " A\"\n*" + keyword + " B/Two: \"\"\n*CloseUI: *" +
               keyword + "\n";
    }

  private:
    struct Ticket {
        std::string name;
        PMTicketRef reference = 0;
    };

    static CFRef<CFStringRef> InfoKey(std::string const& key) {
        return Str("com.apple.print.PrinterInfo." + key);
    }

    std::string mFolder;
    PMPrintSession mSession = nullptr;
    Ticket mSettings{"PMPrintSettingsTicket"};
    Ticket mInfo{"PMPrinterInfoTicket"};
    Ticket mPageFormat{"PMPageFormatTicket"};
};
