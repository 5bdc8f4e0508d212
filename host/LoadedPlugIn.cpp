// SPDX-License-Identifier: Apache-2.0
#include "host/LoadedPlugIn.h"

#include "host/HostFiles.h"

LoadedPlugIn::~LoadedPlugIn() {
    ReleaseInterface();
    if (mFactory != nullptr) {
        mFactory->table->Release(mFactory);
    }
}

// Both the query and Retain counted the instance.
void LoadedPlugIn::ReleaseInterface() {
    for (; mInterfaceCounts > 0; --mInterfaceCounts) {
        // Release clears the pointer that it is given.
        PrinterInfoInterface* instance = mInterface;
        instance->table->Release(&instance);
    }
    mInterface = nullptr;
}

Outcome LoadedPlugIn::Load(std::string const& bundle) {
    for (auto const step :
         {&LoadedPlugIn::OpenBundle, &LoadedPlugIn::MakeFactory, &LoadedPlugIn::MakeInterface}) {
        if (Outcome outcome = (this->*step)(bundle); !outcome.Ok()) {
            return outcome;
        }
    }
    return Outcome::Done();
}

PrinterInfoTable const* LoadedPlugIn::Table() const {
    return mInterface == nullptr ? nullptr : mInterface->table;
}

Outcome LoadedPlugIn::OpenBundle(std::string const& bundle) {
    mBundle = CFRef<CFBundleRef>(CFBundleCreate(nullptr, HostFiles::URL(bundle, true)));
    if (!mBundle) {
        return Outcome::Failed("can't open the plug-in bundle " + bundle);
    }
    if (!ListsPrinterInfoType()) {
        return Outcome::Failed("the plug-in bundle " + bundle + " serves no print dialog");
    }
    return Outcome::Done();
}

bool LoadedPlugIn::ListsPrinterInfoType() const {
    CFTypeRef const types = CFBundleGetValueForInfoDictionaryKey(mBundle, CFSTR("CFPlugInTypes"));
    if (types == nullptr || CFGetTypeID(types) != CFDictionaryGetTypeID()) {
        return false;
    }
    CFTypeRef const factories =
        CFDictionaryGetValue(static_cast<CFDictionaryRef>(types), CFSTR(kPrinterInfoTypeID));
    return factories != nullptr && CFGetTypeID(factories) == CFArrayGetTypeID() &&
           CFArrayGetCount(static_cast<CFArrayRef>(factories)) > 0;
}

Outcome LoadedPlugIn::MakeFactory(std::string const& bundle) {
    auto const makeFactory = reinterpret_cast<PlugInFactoryFunction>(
        CFBundleGetFunctionPointerForName(mBundle, CFSTR("PrinterInfoPluginFactory")));
    if (makeFactory == nullptr) {
        return Outcome::Failed("can't load the plug-in of the bundle " + bundle);
    }
    CFRef<CFUUIDRef> const type(CFUUIDCreateFromString(nullptr, CFSTR(kPrinterInfoTypeID)));
    mFactory = static_cast<PlugInFactory*>(makeFactory(nullptr, type));
    return mFactory != nullptr
               ? Outcome::Done()
               : Outcome::Failed("the plug-in of the bundle " + bundle + " makes no factory");
}

Outcome LoadedPlugIn::MakeInterface(std::string const& bundle) {
    CFRef<CFUUIDRef> const wanted(CFUUIDCreateFromString(nullptr, CFSTR(kPrinterInfoInterfaceID)));
    void* instance = nullptr;
    std::int32_t const status =
        mFactory->table->QueryInterface(mFactory, CFUUIDGetUUIDBytes(wanted), &instance);
    if (status != 0 || instance == nullptr) {
        return Outcome::Failed("the plug-in of the bundle " + bundle + " has no dialog interface");
    }
    mInterface = static_cast<PrinterInfoInterface*>(instance);
    mInterfaceCounts = 1;
    OSStatus const retained = mInterface->table->Retain(mInterface);
    ++mInterfaceCounts;
    if (retained != noErr) {
        return Outcome::Failed("the nib of the bundle " + bundle + " can't be opened: error " +
                               std::to_string(retained));
    }
    return Outcome::Done();
}
