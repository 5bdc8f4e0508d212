// SPDX-License-Identifier: Apache-2.0
// The session's, the tickets' and the printer records' share of what InterfaceTest.cpp calls.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/Controls/PPDXSpecialOption.h"
#include "PPDX/PPDObjects/GroupName.h"
#include "PPDX/PPDObjects/PPDFile.h"
#include "PPDX/PPDObjects/PPDFileStream.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "VelonFeatures/Project/Core/PPDTree.h"
#include "VelonFeatures/Project/Core/PlugIn/PlugInFactoryEntry.h"
#include "VelonFeatures/Project/Core/PlugIn/ProjectPDE.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/PrinterAccess.h"
#include "VelonFeatures/Project/Core/PrinterInfoTicket.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "ZUBUtils/PPDUtils/BoyerMoore.h"
#include "ZUBUtils/PPDUtils/CFDataStream.h"
#include "ZUBUtils/PPDUtils/DebugMessage.h"
#include "ZUBUtils/PPDUtils/PtrLinkList.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "ZUBUtils/PPDUtils/StringUtils.h"
#include "ZUBUtils/PPDUtils/TextConverter.h"
#include "constraints/ConstraintsEngine.h"
#include "constraints/UIConstraints.h"
#include "platform/CollectionManager.h"
#include "platform/MemoryManager.h"
#include "platform/PlugInHost.h"
#include "platform/ProcessManager.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"
#include "tests/interface/InterfacePPD.h"
#include "twoway/PPDLookups.h"
#include "twoway/PrinterListFile.h"
#include "twoway/RandomFileName.h"

namespace {

// A session with a printer, and what the core makes of it.
class CoreInterfaceTest : public CoreFixture {
  protected:
    CoreInterfaceTest() {
        mSession.SetPPD(TestSession::Head() + TestSession::Popup("Duplex"));
        std::uint32_t flags = 0;
        EXPECT_EQ(mProject.Initialize(&flags, 0, nullptr, mSession.Get()), noErr);
    }
    ~CoreInterfaceTest() override { mProject.Close(); }

    ProjectPDE mProject;
};

TEST_F(CoreInterfaceTest, SessionAndPrinter) {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    CFArrayRef titles = nullptr;
    CFArrayRef summaries = nullptr;
    mProject.PaneSize(width, height);
    EXPECT_EQ(mProject.Open(), noErr);
    EXPECT_EQ(mProject.GetSummaryText(&titles, &summaries), noErr);
    ProcessSerialNumber process = {};
    EXPECT_EQ(mProject.ReportPSNofFDNtoJP(&process), -1);
    mProject.KillJP();
    CFURLRef url = nullptr;
    FSRef file;
    EXPECT_EQ(GetPPDFile(mSession.Get(), url, file), noErr);
    CFRelease(url);
    PPDPtr const ppd(SetupPPD(mSession.Get(), GetBundleID(), nullptr));
    EXPECT_TRUE(ppd->IsValidPPD());
    EXPECT_EQ(Text(GetCurrentPrinterName(mSession.Get())), "Demo");
    EXPECT_EQ(Taken(CopyPrinterConnectionType(mSession.Get())), "ipp");
    EXPECT_TRUE(isIPPrinterConnection(mSession.Get()));
    EXPECT_FALSE(isUSBPrinterConnection(mSession.Get()) ||
                 isAppleTalkPrinterConnection(mSession.Get()) ||
                 isBonjourPrinterConnection(mSession.Get()));
    PMTicketRef ticket = 0;
    EXPECT_EQ(MyGetTicket(mSession.Get(), CFSTR("PMPrintSettingsTicket"), &ticket), noErr);
    EXPECT_EQ(Taken(CreateNIBFileName()), "PDEProject");
    EXPECT_EQ(Taken(CreateClientIdentifier(nullptr)), Text(GetBundleID()));
    EXPECT_EQ(Taken(CreatePostscriptDataFileKey()), "ZUB.PSData." + Text(GetBundleID()));
    EXPECT_EQ(GetCreatorID(), 0x5A554232U);
    EXPECT_EQ(MyGetBundle(GetBundleID()), GetBundleRef());
    CFRef<CFURLRef> const contents(CreatePDEContentsURL(GetBundleID()));
    EXPECT_TRUE(contents);
    char text[64];
    EXPECT_EQ(PDEBundle::GetLocalizedString(CFSTR("N/A"), text, sizeof text, nullptr), 3);
    EXPECT_NE(Taken(PDEBundle::CopyLocalizedCFString(CFSTR("N/A"), nullptr)), "(null)");
    EXPECT_EQ(Taken(PDEBundle::CopyLocalizedCFStringFromFile(CFSTR("k"), CFSTR("Gone"), nullptr)),
              "k");
    EXPECT_EQ(PDEBundle::ConvertCFString(CFSTR("abc"), text, sizeof text, kCFStringEncodingUTF8),
              3);
}

TEST_F(CoreInterfaceTest, TheProjectOpensItsPPDAnewAndCommits) {
    PrintSettingsTicket settings(mSession.Get());
    CFRef<CFStringRef> const key(CreatePostscriptDataFileKey());
    ZUBJobTicket job(&settings, key);
    bool restored = false;
    EXPECT_TRUE(mProject.SetupPPD(job, restored, nullptr));
    EXPECT_EQ(mProject.Sync(mSession.Get(), false), noErr);
    CFStringRef path = nullptr;
    EXPECT_EQ(settings.Get(key, path), noErr);
    PDEData own(mSession.Get(), mProject.GetPPD(), &mProject);
    own.MakeJobNotesForSpecialControls();
    EXPECT_TRUE(own.IsValid());
}

using PlugInInterfaceTest = CoreFixture;

TEST_F(PlugInInterfaceTest, BothTablesOfThePlugIn) {
    CFRef<CFUUIDRef> const typeID(CFUUIDCreateFromString(nullptr, CFSTR(kPrinterInfoTypeID)));
    CFRef<CFUUIDRef> const wanted(CFUUIDCreateFromString(nullptr, CFSTR(kPrinterInfoInterfaceID)));
    auto* const factory = static_cast<PlugInFactory*>(PrinterInfoPluginFactory(nullptr, typeID));
    ASSERT_NE(factory, nullptr);
    EXPECT_EQ(factory->table->AddRef(factory), 2U);
    void* found = nullptr;
    EXPECT_EQ(factory->table->QueryInterface(factory, CFUUIDGetUUIDBytes(wanted), &found), 0);
    auto* instance = static_cast<PrinterInfoInterface*>(found);
    PrinterInfoTable const& table = *instance->table;
    PrinterInfoAPIVersion version = {};
    PlugInContext context = nullptr;
    CFStringRef kind = nullptr;
    CFStringRef title = nullptr;
    CFArrayRef lines = nullptr;
    std::uint32_t number = 0;
    EXPECT_TRUE(table.GetAPIVersion(instance, &version) == noErr && version.buildVersionMajor == 1);
    EXPECT_EQ(table.Prologue(&context, &number, &kind, &title, &number, &number), noErr);
    CFRelease(kind);
    EXPECT_EQ(table.Initialize(nullptr, &number, 0, nullptr, mSession.Get()), -9530);
    EXPECT_EQ(table.Sync(nullptr, mSession.Get(), false), -9530);
    EXPECT_EQ(table.GetSummaryText(nullptr, &lines, &lines), -9530);
    EXPECT_TRUE(table.Open(nullptr) == -9530 && table.Close(nullptr) == -9530);
    EXPECT_EQ(table.Terminate(context, noErr), noErr);
    PrinterInfoInterface* again = instance;
    EXPECT_EQ(table.Retain(instance) + table.Release(&again) + table.Release(&instance), noErr);
    EXPECT_EQ(factory->table->Release(factory) + factory->table->Release(factory), 1U);
}

TEST_F(CoreInterfaceTest, TicketsAndData) {
    PrinterInfoTicket info(mSession.Get());
    CString name;
    long level = 0;
    CFStringRef version = nullptr;
    EXPECT_TRUE(info.GetMakeAndModelName(name) && info.GetMakeAndModelName() != nullptr);
    EXPECT_TRUE(info.GetFullPrinterTypeName() == nullptr && info.GetPrinterAddress() == nullptr &&
                info.PPDFile() == nullptr && info.GetColorDeviceUUID() == nullptr);
    EXPECT_FALSE(info.PPDFile(name) || info.GetPrinterAddress(name) ||
                 info.GetFullPrinterTypeName(name) || info.GetColorDeviceUUID(name) ||
                 info.SupportColor() || info.SupportCopies() || info.SupportCopiesAndCollate() ||
                 info.SupportReversePrintingOrder() || info.InputFileList() != nullptr ||
                 info.OutputTypeList() != nullptr || info.MemoryInstalled() != 0 ||
                 info.TrueTypeFontRasterizer() != 0 ||
                 info.PostscriptVersion(&level, &version, nullptr));

    PrintSettingsTicket settings(mSession.Get());
    CFRef<CFStringRef> const key(CreatePostscriptDataFileKey());
    ZUBJobTicket job(&settings, key);
    CFStringRef const client = GetBundleID();
    JobTicket own(CFSTR("com.apple.print.PrintSettingsTicket"));
    EXPECT_EQ(own.Set(client, CFSTR("k"), 7L, false), noErr);
    EXPECT_EQ(own.GetInt(CFSTR("k"), level), noErr);
    EXPECT_EQ(own.Set(client, CFSTR("k"), CFSTR("text"), false), noErr);
    EXPECT_EQ(own.Get(CFSTR("k"), version), noErr);
    EXPECT_EQ(own.Release(CFSTR("k")), noErr);
    CFRef<CFMutableArrayRef> const array(CFArrayCreateMutable(nullptr, 0));
    CFRef<CFDataRef> const noData(CFDataCreate(nullptr, nullptr, 0));
    CFRef<CFMutableDictionaryRef> const empty(CFDictionaryCreateMutable(nullptr, 0));
    CFDataRef gotData = nullptr;
    CFDictionaryRef gotDictionary = nullptr;
    EXPECT_EQ(own.Set(client, CFSTR("a"), CFArrayRef(array.Get()), false), noErr);
    EXPECT_EQ(own.Set(client, CFSTR("d"), noData.Get(), false), noErr);
    EXPECT_EQ(own.Get(CFSTR("d"), gotData), noErr);
    EXPECT_EQ(own.Set(client, CFSTR("e"), CFDictionaryRef(empty.Get()), false), noErr);
    EXPECT_EQ(own.Get(CFSTR("e"), gotDictionary), noErr);
    JobTicket ofSession(mSession.Get());
    EXPECT_EQ(ofSession.Get(CFSTR("PMPrintSettingsTicket"), level), noErr);
    EXPECT_EQ(level, static_cast<long>(ofSession.Ticket()));
    unsigned char bytes[] = "code";
    ZUBPPD* const ppd = gPDEData->GetPPD();
    EXPECT_TRUE(job.Add(kFeatureSite, bytes, 4) &&
                job.Add(kFeatureSite, ControlOf(*ppd, "*Duplex")));
    EXPECT_FALSE(job.Add(kFeatureSite, nullptr));
    EXPECT_TRUE(job.SavePPDForAllKeys(ppd, client));
    EXPECT_TRUE(job.RestorePPDForAllKeys(ppd, client, nullptr));
    CFRef<CFMutableArrayRef> const keywords(CFArrayCreateMutable(nullptr, 0));
    CFArrayAppendValue(keywords, CFSTR("*Duplex"));
    EXPECT_TRUE(job.SavePPDForKeys(ppd, client, keywords));
    EXPECT_TRUE(job.RestorePPDForKeys(ppd, client, keywords));
    CFRef<CFURLRef> const url(FileURL(mSession.PPDPath()));
    EXPECT_TRUE(job.SavePPD(ppd, client, url));
    PPDPtr const restored(job.RestorePPD(client, url));
    EXPECT_NE(restored, nullptr);
    EXPECT_TRUE(job.EnforceCopiesLimit(client, 3) && job.GetCopies() == 3);

    PDEData& data = *gPDEData;
    EXPECT_EQ(data.OutPostscriptData(job), noErr);
    data.SuppressApplePostscript(job);
    data.UploadSarnokeXMLFiles(2);
    EXPECT_TRUE(job.Save(client) && job.Invalidate(client) && job.Create());
    EXPECT_EQ(data.SaveNonPSSettings(&settings, client), noErr);
    EXPECT_EQ(data.RestoreNonPSSettings(&settings), noErr);
    EXPECT_EQ(data.GetPageOrientationFromOS(), 1);
    EXPECT_EQ(data.GetPrimaryPaperFeedFromOS(), noErr);
    data.Set1CopiesToOS();
    EXPECT_EQ(data.GetNumCopiesFromOS(), 1);
    CString address("10.0.0.1");
    bool enabled = false;
    EXPECT_FALSE(data.SetTolvanePrinterAddress(nullptr, nullptr, true));
    EXPECT_TRUE(data.SetTolvanePrinterAddress(nullptr, &address, true));
    EXPECT_EQ(Text(data.GetTolvanePrinterAddress(CFSTR("Demo"))), "10.0.0.1");
    EXPECT_NE(data.GetTolvanePrinterAddress(CFSTR("Demo"), &enabled), nullptr);
    data.SetIPAddressEnabled(false);
    EXPECT_TRUE(enabled && !data.GetIPAddressEnabled());
    EXPECT_TRUE(data.SaveTolvanePrinterList() && data.ResetTolvanePrinterList());
    EXPECT_TRUE(PDEData::IsValidBasicPanelControl(ControlOf(*ppd, "*Duplex")));
    PPDTree tree;
    EXPECT_TRUE(data.GetPPDShortcuts(tree) && data.SetPPDShortcuts(tree));
    EXPECT_TRUE(data.isSpecialChromvaleControl("*ZUSimulation") && isBidiKeyword("*ZUBidi") &&
                !isExpertChromvaleControl("*Duplex"));
    CFRef<CFMutableStringRef> const line(CFStringCreateMutable(nullptr, 0));
    bool more = false;
    EXPECT_TRUE(!data.GetSummaryLine(line, line, more) && more);
}

TEST_F(CoreInterfaceTest, PrinterRecords) {
    ZUBTolvanePrinterPList records;
    EXPECT_TRUE(records.Add(CFSTR("Demo"), CFSTR("host"), false));
    bool found = false;
    EXPECT_TRUE(records.Exists(CFSTR("Demo"), found) == 0 && found);
    EXPECT_EQ(Text(records.Find(CFSTR("Demo"))), "host");
    EXPECT_TRUE(records.setIPEnabled(CFSTR("Demo"), true) && records.getIPEnabled(CFSTR("Demo")));
    char items[1][1024] = {"item"};
    EXPECT_TRUE(records.AddDataBlob(CFSTR("Demo"), 1, 0, items));
    CFRef<CFMutableArrayRef> const out(CFArrayCreateMutable(nullptr, 0));
    EXPECT_TRUE(records.GetDataBlob(CFSTR("Demo"), 0, out) && records.Save());
    CFRef<CFURLRef> const contents(CreatePDEContentsURL(GetBundleID()));
    PrinterListFile list(contents, kCFPropertyListImmutable);
    PropertyListFile same(contents, CFSTR("PrinterList.plist"), kCFPropertyListImmutable);
    PropertyListFile file(FileURL(mSession.Path("list")), kCFPropertyListImmutable);
    EXPECT_TRUE(PropertyListFile("/gone", kCFPropertyListImmutable).IsFileValid());
    EXPECT_TRUE(
        file.Save(same.PropertyList()) &&
        file.CreatePropertyListFromFile(FileURL(mSession.Path("list")), kCFPropertyListImmutable));

    ZUBPPD* const ppd = gPDEData->GetPPD();
    auto* const popup = static_cast<PPDXPopupControl*>(ControlOf(*ppd, "*Duplex"));
    CFRef<CFMutableStringRef> const name(CFStringCreateMutable(nullptr, 0));
    EXPECT_TRUE(GetPPDPopupItemDisplayNameAsCFString(popup, 1, name));
    PPDXScrollPane* pane = nullptr;
    EXPECT_TRUE(GetScrollPane(ppd, "Layout", pane));
    char random[256];
    EXPECT_EQ(Taken(CreateRandomFileName("/tmp/x", random)), random);
}

}  // namespace
