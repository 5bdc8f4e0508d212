// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/Settings.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <type_traits>

#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/DataStream.h"
#include "platform/CFRef.h"
#include "platform/CollectionManager.h"
#include "platform/CoreFoundation.h"

namespace {

// The number of pages shows the byte order: no PPD has more than these.
constexpr std::int32_t kLargestPropertyCount = 10000;

constexpr long kNumberSize = 4;
constexpr long kShortSize = 2;
constexpr long kFileReferenceSize = 70;  // volume, directory, name

constexpr std::uint8_t kLossByte = '?';

struct HandleDeleter {
    void operator()(Handle handle) const { DisposeHandle(handle); }
};
using HandleGuard = std::unique_ptr<char*, HandleDeleter>;

std::uint32_t To32(unsigned long tag) {
    return static_cast<std::uint32_t>(tag);
}
std::int32_t To32(long id) {
    return static_cast<std::int32_t>(id);
}

void SwapBytes(void* value, long size) {
    char* const bytes = static_cast<char*>(value);
    std::reverse(bytes, bytes + size);
}

bool HasByteOrder(long size) {
    return size == kNumberSize || size == kShortSize || size == kFileReferenceSize;
}

// The value of an entry in a new block of `size` bytes and a terminator; null when the entry is
// missing or empty and when there is no memory.
std::unique_ptr<unsigned char[]> CopyValue(Settings& settings, unsigned long const& tag,
                                           long const& id, long* size) {
    if (settings.Get(tag, id, nullptr, *size, false) != noErr || *size < 1) {
        return nullptr;
    }
    std::unique_ptr<unsigned char[]> value(
        new (std::nothrow) unsigned char[static_cast<std::size_t>(*size) + 1]);
    if (value == nullptr || settings.Get(tag, id, value.get(), *size, false) != noErr) {
        return nullptr;
    }
    value[static_cast<std::size_t>(*size)] = '\0';
    return value;
}

}  // namespace

Settings::Settings() : mCollection(NewCollection()) {
    mValid = mCollection != nullptr;
    Keep(mValid ? noErr : memFullErr);
}

Settings::Settings(OpaqueCollection*& collection)
    : mValid(collection != nullptr), mCollection(collection) {}

Settings::Settings(char** flat) {
    if (flat == nullptr) {
        Keep(paramErr);
        return;
    }
    mCollection = NewCollection();
    if (mCollection == nullptr) {
        Keep(memFullErr);
        return;
    }
    mValid = Keep(UnflattenCollectionFromHdl(mCollection, flat)) == noErr;
}

Settings::Settings(Settings const& other) {
    if (other.mCollection == nullptr) {
        Keep(kNoCollection);
        return;
    }
    mCollection = CopyCollection(other.mCollection, nullptr);
    mValid = mCollection != nullptr;
    Keep(mValid ? noErr : memFullErr);
}

Settings& Settings::operator=(Settings const& other) {
    if (this == &other) {
        return *this;
    }
    mLastError = other.mLastError;
    mValid = other.mValid;
    mForeign.reset();
    if (other.mCollection == nullptr) {
        DisposeCollection(mCollection);
        mCollection = nullptr;
        return *this;
    }
    Collection const copy = CopyCollection(other.mCollection, mCollection);
    if (copy == nullptr) {
        Keep(memFullErr);
        mValid = false;
        return *this;
    }
    mCollection = copy;
    return *this;
}

Settings::~Settings() {
    DisposeCollection(mCollection);
}

long Settings::Add(unsigned long const& tag, long const& id, void const* data, long size) {
    if (mCollection == nullptr) {
        return Keep(kNoCollection);
    }
    if (size < 0 || (data == nullptr && size != 0)) {
        return Keep(paramErr);
    }
    mForeign.reset();
    return Keep(AddCollectionItem(mCollection, To32(tag), To32(id), size, data));
}

long Settings::Get(unsigned long const& tag, long const& id, void* data, long& size,
                   bool fixByteOrder) {
    long wholeSize = 0;
    OSErr const status = mCollection != nullptr
                             ? GetCollectionItem(mCollection, To32(tag), To32(id), &wholeSize, data)
                             : static_cast<OSErr>(kNoCollection);
    size = status == noErr ? wholeSize : 0;
    return status == noErr ? FixEndianness(data, size, fixByteOrder) : Keep(status);
}

long Settings::Set(unsigned long const& tag, long const& id, void const* data, long size) {
    if (mCollection == nullptr) {
        return Keep(kNoCollection);
    }
    if (size < 0 || (data == nullptr && size != 0)) {
        return Keep(paramErr);
    }
    mForeign.reset();
    long index = 0;
    OSErr const status =
        GetCollectionItemInfo(mCollection, To32(tag), To32(id), &index, nullptr, nullptr);
    return Keep(status != noErr ? status
                                : ReplaceIndexedCollectionItem(mCollection, index, size, data));
}

long Settings::Remove(unsigned long const& tag, long const& id) {
    mForeign.reset();
    return Keep(mCollection != nullptr ? RemoveCollectionItem(mCollection, To32(tag), To32(id))
                                       : kNoCollection);
}

long Settings::SetAttribute(unsigned long const& tag, long const& id, long const& mask,
                            bool const& set) {
    std::uint32_t const bits = static_cast<std::uint32_t>(mask);
    return Keep(mCollection != nullptr
                    ? SetCollectionItemInfo(mCollection, To32(tag), To32(id), bits, set ? bits : 0)
                    : kNoCollection);
}

long Settings::Lock(unsigned long const& tag, long const& id) {
    return SetAttribute(tag, id, collectionLockMask, true);
}

long Settings::Unlock(unsigned long const& tag, long const& id) {
    return SetAttribute(tag, id, collectionLockMask, false);
}

long Settings::First(unsigned long& tag, long& id, long& size, long& attributes) {
    mIndex = 1;
    return Entry(tag, id, size, attributes, kNoEntries);
}

long Settings::Next(unsigned long& tag, long& id, long& size, long& attributes) {
    mIndex = static_cast<std::int32_t>(std::min<long>(mIndex, Count()) + 1);
    return Entry(tag, id, size, attributes, kPastTheEnd);
}

long Settings::Entry(unsigned long& tag, long& id, long& size, long& attributes, long pastTheEnd) {
    tag = 0;
    id = 0;
    size = 0;
    attributes = 0;
    if (mCollection == nullptr) {
        return Keep(kNoCollection);
    }
    if (mIndex > Count()) {
        return Keep(pastTheEnd);
    }
    std::uint32_t storedTag = 0;
    std::int32_t storedId = 0;
    long storedSize = 0;
    std::uint32_t storedAttributes = 0;
    OSErr const status = GetIndexedCollectionItemInfo(mCollection, mIndex, &storedTag, &storedId,
                                                      &storedSize, &storedAttributes);
    if (status == noErr) {
        tag = storedTag;
        id = storedId;
        size = storedSize;
        attributes = static_cast<long>(storedAttributes);
    }
    return Keep(status);
}

long Settings::Count() const {
    return mCollection != nullptr ? CountCollectionItems(mCollection) : 0;
}

bool Settings::Empty() const {
    return Count() == 0;
}

long Settings::Save(DataStream* stream) {
    if (stream == nullptr || !stream->valid()) {
        return Keep(kNoStream);
    }
    char** flat = nullptr;
    long const status = GetSettingsHandle(&flat);
    HandleGuard const guard(flat);
    if (status != noErr) {
        return status;
    }
    if (stream->out(*flat, static_cast<unsigned long>(GetHandleSize(flat)))) {
        return Keep(noErr);
    }
    return Keep(stream->LastError() != noErr ? stream->LastError() : kNoStream);
}

long Settings::Read(DataStream* stream, unsigned long size) {
    if (stream == nullptr || !stream->valid()) {
        return Keep(kNoStream);
    }
    if (mCollection == nullptr) {
        return Keep(kNoCollection);
    }
    if (!stream->dataExists()) {
        return Keep(noErr);
    }
    unsigned long const wanted = size != 0 ? size : stream->dataSize();
    if (wanted > stream->dataSize()) {
        return Keep(collectionVersionErr);
    }
    HandleGuard const flat(NewHandle(static_cast<long>(wanted)));
    if (flat == nullptr) {
        return Keep(memFullErr);
    }
    if (!stream->in(*flat, wanted, nullptr, nullptr)) {
        return Keep(stream->LastError() != noErr ? stream->LastError() : kNoStream);
    }
    mForeign.reset();
    return Keep(UnflattenCollectionFromHdl(mCollection, flat.get()));
}

long Settings::GetSettingsHandle(char*** flat) {
    if (flat == nullptr) {
        return Keep(paramErr);
    }
    *flat = nullptr;
    if (mCollection == nullptr) {
        return Keep(kNoCollection);
    }
    HandleGuard handle(NewHandle(0));
    if (handle == nullptr) {
        return Keep(memFullErr);
    }
    if (Keep(FlattenCollectionToHdl(mCollection, handle.get())) == noErr) {
        *flat = handle.release();
    }
    return mLastError;
}

long Settings::FixEndianness(void* value, long size, bool fix) {
    if (!fix || value == nullptr) {
        return Keep(noErr);
    }
    if (!HasByteOrder(size)) {
        return Keep(kWrongSize);
    }
    if (IsForeign() && size == kFileReferenceSize) {
        SwapBytes(value, kShortSize);
        SwapBytes(static_cast<char*>(value) + kShortSize, kNumberSize);
    } else if (IsForeign()) {
        SwapBytes(value, size);
    }
    return Keep(noErr);
}

bool Settings::IsForeign() {
    if (!mForeign) {
        mForeign = LooksForeign();
    }
    return *mForeign;
}

bool Settings::LooksForeign() const {
    if (mCollection == nullptr) {
        return false;
    }
    long size = 0;
    if (GetCollectionItem(mCollection, kPageCountTag, kPageCountID, &size, nullptr) != noErr ||
        size != kNumberSize) {
        return false;
    }
    std::int32_t count = 0;
    return GetCollectionItem(mCollection, kPageCountTag, kPageCountID, &size, &count) == noErr &&
           count > kLargestPropertyCount;
}

long Settings::Keep(long status) {
    mLastError = To32(status);
    return status;
}

bool GetSettingsField(Settings& settings, unsigned long const& tag, long const& id, void* field,
                      long size) {
    long stored = 0;
    return settings.Get(tag, id, nullptr, stored, false) == noErr && stored == size &&
           settings.Get(tag, id, field, stored, HasByteOrder(size)) == noErr;
}

CString* GetSettingsString(Settings& settings, unsigned long const& tag, long const& id) {
    long size = 0;
    auto const value = CopyValue(settings, tag, id, &size);
    if (value == nullptr) {
        return nullptr;
    }
    std::unique_ptr<CString> text(new (std::nothrow)
                                      CString(reinterpret_cast<char const*>(value.get())));
    return text != nullptr && text->GetCharData() != nullptr ? text.release() : nullptr;
}

__CFString const* GetSettingsCFString(Settings& settings, unsigned long const& tag,
                                      long const& id) {
    long size = 0;
    auto const value = CopyValue(settings, tag, id, &size);
    return ExtenalToCFString(value.get(), size);
}

unsigned char* CFStringToExternal(__CFString const* string, long* size) {
    *size = 0;
    if (string == nullptr) {
        return nullptr;
    }
    constexpr CFIndex kBytesPerUnit = 2;
    CFIndex const length = CFStringGetLength(string);
    CFIndex const room = (1 + length) * kBytesPerUnit;
    std::unique_ptr<unsigned char[]> bytes(
        new (std::nothrow) unsigned char[static_cast<std::size_t>(room)]);
    if (bytes == nullptr ||
        CFStringGetBytes(string, CFRangeMake(0, length), kCFStringEncodingUnicode, kLossByte, true,
                         bytes.get(), room, size) != length) {
        *size = 0;
        return nullptr;
    }
    return bytes.release();
}

__CFString const* ExtenalToCFString(unsigned char const* data, long size) {
    if (data == nullptr || size < 0) {
        return nullptr;
    }
    return CFStringCreateWithBytes(nullptr, data, size, kCFStringEncodingUnicode, true);
}
