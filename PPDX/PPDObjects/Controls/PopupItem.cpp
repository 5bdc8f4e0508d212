// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PopupItem.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "ZUBUtils/PPDUtils/CString.h"

_PopupItem::~_PopupItem() {
    delete mKeyword;
    CFRelease(mLocalName);
    std::free(mPSCode);
    delete[] mDisplayName;
}

char const* _PopupItem::displayName() {
    if (mDisplayName != nullptr || mLocalName == nullptr) {
        return mDisplayName;
    }
    CFStringEncoding const encoding = CFStringGetSystemEncoding();
    CFIndex const size =
        std::max<CFIndex>(
            CFStringGetMaximumSizeForEncoding(CFStringGetLength(mLocalName), encoding), 0) +
        1;
    mDisplayName = new (std::nothrow) char[static_cast<std::size_t>(size)];
    if (mDisplayName != nullptr && !CFStringGetCString(mLocalName, mDisplayName, size, encoding)) {
        *mDisplayName = '\0';
    }
    return mDisplayName;
}

char const* _PopupItem::Keyword() const {
    return mKeyword != nullptr ? mKeyword->GetCharData() : nullptr;
}

bool _PopupItem::HasKeyword(char const* keyword) const {
    return keyword != nullptr && Keyword() != nullptr && std::strcmp(Keyword(), keyword) == 0;
}
