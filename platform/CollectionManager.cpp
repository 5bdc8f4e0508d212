// SPDX-License-Identifier: Apache-2.0
#include "platform/CollectionManager.h"

#include <array>
#include <cstring>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/internal/CFRuntime.h"

namespace platform {
namespace {

struct CollectionItem {
    std::uint32_t tag;
    std::int32_t id;
    std::uint32_t attributes;
    std::string value;

    bool IsLocked() const { return (attributes & collectionLockMask) != 0; }
};

std::uint64_t ItemKey(std::uint32_t tag, std::int32_t id) {
    return (std::uint64_t{tag} << 32) | static_cast<std::uint32_t>(id);
}

}  // namespace
}  // namespace platform

struct OpaqueCollection {
    std::vector<platform::CollectionItem> items;
    std::unordered_map<std::uint64_t, std::size_t> positions;  // in `items`, by tag and id

    platform::CollectionItem* Find(std::uint32_t tag, std::int32_t id) {
        auto const found = positions.find(platform::ItemKey(tag, id));
        return found == positions.end() ? nullptr : &items[found->second];
    }
    platform::CollectionItem* AtIndex(long index) {
        return index < 1 || static_cast<std::size_t>(index) > items.size()
                   ? nullptr
                   : &items[static_cast<std::size_t>(index) - 1];
    }
    // False when there is such an item already.
    bool Append(platform::CollectionItem&& item) {
        platform::ReserveOneMore(items);
        if (!positions.emplace(platform::ItemKey(item.tag, item.id), items.size()).second) {
            return false;
        }
        items.push_back(std::move(item));
        return true;
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

constexpr std::array<std::uint32_t, 256> MakeChecksumTable() {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t byte = 0; byte < table.size(); ++byte) {
        std::uint32_t value = byte;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320U : 0U);
        }
        table[byte] = value;
    }
    return table;
}
constexpr auto kChecksumTable = MakeChecksumTable();

std::uint32_t Checksum(std::string_view bytes) {
    std::uint32_t value = 0xFFFFFFFFU;
    for (char const c : bytes) {
        value = (value >> 8) ^ kChecksumTable[(value ^ static_cast<unsigned char>(c)) & 0xFF];
    }
    return ~value;
}

void AppendNumber(std::uint32_t number, std::string& flat) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        flat += static_cast<char>(number >> shift);
    }
}

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

std::string Flatten(OpaqueCollection const& collection) {
    std::size_t size = 4 * kNumberSize;
    for (auto const& item : collection.items) {
        size += kFlatItemHeaderSize + item.value.size();
    }
    std::string flat;
    flat.reserve(size);
    AppendNumber(kFlatMark, flat);
    AppendNumber(kFlatVersion, flat);
    AppendNumber(static_cast<std::uint32_t>(collection.items.size()), flat);
    for (auto const& item : collection.items) {
        AppendNumber(item.tag, flat);
        AppendNumber(static_cast<std::uint32_t>(item.id), flat);
        AppendNumber(item.attributes, flat);
        AppendNumber(static_cast<std::uint32_t>(item.value.size()), flat);
        flat += item.value;
    }
    AppendNumber(Checksum(flat), flat);
    return flat;
}

bool UnflattenItem(FlatReader& reader, OpaqueCollection& collection) {
    std::uint32_t tag = 0;
    std::uint32_t id = 0;
    std::uint32_t attributes = 0;
    std::uint32_t size = 0;
    std::string_view value;
    return reader.TakeNumber(tag) && reader.TakeNumber(id) && reader.TakeNumber(attributes) &&
           reader.TakeNumber(size) && reader.TakeBytes(size, value) &&
           collection.Append({tag, static_cast<std::int32_t>(id), attributes, std::string(value)});
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

OSErr SetValue(CollectionItem& item, long size, void const* data) {
    if (size < 0 || (data == nullptr && size > 0)) {
        return Error(paramErr);
    }
    if (item.IsLocked()) {
        return collectionItemLockedErr;
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        // The bytes may lie in the value that goes.
        std::string value(static_cast<char const*>(size > 0 ? data : ""),
                          static_cast<std::size_t>(size));
        item.value = std::move(value);
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
    if (auto* existing = collection->Find(tag, id); existing != nullptr) {
        return platform::SetValue(*existing, size, data);
    }
    platform::CollectionItem item{tag, id, 0, {}};
    if (OSErr const error = platform::SetValue(item, size, data); error != noErr) {
        return error;
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        collection->Append(std::move(item));
        return Error(noErr);
    });
}

OSErr GetCollectionItem(Collection collection, std::uint32_t tag, std::int32_t id, long* size,
                        void* data) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto const* item = collection->Find(tag, id);
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    Store(item->value.size(), size);
    if (data != nullptr) {
        std::memcpy(data, item->value.data(), item->value.size());
    }
    return Error(noErr);
}

OSErr RemoveCollectionItem(Collection collection, std::uint32_t tag, std::int32_t id) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto const* item = collection->Find(tag, id);
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    if (item->IsLocked()) {
        return collectionItemLockedErr;
    }
    auto const position = static_cast<std::size_t>(item - collection->items.data());
    collection->positions.erase(platform::ItemKey(tag, id));
    collection->items.erase(collection->items.begin() + static_cast<std::ptrdiff_t>(position));
    for (std::size_t index = position; index < collection->items.size(); ++index) {
        auto const& moved = collection->items[index];
        collection->positions[platform::ItemKey(moved.tag, moved.id)] = index;
    }
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
    auto const* item = collection->Find(tag, id);
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    Store(item - collection->items.data() + 1, index);
    Store(item->value.size(), size);
    Store(item->attributes, attributes);
    return Error(noErr);
}

OSErr SetCollectionItemInfo(Collection collection, std::uint32_t tag, std::int32_t id,
                            std::uint32_t mask, std::uint32_t attributes) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto* item = collection->Find(tag, id);
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
    Store(item->tag, tag);
    Store(item->id, id);
    Store(item->value.size(), size);
    Store(item->attributes, attributes);
    return Error(noErr);
}

OSErr ReplaceIndexedCollectionItem(Collection collection, long index, long size, void const* data) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto* item = collection->AtIndex(index);
    return item == nullptr ? collectionIndexRangeErr : platform::SetValue(*item, size, data);
}

OSErr FlattenCollectionToHdl(Collection collection, Handle flat) {
    if (collection == nullptr || flat == nullptr) {
        return Error(paramErr);
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        std::string const bytes = platform::Flatten(*collection);
        OSErr const error = SetHandleSize(flat, static_cast<long>(bytes.size()));
        if (error == noErr) {
            std::memcpy(*flat, bytes.data(), bytes.size());
        }
        return error;
    });
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
