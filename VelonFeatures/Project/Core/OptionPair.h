// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>

#include "platform/CoreFoundation.h"

// An option that has no control: key and value as wide text, each null until it is set.
class OptionPair {
  public:
    OptionPair() = default;
    OptionPair(OptionPair const&) = delete;
    OptionPair& operator=(OptionPair const&) = delete;
    ~OptionPair();

    wchar_t const* Key() const { return mKey; }
    wchar_t const* Value() const { return mValue; }
    // Each keeps a copy, null empties. False, with the former text kept, without memory.
    bool SetKey(wchar_t const* key);
    bool SetValue(wchar_t const* value);

    // Room of a text where it is stored, in bytes of UTF-8 with the terminator. One that needs
    // more isn't stored, and not taken from there.
    static constexpr std::size_t kStoredSize = 256;
    // The caller releases the string; null for a text that isn't set or can't be stored.
    CFStringRef CopyKey() const;
    CFStringRef CopyValue() const;
    // Takes both from where they are stored. Null leaves what is there. False, with both left as
    // they were, when one of them is too long.
    bool Take(CFStringRef key, CFStringRef value);

  private:
    wchar_t* mKey = nullptr;    // owned
    wchar_t* mValue = nullptr;  // owned
};
