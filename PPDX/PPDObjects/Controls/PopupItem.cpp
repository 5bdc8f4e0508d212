// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PopupItem.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "ZUBUtils/PPDUtils/Arena.h"
#include "ZUBUtils/PPDUtils/CString.h"

_PopupItem* _PopupItem::New(Arena& arena, std::string_view keyword) {
    auto* const item = new (arena.PlaceFor<_PopupItem>()) _PopupItem;
    item->mInArena = true;
    item->mKeyword = new (arena.PlaceFor<CString>()) CString(arena, keyword);
    return item;
}

_PopupItem::~_PopupItem() {
    CFRelease(mLocalName);
    delete[] mDisplayName;
    if (!mInArena) {
        delete mKeyword;
        std::free(mPSCode);
    } else if (mKeyword != nullptr) {
        mKeyword->~CString();
    }
}

void _PopupItem::Delete(_PopupItem* item) {
    if (item->mInArena) {
        item->~_PopupItem();
    } else {
        delete item;
    }
}

void _PopupItem::SetName(Arena& arena, std::string_view name, CFStringEncoding encoding) {
    mName = arena.CopyText(name);
    mNameEncoding = encoding;
}

void _PopupItem::SetCode(Arena& arena, std::string_view code) {
    std::size_t const size = code.size() + 1;
    mPSCode = static_cast<unsigned char*>(arena.Allocate(size, 1));
    std::memcpy(mPSCode, code.data(), code.size());
    mPSCode[code.size()] = '\n';
    mPSLength = static_cast<std::int32_t>(size);
}

CFStringRef _PopupItem::LocalName() {
    if (mLocalName == nullptr && mName != nullptr) {
        mLocalName = CFStringCreateWithCString(nullptr, mName, mNameEncoding);
    }
    return mLocalName;
}

char const* _PopupItem::displayName() {
    if (mDisplayName != nullptr || LocalName() == nullptr) {
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
