// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"

// Who the extension is. gUseCommonPresets chooses between two identities, and every key under
// which something is stored descends from them.

CFStringRef GetBundleID();  // borrowed, a constant
// The ticket key of the job data file's path; the caller releases it, null without memory.
CFStringRef CreatePostscriptDataFileKey();
// The bundle identifier with `suffix`, which may be null, appended; the caller releases it.
CFMutableStringRef CreateClientIdentifier(CFStringRef suffix);
CFStringRef CreateNIBFileName();  // the caller releases it
OSType GetCreatorID();

CFBundleRef GetBundleRef();  // MyGetBundle of this identity
// The bundle of the first identifier that it was asked for and found, until MyFreeBundle: other
// identifiers are ignored while it is kept. Borrowed, null when there is none.
CFBundleRef MyGetBundle(CFStringRef identifier);
void MyFreeBundle();
// The directory "Contents" of MyGetBundle; the caller releases it, null without a bundle.
CFURLRef CreatePDEContentsURL(CFStringRef bundleID);
