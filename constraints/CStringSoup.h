// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

// The texts of all keywords and options of one PPD, each kept once. A text's id is its position in
// the order of first insertion, from 0; a keyword and an option of equal text share it. Ids are
// good only inside their table and are never stored.
class CStringSoup {
  public:
    CStringSoup();
    CStringSoup(CStringSoup const&) = delete;
    CStringSoup& operator=(CStringSoup const&) = delete;
    virtual ~CStringSoup();

    // The text's id; adds a private copy of a text that is new. Must not be null.
    virtual long Insert(char const* text);
    long Insert(std::string_view text);  // without a NUL in it
    // The text at this id, which must be in range. Lives until Clear.
    virtual char const* Find(long id) const;
    // The text's id, or -1. Adds nothing.
    virtual long Find(char const* text) const;
    virtual void Clear();
    virtual long size() const;

  private:
    // A place of the index. Texts are compared only where hashes are equal.
    struct Slot {
        std::uint32_t hash;
        std::int32_t id;  // negative for a free place
    };

    static std::uint32_t HashOf(std::string_view text);
    // Where the text is, or would be.
    std::size_t SlotOf(std::string_view text, std::uint32_t hash) const;
    void GrowIndex();
    char* NewCopy(std::string_view text);

    std::vector<char*> mTexts;  // by id, in mSlabs
    std::vector<Slot> mIndex;   // open addressing; a power of two, at most half full
    // Memory of the copies, a good many in each.
    std::vector<std::unique_ptr<char[]>> mSlabs;
    std::size_t mSlabUsed = 0;  // bytes of the last slab
};
