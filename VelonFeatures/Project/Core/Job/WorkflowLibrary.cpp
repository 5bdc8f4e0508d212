// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/WorkflowLibrary.h"

#include <dlfcn.h>

char const* gWorkflowLibraryPath = "/Library/Application Support/ZUB/lib/libsk2client.dylib";

namespace {

template <typename Function>
void Look(void* library, char const* name, Function& function) {
    function = reinterpret_cast<Function>(dlsym(library, name));
}

}  // namespace

WorkflowLibrary::WorkflowLibrary()
    : mLibrary(dlopen(gWorkflowLibraryPath, RTLD_NOW | RTLD_GLOBAL)) {
    if (mLibrary != nullptr) {
        Look(mLibrary, "SKOpenSession", mOpen);
        Look(mLibrary, "SKCreateNewJobEx", mCreateJob);
        Look(mLibrary, "SKCloseSession", mClose);
    }
}

WorkflowLibrary::~WorkflowLibrary() {
    if (mLibrary != nullptr) {
        dlclose(mLibrary);
    }
}

WorkflowLibrary::Session WorkflowLibrary::Open(char const* server, char const* user,
                                               char const* password) const {
    Session session = nullptr;
    if (mOpen != nullptr) {
        mOpen(server, user, password, "english", &session, 0);
    }
    return session;
}

bool WorkflowLibrary::CreateJob(Session session, char const* folder, char const* jobName,
                                char const* path, char (&identifier)[kJobIdentifierSize]) const {
    identifier[0] = '\0';
    if (mCreateJob == nullptr) {
        return false;
    }
    mCreateJob(session, folder, jobName, path, identifier);
    identifier[kJobIdentifierSize - 1] = '\0';
    return true;
}

void WorkflowLibrary::Close(Session session) const {
    if (mClose != nullptr) {
        mClose(session);
    }
}
