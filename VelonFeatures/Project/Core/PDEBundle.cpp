// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PDEBundle.h"

#include <cstring>

#include "platform/CFRef.h"
#include "platform/TextEncodingConverter.h"

CFBundleRef PDEBundle::mBundle = nullptr;
bool PDEBundle::mInit = false;

void PDEBundle::InitBundle(CFBundleRef bundle) {
    if (mInit || bundle == nullptr) {
        return;
    }
    mBundle = bundle;
    CFRetain(mBundle);
    mInit = true;
}

CFBundleRef PDEBundle::BundleOr(CFBundleRef bundle) {
    return bundle != nullptr ? bundle : mBundle;
}

long PDEBundle::GetLocalizedString(CFStringRef key, char* buffer, long size, CFBundleRef bundle) {
    CFRef<CFStringRef> const text(CopyLocalizedCFString(key, bundle));
    return ConvertCFString(text, buffer, size, GetApplicationTextEncoding());
}

CFStringRef PDEBundle::CopyLocalizedCFString(CFStringRef key, CFBundleRef bundle) {
    return CopyLocalizedCFStringFromFile(key, nullptr, bundle);
}

CFStringRef PDEBundle::CopyLocalizedCFStringFromFile(CFStringRef key, CFStringRef table,
                                                     CFBundleRef bundle) {
    CFBundleRef const source = BundleOr(bundle);
    return source == nullptr ? nullptr : CFBundleCopyLocalizedString(source, key, key, table);
}

long PDEBundle::ConvertCFString(CFStringRef string, char* buffer, long size,
                                CFStringEncoding encoding) {
    if (buffer == nullptr || size < 1) {
        return 0;
    }
    *buffer = '\0';
    bool const isConverted =
        string != nullptr && CFStringGetCString(string, buffer, size, encoding);
    return isConverted ? static_cast<long>(std::strlen(buffer)) : 0;
}
