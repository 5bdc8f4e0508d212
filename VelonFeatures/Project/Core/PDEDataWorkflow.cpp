// SPDX-License-Identifier: Apache-2.0
// The announcement of a job to the printer's workflow server.
#include <cstdio>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/WorkflowLibrary.h"
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

}  // namespace

void PDEData::UploadSarnokeXMLFiles(int mode) {
    WorkflowLibrary const library;
    Announcement job;
    if (!library.IsLoaded() || !ReadField(FindControl("*ZUUserName"), job.user, sizeof job.user) ||
        !ReadField(FindControl("*ZUUserPassword"), job.password, sizeof job.password) ||
        !ReadField(FindControl("*ZUIP"), job.server, sizeof job.server) ||
        !ReadField(FindControl("*ZUWorkflowName"), job.workflow, sizeof job.workflow) ||
        !ReadField(FindControl("*ZUWorkflowFolder"), job.folder, sizeof job.folder)) {
        return;
    }
    char path[sizeof "/tmp/.xml" + kFieldSize];
    std::snprintf(path, sizeof path, "/tmp/%s.xml", job.workflow);
    WorkflowLibrary::Session const session = library.Open(job.server, job.user, job.password);
    if (session == nullptr) {
        return;
    }
    char identifier[WorkflowLibrary::kJobIdentifierSize];
    if (mode == kUploadNewJob &&
        library.CreateJob(session, job.folder, JobName().c_str(), path, identifier)) {
        TakeJobIdentifier(identifier);
    }
    library.Close(session);
}

std::string PDEData::JobName() const {
    char name[kFieldSize] = "";
    PrintSettingsTicket settings(mSession);
    CFStringRef text = nullptr;
    if (settings.Get(TicketKey(kJobNameKey), text) != noErr ||
        !CFStringGetCString(text, name, sizeof name, kCFStringEncodingUTF8)) {
        return {};
    }
    return name;
}

void PDEData::TakeJobIdentifier(char const* identifier) {
    CFRef<CFStringRef> const value(
        CFStringCreateWithCString(nullptr, identifier, kCFStringEncodingUTF8));
    for (char const* keyword : {"*ZUSarnokeJobId", "*ZUSKNewJobID"}) {
        PPDXControl* const control = FindControl(keyword);
        if (value && control != nullptr) {
            control->SetCurrentControlWithCFString(value);
        }
    }
}
