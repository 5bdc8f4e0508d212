// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>
#include <vector>

#include "platform/Wiping.h"

// An 8-bit text that may be a secret: no byte of it stays in memory when it changes or goes.
// Lacking memory it throws std::bad_alloc.
class WipedText {
  public:
    WipedText() = default;
    explicit WipedText(std::string_view text) { Append(text); }
    WipedText(WipedText const&) = default;
    WipedText(WipedText&&) noexcept = default;
    ~WipedText() = default;
    // A vector that is assigned to keeps its room, and in it the end of a longer text.
    WipedText& operator=(WipedText other) noexcept {
        mBytes.swap(other.mBytes);
        return *this;
    }

    bool Empty() const { return View().empty(); }
    std::string_view View() const;
    char const* CStr() const { return View().data(); }  // NUL-terminated, until the next change

    void Clear() { *this = WipedText(); }
    void Append(std::string_view text);  // a text that isn't this one's
    // A blank in the place of each control character, for a text that goes into a comment.
    void BlankControlCharacters();

  private:
    std::vector<char, WipingAllocator<char>> mBytes;  // with a terminator, or nothing at all
};
