// SPDX-License-Identifier: Apache-2.0
// The session's, the tickets' and the printer records' share of what InterfaceTest.cpp calls.
#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>

#include "VelonFeatures/Project/Core/PlugIn/ProjectPDE.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/PrinterAccess.h"
#include "VelonFeatures/Project/Core/PrinterInfoTicket.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "platform/ProcessManager.h"
#include "tests/VelonFeatures/Project/Core/CoreFixture.h"
#include "tests/interface/InterfacePPD.h"

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
    mProject.PaneSize(width, height);
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
    EXPECT_TRUE(job.EnforceCopiesLimit(client, 3) && job.GetCopies() == 3);

    PDEData& data = *gPDEData;
    data.SuppressApplePostscript(job);
    EXPECT_EQ(data.GetPageOrientationFromOS(), 1);
    CString address("10.0.0.1");
    EXPECT_FALSE(data.SetTolvanePrinterAddress(nullptr, nullptr, true));
    EXPECT_TRUE(data.SetTolvanePrinterAddress(nullptr, &address, true));
    EXPECT_EQ(Text(data.GetTolvanePrinterAddress(CFSTR("Demo"))), "10.0.0.1");
    CFRef<CFMutableStringRef> const line(CFStringCreateMutable(nullptr, 0));
    bool more = false;
    EXPECT_TRUE(!data.GetSummaryLine(line, line, more) && more);
}

}  // namespace
