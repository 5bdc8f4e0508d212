// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/GroupName.h"

GroupName::GroupName(char const* keyword, CFStringRef translation, bool visible)
    : mKeyword(keyword),
      mTranslation(CFRef<CFStringRef>::Retained(translation)),
      mTranslationText(translation),
      mVisible(visible) {}
