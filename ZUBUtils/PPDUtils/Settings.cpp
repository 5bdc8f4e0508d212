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

OSErr StreamError(DataStream const& stream) {
    return stream.LastError() != noErr ? stream.LastError() : OSErr{Settings::kNoStream};
}

// `stream` is a DataStream.
OSErr WriteTo(long size, void* bytes, void* stream) {
    auto& target = *static_cast<DataStream*>(stream);
    return target.out(bytes, static_cast<unsigned long>(size)) ? OSErr{noErr} : StreamError(target);
}
OSErr ReadFrom(long size, void* bytes, void* stream) {
    auto& source = *static_cast<DataStream*>(stream);
    return source.in(bytes, static_cast<unsigned long>(size), nullptr, nullptr)
               ? OSErr{noErr}
               : StreamError(source);
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

bool Settings::Look(unsigned long const& tag, long const& id, std::string_view& value) {
    long size = 0;
    char const* bytes = nullptr;
    OSErr const status = mCollection != nullptr ? GetCollectionItemValue(mCollection, To32(tag),
                                                                         To32(id), &size, &bytes)
                                                : static_cast<OSErr>(kNoCollection);
    value = status == noErr ? std::string_view(bytes, static_cast<std::size_t>(size)) : "";
    return Keep(status) == noErr;
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
    if (mCollection == nullptr) {
        return Keep(kNoCollection);
    }
    stream->expect(static_cast<unsigned long>(GetFlatCollectionSize(mCollection)));
    return Keep(FlattenCollection(mCollection, WriteTo, stream));
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
    mForeign.reset();
    return Keep(UnflattenCollection(mCollection, static_cast<long>(wanted), ReadFrom, stream));
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
    std::string_view value;
    if (!settings.Look(tag, id, value) || value.size() != static_cast<std::size_t>(size)) {
        return false;
    }
    value.copy(static_cast<char*>(field), value.size());
    return settings.FixEndianness(field, size, HasByteOrder(size)) == noErr;
}

CString* GetSettingsString(Settings& settings, unsigned long const& tag, long const& id) {
    std::string_view value;
    if (!settings.Look(tag, id, value) || value.empty()) {
        return nullptr;
    }
    std::unique_ptr<char[]> const copy(new (std::nothrow) char[value.size() + 1]);
    if (copy == nullptr) {
        return nullptr;
    }
    copy[value.copy(copy.get(), value.size())] = '\0';
    std::unique_ptr<CString> text(new (std::nothrow) CString(copy.get()));
    return text != nullptr && text->GetCharData() != nullptr ? text.release() : nullptr;
}

__CFString const* GetSettingsCFString(Settings& settings, unsigned long const& tag,
                                      long const& id) {
    std::string_view value;
    return settings.Look(tag, id, value) && !value.empty()
               ? ExtenalToCFString(reinterpret_cast<unsigned char const*>(value.data()),
                                   static_cast<long>(value.size()))
               : nullptr;
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

bool PlainTextToExternal(std::string_view text, std::u16string& form) {
    form.resize(1 + text.size());
    form[0] = kByteOrderMark;
    unsigned char bits = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        auto const byte = static_cast<unsigned char>(text[at]);
        form[1 + at] = byte;
        bits |= byte;
    }
    return bits < 0x80;
}

__CFString const* ExtenalToCFString(unsigned char const* data, long size) {
    if (data == nullptr || size < 0) {
        return nullptr;
    }
    return CFStringCreateWithBytes(nullptr, data, size, kCFStringEncodingUnicode, true);
}
