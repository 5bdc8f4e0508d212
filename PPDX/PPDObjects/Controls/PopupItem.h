// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/CoreFoundation.h"

class Arena;
class CString;

// One choice of a popup. Whoever makes it fills the fields in; what they hold is the item's from
// then on.
//
// An item of a parsed PPD lies in the PPD's arena, with its keyword, its code and its name's bytes.
struct _PopupItem {
    _PopupItem() = default;
    // In the arena, which must outlive it. Throws std::bad_alloc.
    static _PopupItem* New(Arena& arena, std::string_view keyword);
    _PopupItem(_PopupItem const&) = delete;
    _PopupItem& operator=(_PopupItem const&) = delete;
    ~_PopupItem();
    // What its owner calls. An item in an arena only releases what it holds elsewhere, so without
    // HoldsMemory() the call may be left out.
    static void Delete(_PopupItem* item);

    // For an item in this arena. No string is made of the name before somebody asks.
    void SetName(Arena& arena, std::string_view name, CFStringEncoding encoding);
    // The code gets a line feed behind it.
    void SetCode(Arena& arena, std::string_view code);
    bool HoldsMemory() const {
        return !mInArena || mLocalName != nullptr || mDisplayName != nullptr;
    }
    // The name for people, borrowed; null when there is none.
    CFStringRef LocalName();
    // The local name in the system encoding, converted at the first call; empty when it has no
    // form there, null without a local name. Lives as long as the item.
    char const* displayName();
    char const* Keyword() const;                 // null when there is none
    bool HasKeyword(char const* keyword) const;  // exact; false for null

    CString* mKeyword = nullptr;  // owned
    CFStringRef mLocalName =
        nullptr;  // owned, released; null until asked for where the name is bytes
    unsigned char* mPSCode = nullptr;  // owned, from malloc or in the arena, may be null
    std::int32_t mPSLength = 0;
    std::int32_t mSelected = 0;
    char* mDisplayName = nullptr;  // owned, from new[]; null until asked for

  private:
    char const* mName = nullptr;  // in the arena; null for a name that came as a string
    CFStringEncoding mNameEncoding = 0;
    bool mInArena = false;
};
