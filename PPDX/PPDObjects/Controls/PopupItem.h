// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "ZUBUtils/PPDUtils/CString.h"
#include "platform/CoreFoundation.h"

class Arena;

// One choice of a popup. Whoever makes it fills the fields in; what they hold is the item's from
// then on.
//
// An item of a parsed PPD lies in the PPD's arena, with its keyword, its code and its name's bytes.
struct _PopupItem {
    _PopupItem() = default;
    // In the arena, which must outlive it. Throws std::bad_alloc.
    static _PopupItem* New(Arena& arena, std::string_view keyword);
    static _PopupItem* New(Arena& arena);  // without a keyword
    _PopupItem(_PopupItem const&) = delete;
    _PopupItem& operator=(_PopupItem const&) = delete;
    ~_PopupItem();
    // What its owner calls. An item in an arena only releases what it holds elsewhere, so without
    // HoldsMemory() the call may be left out.
    static void Delete(_PopupItem* item);

    // For an item in this arena. No string is made of the name before somebody asks. The encoding
    // is one of bytes, not UTF-16.
    void SetName(Arena& arena, std::string_view name, CFStringEncoding encoding);
    // The same from the string's external form in UTF-16, of an even number of bytes.
    void SetExternalName(Arena& arena, std::string_view name);
    // The code gets a line feed behind it.
    void SetCode(Arena& arena, std::string_view code);
    void SetFinishedCode(Arena& arena, std::string_view code);  // has its line feed
    void SetKeyword(Arena& arena, std::string_view keyword);
    bool HoldsMemory() const {
        return !mInArena || mLocalName != nullptr || mDisplayName != nullptr;
    }
    // The name for people, borrowed; null when there is none.
    CFStringRef LocalName();
    // Puts the name's external form in place of what `form` held, which is quicker than to make a
    // string of it. False, with anything in `form`, where that has to be. Throws std::bad_alloc.
    bool CopyExternalName(std::u16string& form) const;
    // The local name in the system encoding, converted at the first call; empty when it has no
    // form there, null without a local name. Lives as long as the item.
    char const* displayName();
    // Null when there is none.
    char const* Keyword() const { return mKeyword != nullptr ? mKeyword->GetCharData() : nullptr; }
    // Empty, too, when there is none, as is the code.
    std::string_view KeywordText() const {
        return mKeyword != nullptr ? std::string_view(*mKeyword, mKeyword->Size()) : "";
    }
    bool HasKeyword(char const* keyword) const;  // exact; false for null
    std::string_view Code() const {
        return mPSCode != nullptr && mPSLength > 0
                   ? std::string_view(reinterpret_cast<char const*>(mPSCode),
                                      static_cast<std::size_t>(mPSLength))
                   : "";
    }

    CString* mKeyword = nullptr;  // owned
    // Owned, released. Null until asked for where the name is bytes.
    CFStringRef mLocalName = nullptr;
    unsigned char* mPSCode = nullptr;  // owned, from malloc or in the arena, may be null
    std::int32_t mPSLength = 0;
    std::int32_t mSelected = 0;
    char* mDisplayName = nullptr;  // owned, from new[]; null until asked for

  private:
    CFStringRef MakeLocalName() const;
    std::string_view ExternalBytes() const;  // of a name in UTF-16

    // In the arena; null for a name that came as a string. Of UTF-16 the size, 32 bits, lies in
    // front of it; all else is terminated.
    char const* mName = nullptr;
    CFStringEncoding mNameEncoding = 0;
    bool mInArena = false;
};
