// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ZUBUtils/PPDUtils/CString.h"
#include "platform/CFRef.h"

// A name that a PPD declares for a group, kept while the file is read. The group itself comes into
// being when a parent line or a control needs it.
class GroupName {
  public:
    // Null texts are kept as null; the translation is retained.
    GroupName(char const* keyword, CFStringRef translation, bool visible);

    char const* Keyword() const { return mKeyword.GetCharData(); }
    CFStringRef Translation() const { return mTranslation; }
    char const* TranslationText() const { return mTranslationText.GetCharData(); }
    bool IsVisible() const { return mVisible; }

  private:
    CString mKeyword;
    CFRef<CFStringRef> mTranslation;
    CString mTranslationText;
    bool mVisible;
};
