// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"

class CString;

// One choice of a popup. Whoever makes it fills the fields in; what they hold is the item's from
// then on.
struct _PopupItem {
    _PopupItem() = default;
    _PopupItem(_PopupItem const&) = delete;
    _PopupItem& operator=(_PopupItem const&) = delete;
    ~_PopupItem();

    // The local name in the system encoding, converted at the first call; empty when it has no
    // form there, null without a local name. Lives as long as the item.
    char const* displayName();
    char const* Keyword() const;                 // null when there is none
    bool HasKeyword(char const* keyword) const;  // exact; false for null

    CString* mKeyword = nullptr;       // owned
    CFStringRef mLocalName = nullptr;  // owned, released
    unsigned char* mPSCode = nullptr;  // owned, from malloc, may be null
    std::int32_t mPSLength = 0;
    std::int32_t mSelected = 0;
    char* mDisplayName = nullptr;  // owned, from new[]; null until asked for
};
