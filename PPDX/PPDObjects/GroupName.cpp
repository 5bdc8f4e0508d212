// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/GroupName.h"

#include <cstring>

GroupName::GroupName(char const* keyword, CFStringRef translation, bool visible)
    : mKeyword(keyword),
      mTranslation(CFRef<CFStringRef>::Retained(translation)),
      mTranslationText(translation),
      mVisible(visible) {}

bool GroupName::IsNamed(char const* keyword) const {
    return Keyword() != nullptr && std::strcmp(Keyword(), keyword) == 0;
}
