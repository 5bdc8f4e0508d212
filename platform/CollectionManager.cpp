// SPDX-License-Identifier: Apache-2.0
#include "platform/CollectionManager.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "platform/internal/CFRuntime.h"

namespace platform {
namespace {

std::uint64_t ItemKey(std::uint32_t tag, std::int32_t id) {
    return (std::uint64_t{tag} << 32) | static_cast<std::uint32_t>(id);
}

// Its value lies in the collection's bytes.
struct CollectionItem {
    std::uint64_t key;
    std::size_t start;
    std::uint32_t size;
    std::uint32_t attributes;

    std::uint32_t Tag() const { return static_cast<std::uint32_t>(key >> 32); }
    std::int32_t Id() const { return static_cast<std::int32_t>(key); }
    bool IsLocked() const { return (attributes & collectionLockMask) != 0; }
};

}  // namespace
}  // namespace platform

struct OpaqueCollection {
    using Item = platform::CollectionItem;

    std::vector<Item> items;
    std::string bytes;
    // Places in `items`, from 1, at the slot of their key or behind it; 0 for a free slot. A power
    // of two, at most half of them taken.
    std::vector<std::uint32_t> slots;
    std::size_t unused = 0;             // of the bytes
    mutable std::size_t lastFound = 0;  // in `items`

    std::string_view Value(Item const& item) const {
        return std::string_view(bytes).substr(item.start, item.size);
    }
    Item* Find(std::uint64_t key) {
        // Who reads a record asks for its items one after the other.
        constexpr std::size_t kNear = 8;
        std::size_t const end = std::min(items.size(), lastFound + kNear);
        for (std::size_t at = lastFound - std::min(lastFound, kNear / 2); at < end; ++at) {
            if (items[at].key == key) {
                lastFound = at;
                return &items[at];
            }
        }
        std::uint32_t const place = slots.empty() ? 0 : slots[SlotOf(key)];
        if (place == 0) {
            return nullptr;
        }
        lastFound = place - 1;
        return &items[lastFound];
    }
    Item* AtIndex(long index) {
        return index < 1 || static_cast<std::size_t>(index) > items.size()
                   ? nullptr
                   : &items[static_cast<std::size_t>(index) - 1];
    }
    // False when there is such an item already.
    bool Append(Item const& item) {
        if ((items.size() + 1) * 2 > slots.size()) {
            MakeSlots((items.size() + 1) * 4);
        }
        std::uint32_t& place = slots[SlotOf(item.key)];
        if (place != 0) {
            return false;
        }
        items.push_back(item);
        place = static_cast<std::uint32_t>(items.size());
        return true;
    }
    void Remove(std::size_t position) {
        unused += items[position].size;
        items.erase(items.begin() + static_cast<std::ptrdiff_t>(position));
        lastFound = 0;
        FillSlots();
    }
    void SetValue(Item& item, std::string_view value) {
        std::size_t const start = AppendBytes(value);
        unused += item.size;
        item.start = start;
        item.size = static_cast<std::uint32_t>(value.size());
        constexpr std::size_t kFewBytes = 4096;
        if (unused > bytes.size() / 2 + kFewBytes) {
            DropUnused();
        }
    }
    // The bytes may be some of the collection's own. Returns where they lie.
    std::size_t AppendBytes(std::string_view value) {
        std::size_t const start = bytes.size();
        bytes.append(value);
        return start;
    }
    // For at least half as many items.
    void MakeSlots(std::size_t count) {
        std::vector<std::uint32_t> more(std::bit_ceil(std::max<std::size_t>(16, count)));
        slots.swap(more);
        FillSlots();
    }

  private:
    // Where the key stands, or would.
    std::size_t SlotOf(std::uint64_t key) const {
        constexpr std::uint64_t kMixing = 0x9E3779B97F4A7C15U;
        std::size_t const mask = slots.size() - 1;
        std::uint64_t const mixed = (key ^ (key >> 32)) * kMixing;
        std::size_t slot = (mixed >> 32) & mask;
        while (slots[slot] != 0 && items[slots[slot] - 1].key != key) {
            slot = (slot + 1) & mask;
        }
        return slot;
    }
    void FillSlots() {
        std::fill(slots.begin(), slots.end(), 0);
        for (std::size_t at = 0; at < items.size(); ++at) {
            slots[SlotOf(items[at].key)] = static_cast<std::uint32_t>(at + 1);
        }
    }
    void DropUnused() {
        std::string used;
        used.reserve(bytes.size() - unused);
        for (Item& item : items) {
            used.append(Value(item));
        }
        std::size_t start = 0;
        for (Item& item : items) {
            item.start = start;
            start += item.size;
        }
        bytes.swap(used);
        unused = 0;
    }
};

namespace platform {
namespace {

// ---- The flat form: numbers of 32 bits, high byte first ----
//
//   "ITEM", version, count of items
//   for each item: tag, id, attributes, size of the value, the value
//   CRC-32 of all that

constexpr std::uint32_t kFlatMark = 0x4954454D;
constexpr std::uint32_t kFlatVersion = 1;
constexpr std::size_t kNumberSize = 4;
constexpr std::size_t kFlatItemHeaderSize = 4 * kNumberSize;

// A row for each of the eight bytes that are taken in one step: what a byte does to the sum when so
// many others come behind it.
constexpr std::size_t kStep = 8;
using ChecksumTable = std::array<std::array<std::uint32_t, 256>, kStep>;

constexpr ChecksumTable MakeChecksumTable() {
    ChecksumTable table{};
    for (std::uint32_t byte = 0; byte < 256; ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320U : 0U);
        }
        table[0][byte] = value;
    }
    for (std::size_t row = 1; row < kStep; ++row) {
        for (std::size_t byte = 0; byte < 256; ++byte) {
            std::uint32_t const former = table[row - 1][byte];
            table[row][byte] = (former >> 8) ^ table[0][former & 0xFF];
        }
    }
    return table;
}
constexpr ChecksumTable kChecksumTable = MakeChecksumTable();

std::uint32_t Checksum(std::string_view bytes) {
    std::uint32_t value = 0xFFFFFFFFU;
    for (; bytes.size() >= kStep; bytes.remove_prefix(kStep)) {
        std::uint32_t next = 0;
        for (std::size_t at = 0; at < kStep; ++at) {
            std::uint32_t const former = at < 4 ? value >> (8 * at) : 0;
            next ^= kChecksumTable[kStep - 1 - at]
                                  [(former ^ static_cast<unsigned char>(bytes[at])) & 0xFF];
        }
        value = next;
    }
    for (char const c : bytes) {
        value = (value >> 8) ^ kChecksumTable[0][(value ^ static_cast<unsigned char>(c)) & 0xFF];
    }
    return ~value;
}

class FlatWriter {
  public:
    explicit FlatWriter(char* flat) : mStart(flat), mEnd(flat) {}

    void PutNumber(std::uint32_t number) {
        for (int shift = 24; shift >= 0; shift -= 8) {
            *mEnd++ = static_cast<char>(number >> shift);
        }
    }
    void PutBytes(std::string_view bytes) { mEnd += bytes.copy(mEnd, bytes.size()); }
    std::string_view Written() const { return {mStart, static_cast<std::size_t>(mEnd - mStart)}; }

  private:
    char* mStart;  // not owned, as the place behind what was written
    char* mEnd;
};

class FlatReader {
  public:
    explicit FlatReader(std::string_view flat) : mRest(flat) {}

    bool TakeNumber(std::uint32_t& number) {
        std::string_view bytes;
        if (!TakeBytes(kNumberSize, bytes)) {
            return false;
        }
        number = 0;
        for (char const c : bytes) {
            number = (number << 8) | static_cast<unsigned char>(c);
        }
        return true;
    }
    bool TakeBytes(std::size_t size, std::string_view& bytes) {
        if (size > mRest.size()) {
            return false;
        }
        bytes = mRest.substr(0, size);
        mRest.remove_prefix(size);
        return true;
    }
    bool IsAtEnd() const { return mRest.empty(); }

  private:
    std::string_view mRest;
};

std::size_t FlatSize(OpaqueCollection const& collection) {
    std::size_t size = 4 * kNumberSize;
    for (auto const& item : collection.items) {
        size += kFlatItemHeaderSize + item.size;
    }
    return size;
}

// Writes FlatSize bytes.
void Flatten(OpaqueCollection const& collection, char* flat) {
    FlatWriter writer(flat);
    writer.PutNumber(kFlatMark);
    writer.PutNumber(kFlatVersion);
    writer.PutNumber(static_cast<std::uint32_t>(collection.items.size()));
    for (auto const& item : collection.items) {
        writer.PutNumber(item.Tag());
        writer.PutNumber(static_cast<std::uint32_t>(item.Id()));
        writer.PutNumber(item.attributes);
        writer.PutNumber(item.size);
        writer.PutBytes(collection.Value(item));
    }
    writer.PutNumber(Checksum(writer.Written()));
}

bool UnflattenItem(FlatReader& reader, OpaqueCollection& collection) {
    std::uint32_t tag = 0;
    std::uint32_t id = 0;
    std::uint32_t attributes = 0;
    std::uint32_t size = 0;
    std::string_view value;
    return reader.TakeNumber(tag) && reader.TakeNumber(id) && reader.TakeNumber(attributes) &&
           reader.TakeNumber(size) && reader.TakeBytes(size, value) &&
           collection.Append({ItemKey(tag, static_cast<std::int32_t>(id)),
                              collection.AppendBytes(value), size, attributes});
}

bool Unflatten(std::string_view flat, OpaqueCollection& collection) {
    if (flat.size() < kNumberSize) {
        return false;
    }
    std::string_view const contents = flat.substr(0, flat.size() - kNumberSize);
    FlatReader checksumReader(flat.substr(contents.size()));
    std::uint32_t checksum = 0;
    if (!checksumReader.TakeNumber(checksum) || checksum != Checksum(contents)) {
        return false;
    }
    FlatReader reader(contents);
    std::uint32_t mark = 0;
    std::uint32_t version = 0;
    std::uint32_t count = 0;
    if (!reader.TakeNumber(mark) || mark != kFlatMark || !reader.TakeNumber(version) ||
        version != kFlatVersion || !reader.TakeNumber(count)) {
        return false;
    }
    // Flat data says what it likes, but each item takes room in it.
    std::size_t const likely = std::min<std::size_t>(count, flat.size() / kFlatItemHeaderSize);
    collection.items.reserve(likely);
    collection.bytes.reserve(flat.size());
    collection.MakeSlots(likely * 2 + 1);
    for (std::uint32_t index = 0; index < count; ++index) {
        if (!UnflattenItem(reader, collection)) {
            return false;
        }
    }
    return reader.IsAtEnd();
}

template <typename Value, typename Source>
void Store(Source value, Value* target) {
    if (target != nullptr) {
        *target = static_cast<Value>(value);
    }
}

OSErr Error(OSStatus status) {
    return static_cast<OSErr>(status);
}

bool IsValue(long size, void const* data) {
    return size >= 0 && size <= UINT32_MAX && (data != nullptr || size == 0);
}

std::string_view ValueOf(long size, void const* data) {
    return {static_cast<char const*>(size > 0 ? data : ""), static_cast<std::size_t>(size)};
}

OSErr SetValue(OpaqueCollection& collection, CollectionItem& item, long size, void const* data) {
    if (!IsValue(size, data)) {
        return Error(paramErr);
    }
    if (item.IsLocked()) {
        return collectionItemLockedErr;
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        collection.SetValue(item, ValueOf(size, data));
        return Error(noErr);
    });
}

}  // namespace
}  // namespace platform

using platform::Error;
using platform::Store;
using platform::WithoutExceptions;

Collection NewCollection() {
    return platform::NewObject<OpaqueCollection>();
}

void DisposeCollection(Collection collection) {
    platform::DeleteObject(collection);
}

Collection CopyCollection(Collection source, Collection target) {
    if (source == nullptr || source == target) {
        return source;
    }
    if (target == nullptr) {
        return platform::NewObject<OpaqueCollection>(*source);
    }
    return WithoutExceptions<Collection>(nullptr, [&] {
        OpaqueCollection copy(*source);
        std::swap(*target, copy);
        return target;
    });
}

OSErr AddCollectionItem(Collection collection, std::uint32_t tag, std::int32_t id, long size,
                        void const* data) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    std::uint64_t const key = platform::ItemKey(tag, id);
    if (auto* existing = collection->Find(key); existing != nullptr) {
        return platform::SetValue(*collection, *existing, size, data);
    }
    if (!platform::IsValue(size, data)) {
        return Error(paramErr);
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        collection->lastFound = collection->items.size();
        collection->Append({key, collection->AppendBytes(platform::ValueOf(size, data)),
                            static_cast<std::uint32_t>(size), 0});
        return Error(noErr);
    });
}

OSErr GetCollectionItem(Collection collection, std::uint32_t tag, std::int32_t id, long* size,
                        void* data) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto const* item = collection->Find(platform::ItemKey(tag, id));
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    Store(item->size, size);
    if (data != nullptr) {
        collection->Value(*item).copy(static_cast<char*>(data), item->size);
    }
    return Error(noErr);
}

OSErr RemoveCollectionItem(Collection collection, std::uint32_t tag, std::int32_t id) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto const* item = collection->Find(platform::ItemKey(tag, id));
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    if (item->IsLocked()) {
        return collectionItemLockedErr;
    }
    collection->Remove(static_cast<std::size_t>(item - collection->items.data()));
    return Error(noErr);
}

long CountCollectionItems(Collection collection) {
    return collection == nullptr ? 0 : static_cast<long>(collection->items.size());
}

OSErr GetCollectionItemInfo(Collection collection, std::uint32_t tag, std::int32_t id, long* index,
                            long* size, std::uint32_t* attributes) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto const* item = collection->Find(platform::ItemKey(tag, id));
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    Store(item - collection->items.data() + 1, index);
    Store(item->size, size);
    Store(item->attributes, attributes);
    return Error(noErr);
}

OSErr SetCollectionItemInfo(Collection collection, std::uint32_t tag, std::int32_t id,
                            std::uint32_t mask, std::uint32_t attributes) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto* item = collection->Find(platform::ItemKey(tag, id));
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    item->attributes = (item->attributes & ~mask) | (attributes & mask);
    return Error(noErr);
}

OSErr GetIndexedCollectionItemInfo(Collection collection, long index, std::uint32_t* tag,
                                   std::int32_t* id, long* size, std::uint32_t* attributes) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto const* item = collection->AtIndex(index);
    if (item == nullptr) {
        return collectionIndexRangeErr;
    }
    Store(item->Tag(), tag);
    Store(item->Id(), id);
    Store(item->size, size);
    Store(item->attributes, attributes);
    return Error(noErr);
}

OSErr ReplaceIndexedCollectionItem(Collection collection, long index, long size, void const* data) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto* item = collection->AtIndex(index);
    return item == nullptr ? collectionIndexRangeErr
                           : platform::SetValue(*collection, *item, size, data);
}

OSErr FlattenCollectionToHdl(Collection collection, Handle flat) {
    if (collection == nullptr || flat == nullptr) {
        return Error(paramErr);
    }
    OSErr const error = SetHandleSize(flat, static_cast<long>(platform::FlatSize(*collection)));
    if (error == noErr) {
        platform::Flatten(*collection, *flat);
    }
    return error;
}

OSErr UnflattenCollectionFromHdl(Collection collection, Handle flat) {
    if (collection == nullptr || flat == nullptr) {
        return Error(paramErr);
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        OpaqueCollection contents;
        std::string_view const bytes(*flat, static_cast<std::size_t>(GetHandleSize(flat)));
        if (!platform::Unflatten(bytes, contents)) {
            return collectionVersionErr;
        }
        std::swap(*collection, contents);
        return Error(noErr);
    });
}
