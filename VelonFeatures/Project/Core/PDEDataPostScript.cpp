// SPDX-License-Identifier: Apache-2.0
// What the session data puts into the job.
#include <algorithm>
#include <cctype>
#include <cstring>
#include <string_view>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/ShortText.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
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

std::string_view KeywordOf(PPDXControl* control) {
    char const* const keyword = control->Keyword();
    return keyword == nullptr ? std::string_view() : std::string_view(keyword);
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

bool PDEData::isSpecialChromvaleControl(char const* keyword) {
    return keyword != nullptr &&
           std::ranges::any_of(kSpecialChromvaleKeywords, [keyword](char const* special) {
               return std::strstr(keyword, special) != nullptr;
           });
}

OSStatus PDEData::OutPostscriptData(ZUBJobTicket& ticket) {
    TakePaperFeed();
    if (!ticket.IsJobValid()) {
        return paramErr;
    }
    SuppressApplePostscript(ticket);
    AnnounceToWorkflow();
    OutFirstControl(ticket);
    OutSourceApplication(ticket);
    OutRemainingControls(ticket);
    OutStoredPairs(ticket);
    OutSpecialControls(ticket);
    OutScale(ticket);
    OutPCPairs(ticket);
    OutCustomSize(ticket);
    OutPrintSize(ticket);
    OutFileDestination(ticket);
    OutDriverMarker(ticket);
    OutClosingMarkers(ticket);
    OutUTF8Version(ticket);
    return noErr;
}

void PDEData::SuppressApplePostscript(ZUBJobTicket& ticket) {
    PPDXControls* const controls = Controls();
    CNTL_TYPE type = kControlType;
    for (PPDXControl* control = GetFirst(controls, type); control != nullptr;
         control = GetNext(controls, type)) {
        std::string_view const keyword = KeywordOf(control);
        if (!keyword.empty() && keyword != "*PageSize") {
            ticket.Add(kSuppressedKeywordSite, control->Keyword());
        }
    }
}

// The search for the special option puts the display option to 1: the walk that follows takes in
// orphans and passes over hidden controls.
void PDEData::AnnounceToWorkflow() {
    PPDXControls* const controls = Controls();
    if (controls != nullptr && controls->FindSpecialOption("*Brennal", true) != nullptr &&
        GetIPAddressEnabled()) {
        UploadSarnokeXMLFiles(kUploadNewJob);
    }
}

void PDEData::OutFirstControl(ZUBJobTicket& ticket) {
    CNTL_TYPE type = kControlType;
    PPDXControl* const control = GetFirst(Controls(), type);
    if (control == nullptr) {
        return;
    }
    if (type != kJobNoteType && KeywordOf(control) != "*Collate") {
        ticket.Add(kFeatureSite, control);
    }
    bool const isPortrait = mPageOrientation == 1 || mPageOrientation == 3;
    if (!isPortrait && IsPrintingFromInDesign()) {
        ticket.Add(kFeatureSite, kNUpResetText);
    }
}

void PDEData::OutSourceApplication(ZUBJobTicket& ticket) {
    char name[sizeof(ProcessInfoRec::processName)];
    GetProcessName(name);
    AddShortText(ticket, kFeatureSite, kSourceApplicationFormat, name);
}

// Goes on behind the first control, where OutFirstControl left the walk.
void PDEData::OutRemainingControls(ZUBJobTicket& ticket) {
    PPDXControls* const controls = Controls();
    CNTL_TYPE type = kControlType;
    while (PPDXControl* const control = GetNext(controls, type)) {
        OutRemainingControl(ticket, control);
    }
}

void PDEData::OutRemainingControl(ZUBJobTicket& ticket, PPDXControl* control) {
    std::string_view const keyword = KeywordOf(control);
    bool const isElsewhere =
        control->Type() == kJobNoteType || isSpecialChromvaleControl(control->Keyword()) ||
        std::ranges::find(kKeywordsWithOwnStep, keyword) != kKeywordsWithOwnStep.end();
    if (!isElsewhere) {
        ticket.Add(kFeatureSite, control);
    } else if (keyword == "*ZUOrientation" && !control->IsNoVelonDriverUI()) {
        ticket.Add(kFeatureSite, kOrientationFalseText);
    }
}

void PDEData::OutDriverMarker(ZUBJobTicket& ticket) {
    char const* const version = mPPD == nullptr ? nullptr : mPPD->ZUVersion();
    if (version == nullptr || *version != '2') {
        ticket.Add(kDriverCommentSite, kDriverMarkerText);
    }
}

void PDEData::OutClosingMarkers(ZUBJobTicket& ticket) {
    ticket.Add(kFirstCopyMarkerSite, kClosingMarkerText);
    ticket.Add(kSecondCopyMarkerSite, kClosingMarkerText);
}
