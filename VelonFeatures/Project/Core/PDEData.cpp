// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PDEData.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <system_error>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "VelonFeatures/Project/Core/PrinterAccess.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "platform/CFRef.h"
#include "platform/FileManager.h"

namespace {

constexpr std::size_t kPPDPathSize = 512;  // with the terminator

constexpr std::array<wchar_t const*, PDEData::kPCPairs> kPCKeys = {
    L"*ZUPCMID",
    L"*ZUPCName",
    L"*ZUCoverSizePCMID",
    L"*ZUCoverSizePCName",
};
constexpr wchar_t kNoPCValue[] = L"-1";

// False also when both are one file, which is then left alone. The content is written under a name
// of its own first: a reader sees a whole file, and a link in the target's place is replaced, not
// followed.
bool CopyFile(char const* source, char const* target) {
    namespace fs = std::filesystem;
    std::error_code error;
    if (fs::equivalent(source, target, error)) {
        return false;
    }
    char temporary[] = "/tmp/Velon.copyXXXXXX";
    int const file = mkstemp(temporary);
    if (file < 0) {
        return false;
    }
    close(file);
    fs::copy_file(source, temporary, fs::copy_options::overwrite_existing, error);
    if (!error) {
        fs::rename(temporary, target, error);
    }
    if (error) {
        unlink(temporary);
    }
    return !error;
}

// The value of *ZUOrientation for the operating system's number; null for an unknown one.
CFStringRef OrientationValue(std::int32_t orientation) {
    switch (orientation) {
        case 1:
        case 3:
            return CFSTR("Portrait");
        case 2:
        case 4:
            return CFSTR("Landscape");
        default:
            return nullptr;
    }
}

}  // namespace

PDEData::PDEData(PMPrintSession session, ZUBPPD* ppd, ProjectPDE* project)
    : mPPD(ppd), mSession(session), mProject(project) {
    if (CFStringRef const name = GetCurrentPrinterName(session); name != nullptr) {
        mPrinterNameCopy = CFStringCreateCopy(nullptr, name);
    }
    mPrinterName = mPrinterNameCopy;
    if (mPrinterName == nullptr) {
        return;
    }
    CopyPPD();
    TakePageOrientation();
    mValid = MakePCPairs();
}

PDEData::~PDEData() {
    if (mHasTempPPD) {
        unlink(mTempPPDPath);
    }
    CFRelease(mPrinterNameCopy);
}

void PDEData::CopyPPD() {
    char source[kPPDPathSize];
    char name[PPDX::kTextSize];
    FSSpec file;
    if (mPPD == nullptr || !mPPD->GetFileSpec(file) ||
        FSSpecGetPath(&file, source, sizeof(source)) != noErr || !mPPD->GetPPDFileName(name)) {
        return;
    }
    char const* const ending = std::strstr(name, ".ppd") == nullptr ? ".ppd" : "";
    std::snprintf(mTempPPDPath, sizeof(mTempPPDPath), "/tmp/%s%s", name, ending);
    mHasTempPPD = CopyFile(source, mTempPPDPath);
}

bool PDEData::MakePCPairs() {
    bool made = true;
    for (std::size_t i = 0; i < kPCPairs; ++i) {
        made = mPCPairs[i].SetKey(kPCKeys[i]) && mPCPairs[i].SetValue(kNoPCValue) && made;
    }
    return made;
}

void PDEData::TakePageOrientation() {
    mPageOrientation = GetPageOrientationFromOS();
    CFStringRef const value = OrientationValue(mPageOrientation);
    PPDXControls* const controls = Controls();
    if (value == nullptr || controls == nullptr) {
        return;
    }
    DisplayOptionsScope const everything(kDisplayAll);
    CNTL_TYPE type = kControlType;
    if (PPDXControl* const control = controls->Find("*ZUOrientation", type, true)) {
        control->SetCurrentControlWithCFString(value);
    }
}

PPDXControls* PDEData::Controls() const {
    return mPPD == nullptr ? nullptr : mPPD->GetControls();
}

std::int32_t PDEData::GetPageOrientationFromOS() const {
    PMTicketRef pageFormat = 0;
    std::int32_t orientation = 0;
    if (MyGetTicket(mSession, TicketKey(kPageFormatTicket), &pageFormat) == noErr) {
        PMTicketGetSInt32(pageFormat, 0, 0, TicketKey(kOrientationKey), &orientation);
    }
    return orientation;
}

// No printer has a record in which it could be switched on.
bool PDEData::GetIPAddressEnabled() const {
    return false;
}

bool PDEData::GetSummaryLine(CFMutableStringRef title, CFMutableStringRef summary,
                             bool& more) const {
    more = false;
    CFRef<CFStringRef> const text(PDEBundle::CopyLocalizedCFString(CFSTR("N/A")));
    CFStringAppend(title, text);
    CFStringAppend(summary, text);
    more = true;
    return false;
}
