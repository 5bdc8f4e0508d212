// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PDEData.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <memory>
#include <system_error>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/ControlLookup.h"
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "VelonFeatures/Project/Core/PrinterAccess.h"
#include "VelonFeatures/Project/Core/ProfileNotes.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "platform/CFRef.h"
#include "platform/FileManager.h"
#include "platform/NewFiles.h"

namespace {

constexpr std::size_t kPPDPathSize = 512;        // with the terminator
constexpr std::size_t kSpecialValueSize = 1024;  // likewise

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
    ReportNewFile(temporary, target);
    fs::copy_file(source, temporary, fs::copy_options::overwrite_existing, error);
    if (!error) {
        fs::rename(temporary, target, error);
    }
    if (error) {
        unlink(temporary);
    }
    return !error;
}

// A control without a value, and one whose value has no room, stay as they are. The new item has
// the bytes of the keyword that it repeats, so that the code which the PPD gives that one is found.
void AppendPresentValue(PPDXPopupControl& popup, CFStringRef value) {
    char const* const text = popup.CurrentKeyword();
    if (value == nullptr || text == nullptr || std::strlen(text) >= kSpecialValueSize) {
        return;
    }
    auto item = std::make_unique<_PopupItem>();
    item->mKeyword = new CString(text);
    item->mLocalName = CFStringCreateCopy(nullptr, value);
    popup.AppendPopupItem(item.release());
    popup.SetKeywordSelect(text, true);
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
    ResetTolvanePrinterList();
    GetTolvanePrinterAddress(mPrinterName);
    CopyPPD();
    bool const hasPairs = MakePCPairs();
    TakePageOrientation();
    MakeJobNotesForSpecialControls();
    mValid = hasPairs;
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
    PPDXControl* const control = FindAnyControl(mPPD, "*ZUOrientation");
    if (value != nullptr && control != nullptr) {
        control->SetCurrentControlWithCFString(value);
    }
}

void PDEData::MakeJobNotesForSpecialControls() {
    for (char const* keyword : kSpecialChromvaleKeywords) {
        auto* const popup = dynamic_cast<PPDXPopupControl*>(FindAnyControl(mPPD, keyword));
        if (popup == nullptr) {
            return;
        }
        CFRef<CFStringRef> value(popup->CopyCurrentControlValueString());
        if (!value) {
            popup->ResetToDefaultValue();
            value = CFRef<CFStringRef>(popup->CopyCurrentControlValueString());
        }
        AppendPresentValue(*popup, value);
        KeepInProfileNote(*mPPD, keyword, value);
    }
}

bool PDEData::isSpecialChromvaleControl(char const* keyword) {
    return keyword != nullptr && HoldsSpecialChromvaleKeyword(keyword);
}

// ---- The operating system's values ----

std::int32_t PDEData::GetPageOrientationFromOS() const {
    return PageOrientationFromOS(mSession);
}

OSStatus PDEData::GetPrimaryPaperFeedFromOS() {
    return PrimaryPaperFeedFromOS(mSession, mPaperFeed);
}

std::string PDEData::TakePaperFeed() {
    constexpr auto kTaken = static_cast<char>(255);
    if (mPaperFeed[0] == '\0') {
        GetPrimaryPaperFeedFromOS();
    }
    std::string keyword(mPaperFeed[0] == kTaken ? "" : mPaperFeed);
    mPaperFeed[0] = kTaken;
    return keyword;
}

long PDEData::GetNumCopiesFromOS() const {
    return NumCopiesFromOS(mSession);
}

void PDEData::Set1CopiesToOS() const {
    Set1CopyToOS(mSession);
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
