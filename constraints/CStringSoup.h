// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>
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
    // The text at this id, which must be in range. Lives until Clear.
    virtual char const* Find(long id) const;
    // The text's id, or -1. Adds nothing.
    virtual long Find(char const* text) const;
    virtual void Clear();
    virtual long size() const;

  private:
    std::vector<char*> mTexts;  // owned copies, by id
    // The same copies by text, so that a lookup doesn't walk the table.
    std::unordered_map<std::string_view, long> mIds;
};
