// SPDX-License-Identifier: Apache-2.0
#include "platform/CollectionManager.h"

#include <cstring>
#include <map>
#include <memory>
#include <vector>

#include "tests/platform/TestSupport.h"

namespace {

using CollectionManagerTest = OwnershipTest;

using CollectionGuard = std::unique_ptr<OpaqueCollection, Calls<DisposeCollection>>;
using HandleGuard = std::unique_ptr<char*, Calls<DisposeHandle>>;

OSErr Add(CollectionGuard const& collection, std::uint32_t tag, std::int32_t id,
          std::string_view value) {
    return AddCollectionItem(collection.get(), tag, id, static_cast<long>(value.size()),
                             value.data());
}

std::string Value(CollectionGuard const& collection, std::uint32_t tag, std::int32_t id) {
    long size = -1;
    OSErr const error = GetCollectionItem(collection.get(), tag, id, &size, nullptr);
    if (error != noErr) {
        return "error " + std::to_string(error);
    }
    std::vector<char> bytes(static_cast<std::size_t>(size));
    GetCollectionItem(collection.get(), tag, id, nullptr, bytes.data());
    return {bytes.begin(), bytes.end()};
}

// Every item in order, to compare two collections.
std::string Summary(CollectionGuard const& collection) {
    std::string text;
    for (long index = 1; index <= CountCollectionItems(collection.get()); ++index) {
        std::uint32_t tag = 0;
        std::int32_t id = 0;
        std::uint32_t attributes = 0;
        GetIndexedCollectionItemInfo(collection.get(), index, &tag, &id, nullptr, &attributes);
        text += std::to_string(tag) + '/' + std::to_string(id) + '/' + std::to_string(attributes) +
                '=' + Value(collection, tag, id) + ';';
    }
    return text;
}

CollectionGuard Sample() {
    CollectionGuard collection(NewCollection());
    Add(collection, 0x4B795764, 1, "*PageSize");
    Add(collection, 3000, 3002, std::string("\3\0\0\0", 4));
    Add(collection, 0xFFFFFFFF, -1, "");
    Add(collection, 1, 1, std::string(300, 'x'));
    SetCollectionItemInfo(collection.get(), 3000, 3002, ~0U, collectionLockMask | 5);
    return collection;
}

TEST_F(CollectionManagerTest, ItemsAreKnownByTagAndIdTogether) {
    CollectionGuard const collection(NewCollection());
    EXPECT_EQ(Add(collection, 1, 2, "a"), noErr);
    EXPECT_EQ(Add(collection, 2, 1, "b"), noErr);
    EXPECT_EQ(Add(collection, 1, -2, "c"), noErr);
    EXPECT_EQ(Add(collection, 1, 2, "replaced"), noErr);
    EXPECT_EQ(AddCollectionItem(collection.get(), 7, 7, 0, nullptr), noErr);
    EXPECT_EQ(Summary(collection), "1/2/0=replaced;2/1/0=b;1/-2/0=c;7/7/0=;");
    EXPECT_EQ(Value(collection, 2, 2), "error -5751");
    EXPECT_EQ(AddCollectionItem(collection.get(), 8, 8, 1, nullptr), paramErr);
}

TEST_F(CollectionManagerTest, RemovalClosesTheGapInTheIndex) {
    CollectionGuard const collection(NewCollection());
    for (std::int32_t id = 1; id <= 5; ++id) {
        Add(collection, 1, id, std::to_string(id));
    }
    EXPECT_EQ(RemoveCollectionItem(collection.get(), 1, 2), noErr);
    EXPECT_EQ(RemoveCollectionItem(collection.get(), 1, 2), collectionItemNotFoundErr);
    EXPECT_EQ(RemoveCollectionItem(collection.get(), 1, 5), noErr);
    EXPECT_EQ(Summary(collection), "1/1/0=1;1/3/0=3;1/4/0=4;");
    EXPECT_EQ(ReplaceIndexedCollectionItem(collection.get(), 3, 3, "new"), noErr);
    EXPECT_EQ(Value(collection, 1, 4), "new");
    for (long const outside : {0L, 4L, -1L}) {
        EXPECT_EQ(ReplaceIndexedCollectionItem(collection.get(), outside, 1, "x"),
                  collectionIndexRangeErr);
        EXPECT_EQ(GetIndexedCollectionItemInfo(collection.get(), outside, nullptr, nullptr, nullptr,
                                               nullptr),
                  collectionIndexRangeErr);
    }
}

TEST_F(CollectionManagerTest, LockedItemsStayUntilTheyAreUnlocked) {
    CollectionGuard const collection(NewCollection());
    Add(collection, 1, 1, "old");
    EXPECT_EQ(SetCollectionItemInfo(collection.get(), 1, 1, collectionLockMask | 3, ~0U), noErr);
    EXPECT_EQ(Add(collection, 1, 1, "new"), collectionItemLockedErr);
    EXPECT_EQ(ReplaceIndexedCollectionItem(collection.get(), 1, 3, "new"), collectionItemLockedErr);
    EXPECT_EQ(RemoveCollectionItem(collection.get(), 1, 1), collectionItemLockedErr);
    EXPECT_EQ(Value(collection, 1, 1), "old");
    std::uint32_t attributes = 0;
    SetCollectionItemInfo(collection.get(), 1, 1, collectionLockMask, 0);
    GetCollectionItemInfo(collection.get(), 1, 1, nullptr, nullptr, &attributes);
    EXPECT_EQ(attributes, 3U);
    EXPECT_EQ(Add(collection, 1, 1, "new"), noErr);
}

TEST_F(CollectionManagerTest, FlatFormRestoresEveryItemInOrder) {
    auto const collection = Sample();
    HandleGuard const flat(NewHandle(0));
    ASSERT_EQ(FlattenCollectionToHdl(collection.get(), flat.get()), noErr);
    CollectionGuard const restored(NewCollection());
    Add(restored, 5, 5, "gone");
    ASSERT_EQ(UnflattenCollectionFromHdl(restored.get(), flat.get()), noErr);
    EXPECT_EQ(Summary(restored), Summary(collection));
    // Numbers have one byte order, whatever machine wrote them.
    EXPECT_EQ(std::string(*flat, 12), std::string("ITEM\0\0\0\1\0\0\0\4", 12));
}

TEST_F(CollectionManagerTest, DamagedCutAndContinuedDataIsRefusedWithoutAChange) {
    HandleGuard const flat(NewHandle(0));
    ASSERT_EQ(FlattenCollectionToHdl(Sample().get(), flat.get()), noErr);
    long const size = GetHandleSize(flat.get());
    std::string const bytes(*flat, static_cast<std::size_t>(size));
    CollectionGuard const target(NewCollection());
    Add(target, 5, 5, "kept");

    for (std::size_t at = 0; at < bytes.size(); ++at) {
        (*flat)[at] = static_cast<char>((*flat)[at] ^ 0x81);
        EXPECT_EQ(UnflattenCollectionFromHdl(target.get(), flat.get()), collectionVersionErr) << at;
        (*flat)[at] = bytes[at];
    }
    for (long length = 0; length < size; ++length) {
        HandleGuard const cut(NewHandle(length));
        std::memcpy(*cut, bytes.data(), static_cast<std::size_t>(length));
        EXPECT_EQ(UnflattenCollectionFromHdl(target.get(), cut.get()), collectionVersionErr)
            << length;
    }
    ASSERT_EQ(SetHandleSize(flat.get(), size + 1), noErr);
    EXPECT_EQ(UnflattenCollectionFromHdl(target.get(), flat.get()), collectionVersionErr);
    EXPECT_EQ(Summary(target), "5/5/0=kept;");
}

// A flat form with the checksum that belongs to it (CRC-32), whatever it says.
HandleGuard WithChecksum(std::string bytes) {
    std::uint32_t checksum = ~0U;
    for (char const c : bytes) {
        checksum ^= static_cast<unsigned char>(c);
        for (int bit = 0; bit < 8; ++bit) {
            checksum = (checksum >> 1) ^ (0xEDB88320U & (0U - (checksum & 1)));
        }
    }
    for (int const shift : {24, 16, 8, 0}) {
        bytes += static_cast<char>(~checksum >> shift);
    }
    HandleGuard flat(NewHandle(static_cast<long>(bytes.size())));
    std::memcpy(*flat, bytes.data(), bytes.size());
    return flat;
}

TEST_F(CollectionManagerTest, NumbersThatDoNotFitTheDataAreRefusedInSpiteOfARightChecksum) {
    auto const number = [](unsigned value) {
        return std::string{char(value >> 24), char(value >> 16), char(value >> 8), char(value)};
    };
    auto const item = [&](unsigned id, unsigned size) {
        return number(1) + number(id) + number(0) + number(size) + "abcd";
    };
    struct {
        unsigned version;
        unsigned count;
        std::string items;
        OSErr error;
    } const cases[] = {
        {1, 2, item(1, 4) + item(2, 4), noErr},
        {1, 1, item(1, 4) + item(2, 4), collectionVersionErr},  // more than told
        {1, 3, item(1, 4) + item(2, 4), collectionVersionErr},
        {1, 0xFFFFFFFF, item(1, 4), collectionVersionErr},
        {1, 1, item(1, 5), collectionVersionErr},
        {1, 1, item(1, 0xFFFFFFFF), collectionVersionErr},
        {1, 2, item(1, 4) + item(1, 4), collectionVersionErr},  // one item twice
        {2, 1, item(1, 4), collectionVersionErr},
    };
    for (auto const& c : cases) {
        CollectionGuard const target(NewCollection());
        auto const flat = WithChecksum("ITEM" + number(c.version) + number(c.count) + c.items);
        EXPECT_EQ(UnflattenCollectionFromHdl(target.get(), flat.get()), c.error) << c.count;
    }
}

TEST_F(CollectionManagerTest, HandlesKeepTheirContentAsTheyGrow) {
    EXPECT_EQ(NewHandle(-1), nullptr);
    HandleGuard const handle(NewHandle(3));
    EXPECT_EQ(std::string(*handle, 3), std::string(3, '\0'));
    std::memcpy(*handle, "abc", 3);
    EXPECT_EQ(SetHandleSize(handle.get(), 5), noErr);
    EXPECT_EQ(std::string(*handle, 5), std::string("abc\0\0", 5));
    EXPECT_EQ(SetHandleSize(handle.get(), -1), paramErr);
    EXPECT_EQ(SetHandleSize(handle.get(), 0), noErr);
    EXPECT_EQ(GetHandleSize(handle.get()), 0);
}

TEST_F(CollectionManagerTest, ValuesStayWithTheirItemsWhileOthersAreReplacedAndRemoved) {
    CollectionGuard const collection(NewCollection());
    std::map<std::int32_t, std::string> expected;
    for (std::int32_t step = 0; step < 3000; ++step) {
        std::int32_t const id = step * 7 % 97;
        expected[id] = std::string(static_cast<std::size_t>(step % 50), static_cast<char>(step));
        EXPECT_EQ(Add(collection, 1, id, expected[id]), noErr);
        if (step % 5 == 0) {
            EXPECT_EQ(RemoveCollectionItem(collection.get(), 1, id), noErr);
            expected.erase(id);
        }
    }
    EXPECT_EQ(CountCollectionItems(collection.get()), static_cast<long>(expected.size()));
    for (std::int32_t id = 0; id < 97; ++id) {
        EXPECT_EQ(Value(collection, 1, id), expected.contains(id) ? expected[id] : "error -5751");
    }
}

// As records are written: the ids of each tag rise.
CollectionGuard Records(std::int32_t count, std::uint32_t tags) {
    CollectionGuard collection(NewCollection());
    for (std::int32_t id = 0; id < count; ++id) {
        for (std::uint32_t tag = 0; tag < tags; ++tag) {
            Add(collection, tag, 3 * id, std::to_string(id * 7 + static_cast<std::int32_t>(tag)));
        }
    }
    return collection;
}

std::string FlatBytes(CollectionGuard const& collection) {
    std::string bytes;
    EXPECT_EQ(FlattenCollection(
                  collection.get(),
                  [](long size, void* data, void* reference) -> OSErr {
                      static_cast<std::string*>(reference)->append(static_cast<char const*>(data),
                                                                   static_cast<std::size_t>(size));
                      return noErr;
                  },
                  &bytes),
              noErr);
    EXPECT_EQ(GetFlatCollectionSize(collection.get()), static_cast<long>(bytes.size()));
    return bytes;
}

TEST_F(CollectionManagerTest, ItemsAreFoundWhateverTheOrderOfIdsAndNumberOfTags) {
    struct {
        std::int32_t count;
        std::uint32_t tags;
    } const cases[] = {{1, 1}, {2000, 4}, {5, 64}, {5, 65}, {40, 200}};
    for (auto const& c : cases) {
        auto const collection = Records(c.count, c.tags);
        std::int32_t const last = c.count - 1;
        std::uint32_t const tag = c.tags - 1;
        EXPECT_EQ(Value(collection, tag, 3 * last), std::to_string(last * 7 + c.tags - 1));
        EXPECT_EQ(Value(collection, 0, 0), "0");
        for (std::int32_t const missing : {-1, 1, 3 * last + 1}) {
            EXPECT_EQ(Value(collection, tag, missing), "error -5751") << missing;
        }
        EXPECT_EQ(Value(collection, c.tags, 0), "error -5751");
        // An id between the others ends their order.
        EXPECT_EQ(Add(collection, tag, -7, "late"), noErr);
        EXPECT_EQ(Add(collection, 0, 0, "replaced"), noErr);
        for (std::int32_t id = 0; id < c.count; ++id) {
            EXPECT_EQ(Value(collection, tag, 3 * id),
                      id == 0 && tag == 0 ? "replaced" : std::to_string(id * 7 + c.tags - 1));
        }
        EXPECT_EQ(Value(collection, tag, -7), "late");
        EXPECT_EQ(CountCollectionItems(collection.get()),
                  static_cast<long>(c.count) * static_cast<long>(c.tags) + 1);
    }
}

TEST_F(CollectionManagerTest, LargeValuesAndManyItemsComeBackFromPieces) {
    auto const collection = Records(9000, 3);
    for (std::int32_t const size : {65519, 65520, 65521, 200000, 0}) {
        Add(collection, 7, size, std::string(static_cast<std::size_t>(size), 'v'));
    }
    Add(collection, 1, 3, "longer than it was");
    std::string const flat = FlatBytes(collection);
    std::string_view rest = flat;
    CollectionGuard const restored(NewCollection());
    auto const read = [](long size, void* data, void* reference) -> OSErr {
        auto& source = *static_cast<std::string_view*>(reference);
        source.copy(static_cast<char*>(data), static_cast<std::size_t>(size));
        source.remove_prefix(static_cast<std::size_t>(size));
        return source.size() == 1 ? OSErr{-36} : OSErr{noErr};
    };
    ASSERT_EQ(UnflattenCollection(restored.get(), static_cast<long>(flat.size()), read, &rest),
              noErr);
    EXPECT_EQ(FlatBytes(restored), flat);
    EXPECT_EQ(Value(restored, 1, 3), "longer than it was");
    // An error of the source is the result, and changes nothing.
    std::string const more = flat + "x";
    rest = more;
    EXPECT_EQ(UnflattenCollection(restored.get(), static_cast<long>(flat.size()), read, &rest),
              -36);
    EXPECT_EQ(FlatBytes(restored), flat);
}

}  // namespace
