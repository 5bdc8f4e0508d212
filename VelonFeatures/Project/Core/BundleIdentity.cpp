// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/BundleIdentity.h"

#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "platform/CFRef.h"

namespace {

constexpr OSType kCreatorID = 0x5A554232;  // "ZUB2"

}  // namespace

CFStringRef GetBundleID() {
    return gUseCommonPresets ? CFSTR("com.zub.print.pde.2222.PInf")
                             : CFSTR("com.zub.print.pde.645EBB97-CCEC-44A1-ADE0-29E4901A642D.PInf");
}

CFStringRef CreatePostscriptDataFileKey() {
    CFMutableStringRef const key = CFStringCreateMutableCopy(nullptr, 0, CFSTR("ZUB.PSData."));
    if (key != nullptr) {
        CFStringAppend(key, GetBundleID());
    }
    return key;
}

CFMutableStringRef CreateClientIdentifier(CFStringRef suffix) {
    CFMutableStringRef const identifier = CFStringCreateMutableCopy(nullptr, 0, GetBundleID());
    if (identifier != nullptr) {
        CFStringAppend(identifier, suffix);
    }
    return identifier;
}

CFStringRef CreateNIBFileName() {
    return CFStringCreateCopy(nullptr, CFSTR("PDEProject"));
}

OSType GetCreatorID() {
    return kCreatorID;
}

CFBundleRef GetBundleRef() {
    return MyGetBundle(GetBundleID());
}

CFBundleRef MyGetBundle(CFStringRef identifier) {
    if (gCachedBundle == nullptr) {
        gCachedBundle = CFBundleGetBundleWithIdentifier(identifier);
        CFRetain(gCachedBundle);
    }
    return gCachedBundle;
}

void MyFreeBundle() {
    CFRelease(gCachedBundle);
    gCachedBundle = nullptr;
}

CFURLRef CreatePDEContentsURL(CFStringRef bundleID) {
    CFBundleRef const bundle = MyGetBundle(bundleID);
    if (bundle == nullptr) {
        return nullptr;
    }
    CFRef<CFURLRef> const url(CFBundleCopyBundleURL(bundle));
    return CFURLCreateCopyAppendingPathComponent(nullptr, url, CFSTR("Contents"), true);
}
