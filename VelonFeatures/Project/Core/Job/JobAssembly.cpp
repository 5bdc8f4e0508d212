// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/JobAssembly.h"

#include <algorithm>
#include <cctype>
#include <cstring>
#include <string>
#include <string_view>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/ControlLookup.h"
#include "VelonFeatures/Project/Core/Job/ShortText.h"
#include "VelonFeatures/Project/Core/Job/WatermarkResource.h"
#include "VelonFeatures/Project/Core/Job/ZUBJobNoteList.h"
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/Warning.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "ZUBUtils/PPDUtils/PlainText.h"
#include "platform/ProcessManager.h"

namespace {

constexpr char kNUpResetText[] =
    "%%Begin ZUBDoing_N_Up \n userdict /VelonKTdict known \n { \n  VelonKTdict /ZUBDoing_N_Up "
    "known \n  { 1 false VelonKTdict /ZUBDoing_N_Up get exec } if \n } if \n%%End \n";
constexpr char kSourceApplicationFormat[] =
    "%%%%BeginFeature: *ZUSourceAppType %s\n\n%%%%EndFeature\n";
constexpr char kOrientationFalseText[] = "%%BeginFeature: *ZUOrientation False\n%%EndFeature\n";
constexpr char kDriverMarkerText[] = "%%ZUBDriver\n";
constexpr char kClosingMarkerText[] =
    "%%EndVelonPreparse1: True\n"
    "/KTXPPDInsertionComplete where { pop KTXPPDInsertionComplete } if\n";
static_assert(sizeof(kDriverMarkerText) - 1 == 12);
static_assert(sizeof(kClosingMarkerText) - 1 == 92);

// Controls that the walk leaves to steps of their own, or to the operating system.
constexpr std::array<std::string_view, 4> kKeywordsWithOwnStep = {
    "*ZUScale",
    "*ZUPrintSize",
    "*ZUOrientation",
    "*Collate",
};

// Whether the profile that the option stands at would end its comment, or a string that it stands
// in. A PPD's own option with code is the PPD's affair, but for control characters.
bool IsUnfitProfile(PPDXControl* control) {
    auto* const popup = control != nullptr && control->Type() == kPopupType
                            ? static_cast<PPDXPopupControl*>(control)
                            : nullptr;
    char const* const keyword =
        popup != nullptr && popup->TakesUnknownValues() ? popup->CurrentKeyword() : nullptr;
    if (keyword == nullptr || IsPlainProfileText(keyword)) {
        return false;
    }
    _PopupItem const* item = popup->FirstItem();
    while (!item->HasKeyword(keyword)) {
        item = popup->NextItem();
    }
    return HasControlCharacters(keyword) || item->mPSCode == nullptr;
}

// The name of the printing application in capitals, terminated; "" when it can't be had.
void GetProcessName(char (&name)[sizeof(ProcessInfoRec::processName)]) {
    name[0] = '\0';
    ProcessSerialNumber process = {};
    ProcessInfoRec info = {};
    if (GetCurrentProcess(&process) != noErr || GetProcessInformation(&process, &info) != noErr) {
        return;
    }
    std::size_t const length = std::min<std::size_t>(info.processName[0], sizeof(name) - 1);
    std::transform(info.processName + 1, info.processName + 1 + length, name,
                   [](std::uint8_t byte) { return static_cast<char>(std::toupper(byte)); });
    name[length] = '\0';
}

bool IsPrintingFromInDesign() {
    CFStringRef const host = CFBundleGetIdentifier(CFBundleGetMainBundle());
    CFRange const found = CFStringFind(host, CFSTR("InDesign"), kCFCompareCaseInsensitive);
    return found.location != kCFNotFound;
}

}  // namespace

OSStatus PDEData::OutPostscriptData(ZUBJobTicket& ticket) {
    return JobAssembly(*this, ticket).Run();
}

void PDEData::SuppressApplePostscript(ZUBJobTicket& ticket) {
    JobAssembly(*this, ticket).SuppressApplePostscript();
}

JobAssembly::JobAssembly(PDEData& data, ZUBJobTicket& ticket)
    : mData(data), mTicket(ticket), mPPD(data.GetPPD()) {}

OSStatus JobAssembly::Run() {
    TakePaperFeed();
    if (!mTicket.IsJobValid()) {
        return paramErr;
    }
    SuppressApplePostscript();
    AnnounceToWorkflow();
    OutFirstControl();
    OutSourceApplication();
    OutRemainingControls();
    OutStoredPairs();
    OutSpecialControls();
    OutJobNotesAndWatermark();
    OutScale();
    OutPCPairs();
    OutCustomSize();
    OutPrintSize();
    OutFileDestination();
    OutDriverMarker();
    OutClosingMarkers();
    OutUTF8Version();
    return noErr;
}

void JobAssembly::SuppressApplePostscript() {
    PPDXControls* const controls = ControlsOf(mPPD);
    CNTL_TYPE type = kControlType;
    for (PPDXControl* control = GetFirst(controls, type); control != nullptr;
         control = GetNext(controls, type)) {
        std::string_view const keyword = control->KeywordText();
        if (!keyword.empty() && keyword != "*PageSize") {
            mTicket.Add(kSuppressedKeywordSite,
                        reinterpret_cast<unsigned char const*>(keyword.data()), keyword.size());
        }
    }
}

// The search for the special option puts the display option to 1: the walk that follows takes in
// orphans and passes over hidden controls.
void JobAssembly::AnnounceToWorkflow() {
    PPDXControls* const controls = ControlsOf(mPPD);
    if (controls != nullptr && controls->FindSpecialOption("*Brennal", true) != nullptr &&
        mData.GetIPAddressEnabled()) {
        mData.UploadSarnokeXMLFiles(PDEData::kUploadNewJob);
    }
}

void JobAssembly::OutControl(PPDXControl* control) {
    if (IsUnfitProfile(control)) {
        Warn(std::string(control->Keyword()) + " is left out: its profile can't stand in a job");
        return;
    }
    mTicket.Add(kFeatureSite, control);
}

void JobAssembly::OutFirstControl() {
    CNTL_TYPE type = kControlType;
    PPDXControl* const control = GetFirst(ControlsOf(mPPD), type);
    if (control == nullptr) {
        return;
    }
    if (type != kJobNoteType && control->KeywordText() != "*Collate") {
        OutControl(control);
    }
    std::int32_t const orientation = mData.PageOrientation();
    bool const isPortrait = orientation == 1 || orientation == 3;
    if (!isPortrait && IsPrintingFromInDesign()) {
        mTicket.AddText(kFeatureSite, kNUpResetText);
    }
}

void JobAssembly::OutSourceApplication() {
    char name[sizeof(ProcessInfoRec::processName)];
    GetProcessName(name);
    if (HasControlCharacters(name)) {
        Warn("control characters in the application's name become blanks");
    }
    AddShortText(mTicket, kFeatureSite, kSourceApplicationFormat,
                 BlankControlCharacters(name).c_str());
}

// Goes on behind the first control, where OutFirstControl left the walk.
void JobAssembly::OutRemainingControls() {
    PPDXControls* const controls = ControlsOf(mPPD);
    CNTL_TYPE type = kControlType;
    while (PPDXControl* const control = GetNext(controls, type)) {
        OutRemainingControl(control);
    }
}

void JobAssembly::OutRemainingControl(PPDXControl* control) {
    std::string_view const keyword = control->KeywordText();
    bool const isElsewhere =
        control->Type() == kJobNoteType || HoldsSpecialChromvaleKeyword(keyword) ||
        std::ranges::find(kKeywordsWithOwnStep, keyword) != kKeywordsWithOwnStep.end();
    if (!isElsewhere) {
        OutControl(control);
    } else if (keyword == "*ZUOrientation" && !control->IsNoVelonDriverUI()) {
        mTicket.AddText(kFeatureSite, kOrientationFalseText);
    }
}

// The job is whole without what a note can't give it.
void JobAssembly::OutJobNotesAndWatermark() {
    ZUBJobNoteList notes(mPPD, false);
    notes.outInjectionData(&mTicket, mData.Session());
    AddSelectedWatermark(mTicket, mData, notes.Orientation());
}

void JobAssembly::OutDriverMarker() {
    char const* const version = mPPD == nullptr ? nullptr : mPPD->ZUVersion();
    if (version == nullptr || *version != '2') {
        mTicket.AddText(kDriverCommentSite, kDriverMarkerText);
    }
}

void JobAssembly::OutClosingMarkers() {
    mTicket.AddText(kFirstCopyMarkerSite, kClosingMarkerText);
    mTicket.AddText(kSecondCopyMarkerSite, kClosingMarkerText);
}
