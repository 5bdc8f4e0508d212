// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "platform/CollectionManager.h"
#include "platform/internal/CollectionIndex.h"

// What a collection holds. Each item lies in a block as its flat form: four numbers of 32 bits,
// high byte first, for tag, id, attributes and the size of the value, and then the value. So the
// flat form of a collection that was only added to is its blocks one after the other.
//
// What takes memory throws std::bad_alloc and then has changed nothing that can be seen.
struct OpaqueCollection {
    static constexpr std::size_t kNumberSize = 4;
    static constexpr std::size_t kItemHeadSize = 4 * kNumberSize;
    static void PutNumber(char* place, std::uint32_t number);
    static std::uint32_t NumberAt(char const* place);

    // An item where it lies.
    class Item {
      public:
        explicit Item(char* flat) : mFlat(flat) {}

        platform::CollectionIndex::Key Key() const;
        std::uint32_t Attributes() const;
        std::uint32_t Size() const;
        char* Value() const { return mFlat + kItemHeadSize; }
        std::string_view View() const { return {Value(), Size()}; }
        bool IsLocked() const { return (Attributes() & collectionLockMask) != 0; }
        void SetAttributes(std::uint32_t attributes) const;

      private:
        char* mFlat;  // in a block of the collection
    };

    OpaqueCollection() = default;
    OpaqueCollection(OpaqueCollection const& other);
    OpaqueCollection& operator=(OpaqueCollection const&) = delete;
    OpaqueCollection(OpaqueCollection&&) = default;
    OpaqueCollection& operator=(OpaqueCollection&&) = default;

    std::vector<Item> const& Items() const { return mItems; }
    Item* Find(platform::CollectionIndex::Key const& key);
    Item* AtIndex(long index);
    long IndexOf(Item const& item) const { return &item - mItems.data() + 1; }

    // The value may be one of the collection's own.
    void Append(platform::CollectionIndex::Key const& key, std::string_view value);
    void SetValue(Item& item, std::string_view value);
    void Remove(Item const& item);

    // Reads the flat forms of `count` items, `size` bytes in all, into an empty collection.
    // `read(size, bytes)` gives what follows, or an error, which is then the result.
    // collectionVersionErr when the bytes are something else; the collection is no good then.
    template <typename Read>
    OSErr TakeFlat(std::uint32_t count, std::size_t size, Read read) {
        ReserveItems(count, size);
        std::string_view begun;  // an item of which more is to come
        while (size != 0 || !begun.empty()) {
            std::size_t const room = RoomFor(begun, size);
            if (room == 0) {
                return collectionVersionErr;
            }
            char* const bytes = AddBlock(room);
            std::size_t const more = room - begun.copy(bytes, begun.size());
            if (OSErr const error = read(static_cast<long>(more), bytes + (room - more));
                error != 0) {
                return error;
            }
            size -= more;
            if (!TakeItems({bytes, room}, begun)) {
                return collectionVersionErr;
            }
        }
        return mItems.size() == count ? OSErr{0} : collectionVersionErr;
    }
    // Puts the flat forms of all items in order, so that ForEachFlat can be called.
    void Tidy();
    std::size_t FlatSize() const { return mUsed - mUnused; }
    template <typename Visit>
    OSErr ForEachFlat(Visit visit) const {
        OSErr error = 0;
        for (Block const& block : mBlocks) {
            error =
                block.used == 0 ? error : visit(std::string_view(block.bytes.get(), block.used));
            if (error != 0) {
                break;
            }
        }
        return error;
    }

  private:
    // A block of the largest usual size serves the thread's next collection.
    struct GiveBack {
        std::size_t size;
        void operator()(char* bytes) const;
    };
    struct Block {
        std::unique_ptr<char[], GiveBack> bytes;
        std::size_t used;
        std::size_t size;
    };

    char* Room(std::size_t size);  // behind what the last block has in use
    Item Write(platform::CollectionIndex::Key const& key, std::uint32_t attributes,
               std::string_view value);
    char* AddBlock(std::size_t size);
    void ReserveItems(std::uint32_t count, std::size_t size);
    // How large the block has to be for the item that has begun and what of the other `size` bytes
    // fits in with it; 0 when the item can't be among them.
    static std::size_t RoomFor(std::string_view begun, std::size_t size);
    // Takes all whole items from the last block, which holds `bytes`; `begun` is what is left.
    bool TakeItems(std::string_view bytes, std::string_view& begun);

    std::vector<Item> mItems;
    std::vector<Block> mBlocks;
    platform::CollectionIndex mIndex;
    std::size_t mUsed = 0;    // bytes of the blocks
    std::size_t mUnused = 0;  // those of them that belong to no item
};
