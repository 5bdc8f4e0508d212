// SPDX-License-Identifier: Apache-2.0
#include "twoway/ZUBTolvanePrinterPList.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <initializer_list>
#include <new>
#include <system_error>

#include "platform/CFRef.h"
#include "platform/MacTypes.h"

namespace {

constexpr char kPath[] = "/Library/Preferences/ZUB.TolvanePrinterV2.plist";
constexpr char kUnreadSuffix[] = ".unread";
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

bool IsDecimal(CFStringRef text) {
    CFIndex const length = CFStringGetLength(text);
    CFIndex digits = 0;
    while (digits < length && CFStringGetCharacterAtIndex(text, digits) >= u'0' &&
           CFStringGetCharacterAtIndex(text, digits) <= u'9') {
        ++digits;
    }
    return length > 0 && digits == length;
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

CFIndex CountBehind(CFStringRef header, CFStringRef prefix) {
    CFRef<CFMutableStringRef> const count(CFStringCreateMutableCopy(nullptr, 0, header));
    CFStringFindAndReplace(count, prefix, CFSTR(""), {0, CFStringGetLength(prefix)}, 0);
    return CFStringGetIntValue(count);
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
        ++header;
    }
    if (header >= end || !prefix) {
        return {end, end};
    }
    CFIndex const count = CountBehind(StringAt(list, header), prefix);
    return {header, std::clamp<CFIndex>(header + 1 + count, header + 1, end)};
}

// ---- Making elements ----

void AppendRange(CFMutableArrayRef list, CFArrayRef source, CFIndex first, CFIndex end) {
    for (CFIndex index = first; index < end; ++index) {
        CFArrayAppendValue(list, CFArrayGetValueAtIndex(source, index));
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
    return StorableCopy(item);
}

CFRef<CFStringRef> HeaderOf(std::int32_t blockNumber, std::int32_t count) {
    char text[kHeaderSize];
    std::snprintf(text, sizeof text, "%d:%d", blockNumber, count);
    return CFRef<CFStringRef>(CFStringCreateWithCString(nullptr, text, kCFStringEncodingUTF8));
}

}  // namespace

ZUBTolvanePrinterPList::ZUBTolvanePrinterPList()
    : PropertyListFile(kPath, kCFPropertyListImmutable) {
    bool const isList = CFGetTypeID(PropertyList()) == CFArrayGetTypeID();
    mFileUnread = !isList && FileError() != ENOENT;
    mRecords = CFArrayCreateMutableCopy(nullptr, 0,
                                        isList ? static_cast<CFArrayRef>(PropertyList()) : nullptr);
    mRecordsReady = mRecords != nullptr;
}

ZUBTolvanePrinterPList::~ZUBTolvanePrinterPList() {
    CFRelease(mRecords);
}

CFIndex ZUBTolvanePrinterPList::Exists(CFStringRef name, bool& found) const {
    found = false;
    CFIndex const count = CFArrayGetCount(mRecords);
    for (CFIndex index = 0; index < count && name != nullptr; ++index) {
        if (IsHead(mRecords, index) &&
            CFStringCompare(StringAt(mRecords, index), name, kCFCompareCaseInsensitive) == 0) {
            found = true;
            return index;
        }
    }
    return kCFNotFound;
}

CFStringRef ZUBTolvanePrinterPList::Find(CFStringRef name) const {
    bool found = false;
    CFIndex const record = Exists(name, found);
    CFStringRef const address = found ? StringAt(mRecords, record + kAddress) : nullptr;
    return address != nullptr ? address : CFSTR("");
}

bool ZUBTolvanePrinterPList::Add(CFStringRef name, CFStringRef address, bool enabled) {
    auto const ownName = StorableCopy(name);
    auto const ownAddress = StorableCopy(address);
    if (!ownName || !ownAddress) {
        return false;
    }
    bool found = false;
    CFIndex const record = Exists(name, found);
    if (!found) {
        CFIndex const end = CFArrayGetCount(mRecords);
        return Splice(end, end,
                      ListOf({ownName, ownAddress, Flag(enabled), CurrentForm(), DataEnd()}));
    }
    if (!Complete(record)) {
        return false;
    }
    CFArraySetValueAtIndex(mRecords, record + kAddress, ownAddress);
    CFArraySetValueAtIndex(mRecords, record + kEnabled, Flag(enabled));
    mRecordsChanged = true;
    return true;
}

bool ZUBTolvanePrinterPList::getIPEnabled(CFStringRef name) const {
    bool found = false;
    CFIndex const record = Exists(name, found);
    return found && CFArrayGetValueAtIndex(mRecords, record + kEnabled) == kCFBooleanTrue;
}

bool ZUBTolvanePrinterPList::setIPEnabled(CFStringRef name, bool enabled) {
    bool found = false;
    CFIndex const record = Exists(name, found);
    if (found) {
        CFArraySetValueAtIndex(mRecords, record + kEnabled, Flag(enabled));
        mRecordsChanged = true;
    }
    return found;
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

bool ZUBTolvanePrinterPList::AddDataBlob(CFStringRef name, std::int32_t count,
                                         std::int32_t blockNumber, DataItem const* items) {
    bool found = false;
    CFIndex const record = Exists(name, found);
    if (!found) {
        return true;
    }
    auto const elements = ListOf({HeaderOf(blockNumber, count)});
    if (!elements || (items == nullptr && count > 0) || !Complete(record)) {
        return false;
    }
    for (std::int32_t index = 0; index < count; ++index) {
        if (auto const item = ItemFrom(items[index]); item) {
            CFArrayAppendValue(elements, item);
        }
    }
    // The blocks in front of the old one move behind the new one.
    Block const old = FindBlock(mRecords, record, blockNumber);
    AppendRange(elements, mRecords, record + kBlocks, old.header);
    return Splice(record + kBlocks, old.end, elements);
}

bool ZUBTolvanePrinterPList::Save() {
    if (std::int32_t const error = PrepareFile(); error != noErr) {
        SetFileError(error);
        return false;
    }
    if (!PropertyListFile::Save(mRecords)) {
        return false;
    }
    mRecordsChanged = false;
    mFileUnread = false;
    return true;
}

// Makes a whole record of form "2" out of any record. Nothing is dropped but what an older form
// gives up; elements that belong to no form come to stand behind the record's end.
bool ZUBTolvanePrinterPList::Complete(CFIndex record) {
    CFIndex const end = ContentEnd(mRecords, record);
    if (IsCurrent(mRecords, record, end)) {
        return IsTextAt(mRecords, end, DataEnd()) || Splice(end, end, ListOf({DataEnd()}));
    }
    CFIndex const form = record + kForm;
    return Splice(form, form + OldFormLength(mRecords, record, end),
                  ListOf({CurrentForm(), DataEnd()}));
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
    mRecordsChanged = true;
    return true;
}

// What has to stand on disk before the records are written. 0, or an errno.
std::int32_t ZUBTolvanePrinterPList::PrepareFile() const {
    namespace fs = std::filesystem;
    char path[kPathSize];
    if (!CFURLGetFileSystemRepresentation(FileURL(), true, reinterpret_cast<std::uint8_t*>(path),
                                          sizeof path)) {
        return noErr;  // writing fails as well, and tells why
    }
    try {
        std::error_code error;
        fs::create_directories(fs::path(path).parent_path(), error);
        if (!error && mFileUnread) {
            fs::path aside(path);
            aside += kUnreadSuffix;
            fs::copy_file(path, aside, fs::copy_options::overwrite_existing, error);
            if (error == std::errc::no_such_file_or_directory) {
                error.clear();  // it has gone since
            }
        }
        return error.value();
    } catch (std::bad_alloc const&) {
        return memFullErr;
    }
}
