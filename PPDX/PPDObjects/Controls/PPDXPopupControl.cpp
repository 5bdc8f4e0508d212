// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <memory>
#include <string>
#include <string_view>

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "PPDX/PPDObjects/Controls/PPDText.h"
#include "ZUBUtils/PPDUtils/Arena.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "platform/CFRef.h"

namespace {

constexpr std::size_t kLongestKeyword = 1024;  // with the terminator

constexpr CFIndex kUserNameSize = 256;  // with its terminator

// What these stand at may be a profile that only the print server knows.
constexpr std::string_view kProfileKeywords[] = {
    "*ZUSimulation",
    "*ZUOutProfile",
    "*ZURGBOverride",
};

long ItemRecordID(long id, long position) {
    return id * 100 + position;
}

_PopupItem* ItemAt(PointerListItr const& position) {
    return static_cast<_PopupItem*>(*position);
}

bool Equal(CFStringRef left, CFStringRef right, CFOptionFlags options) {
    return left != nullptr && CFStringCompare(left, right, options) == kCFCompareEqualTo;
}

// By its name for people, or by its keyword.
bool IsProfile(_PopupItem& item, CFStringRef value) {
    return Equal(item.LocalName(), value, kCFCompareCaseInsensitive) ||
           Equal(CFRef<CFStringRef>(CopyProfileText(item.Keyword())), value, 0);
}

void SaveName(ControlRecord& record, _PopupItem& item, std::u16string& form) {
    if (item.CopyExternalName(form)) {
        record.AddBytes(ArchiveTags::kItemName, form.data(),
                        static_cast<long>(form.size() * sizeof(char16_t)));
        return;
    }
    long size = 0;
    std::unique_ptr<unsigned char[]> const name(CFStringToExternal(item.LocalName(), &size));
    record.AddBytes(ArchiveTags::kItemName, name.get(), size);
}

// `form` is room for the names, kept from one to the next.
void SaveItem(ControlRecord& record, _PopupItem& item, std::u16string& form) {
    record.AddText(ArchiveTags::kItemKeyword, item.mKeyword);
    SaveName(record, item, form);
    record.AddBytes(ArchiveTags::kItemCode, item.mPSCode, item.mPSLength);
    record.AddNumber(ArchiveTags::kItemSelected, item.mSelected);
}

CFStringRef CopyPlainName(ControlRecord const& record) {
    std::unique_ptr<CString> const name(record.CopyText(ArchiveTags::kItemPlainName));
    return name == nullptr ? nullptr
                           : CFStringCreateWithCString(nullptr, name->GetCharData(),
                                                       CFStringGetSystemEncoding());
}

bool HasItem(Settings& settings, long id) {
    constexpr unsigned long kTags[] = {ArchiveTags::kItemSelected, ArchiveTags::kItemKeyword,
                                       ArchiveTags::kItemName, ArchiveTags::kItemPlainName,
                                       ArchiveTags::kItemCode};
    ControlRecord const record(settings, id);
    return std::ranges::any_of(kTags, [&](unsigned long tag) { return record.Look(tag) == 0; });
}

// Only the last thing that is set is memory outside of the arena.
_PopupItem* ItemFromRecord(Settings& settings, long id, Arena& arena) {
    ControlRecord const record(settings, id);
    _PopupItem* const item = _PopupItem::New(arena);
    if (std::string_view const keyword = record.View(ArchiveTags::kItemKeyword); !keyword.empty()) {
        item->SetKeyword(arena, keyword.substr(0, keyword.find('\0')));
    }
    std::string_view const code = record.View(ArchiveTags::kItemCode);
    if (!code.empty() && code.size() <= std::numeric_limits<std::int32_t>::max()) {
        item->SetFinishedCode(arena, code);
    }
    record.Read(ArchiveTags::kItemSelected, item->mSelected);
    std::string_view const name = record.View(ArchiveTags::kItemName);
    if (!name.empty() && name.size() % sizeof(char16_t) == 0) {
        item->SetExternalName(arena, name);
    } else {
        item->mLocalName = CopyPlainName(record);
    }
    return item;
}

}  // namespace

PPDXPopupControl::PPDXPopupControl() {
    SetType(kPopupType);
}

PPDXPopupControl::PPDXPopupControl(char const* keyword, CFStringRef localName, PointerList& flags,
                                   bool visible, bool multiple, bool installable,
                                   PointerList& items, CString* defaultKeyword,
                                   UIConstraints* constraints)
    : PPDXControl(keyword, localName, flags, nullptr, 0, visible, constraints),
      mMultiple(multiple),
      mInstallable(installable),
      mDefaultKeyword(defaultKeyword),
      mItems(std::move(items)) {
    SetType(kPopupType);
    for (PointerListItr it = mItems.Begin(); _PopupItem const* const item = ItemAt(it); ++it) {
        mItemsHoldMemory |= item->HoldsMemory();
    }
    try {
        SetKeywordSelect(GetDefaultKeyword(), true);
    } catch (...) {
        // The items have passed to the control, the default keyword hasn't.
        DeleteItems();
        throw;
    }
}

PPDXPopupControl::PPDXPopupControl(Settings& settings, long id, UIConstraints* constraints,
                                   Arena* arena)
    : PPDXControl(settings, id, constraints),
      mOwnArena(arena == nullptr ? std::make_unique<Arena>() : nullptr) {
    SetType(kPopupType);
    ControlRecord const record(settings, id);
    record.Read(ArchiveTags::kPopupMultiple, mMultiple);
    mDefaultKeyword = record.CopyText(ArchiveTags::kPopupDefault);
    std::int32_t count = 0;
    record.Read(ArchiveTags::kItemCount, count);
    try {
        ReadItems(settings, id, std::min<long>(count, settings.Count()),
                  arena == nullptr ? *mOwnArena : *arena);
    } catch (...) {
        delete mDefaultKeyword;
        DeleteItems();
        throw;
    }
}

PPDXPopupControl::~PPDXPopupControl() {
    delete mDefaultKeyword;
    DeleteItems();
}

void PPDXPopupControl::ReadItems(Settings& settings, long id, long count, Arena& arena) {
    char const* selected = GetDefaultKeyword();
    // Every item leaves an entry, so behind a missing one there is nothing.
    for (long position = 0; position < count && HasItem(settings, ItemRecordID(id, position));
         ++position) {
        std::unique_ptr<_PopupItem, void (*)(_PopupItem*)> made(
            ItemFromRecord(settings, ItemRecordID(id, position), arena), _PopupItem::Delete);
        mItems.PushBack(made.get(), arena);
        _PopupItem const* const item = made.release();
        mItemsHoldMemory |= item->HoldsMemory();
        if (item->mSelected != 0) {
            selected = item->Keyword();
        }
    }
    SetKeywordSelect(selected, true);
}

void PPDXPopupControl::DeleteItems() {
    MakeCurrent(nullptr);
    mItemCursor = PointerListItr();
    for (PointerListItr it = mItems.Begin(); mItemsHoldMemory && it != mItems.End(); ++it) {
        _PopupItem::Delete(ItemAt(it));
    }
    mItems.MakeEmpty();
}

short PPDXPopupControl::Save(Settings& settings, long const& id) {
    ControlRecord record(settings, id, PPDXControl::Save(settings, id));
    record.AddMark(ArchiveTags::kPopup);
    record.AddNumber(ArchiveTags::kPopupMultiple, mMultiple);
    record.AddText(ArchiveTags::kPopupDefault, mDefaultKeyword);
    if (!mItems.Empty()) {
        record.AddNumber(ArchiveTags::kItemCount, static_cast<std::int32_t>(mItems.Size()));
    }
    short status = record.Status();
    long position = 0;
    std::u16string form;
    for (PointerListItr it = mItems.Begin(); _PopupItem* const item = ItemAt(it); ++it) {
        ControlRecord itemRecord(settings, ItemRecordID(id, position++), status);
        SaveItem(itemRecord, *item, form);
        mItemsHoldMemory |= item->HoldsMemory();
        status = itemRecord.Status();
    }
    return status;
}

short PPDXPopupControl::Restore(Settings& settings, long id) {
    _PopupItem const* selected = nullptr;
    short status = 0;
    long position = 0;
    for (PointerListItr it = mItems.Begin(); _PopupItem* const item = ItemAt(it); ++it) {
        ControlRecord const record(settings, ItemRecordID(id, position++));
        if (record.Read(ArchiveTags::kItemSelected, item->mSelected)) {
            selected = item->mSelected != 0 ? item : selected;
            continue;
        }
        status = record.Look(ArchiveTags::kItemSelected);
        if (status != 0) {
            break;
        }
    }
    if (selected != nullptr) {
        SetKeywordSelect(selected->Keyword(), true);
    }
    return status;
}

void PPDXPopupControl::ResetToDefaultValue() {
    SetValue(DefaultValue());
}

long PPDXPopupControl::PostScript(unsigned char* out) {
    if (mCurrentItem == nullptr) {
        return 0;
    }
    // Asked for the length and then for the bytes: the item is looked for once.
    if (mCodeItem == nullptr) {
        mCodeItem = FirstItemOf(mCurrentItem->Keyword());
    }
    return ItemPostScript(mCodeItem, out);
}

CFStringRef PPDXPopupControl::CopyCurrentControlValueString() {
    if (mCurrentItem == nullptr) {
        return nullptr;
    }
    return TakesUnknownValues() ? CopyProfileText(mCurrentItem->Keyword())
                                : CopyPPDText(mCurrentItem->Keyword());
}

char const* PPDXPopupControl::CurrentKeyword() const {
    return mCurrentItem != nullptr ? mCurrentItem->Keyword() : nullptr;
}

void PPDXPopupControl::SetCurrentControlWithCFString(CFStringRef value) {
    if (value == nullptr) {
        return;
    }
    if (long const index = IndexOfValue(value); index != 0) {
        SetValue(index);
    } else if (TakesUnknownValues()) {
        AddUnknownValue(value);
    }
}

bool PPDXPopupControl::TakesUnknownValues() const {
    return Keyword() != nullptr &&
           std::ranges::find(kProfileKeywords, KeywordText()) != std::ranges::end(kProfileKeywords);
}

long PPDXPopupControl::IndexOfValue(CFStringRef value) {
    bool const isProfile = TakesUnknownValues();
    mItemsHoldMemory |= isProfile;
    // Keywords are read as Mac Roman, in which every text has its bytes: comparing those saves a
    // string for each item.
    char keyword[kLongestKeyword];
    bool const isKeyword =
        CFStringGetCString(value, keyword, sizeof keyword, kCFStringEncodingMacRoman) &&
        static_cast<CFIndex>(std::strlen(keyword)) == CFStringGetLength(value);
    long index = 0;
    for (PointerListItr it = mItems.Begin(); _PopupItem* const item = ItemAt(it); ++it) {
        ++index;
        if (isProfile ? IsProfile(*item, value) : isKeyword && item->HasKeyword(keyword)) {
            return index;
        }
    }
    return 0;
}

void PPDXPopupControl::AddUnknownValue(CFStringRef value) {
    char text[kUnknownValueSize];
    if (!CFStringGetCString(value, text, sizeof text, kCFStringEncodingUTF8)) {
        return;
    }
    auto* const item = new _PopupItem;
    item->mKeyword = new CString(text);
    item->mLocalName = CFStringCreateCopy(nullptr, value);
    AppendPopupItem(item);
    if (!SetKeywordSelect(text, true)) {
        SetValue(DefaultValue());
    }
}

_PopupItem* PPDXPopupControl::FirstItem() {
    mItemsHoldMemory = true;
    mItemCursor = mItems.Begin();
    return ItemAt(mItemCursor);
}

_PopupItem* PPDXPopupControl::NextItem() {
    return ItemAt(++mItemCursor);
}

void PPDXPopupControl::AppendPopupItem(_PopupItem* item) {
    mItemsHoldMemory = true;
    mItems.PushBack(item);
}

long PPDXPopupControl::GetValue() {
    long index = 0;
    for (PointerListItr it = mItems.Begin(); _PopupItem const* const item = ItemAt(it); ++it) {
        ++index;
        if (item->mSelected != 0) {
            return index;
        }
    }
    return 0;
}

long PPDXPopupControl::DefaultValue() {
    long index = 0;
    for (PointerListItr it = mItems.Begin(); _PopupItem const* const item = ItemAt(it); ++it) {
        ++index;
        if (item->HasKeyword(GetDefaultKeyword())) {
            return index;
        }
    }
    return 0;
}

char const* PPDXPopupControl::GetDefaultKeyword() const {
    return mDefaultKeyword != nullptr ? mDefaultKeyword->GetCharData() : nullptr;
}

void PPDXPopupControl::SetValue(long index) {
    long position = 0;
    for (PointerListItr it = mItems.Begin(); _PopupItem* const item = ItemAt(it); ++it) {
        item->mSelected = ++position == index;
        if (item->mSelected == 0) {
            continue;
        }
        MakeCurrent(item);
        ReportChange(item->Keyword());
    }
    if (mCurrentItem != nullptr) {
        UpdateKVCache(Keyword(), mCurrentItem->Keyword());
    }
}

bool PPDXPopupControl::SetKeywordSelect(char const* keyword, bool state) {
    if (keyword == nullptr || mItems.Empty()) {
        return false;
    }
    bool matched = false;
    for (PointerListItr it = mItems.Begin(); _PopupItem* const item = ItemAt(it); ++it) {
        if (item->HasKeyword(keyword)) {
            matched = true;
            item->mSelected = state;
            MakeCurrent(item);
            if (CanSelectMultipleItems()) {
                break;
            }
        } else if (!CanSelectMultipleItems()) {
            item->mSelected = 0;
        }
    }
    UpdateKVCache(Keyword(), keyword);
    return matched;
}

bool PPDXPopupControl::IsKeywordSelected(char const* keyword) {
    for (PointerListItr it = mItems.Begin(); _PopupItem const* const item = ItemAt(it); ++it) {
        if (item->mSelected != 0 && item->HasKeyword(keyword)) {
            return true;
        }
    }
    return false;
}

_PopupItem* PPDXPopupControl::FirstItemOf(char const* keyword) {
    PointerListItr it = mItems.Begin();
    while (ItemAt(it) != nullptr && !ItemAt(it)->HasKeyword(keyword)) {
        ++it;
    }
    return ItemAt(it);
}

_PopupItem* PPDXPopupControl::LastItemOf(char const* keyword) {
    mItemsHoldMemory = true;
    _PopupItem* last = nullptr;
    for (PointerListItr it = mItems.Begin(); _PopupItem* const item = ItemAt(it); ++it) {
        if (item->HasKeyword(keyword)) {
            last = item;
        }
    }
    return last;
}

long PPDXPopupControl::GetKeywordPSData(char const* keyword, unsigned char* out) {
    return ItemPostScript(FirstItemOf(keyword), out);
}

long PPDXPopupControl::ItemPostScript(_PopupItem* item, unsigned char* out) const {
    if (item == nullptr || Keyword() == nullptr) {
        return 0;
    }
    item->mPSLength = std::max(item->mPSLength, 0);
    return Frame(out, item->Code(), item->KeywordText());
}

void PPDXPopupControl::MakeCurrent(_PopupItem* item) {
    mCurrentItem = item;
    mCodeItem = nullptr;
}

char const* PPDXPopupControl::GetKeywordLocalName(char const* keyword) {
    _PopupItem* const item = LastItemOf(keyword);
    return item != nullptr ? item->displayName() : nullptr;
}

CFStringRef PPDXPopupControl::GetKeywordCFLocalName(char const* keyword) {
    _PopupItem* const item = LastItemOf(keyword);
    return item != nullptr ? item->LocalName() : nullptr;
}

bool PPDXPopupControl::Rebuild(char const* name, PointerList& items, CString* defaultKeyword) {
    if (mCurrentItem == nullptr) {
        return false;
    }
    CString const selected(mCurrentItem->Keyword());
    if (name != nullptr && (UserName() == nullptr || std::strcmp(name, UserName()) != 0)) {
        Rename(name);
    }
    DeleteItems();
    mItems = items;
    mItemsHoldMemory = true;
    delete mDefaultKeyword;
    mDefaultKeyword = defaultKeyword;
    SetKeywordSelect(GetDefaultKeyword(), true);
    SetKeywordSelect(selected, true);
    return true;
}

void PPDXPopupControl::Rename(char const* name) {
    CFStringEncoding const encoding = CFStringGetSystemEncoding();
    CFRef<CFStringRef> const localName(CFStringCreateWithCString(nullptr, name, encoding));
    if (!localName) {
        return;
    }
    char userName[kUserNameSize];
    CFIndex length = 0;
    CFStringGetBytes(localName, CFRangeMake(0, CFStringGetLength(localName)), encoding, '?', false,
                     reinterpret_cast<std::uint8_t*>(userName), kUserNameSize - 1, &length);
    userName[length] = '\0';
    SetUserName(localName, new CString(userName));
}

_PopupItem* FirstItem(PPDXPopupControl* popup) {
    return popup != nullptr ? popup->FirstItem() : nullptr;
}

_PopupItem* NextItem(PPDXPopupControl* popup) {
    return popup != nullptr ? popup->NextItem() : nullptr;
}

bool IsKeywordSelected(PPDXPopupControl* popup, char const* keyword) {
    return popup != nullptr && popup->IsKeywordSelected(keyword);
}

bool SetKeywordSelect(PPDXPopupControl* popup, char const* keyword, bool state) {
    return popup != nullptr && popup->SetKeywordSelect(keyword, state);
}

char const* GetKeywordLocalName(PPDXPopupControl* popup, char const* keyword) {
    return popup != nullptr ? popup->GetKeywordLocalName(keyword) : nullptr;
}

long GetKeywordPSData(PPDXPopupControl* popup, char const* keyword, unsigned char* out) {
    return popup != nullptr ? popup->GetKeywordPSData(keyword, out) : 0;
}

bool CanSelectMultipleItems(PPDXPopupControl* popup) {
    return popup != nullptr && popup->CanSelectMultipleItems();
}

char const* GetDefaultKeyword(PPDXPopupControl* popup) {
    return popup != nullptr ? popup->GetDefaultKeyword() : nullptr;
}

long PopupItemCount(PPDXPopupControl* popup) {
    return popup != nullptr ? popup->ItemCount() : 0;
}

long GetPopupValue(PPDXPopupControl* popup) {
    return popup != nullptr ? popup->GetValue() : 0;
}

void SetPopupValue(PPDXPopupControl* popup, long index) {
    if (popup != nullptr) {
        popup->SetValue(index);
    }
}

long GetPopupDefaultValue(PPDXPopupControl* popup) {
    return popup != nullptr ? popup->DefaultValue() : 0;
}

long PopupPostScript(PPDXPopupControl* popup, unsigned char* out) {
    return popup != nullptr ? popup->PostScript(out) : 0;
}
