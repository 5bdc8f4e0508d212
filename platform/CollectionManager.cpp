// SPDX-License-Identifier: Apache-2.0
#include "platform/CollectionManager.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "platform/internal/CFRuntime.h"
#include "platform/internal/Collection.h"

namespace platform {
namespace {

// ---- The flat form: numbers of 32 bits, high byte first ----
//
//   "ITEM", version, count of items
//   for each item: tag, id, attributes, size of the value, the value
//   CRC-32 of all that, as in RFC 1952

constexpr std::uint32_t kFlatMark = 0x4954454D;
constexpr std::uint32_t kFlatVersion = 1;
constexpr std::size_t kNumberSize = OpaqueCollection::kNumberSize;
constexpr std::size_t kFlatHeadSize = 3 * kNumberSize;

// A row for each of the bytes that are taken in one step: what a byte does to the sum when so many
// others come behind it (Kounavis and Berry, A Systematic Approach to Building High Performance
// Software-based CRC Generators, 2005: "slicing").
constexpr std::size_t kStep = 16;
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

class Checksum {
  public:
    void Add(std::string_view bytes);
    std::uint32_t Value() const { return ~mValue; }

  private:
    std::uint32_t mValue = 0xFFFFFFFFU;
};

void Checksum::Add(std::string_view bytes) {
    std::uint32_t value = mValue;
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
    mValue = value;
}

std::uint32_t NumberAt(char const* place) {
    return OpaqueCollection::NumberAt(place);
}

std::string Number(std::uint32_t number) {
    char bytes[kNumberSize];
    OpaqueCollection::PutNumber(bytes, number);
    return {bytes, sizeof bytes};
}

OSErr Flatten(OpaqueCollection& collection, CollectionFlattenProc write, void* reference) {
    collection.Tidy();
    Checksum checksum;
    auto const put = [&](std::string_view bytes) {
        checksum.Add(bytes);
        // Who only reads through a procedure of both directions leaves the bytes alone.
        return write(static_cast<long>(bytes.size()), const_cast<char*>(bytes.data()), reference);
    };
    OSErr error = put(Number(kFlatMark) + Number(kFlatVersion) +
                      Number(static_cast<std::uint32_t>(collection.Items().size())));
    if (error == 0) {
        error = collection.ForEachFlat(put);
    }
    return error == 0 ? put(Number(checksum.Value())) : error;
}

// Fills an empty collection.
OSErr Unflatten(std::size_t size, CollectionFlattenProc read, void* reference,
                OpaqueCollection& collection) {
    if (size < kFlatHeadSize + kNumberSize) {
        return collectionVersionErr;
    }
    Checksum checksum;
    auto const take = [&](long count, char* bytes) {
        OSErr const error = read(count, bytes, reference);
        checksum.Add({bytes, error == 0 ? static_cast<std::size_t>(count) : 0});
        return error;
    };
    char head[kFlatHeadSize] = {};
    OSErr error = take(sizeof head, head);
    if (error == 0 &&
        (NumberAt(head) != kFlatMark || NumberAt(head + kNumberSize) != kFlatVersion)) {
        error = collectionVersionErr;
    }
    if (error == 0) {
        error = collection.TakeFlat(NumberAt(head + 2 * kNumberSize),
                                    size - kFlatHeadSize - kNumberSize, take);
    }
    std::uint32_t const sum = checksum.Value();
    char told[kNumberSize] = {};
    if (error == 0) {
        error = take(sizeof told, told);
    }
    return error == 0 && NumberAt(told) != sum ? collectionVersionErr : error;
}

// Copies from what `reference`, a view, still has to give.
OSErr CopyOut(long size, void* data, void* reference) {
    auto& rest = *static_cast<std::string_view*>(reference);
    rest.copy(static_cast<char*>(data), static_cast<std::size_t>(size));
    rest.remove_prefix(static_cast<std::size_t>(size));
    return 0;
}

// Copies to where `reference`, a pointer, leads, and moves that on.
OSErr CopyIn(long size, void* data, void* reference) {
    auto& place = *static_cast<char**>(reference);
    place = std::copy_n(static_cast<char const*>(data), size, place);
    return 0;
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

OSErr SetValue(OpaqueCollection& collection, OpaqueCollection::Item& item, long size,
               void const* data) {
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

namespace {
struct CollectionDeleter {
    void operator()(Collection collection) const { DisposeCollection(collection); }
};
}  // namespace

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
    if (auto* existing = collection->Find({tag, id}); existing != nullptr) {
        return platform::SetValue(*collection, *existing, size, data);
    }
    if (!platform::IsValue(size, data)) {
        return Error(paramErr);
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        collection->Append({tag, id}, platform::ValueOf(size, data));
        return Error(noErr);
    });
}

OSErr GetCollectionItem(Collection collection, std::uint32_t tag, std::int32_t id, long* size,
                        void* data) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto const* item = collection->Find({tag, id});
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    Store(item->Size(), size);
    if (data != nullptr) {
        item->View().copy(static_cast<char*>(data), item->Size());
    }
    return Error(noErr);
}

OSErr RemoveCollectionItem(Collection collection, std::uint32_t tag, std::int32_t id) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto const* item = collection->Find({tag, id});
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    if (item->IsLocked()) {
        return collectionItemLockedErr;
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        collection->Remove(*item);
        return Error(noErr);
    });
}

long CountCollectionItems(Collection collection) {
    return collection == nullptr ? 0 : static_cast<long>(collection->Items().size());
}

OSErr GetCollectionItemInfo(Collection collection, std::uint32_t tag, std::int32_t id, long* index,
                            long* size, std::uint32_t* attributes) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto const* item = collection->Find({tag, id});
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    Store(collection->IndexOf(*item), index);
    Store(item->Size(), size);
    Store(item->Attributes(), attributes);
    return Error(noErr);
}

OSErr SetCollectionItemInfo(Collection collection, std::uint32_t tag, std::int32_t id,
                            std::uint32_t mask, std::uint32_t attributes) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto* item = collection->Find({tag, id});
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    item->SetAttributes((item->Attributes() & ~mask) | (attributes & mask));
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
    Store(item->Key().tag, tag);
    Store(item->Key().id, id);
    Store(item->Size(), size);
    Store(item->Attributes(), attributes);
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

OSErr GetCollectionItemValue(Collection collection, std::uint32_t tag, std::int32_t id, long* size,
                             char const** value) {
    if (collection == nullptr) {
        return Error(paramErr);
    }
    auto const* item = collection->Find({tag, id});
    if (item == nullptr) {
        return collectionItemNotFoundErr;
    }
    Store(item->Size(), size);
    Store(item->Value(), value);
    return Error(noErr);
}

long GetFlatCollectionSize(Collection collection) {
    return collection == nullptr
               ? 0
               : static_cast<long>(platform::kFlatHeadSize + collection->FlatSize() +
                                   platform::kNumberSize);
}

OSErr FlattenCollection(Collection collection, CollectionFlattenProc write, void* reference) {
    if (collection == nullptr || write == nullptr) {
        return Error(paramErr);
    }
    return WithoutExceptions(Error(memFullErr),
                             [&] { return platform::Flatten(*collection, write, reference); });
}

OSErr UnflattenCollection(Collection collection, long size, CollectionFlattenProc read,
                          void* reference) {
    if (collection == nullptr || read == nullptr || size < 0) {
        return Error(paramErr);
    }
    std::unique_ptr<OpaqueCollection, CollectionDeleter> const contents(NewCollection());
    if (contents == nullptr) {
        return Error(memFullErr);
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        if (OSErr const error =
                platform::Unflatten(static_cast<std::size_t>(size), read, reference, *contents);
            error != noErr) {
            return error;
        }
        std::swap(*collection, *contents);
        return Error(noErr);
    });
}

OSErr FlattenCollectionToHdl(Collection collection, Handle flat) {
    if (collection == nullptr || flat == nullptr) {
        return Error(paramErr);
    }
    OSErr const error = SetHandleSize(flat, GetFlatCollectionSize(collection));
    char* place = *flat;
    return error == noErr ? FlattenCollection(collection, platform::CopyIn, &place) : error;
}

OSErr UnflattenCollectionFromHdl(Collection collection, Handle flat) {
    if (collection == nullptr || flat == nullptr) {
        return Error(paramErr);
    }
    long const size = GetHandleSize(flat);
    std::string_view bytes(*flat, static_cast<std::size_t>(size));
    return UnflattenCollection(collection, size, platform::CopyOut, &bytes);
}
