// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PlugIn/ProjectPDE.h"

#include <new>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/PrinterAccess.h"
#include "VelonFeatures/Project/Core/PrinterInfoTicket.h"
#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "panel/exchange/JobPropertiesProcess.h"
#include "platform/CFRef.h"
#include "platform/FileManager.h"
#include "twoway/PrinterListFile.h"

namespace {

constexpr int kHighestWindowTop = 60;  // pixels below the top of the screen
constexpr int kWindowStep = 4;

// Sets the process's resource file back at the end of a scope.
class ResourceFileScope {
  public:
    ResourceFileScope() = default;
    ResourceFileScope(ResourceFileScope const&) = delete;
    ResourceFileScope& operator=(ResourceFileScope const&) = delete;
    ~ResourceFileScope() { UseResFile(mFormer); }

  private:
    std::int16_t mFormer = CurResFile();
};

void AddSummaryLines(CFMutableArrayRef titles, CFMutableArrayRef summaries) {
    bool more = gPDEData != nullptr;
    while (more) {
        CFRef<CFMutableStringRef> const title(CFStringCreateMutable(nullptr, 0));
        CFRef<CFMutableStringRef> const summary(CFStringCreateMutable(nullptr, 0));
        if (!gPDEData->GetSummaryLine(title, summary, more)) {
            return;
        }
        CFArrayAppendValue(titles, title);
        CFArrayAppendValue(summaries, summary);
    }
}

void ReplaceAll(CFMutableStringRef text, CFStringRef wanted, CFStringRef replacement) {
    CFStringFindAndReplace(text, wanted, replacement, CFRangeMake(0, CFStringGetLength(text)),
                           kCFCompareCaseInsensitive);
}

}  // namespace

ProjectPDE::ProjectPDE() : mBundle(GetBundleRef()) {
    if (mBundle == nullptr) {
        return;
    }
    PDEBundle::InitBundle(mBundle);
    CFRef<CFStringRef> const nibName(CreateNIBFileName());
    mNibStatus = nibName ? CreateNibReferenceWithCFBundle(mBundle, nibName, &mNibRef) : memFullErr;
    if (mNibStatus != noErr) {
        return;
    }
    mTitle = PDEBundle::CopyLocalizedCFString(CFSTR("PDE Panel Title"), mBundle);
    mVersion = static_cast<CFStringRef>(
        CFBundleGetValueForInfoDictionaryKey(mBundle, CFSTR("CFBundleVersion")));
    gNeedShrink = true;
    mValid = true;
}

ProjectPDE::~ProjectPDE() {
    // The session data outlives the dialog, a user's name in its job mustn't.
    if (gPDEData != nullptr) {
        gPDEData->SetLastJob(nullptr);
    }
    DisposeNibReference(mNibRef);
    CFRelease(mTitle);
    DestroyPPD();
    CFRelease(mPrinterKey);
}

void ProjectPDE::PaneSize(std::uint32_t& width, std::uint32_t& height) const {
    width = kPaneWidth;
    height = kPaneHeight;
}

OSStatus ProjectPDE::Initialize(std::uint32_t* flags, std::uint32_t pdeRef, ControlRef parentPane,
                                PMPrintSession session) {
    ResourceFileScope const resourceFile;
    mInitialized = false;
    PrinterInfoTicket info(session);
    if (!info.IsValid()) {
        return kBadTicket;
    }
    *flags = 0;
    mSession = session;
    mPDERef = pdeRef;
    mParentPane = parentPane;
    MakePrinterKey(info.GetMakeAndModelName());
    mInitialized = info.HasCompiledPPD() && SetUpSession();
    if (!mInitialized) {
        DestroyPPD();
    }
    return mInitialized ? noErr : kPrinterRefused;
}

// Every model has stored settings of its own, unless all share one set.
void ProjectPDE::MakePrinterKey(CFStringRef makeAndModel) {
    CFRelease(mPrinterKey);
    mPrinterKey = nullptr;
    if (gUseCommonPresets || makeAndModel == nullptr) {
        return;
    }
    CFRef<CFMutableStringRef> const ending(CFStringCreateMutableCopy(nullptr, 0, CFSTR(".")));
    mPrinterKey = CreateClientIdentifier(nullptr);
    if (!ending || mPrinterKey == nullptr) {
        return;
    }
    CFStringAppend(ending, makeAndModel);
    CFStringAppend(ending, CFSTR(".PInf"));
    ReplaceAll(mPrinterKey, CFSTR(".PInf"), ending);
    ReplaceAll(mPrinterKey, CFSTR(" "), CFSTR("_"));
}

CFStringRef ProjectPDE::CreateSessionKey() const {
    return CFStringCreateCopy(nullptr, mPrinterKey != nullptr ? mPrinterKey : GetBundleID());
}

bool ProjectPDE::SetUpSession() {
    CFRef<CFStringRef> const dataKey(CreatePostscriptDataFileKey());
    if (!dataKey) {
        return false;
    }
    CFRef<CFStringRef> const sessionKey(CreateSessionKey());
    PrintSettingsTicket settings(mSession);
    ZUBJobTicket ticket(&settings, dataKey);
    if (!IsAcceptedPrinter(sessionKey)) {
        return false;
    }
    bool restored = false;
    SetupPPD(ticket, restored, mPrinterKey);
    if (mPPD == nullptr || !mPPD->IsValidPPD() || !ReplaceData()) {
        return false;
    }
    gPDEData->SetRestored(restored);
    gPDEData->RestoreNonPSSettings(&settings);
    gPDEData->GetWatermarksFromPreferences();
    gPDEData->GetTolvanePrinterAddress(gPDEData->PrinterName());
    gPDEData->MakeJobNotesForSpecialControls();
    ticket.Save(sessionKey);
    return true;
}

bool ProjectPDE::IsAcceptedPrinter(CFStringRef sessionKey) const {
    CFRef<CFURLRef> ppd;
    FSRef file;
    if (GetPPDFile(mSession, *ppd.Receive(), file) != noErr) {
        return false;
    }
    CFRef<CFURLRef> const contents(CreatePDEContentsURL(sessionKey));
    if (!contents) {
        return false;
    }
    PrinterListFile const printers(contents, kCFPropertyListImmutable);
    return printers.IsFileValid() && PPDX::ValidateFileName(ppd, printers.PCFileNames(), nullptr);
}

bool ProjectPDE::SetupPPD(ZUBJobTicket& ticket, bool& restored, CFStringRef printerKey) {
    restored = false;
    DestroyPPD();
    mPPD = ::SetupPPD(mSession, GetBundleID(), printerKey);
    if (mPPD != nullptr) {
        ticket.RestorePPDForAllKeys(mPPD, GetBundleID(), printerKey);
        restored = ticket.LastStatus() == noErr;
    }
    if (gPDEData != nullptr) {
        gPDEData->SetPPD(mPPD);
    }
    return true;
}

// The former data goes first: both may keep their copy of the PPD under the same path.
bool ProjectPDE::ReplaceData() {
    delete gPDEData;
    gPDEData = nullptr;
    gPDEData = new (std::nothrow) PDEData(mSession, mPPD, this);
    return gPDEData != nullptr && gPDEData->IsValid();
}

OSStatus ProjectPDE::Sync(PMPrintSession session, bool reinitialize) {
    JobTicket const job(session);
    if (!job.IsValid()) {
        return kBadTicket;
    }
    CFRef<CFStringRef> const dataKey(CreatePostscriptDataFileKey());
    if (!dataKey) {
        return noErr;
    }
    mSession = session;
    if (gPDEData != nullptr) {
        gPDEData->SetSession(session);
    }
    PrintSettingsTicket settings(session);
    ZUBJobTicket ticket(&settings, dataKey);
    if (ticket.IsJobValid() && !reinitialize) {
        return Commit(ticket, settings);
    }
    OSStatus const result = ticket.IsJobValid() ? Rebuild(ticket, settings) : kBadTicket;
    if (result != noErr) {
        DestroyPPD();
    }
    return result;
}

OSStatus ProjectPDE::Rebuild(ZUBJobTicket& ticket, PrintSettingsTicket& settings) {
    DestroyPPD();
    delete gPDEData;
    gPDEData = nullptr;
    bool restored = false;
    SetupPPD(ticket, restored, mPrinterKey);
    if (mPPD != nullptr && !mPPD->IsValidPPD()) {
        return kPrinterRefused;
    }
    if (!ReplaceData()) {
        return memFullErr;
    }
    gPDEData->SetRebuilt(true);
    OSStatus const result = gPDEData->RestoreNonPSSettings(&settings);
    gPDEData->GetWatermarksFromPreferences();
    ticket.Save(CFRef<CFStringRef>(CreateSessionKey()));
    return result;
}

OSStatus ProjectPDE::Commit(ZUBJobTicket& ticket, PrintSettingsTicket& settings) {
    if (mPPD == nullptr || gPDEData == nullptr) {
        return noErr;
    }
    if (OSStatus const status = gPDEData->OutPostscriptData(ticket); status != noErr) {
        DestroyPPD();
        return status;
    }
    CFRef<CFStringRef> const sessionKey(CreateSessionKey());
    ticket.SavePPDForAllKeys(mPPD, sessionKey);
    OSStatus const result = gPDEData->SaveNonPSSettings(&settings, sessionKey);
    // A job data file that can't be written leaves the settings with the former one; the dialog
    // goes on.
    gPDEData->SetLastJob(ticket.Save(sessionKey) ? ticket.List() : nullptr);
    return result;
}

OSStatus ProjectPDE::GetSummaryText(CFArrayRef* titles, CFArrayRef* summaries) {
    ResourceFileScope const resourceFile;
    *titles = nullptr;
    *summaries = nullptr;
    CFRef<CFMutableArrayRef> titleLines(CFArrayCreateMutable(nullptr, 0));
    CFRef<CFMutableArrayRef> summaryLines(CFArrayCreateMutable(nullptr, 0));
    if (!titleLines || !summaryLines) {
        return memFullErr;
    }
    AddSummaryLines(titleLines, summaryLines);
    if (CFArrayGetCount(titleLines) > 0) {
        *titles = titleLines.Release();
        *summaries = summaryLines.Release();
    }
    return noErr;
}

OSStatus ProjectPDE::Open() {
    RaiseWindow();
    return noErr;
}

void ProjectPDE::RaiseWindow() {
    WindowRef const window = GetControlOwner(mParentPane);
    WindowRef parent = nullptr;
    Rect bounds = {};
    if (window == nullptr || GetSheetWindowParent(window, &parent) == noErr ||
        GetWindowBounds(window, kWindowContentRgn, &bounds) != noErr) {
        return;
    }
    for (int top = bounds.top - 1; top > kHighestWindowTop; top -= kWindowStep) {
        MoveWindow(window, bounds.left, static_cast<std::int16_t>(top), false);
    }
}

OSStatus ProjectPDE::Close() {
    char const* const version = mPPD == nullptr ? nullptr : mPPD->ZUVersion();
    if (gMayEndApplications && (version == nullptr || *version != '2')) {
        KillJP();
    }
    return noErr;
}

void ProjectPDE::KillJP() {
    bool const isEnded = EndJobProperties();
    if (gPDEData != nullptr) {
        gPDEData->SetJPEnded(isEnded);
    }
}

std::int32_t ProjectPDE::ReportPSNofFDNtoJP(ProcessSerialNumber* psn) {
    return FindJobProperties(psn);
}

void ProjectPDE::DestroyPPD() {
    if (mPPD == nullptr) {
        return;
    }
    // Another dialog's data may have taken over by now.
    if (gPDEData != nullptr && gPDEData->GetPPD() == mPPD) {
        gPDEData->SetPPD(nullptr);
    }
    mPPD->Release();
    mPPD = nullptr;
}
