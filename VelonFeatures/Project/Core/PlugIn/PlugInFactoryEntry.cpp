// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PlugIn/PlugInFactoryEntry.h"

#include <sys/stat.h>

#include <new>

#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/PlugIn/PrinterInfoInstance.h"
#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "platform/CFRef.h"
#include "platform/PlugInHost.h"

namespace {

constexpr char kUnknownInterfaceID[] = "00000000-0000-0000-C000-000000000046";

// A factory with what only its own functions know.
struct FactoryInstance : PlugInFactory {
    PlugInFactoryTable mFunctions = {};
    CFUUIDRef mFactoryID = nullptr;  // owned
    std::uint32_t mCount = 1;
};

FactoryInstance* InstanceOf(void* self) {
    return static_cast<FactoryInstance*>(static_cast<PlugInFactory*>(self));
}

std::uint32_t AddRef(void* self) {
    return self == nullptr ? 0 : ++InstanceOf(self)->mCount;
}

std::uint32_t Release(void* self) {
    if (self == nullptr || InstanceOf(self)->mCount == 0) {
        return 0;
    }
    FactoryInstance* const instance = InstanceOf(self);
    if (--instance->mCount > 0) {
        return instance->mCount;
    }
    CFPlugInRemoveInstanceForFactory(instance->mFactoryID);
    CFRelease(instance->mFactoryID);
    delete instance;
    MyFreeBundle();
    return 0;
}

std::int32_t QueryInterface(void* self, CFUUIDBytes identifier, void** result) {
    CFRef<CFUUIDRef> const uuid(CFUUIDCreateFromUUIDBytes(nullptr, identifier));
    CFRef<CFStringRef> const text(uuid ? CFUUIDCreateString(nullptr, uuid) : nullptr);
    *result = nullptr;
    if (text && CFEqual(text, CFStringConstant(kUnknownInterfaceID))) {
        AddRef(self);
        *result = self;
        return noErr;
    }
    if (text && CFEqual(text, CFSTR(kPrinterInfoInterfaceID))) {
        *result = CreatePrinterInfoInstance();
        return noErr;
    }
    return kNoInterface;
}

void LookForCommonPresets() {
    struct stat status = {};
    if (stat(gCommonPresetsPath, &status) == 0) {
        gUseCommonPresets = true;
    }
}

// The first factory that the bundle lists for the type; the caller releases it, null for none.
CFUUIDRef CreateFactoryID(CFBundleRef bundle, CFUUIDRef typeID) {
    CFTypeRef const types = CFBundleGetValueForInfoDictionaryKey(bundle, CFSTR("CFPlugInTypes"));
    CFRef<CFStringRef> const type(typeID == nullptr ? nullptr
                                                    : CFUUIDCreateString(nullptr, typeID));
    if (!type || types == nullptr || CFGetTypeID(types) != CFDictionaryGetTypeID()) {
        return nullptr;
    }
    CFTypeRef const factories = CFDictionaryGetValue(static_cast<CFDictionaryRef>(types), type);
    if (factories == nullptr || CFGetTypeID(factories) != CFArrayGetTypeID()) {
        return nullptr;
    }
    CFTypeRef const first = CFArrayGetValueAtIndex(static_cast<CFArrayRef>(factories), 0);
    bool const isText = first != nullptr && CFGetTypeID(first) == CFStringGetTypeID();
    return isText ? CFUUIDCreateFromString(nullptr, static_cast<CFStringRef>(first)) : nullptr;
}

PlugInFactory* CreateFactory(CFUUIDRef factoryID) {
    auto* const instance = new (std::nothrow) FactoryInstance;
    if (instance == nullptr) {
        return nullptr;
    }
    instance->mFunctions = {nullptr, QueryInterface, AddRef, Release};
    instance->table = &instance->mFunctions;
    instance->mFactoryID = static_cast<CFUUIDRef>(CFRetain(factoryID));
    CFPlugInAddInstanceForFactory(factoryID);
    return instance;
}

}  // namespace

void* PrinterInfoPluginFactory(CFAllocatorRef /*allocator*/, CFUUIDRef typeID) try {
    if (gFactoryBusy) {
        return nullptr;
    }
    gFactoryBusy = true;
    LookForCommonPresets();  // every identifier below depends on it
    CFBundleRef const bundle = MyGetBundle(GetBundleID());
    if (bundle == nullptr) {
        return nullptr;
    }
    CFRef<CFUUIDRef> const factoryID(CreateFactoryID(bundle, typeID));
    return factoryID ? CreateFactory(factoryID) : nullptr;
} catch (...) {  // no memory
    return nullptr;
}
