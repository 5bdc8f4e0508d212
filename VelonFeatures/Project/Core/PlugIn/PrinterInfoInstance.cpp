// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PlugIn/PrinterInfoInstance.h"

#include <memory>
#include <new>

#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/PlugIn/ProjectPDE.h"
#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "platform/CFRef.h"

namespace {

constexpr OSStatus kBadPlugInContext = -9530;

struct PrinterInfoInstance : PrinterInfoInterface {
    PrinterInfoTable mFunctions = {};
    std::uint32_t mCount = 1;
};

PrinterInfoInstance* InstanceOf(PrinterInfoInterface* self) {
    return static_cast<PrinterInfoInstance*>(self);
}

ProjectPDE* ProjectOf(PlugInContext context) {
    return static_cast<ProjectPDE*>(context);
}

OSStatus Retain(PrinterInfoInterface* self) {
    if (self == nullptr) {
        return paramErr;
    }
    ++InstanceOf(self)->mCount;
    if (gSharedNib != nullptr) {
        return noErr;
    }
    CFRef<CFStringRef> const name(CreateNIBFileName());
    return name ? CreateNibReferenceWithCFBundle(GetBundleRef(), name, &gSharedNib) : memFullErr;
}

OSStatus Release(PrinterInfoInterface** self) {
    if (self == nullptr || *self == nullptr) {
        return noErr;
    }
    PrinterInfoInstance* const instance = InstanceOf(*self);
    *self = nullptr;
    if (--instance->mCount > 0) {
        return noErr;
    }
    if (gSharedNib != nullptr) {
        DisposeNibReference(gSharedNib);
        gSharedNib = nullptr;
    }
    delete instance;
    return noErr;
}

OSStatus GetAPIVersion(PrinterInfoInterface* /*self*/, PrinterInfoAPIVersion* version) {
    *version = {1, 0, 1, 0};
    return noErr;
}

OSStatus Prologue(PlugInContext* context, OSType* creator, CFStringRef* kind, CFStringRef* title,
                  std::uint32_t* maximumWidth, std::uint32_t* maximumHeight) {
    *context = nullptr;
    std::unique_ptr<ProjectPDE> project(new (std::nothrow) ProjectPDE);
    if (!project || !project->IsValid()) {
        return kBadPlugInContext;
    }
    project->PaneSize(*maximumWidth, *maximumHeight);
    *title = project->Title();
    *kind = CFStringCreateCopy(nullptr, GetBundleID());
    *creator = GetCreatorID();
    *context = project.release();
    return noErr;
}

OSStatus Initialize(PlugInContext context, std::uint32_t* flags, std::uint32_t hostReference,
                    ControlRef parentPane, PMPrintSession session) {
    ProjectPDE* const project = ProjectOf(context);
    if (project == nullptr || !project->IsValid()) {
        return kBadPlugInContext;
    }
    return project->Initialize(flags, hostReference, parentPane, session);
}

OSStatus Sync(PlugInContext context, PMPrintSession session, bool reinitialize) {
    return context == nullptr ? kBadPlugInContext : ProjectOf(context)->Sync(session, reinitialize);
}

OSStatus GetSummaryText(PlugInContext context, CFArrayRef* titles, CFArrayRef* summaries) {
    return context == nullptr ? kBadPlugInContext
                              : ProjectOf(context)->GetSummaryText(titles, summaries);
}

OSStatus Open(PlugInContext context) {
    return context == nullptr ? kBadPlugInContext : ProjectOf(context)->Open();
}

OSStatus Close(PlugInContext context) {
    gFactoryBusy = false;
    return context == nullptr ? kBadPlugInContext : ProjectOf(context)->Close();
}

OSStatus Terminate(PlugInContext context, OSStatus /*status*/) {
    gFactoryBusy = false;
    if (context == nullptr) {
        return kBadPlugInContext;
    }
    delete ProjectOf(context);
    return noErr;
}

// Lack of memory is all that is thrown below; for the host it is a number.
template <auto function, typename... Arguments>
OSStatus Guarded(Arguments... arguments) noexcept {
    try {
        return function(arguments...);
    } catch (...) {
        return memFullErr;
    }
}

}  // namespace

PrinterInfoInterface* CreatePrinterInfoInstance() {
    auto* const instance = new (std::nothrow) PrinterInfoInstance;
    if (instance == nullptr) {
        return nullptr;
    }
    instance->mFunctions = {Guarded<Retain>,         Guarded<Release>,    Guarded<GetAPIVersion>,
                            Guarded<Prologue>,       Guarded<Initialize>, Guarded<Sync>,
                            Guarded<GetSummaryText>, Guarded<Open>,       Guarded<Close>,
                            Guarded<Terminate>};
    instance->table = &instance->mFunctions;
    return instance;
}
