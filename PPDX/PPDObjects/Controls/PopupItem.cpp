// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PopupItem.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>

#include "ZUBUtils/PPDUtils/Arena.h"
#include "ZUBUtils/PPDUtils/Settings.h"

_PopupItem* _PopupItem::New(Arena& arena, std::string_view keyword) {
    _PopupItem* const item = New(arena);
    item->SetKeyword(arena, keyword);
    return item;
}

_PopupItem* _PopupItem::New(Arena& arena) {
    auto* const item = new (arena.PlaceFor<_PopupItem>()) _PopupItem;
    item->mInArena = true;
    return item;
}

void _PopupItem::SetKeyword(Arena& arena, std::string_view keyword) {
    mKeyword = new (arena.PlaceFor<CString>()) CString(arena, keyword);
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

void _PopupItem::SetExternalName(Arena& arena, std::string_view name) {
    std::uint32_t const size = static_cast<std::uint32_t>(name.size());
    char* const place = static_cast<char*>(arena.Allocate(sizeof size + name.size(), 1));
    std::memcpy(place, &size, sizeof size);
    name.copy(place + sizeof size, name.size());
    mName = place + sizeof size;
    mNameEncoding = kCFStringEncodingUnicode;
}

void _PopupItem::SetFinishedCode(Arena& arena, std::string_view code) {
    mPSCode = static_cast<unsigned char*>(arena.Allocate(code.size(), 1));
    std::memcpy(mPSCode, code.data(), code.size());
    mPSLength = static_cast<std::int32_t>(code.size());
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
        mLocalName = MakeLocalName();
    }
    return mLocalName;
}

CFStringRef _PopupItem::MakeLocalName() const {
    if (mNameEncoding != kCFStringEncodingUnicode) {
        return CFStringCreateWithCString(nullptr, mName, mNameEncoding);
    }
    std::string_view const bytes = ExternalBytes();
    return CFStringCreateWithBytes(nullptr, reinterpret_cast<std::uint8_t const*>(bytes.data()),
                                   static_cast<CFIndex>(bytes.size()), mNameEncoding, true);
}

std::string_view _PopupItem::ExternalBytes() const {
    std::uint32_t size = 0;
    std::memcpy(&size, mName - sizeof size, sizeof size);
    return {mName, size};
}

bool _PopupItem::CopyExternalName(std::u16string& form) const {
    if (mName == nullptr || mLocalName != nullptr) {
        return false;
    }
    // Of the encodings of bytes, all begin with ASCII.
    if (mNameEncoding != kCFStringEncodingUnicode) {
        return PlainTextToExternal(mName, form);
    }
    std::string_view const bytes = ExternalBytes();
    form.resize(bytes.size() / sizeof(char16_t));
    bytes.copy(reinterpret_cast<char*>(form.data()), bytes.size());
    return form.starts_with(kByteOrderMark);
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

bool _PopupItem::HasKeyword(char const* keyword) const {
    return keyword != nullptr && Keyword() != nullptr && std::strcmp(Keyword(), keyword) == 0;
}
