// SPDX-License-Identifier: Apache-2.0
#include "twoway/ZUBTolvanePrinterPList.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <new>
#include <string>
#include <system_error>
#include <utility>

#include "platform/CFRef.h"
#include "platform/FileLock.h"
#include "platform/MacTypes.h"

namespace {

constexpr char kPath[] = "/Library/Preferences/ZUB.TolvanePrinterV2.plist";
constexpr char kUnreadSuffix[] = ".unread";
constexpr int kMostUnread = 1000;
constexpr CFIndex kPathSize = 4096;
constexpr std::size_t kHeaderSize = 32;

// Positions in a record.
constexpr CFIndex kAddress = 1;
constexpr CFIndex kEnabled = 2;
constexpr CFIndex kForm = 3;
constexpr CFIndex kBlocks = 4;

CFStringRef DataEnd() {
    return CFSTR("----- Data End -----");
}

CFStringRef CurrentForm() {
    return CFSTR("2");
}

CFBooleanRef Flag(bool value) {
    return value ? kCFBooleanTrue : kCFBooleanFalse;
}

// ---- Reading the list ----

CFStringRef StringAt(CFArrayRef list, CFIndex index) {
    CFTypeRef const element = CFArrayGetValueAtIndex(list, index);
    return CFGetTypeID(element) == CFStringGetTypeID() ? static_cast<CFStringRef>(element)
                                                       : nullptr;
}

bool IsBooleanAt(CFArrayRef list, CFIndex index) {
    return CFGetTypeID(CFArrayGetValueAtIndex(list, index)) == CFBooleanGetTypeID();
}

bool IsTextAt(CFArrayRef list, CFIndex index, CFStringRef text) {
    return CFEqual(CFArrayGetValueAtIndex(list, index), text);
}

// An address has its flag right behind it. The flag in its place tells a name from an item of a
// block that reads the same. With an end mark in between it is what a damaged record begins with.
bool IsHead(CFArrayRef list, CFIndex index) {
    return StringAt(list, index) != nullptr && !IsBooleanAt(list, index + kAddress) &&
           !IsTextAt(list, index + kAddress, DataEnd()) && IsBooleanAt(list, index + kEnabled);
}

CFIndex FindRecord(CFArrayRef list, CFStringRef name) {
    CFIndex const count = CFArrayGetCount(list);
    for (CFIndex index = 0; index < count && name != nullptr; ++index) {
        // Few texts are the name, and whether one is a head takes longer to tell.
        CFStringRef const text = StringAt(list, index);
        if (text != nullptr && CFStringCompare(text, name, kCFCompareCaseInsensitive) == 0 &&
            IsHead(list, index)) {
            return index;
        }
    }
    return kCFNotFound;
}

// The next record's head, or the end of the list.
CFIndex NextHead(CFArrayRef list, CFIndex record) {
    CFIndex const count = CFArrayGetCount(list);
    CFIndex index = record + kForm;
    while (index < count && !IsHead(list, index)) {
        ++index;
    }
    return index;
}

// Where the record's end mark stands, or the element that ends a record without one.
CFIndex ContentEnd(CFArrayRef list, CFIndex record) {
    CFIndex const count = CFArrayGetCount(list);
    CFStringRef const mark = DataEnd();
    CFIndex index = record + kForm;
    while (index < count && !IsTextAt(list, index, mark) && !IsHead(list, index)) {
        ++index;
    }
    return index;
}

bool IsCurrent(CFArrayRef list, CFIndex record, CFIndex end) {
    return record + kForm < end && IsTextAt(list, record + kForm, CurrentForm());
}

// The position behind the digits at `first`.
CFIndex DigitsEnd(CFStringRef text, CFIndex first) {
    CFIndex const length = CFStringGetLength(text);
    while (first < length && CFStringGetCharacterAtIndex(text, first) >= u'0' &&
           CFStringGetCharacterAtIndex(text, first) <= u'9') {
        ++first;
    }
    return first;
}

bool IsDecimal(CFStringRef text) {
    CFIndex const length = CFStringGetLength(text);
    return length > 0 && DigitsEnd(text, 0) == length;
}

// Whether the text reads as a block's header, "number:count".
bool IsHeader(CFStringRef text) {
    CFIndex const length = CFStringGetLength(text);
    CFIndex const colon = DigitsEnd(text, 0);
    return colon > 0 && colon + 1 < length && CFStringGetCharacterAtIndex(text, colon) == u':' &&
           DigitsEnd(text, colon + 1) == length;
}

// How many elements from the form mark on an older record gives up. A count that the record can't
// have isn't followed: what it stands before may be another record's.
CFIndex OldFormLength(CFArrayRef list, CFIndex record, CFIndex end) {
    CFIndex const form = record + kForm;
    if (form < end && IsTextAt(list, form, CFSTR("0"))) {
        return 1;
    }
    if (form >= end || !IsTextAt(list, form, CFSTR("1"))) {
        return 0;
    }
    CFStringRef const count = form + 1 < end ? StringAt(list, form + 1) : nullptr;
    CFIndex const entries = CFStringGetIntValue(count);
    return IsDecimal(count) && entries <= end - form - 2 ? 2 + entries : 1;
}

// A block's header and the element behind its last item; both are the record's content end when
// there is no such block.
struct Block {
    CFIndex header;
    CFIndex end;
};

// The element behind the last item of the block that a header opens. A count may be too high:
// nothing of the next block goes with this one.
CFIndex BlockEnd(CFArrayRef list, CFIndex header, CFIndex end) {
    char text[kHeaderSize] = "";
    CFStringGetCString(StringAt(list, header), text, sizeof text, kCFStringEncodingASCII);
    char const* const colon = std::strchr(text, ':');
    CFIndex const count = colon == nullptr ? 0 : std::strtol(colon + 1, nullptr, 10);
    CFIndex item = header + 1;
    CFIndex const told = item + std::clamp<CFIndex>(count, 0, end - item);
    while (item < told && !IsHeader(StringAt(list, item))) {
        ++item;
    }
    return item;
}

Block FindBlock(CFArrayRef list, CFIndex record, std::int32_t number) {
    CFIndex const end = ContentEnd(list, record);
    char text[kHeaderSize];
    std::snprintf(text, sizeof text, "%d:", number);
    CFRef<CFStringRef> const prefix(
        CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8));
    CFRange const start = {0, CFStringGetLength(prefix)};
    CFIndex header = record + kBlocks;
    while (header < end && CFStringCompareWithOptions(StringAt(list, header), prefix, start,
                                                      kCFCompareCaseInsensitive) != 0) {
        // An item of another block may begin as this one's header does.
        header = IsHeader(StringAt(list, header)) ? BlockEnd(list, header, end) : header + 1;
    }
    if (header >= end || !prefix) {
        return {end, end};
    }
    return {header, BlockEnd(list, header, end)};
}

// ---- Making elements ----

void AppendRange(CFMutableArrayRef list, CFArrayRef source, CFIndex first, CFIndex end) {
    for (CFIndex index = first; index < end; ++index) {
        CFArrayAppendValue(list, CFArrayGetValueAtIndex(source, index));
    }
}

// Booleans alone, or everything else. A boolean between strings would make one of them a head.
void AppendSorted(CFMutableArrayRef list, CFArrayRef source, CFIndex first, CFIndex end,
                  bool booleans) {
    for (CFIndex index = first; index < end; ++index) {
        if (IsBooleanAt(source, index) == booleans) {
            CFArrayAppendValue(list, CFArrayGetValueAtIndex(source, index));
        }
    }
}

// Null without memory for the list or for one of its elements.
CFRef<CFMutableArrayRef> ListOf(std::initializer_list<CFTypeRef> elements) {
    CFRef<CFMutableArrayRef> list(CFArrayCreateMutable(nullptr, 0));
    for (CFTypeRef const element : elements) {
        if (element == nullptr) {
            return {};
        }
        CFArrayAppendValue(list, element);
    }
    return list;
}

// A copy that no longer changes. Null for an end mark, which would cut a record short, and for text
// that would keep the whole list from being written.
CFRef<CFStringRef> StorableCopy(CFStringRef text) {
    CFRef<CFDataRef> const written(CFPropertyListCreateXMLData(nullptr, text));
    bool const isStorable = written && !CFEqual(text, DataEnd());
    return CFRef<CFStringRef>(isStorable ? CFStringCreateCopy(nullptr, text) : nullptr);
}

CFRef<CFStringRef> ItemFrom(char const* text) {
    auto const length = strnlen(text, ZUBTolvanePrinterPList::kDataItemSize);
    CFRef<CFStringRef> const item(
        CFStringCreateWithBytes(nullptr, reinterpret_cast<std::uint8_t const*>(text),
                                static_cast<CFIndex>(length), kCFStringEncodingUTF8, false));
    return IsHeader(item) ? CFRef<CFStringRef>() : StorableCopy(item);
}

CFRef<CFStringRef> HeaderOf(std::int32_t blockNumber, CFIndex count) {
    char text[kHeaderSize];
    std::snprintf(text, sizeof text, "%d:%ld", blockNumber, static_cast<long>(count));
    return CFRef<CFStringRef>(CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8));
}

}  // namespace

ZUBTolvanePrinterPList::ZUBTolvanePrinterPList()
    : PropertyListFile(kPath, kCFPropertyListImmutable) {
    bool const isList = HasList();
    mRecords = CFArrayCreateMutableCopy(nullptr, 0,
                                        isList ? static_cast<CFArrayRef>(PropertyList()) : nullptr);
    mRecordsReady = mRecords != nullptr;
}

ZUBTolvanePrinterPList::~ZUBTolvanePrinterPList() {
    CFRelease(mRecords);
}

bool ZUBTolvanePrinterPList::HasList() const {
    return CFGetTypeID(PropertyList()) == CFArrayGetTypeID();
}

bool ZUBTolvanePrinterPList::IsUnread() const {
    bool const isThere = FileError() != noErr && FileError() != ENOENT;
    return !HasList() && (WasRead() || isThere);
}

CFIndex ZUBTolvanePrinterPList::Exists(CFStringRef name, bool& found) const {
    CFIndex const record = FindRecord(mRecords, name);
    found = record != kCFNotFound;
    return record;
}

CFStringRef ZUBTolvanePrinterPList::Find(CFStringRef name) const {
    bool found = false;
    CFIndex const record = Exists(name, found);
    CFStringRef const address = found ? StringAt(mRecords, record + kAddress) : nullptr;
    return address != nullptr ? address : CFSTR("");
}

bool ZUBTolvanePrinterPList::Add(CFStringRef name, CFStringRef address, bool enabled) {
    Change change;
    change.name = StorableCopy(name);
    change.address = StorableCopy(address);
    change.enabled = enabled;
    return change.address && Make(std::move(change));
}

bool ZUBTolvanePrinterPList::PutAddress(CFStringRef name, CFStringRef address, bool enabled) {
    CFIndex const record = FindRecord(mRecords, name);
    if (record == kCFNotFound) {
        CFIndex const end = CFArrayGetCount(mRecords);
        return Splice(end, end, ListOf({name, address, Flag(enabled), CurrentForm(), DataEnd()}));
    }
    if (!Complete(record)) {
        return false;
    }
    CFArraySetValueAtIndex(mRecords, record + kAddress, address);
    CFArraySetValueAtIndex(mRecords, record + kEnabled, Flag(enabled));
    return true;
}

bool ZUBTolvanePrinterPList::getIPEnabled(CFStringRef name) const {
    bool found = false;
    CFIndex const record = Exists(name, found);
    return found && CFArrayGetValueAtIndex(mRecords, record + kEnabled) == kCFBooleanTrue;
}

bool ZUBTolvanePrinterPList::setIPEnabled(CFStringRef name, bool enabled) {
    bool found = false;
    Exists(name, found);
    Change change;
    change.name = CFRef<CFStringRef>(CFStringCreateCopy(nullptr, name));
    change.enabled = enabled;
    return found && Make(std::move(change));
}

bool ZUBTolvanePrinterPList::GetDataBlob(CFStringRef name, std::int32_t blockNumber,
                                         CFMutableArrayRef out) const {
    bool found = false;
    CFIndex const record = Exists(name, found);
    if (!found || !IsCurrent(mRecords, record, ContentEnd(mRecords, record))) {
        return false;
    }
    Block const block = FindBlock(mRecords, record, blockNumber);
    for (CFIndex index = block.header + 1; index < block.end; ++index) {
        if (CFStringRef const item = StringAt(mRecords, index); item != nullptr) {
            CFArrayAppendValue(out, item);
        }
    }
    return block.end > block.header;
}

bool ZUBTolvanePrinterPList::CanHold(DataItem const& text) {
    return static_cast<bool>(ItemFrom(text));
}

bool ZUBTolvanePrinterPList::AddDataBlob(CFStringRef name, std::int32_t count,
                                         std::int32_t blockNumber, DataItem const* items) {
    bool found = false;
    Exists(name, found);
    if (!found) {
        return true;
    }
    Change change;
    change.name = CFRef<CFStringRef>(CFStringCreateCopy(nullptr, name));
    change.block = CFRef<CFMutableArrayRef>(CFArrayCreateMutable(nullptr, 0));
    change.blockNumber = blockNumber;
    if (!change.block || (items == nullptr && count > 0)) {
        return false;
    }
    for (std::int32_t index = 0; index < count; ++index) {
        if (auto const item = ItemFrom(items[index]); item) {
            CFArrayAppendValue(change.block, item);
        }
    }
    return Make(std::move(change));
}

// The new block stands first, and the blocks in front of the old one behind it.
bool ZUBTolvanePrinterPList::PutBlock(CFStringRef name, std::int32_t number, CFArrayRef items) {
    CFIndex const record = FindRecord(mRecords, name);
    CFIndex const count = CFArrayGetCount(items);
    auto const elements = ListOf({HeaderOf(number, count)});
    if (record == kCFNotFound || !elements || !Complete(record)) {
        return false;
    }
    Block const old = FindBlock(mRecords, record, number);
    CFIndex const first = record + kBlocks;
    CFIndex const end = ContentEnd(mRecords, record);
    AppendRange(elements, items, 0, count);
    AppendSorted(elements, mRecords, first, old.header, false);
    AppendSorted(elements, mRecords, old.end, end, false);
    CFArrayAppendValue(elements, DataEnd());
    // Behind the end they are in nobody's way.
    AppendSorted(elements, mRecords, first, old.header, true);
    AppendSorted(elements, mRecords, old.end, end, true);
    return Splice(first, end + 1, elements);
}

bool ZUBTolvanePrinterPList::Apply(Change const& change) {
    if (change.block) {
        return PutBlock(change.name, change.blockNumber, change.block);
    }
    if (change.address) {
        return PutAddress(change.name, change.address, change.enabled);
    }
    CFIndex const record = FindRecord(mRecords, change.name);
    if (record != kCFNotFound) {
        CFArraySetValueAtIndex(mRecords, record + kEnabled, Flag(change.enabled));
    }
    return record != kCFNotFound;
}

// Makes the change here and notes it for the file. One that it overtakes is forgotten.
bool ZUBTolvanePrinterPList::Make(Change change) {
    try {
        mChanges.reserve(mChanges.size() + 1);
    } catch (std::bad_alloc const&) {
        return false;
    }
    if (!mRecordsReady || !change.name || !Apply(change)) {
        return false;
    }
    std::erase_if(mChanges, [&](Change const& former) {
        return CFEqual(former.name, change.name) && !former.block == !change.block &&
               !former.address == !change.address && former.blockNumber == change.blockNumber;
    });
    mChanges.push_back(std::move(change));
    mRecordsChanged = true;
    return true;
}

bool ZUBTolvanePrinterPList::Save() {
    mKeptAside.clear();
    FileLock lock;
    std::int32_t error = mRecordsReady ? MakeFolders() : memFullErr;
    if (error == noErr) {
        error = lock.Take(FileURL());
    }
    CFRef<CFMutableArrayRef> own = CFRef<CFMutableArrayRef>::Retained(mRecords);
    if (error == noErr) {
        error = TakeFile();
    }
    bool const isSaved = error == noErr && PropertyListFile::Save(mRecords);
    if (isSaved) {
        mChanges.clear();
        mRecordsChanged = false;
    } else {
        CFRelease(mRecords);
        mRecords = own.Release();
    }
    if (error != noErr) {
        SetFileError(error);
    }
    return isSaved;
}

// Reads the file again and puts the changes made here into what stands there now. A file that has
// gone, or is no list, takes all that is known here. 0, or what keeps the records from being
// written.
std::int32_t ZUBTolvanePrinterPList::TakeFile() {
    CreatePropertyListFromFile(FileURL(), kCFPropertyListImmutable);
    if (HasList()) {
        return Merge(static_cast<CFArrayRef>(PropertyList())) ? noErr : memFullErr;
    }
    if (WasRead()) {
        return KeepUnread();
    }
    return FileError() == ENOENT ? noErr : FileError();
}

bool ZUBTolvanePrinterPList::Merge(CFArrayRef there) {
    CFRef<CFMutableArrayRef> const own(
        std::exchange(mRecords, CFArrayCreateMutableCopy(nullptr, 0, there)));
    bool isMerged = mRecords != nullptr;
    for (auto change = mChanges.begin(); isMerged && change != mChanges.end(); ++change) {
        if (FindRecord(mRecords, change->name) != kCFNotFound) {
            isMerged = Apply(*change);
            continue;
        }
        // The whole record, of which the change is a part.
        CFIndex const record = FindRecord(own, change->name);
        CFRef<CFMutableArrayRef> const elements(CFArrayCreateMutable(nullptr, 0));
        AppendRange(elements, own, record, NextHead(own, record));
        CFIndex const end = CFArrayGetCount(mRecords);
        isMerged = Splice(end, end, elements);
    }
    return isMerged;
}

// Makes a whole record of form "2" out of any record. Nothing is dropped but what an older form
// gives up; elements that belong to no form come to stand behind the record's end.
bool ZUBTolvanePrinterPList::Complete(CFIndex record) {
    CFIndex const end = ContentEnd(mRecords, record);
    if (IsCurrent(mRecords, record, end)) {
        return IsTextAt(mRecords, end, DataEnd()) || Splice(end, end, ListOf({DataEnd()}));
    }
    CFIndex const form = record + kForm;
    CFIndex const rest = form + OldFormLength(mRecords, record, end);
    // An older record may have an end mark already.
    bool const hasMark = rest < CFArrayGetCount(mRecords) && IsTextAt(mRecords, rest, DataEnd());
    return Splice(form, rest + (hasMark ? 1 : 0), ListOf({CurrentForm(), DataEnd()}));
}

// Puts `elements` in the place of those from `first` up to `end`: all of them or, without memory,
// none. One pass, however much of a long list goes.
bool ZUBTolvanePrinterPList::Splice(CFIndex first, CFIndex end, CFArrayRef elements) {
    CFIndex const count = CFArrayGetCount(mRecords);
    CFRef<CFMutableArrayRef> list(CFArrayCreateMutable(nullptr, 0));
    AppendRange(list, mRecords, 0, first);
    AppendRange(list, elements, 0, CFArrayGetCount(elements));
    AppendRange(list, mRecords, end, count);
    bool const isWhole = CFArrayGetCount(list) == count - (end - first) + CFArrayGetCount(elements);
    if (!mRecordsReady || elements == nullptr || !isWhole) {
        return false;
    }
    CFRelease(mRecords);
    mRecords = list.Release();
    return true;
}

// 0, or an errno.
std::int32_t ZUBTolvanePrinterPList::MakeFolders() const {
    char path[kPathSize];
    if (!GetPath(path, sizeof path)) {
        return noErr;  // locking fails as well, and tells why
    }
    try {
        std::error_code error;
        std::filesystem::create_directories(std::filesystem::path(path).parent_path(), error);
        return error.value();
    } catch (std::bad_alloc const&) {
        return memFullErr;
    }
}

// Copies the file to the first free name of those for files that are no list. 0, or an errno.
std::int32_t ZUBTolvanePrinterPList::KeepUnread() {
    namespace fs = std::filesystem;
    char path[kPathSize];
    if (!GetPath(path, sizeof path)) {
        return fnfErr;
    }
    try {
        for (int number = 1; number <= kMostUnread; ++number) {
            std::string aside = std::string(path) + kUnreadSuffix;
            aside += number == 1 ? "" : '.' + std::to_string(number);
            std::error_code error;
            if (fs::exists(fs::symlink_status(aside, error))) {
                continue;
            }
            fs::copy_file(path, aside, error);
            if (error != std::errc::file_exists) {
                mKeptAside = error ? "" : aside;
                return error.value();
            }
        }
        return EEXIST;
    } catch (std::bad_alloc const&) {
        return memFullErr;
    }
}

bool ZUBTolvanePrinterPList::GetPath(char* path, CFIndex size) const {
    return CFURLGetFileSystemRepresentation(FileURL(), true, reinterpret_cast<std::uint8_t*>(path),
                                            size);
}
