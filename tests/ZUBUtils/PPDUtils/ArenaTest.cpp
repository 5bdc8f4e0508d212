// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/Arena.h"

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/PointerList.h"

TEST(ArenaTest, WhatItGaveStaysWholeAndAlignedOverTheEndsOfBlocks) {
    struct Piece {
        unsigned char* bytes;
        std::size_t size;
        int filling;
    };
    Arena arena;
    std::vector<Piece> pieces;
    for (int i = 0; i < 3000; ++i) {
        // Every fiftieth is larger than a block.
        std::size_t const size = i % 50 == 0 ? 70000 : static_cast<std::size_t>(i * 37 % 400);
        std::size_t const alignment = std::size_t{1} << i % 5;
        auto* const bytes = static_cast<unsigned char*>(arena.Allocate(size, alignment));
        ASSERT_EQ(reinterpret_cast<std::uintptr_t>(bytes) % alignment, 0U) << i;
        std::memset(bytes, i % 251, size);
        pieces.push_back({bytes, size, i % 251});
    }
    for (Piece const& piece : pieces) {
        for (std::size_t i = 0; i < piece.size; ++i) {
            ASSERT_EQ(piece.bytes[i], piece.filling);
        }
    }
}

TEST(ArenaTest, StringInAnArenaChangesLikeAnyOther) {
    Arena arena;
    CString text(arena, "inside");
    EXPECT_STREQ(text, "inside");
    CString const copy(text);
    text + " and out";
    EXPECT_STREQ(text, "inside and out");
    text = "anew";
    EXPECT_STREQ(text, "anew");
    EXPECT_STREQ(copy, "inside");
}

TEST(ArenaTest, ListMayHoldNodesOfItsOwnAmongThoseInAnArena) {
    int const values[4] = {};
    Arena arena;
    PointerList list;
    for (int const& value : values) {
        if (&value == &values[2]) {
            list.PushBack(&value);
        } else {
            list.PushBack(&value, arena);
        }
    }
    PointerList moved(std::move(list));
    moved.PopFront();
    moved.Erase(++moved.Begin());
    EXPECT_EQ(moved.Size(), 2U);
    EXPECT_EQ(moved.Front(), &values[1]);
    EXPECT_EQ(moved.Back(), &values[3]);
    moved.PushBack(&values[0]);
    moved.MakeEmpty();
    EXPECT_EQ(*moved.Begin(), nullptr);
    EXPECT_TRUE(moved.PushFront(&values[2]));
    EXPECT_EQ(moved.Back(), &values[2]);
}
