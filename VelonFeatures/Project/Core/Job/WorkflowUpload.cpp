// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/WorkflowUpload.h"

#include <cstdio>
#include <string>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "VelonFeatures/Project/Core/ControlLookup.h"
#include "VelonFeatures/Project/Core/Job/WorkflowLibrary.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/Warning.h"
#include "ZUBUtils/PPDUtils/PlainText.h"
#include "platform/CFRef.h"

namespace {

constexpr std::size_t kShortFieldSize = 128;  // with the terminator, as all here
constexpr std::size_t kFieldSize = 256;

// What the server is told, from the controls of the PPD.
struct Announcement {
    char user[kShortFieldSize];
    char password[kShortFieldSize];
    char server[kShortFieldSize];
    char workflow[kFieldSize];
    char folder[kFieldSize];
};

// False for a control that isn't there; a value without room counts as none.
bool ReadField(PPDXControl* control, char* text, std::size_t size) {
    *text = '\0';
    if (control == nullptr) {
        return false;
    }
    CFRef<CFStringRef> const value(control->CopyCurrentControlValueString());
    if (!value ||
        !CFStringGetCString(value, text, static_cast<CFIndex>(size), kCFStringEncodingUTF8)) {
        *text = '\0';
    }
    return true;
}

// UTF-8, empty for one that is too long; a blank for each control character.
std::string JobName(PMPrintSession session) {
    char name[kFieldSize] = "";
    PrintSettingsTicket settings(session);
    CFStringRef text = nullptr;
    if (settings.Get(TicketKey(kJobNameKey), text) != noErr ||
        !CFStringGetCString(text, name, sizeof name, kCFStringEncodingUTF8)) {
        return {};
    }
    if (HasControlCharacters(name)) {
        Warn("control characters in the job's name become blanks");
    }
    return BlankControlCharacters(name);
}

void TakeJobIdentifier(ZUBPPD* ppd, char const* identifier) {
    CFRef<CFStringRef> const value(
        CFStringCreateWithCString(nullptr, identifier, kCFStringEncodingUTF8));
    for (char const* keyword : {"*ZUSarnokeJobId", "*ZUSKNewJobID"}) {
        PPDXControl* const control = FindAnyControl(ppd, keyword);
        if (value && control != nullptr) {
            control->SetCurrentControlWithCFString(value);
        }
    }
}

}  // namespace

void UploadToWorkflow(ZUBPPD* ppd, PMPrintSession printSession, bool isNewJob) {
    WorkflowLibrary const library;
    Announcement job;
    if (!library.IsLoaded() ||
        !ReadField(FindAnyControl(ppd, "*ZUUserName"), job.user, sizeof job.user) ||
        !ReadField(FindAnyControl(ppd, "*ZUUserPassword"), job.password, sizeof job.password) ||
        !ReadField(FindAnyControl(ppd, "*ZUIP"), job.server, sizeof job.server) ||
        !ReadField(FindAnyControl(ppd, "*ZUWorkflowName"), job.workflow, sizeof job.workflow) ||
        !ReadField(FindAnyControl(ppd, "*ZUWorkflowFolder"), job.folder, sizeof job.folder)) {
        return;
    }
    char path[sizeof "/tmp/.xml" + kFieldSize];
    std::snprintf(path, sizeof path, "/tmp/%s.xml", job.workflow);
    WorkflowLibrary::Session const session = library.Open(job.server, job.user, job.password);
    if (session == nullptr) {
        return;
    }
    char identifier[WorkflowLibrary::kJobIdentifierSize];
    if (isNewJob &&
        library.CreateJob(session, job.folder, JobName(printSession).c_str(), path, identifier)) {
        TakeJobIdentifier(ppd, identifier);
    }
    library.Close(session);
}

void PDEData::UploadSarnokeXMLFiles(int mode) {
    UploadToWorkflow(mPPD, mSession, mode == kUploadNewJob);
}
