// SPDX-License-Identifier: Apache-2.0
#include "host/DialogSession.h"

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/Job/WatermarkResource.h"
#include "VelonFeatures/Project/Core/Job/ZUBJobNoteList.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PlugIn/ProjectPDE.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/PrinterRecords.h"
#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "VelonFeatures/Project/Core/Warning.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "host/HostFiles.h"
#include "host/JsonText.h"
#include "platform/CFRef.h"
#include "platform/ProcessManager.h"
#include "twoway/ZUBTolvanePrinterPList.h"

namespace {

std::int16_t Pixels(std::uint32_t size) {
    return static_cast<std::int16_t>(std::min<std::uint32_t>(size, INT16_MAX));
}

// False when not every one of them stands in the record then. No watermarks leave what is there.
bool PutWatermarks(ZUBTolvanePrinterPList& records, CFStringRef printer,
                   std::vector<std::string> const& watermarks) {
    bool whole = true;
    return watermarks.empty() ||
           (PutBlock(records, printer, PDEData::kWatermarkBlock, watermarks, whole) && whole);
}

Outcome Checked(OSStatus status, std::string const& what) {
    return status == noErr ? Outcome::Done()
                           : Outcome::Failed(what + ": error " + std::to_string(status));
}

}  // namespace

DialogSession::DialogSession() : mFormerPresets(gCommonPresetsPath) {}

DialogSession::~DialogSession() {
    if (PrinterInfoTable const* const table = mPlugIn.Table()) {
        if (mMustClose) {
            table->Close(mContext);
        }
        // Also without a context: it is what lets the plug-in make its next factory.
        table->Terminate(mContext, noErr);
    }
    DisposeUserPane(mPane);
    DisposeHostWindow(mWindow);
    gCommonPresetsPath = mFormerPresets;
    gMayEndApplications = true;
}

Outcome DialogSession::Start(PrintOptions const& options,
                             std::optional<std::string> const& makeAndModel,
                             TicketFile const& kept) {
    SetCurrentProcessName(options.processName.c_str());
    SetMainBundleIdentifier(JsonText::FromUTF8(options.bundleID));
    mCommonPresets = options.commonPresets;
    gCommonPresetsPath = mCommonPresets.c_str();
    gMayEndApplications = false;
    Outcome outcome = WriteRecord(options);
    if (outcome.Ok()) {
        outcome = mSession.Open(options, makeAndModel, kept);
    }
    if (outcome.Ok()) {
        std::error_code ignored;
        bool const shared = std::filesystem::exists(options.commonPresets, ignored);
        outcome =
            mPlugIn.Load(options.bundle.empty() ? HostFiles::BuiltBundle(shared) : options.bundle);
    }
    if (outcome.Ok()) {
        outcome = MakeContext();
    }
    if (outcome.Ok()) {
        outcome = Initialize(options.ppd);
    }
    return outcome;
}

Outcome DialogSession::WriteRecord(PrintOptions const& options) {
    bool const hasAddress = options.address || options.noAddress;
    if (!hasAddress && options.watermarks.empty()) {
        return Outcome::Done();
    }
    std::string const failed = "can't write the record of the printer " + options.printer + ": ";
    ZUBTolvanePrinterPList records;
    if (!records.HasPlace()) {
        return Outcome::Failed(failed + "HOME is no absolute path");
    }
    CFRef<CFStringRef> const printer = JsonText::FromUTF8(options.printer);
    bool isThere = false;
    records.Exists(printer, isThere);
    if ((hasAddress || !isThere) &&
        !records.Add(printer, JsonText::FromUTF8(options.address.value_or("")),
                     options.address.has_value())) {
        return Outcome::Failed(failed + "it can't hold the name or the address as it was given");
    }
    if (!PutWatermarks(records, printer, options.watermarks)) {
        return Outcome::Failed(failed + "it can't hold a watermark as it was given");
    }
    return SaveRecords(records) ? Outcome::Done()
                                : Outcome::Failed(failed + HostFiles::Reason(records.FileError()));
}

Outcome DialogSession::MakeContext() {
    OSType creator = 0;
    CFRef<CFStringRef> kind;
    CFStringRef title = nullptr;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    OSStatus const status =
        mPlugIn.Table()->Prologue(&mContext, &creator, kind.Receive(), &title, &width, &height);
    if (status != noErr) {
        return Outcome::Failed("the plug-in can't start: error " + std::to_string(status));
    }
    MakePane(width, height);
    return Outcome::Done();
}

void DialogSession::MakePane(std::uint32_t width, std::uint32_t height) {
    constexpr std::uint32_t kButtonRow = 44;
    mWindow = CreateHostWindow({0, 0, Pixels(height + kButtonRow), Pixels(width)}, nullptr);
    mPane = CreateUserPane(mWindow, false);
    Rect const bounds = {0, 0, Pixels(height), Pixels(width)};
    SetControlBounds(mPane, &bounds);
}

Outcome DialogSession::Initialize(std::string const& ppd) {
    std::uint32_t flags = 0;
    constexpr std::uint32_t kHostReference = 0;
    OSStatus const status =
        mPlugIn.Table()->Initialize(mContext, &flags, kHostReference, mPane, mSession.Get());
    mMustClose = status == noErr;
    if (status == ProjectPDE::kPrinterRefused) {
        return Outcome::NotOurs("the extension doesn't take the printer of " + ppd +
                                "; zubprint lint says why, and zubprint adopt turns the PPD of "
                                "another printer into one that it takes");
    }
    return status == noErr ? Outcome::Done()
                           : Outcome::Failed("the plug-in can't open the printer of " + ppd +
                                             ": error " + std::to_string(status));
}

ZUBPPD* DialogSession::PPD() const {
    return gPDEData == nullptr ? nullptr : gPDEData->GetPPD();
}

bool DialogSession::IsTwoWay() {
    return gPDEData != nullptr && gPDEData->GetIPAddressEnabled();
}

std::string DialogSession::PaperFeed() const {
    if (gPDEData == nullptr) {
        return {};
    }
    gPDEData->GetPrimaryPaperFeedFromOS();
    return gPDEData->PaperFeed();
}

void DialogSession::TakeWatermarks(std::vector<std::string> const& records) {
    if (!records.empty() && gPDEData != nullptr) {
        gPDEData->Watermarks().Replace(records);
    }
}

std::string DialogSession::SelectWatermark(int number) {
    if (gPDEData == nullptr) {
        return {};
    }
    WatermarkList& list = gPDEData->Watermarks();
    if (number >= list.Count()) {
        return gPDEData->WhyNoWatermark(number);
    }
    list.Select(number);
    list.TakeFirstPagesOfRecords();
    mSession.DropFirstPageFlag();
    return {};
}

std::vector<std::string> DialogSession::DoubtsOfOtherWatermarks() {
    std::vector<std::string> doubts;
    std::int32_t const count = gPDEData == nullptr ? 0 : gPDEData->Watermarks().Count();
    for (std::int32_t i = 0; i < count; ++i) {
        WatermarkList const& list = gPDEData->Watermarks();
        if (std::string doubt = list.DoubtsOf(i); i != list.SelectedIndex() && !doubt.empty()) {
            doubts.push_back(std::move(doubt));
        }
    }
    return doubts;
}

// A commit with a PPD has something to write, whatever the choices. That it was written shows in
// the ticket alone, by a new path.
Outcome DialogSession::Commit() {
    std::string const former = PathInTicket();
    OSStatus const status = mPlugIn.Table()->Sync(mContext, mSession.Get(), false);
    if (status != noErr) {
        return Outcome::Failed("the commit failed: error " + std::to_string(status));
    }
    std::string path = PathInTicket();
    bool const written = path != former;
    mJobDataPath = written ? std::move(path) : std::string();
    return written || PPD() == nullptr ? Outcome::Done()
                                       : Outcome::Failed("can't write the job data file in /tmp");
}

Outcome DialogSession::Rebuild() {
    OSStatus const status = mPlugIn.Table()->Sync(mContext, mSession.Get(), true);
    if (status == ProjectPDE::kPrinterRefused) {
        return Outcome::NotOurs("the extension doesn't take the printer any more");
    }
    return Checked(status, "the pane can't be rebuilt");
}

Outcome DialogSession::OpenPane() {
    mMustClose = true;
    return Checked(mPlugIn.Table()->Open(mContext), "the pane can't be opened");
}

Outcome DialogSession::ClosePane() {
    mMustClose = false;
    return Checked(mPlugIn.Table()->Close(mContext), "the pane can't be closed");
}

std::size_t DialogSession::TryJob() {
    std::size_t const before = WarningCount();
    PrintSettingsTicket settings(mSession.Get());
    ZUBJobTicket ticket(&settings, CFRef<CFStringRef>(CreatePostscriptDataFileKey()));
    ZUBJobNoteList notes(PPD(), false);
    notes.outInjectionData(&ticket, mSession.Get());
    if (gPDEData != nullptr) {
        AddSelectedWatermark(ticket, *gPDEData, notes.Orientation());
    }
    return WarningCount() - before;
}

CFTypeRef DialogSession::JobPairs() {
    return gPDEData == nullptr ? nullptr : gPDEData->LastJob();
}

std::string DialogSession::PathInTicket() const {
    CFRef<CFStringRef> const key(CreatePostscriptDataFileKey());
    return mSession.PrintSettingsText(key);
}
