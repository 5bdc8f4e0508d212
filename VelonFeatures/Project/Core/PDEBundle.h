// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

// The extension's own bundle and its localised texts. A null `bundle` stands for the one that
// InitBundle was given first. What a Copy function returns, the caller releases.
class PDEBundle {
  public:
    // The first call with a bundle counts; it is kept alive from then on.
    static void InitBundle(CFBundleRef bundle);

    // The text in the application's encoding, terminated; its length in bytes, 0, with an empty
    // text, when there is no bundle or it doesn't fit into `size` bytes.
    static long GetLocalizedString(CFStringRef key, char* buffer, long size,
                                   CFBundleRef bundle = nullptr);
    // Null without a bundle; the key itself where there is no text for it.
    static CFStringRef CopyLocalizedCFString(CFStringRef key, CFBundleRef bundle = nullptr);
    static CFStringRef CopyLocalizedCFStringFromFile(CFStringRef key, CFStringRef table,
                                                     CFBundleRef bundle = nullptr);
    // The text in `encoding`, terminated; its length in bytes, 0, with an empty text, when it
    // doesn't fit or doesn't convert.
    static long ConvertCFString(CFStringRef string, char* buffer, long size,
                                CFStringEncoding encoding);

    // What InitBundle set, once.
    static CFBundleRef mBundle;  // retained
    static bool mInit;

  private:
    static CFBundleRef BundleOr(CFBundleRef bundle);
};
