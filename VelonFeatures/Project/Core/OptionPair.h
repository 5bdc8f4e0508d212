// SPDX-License-Identifier: Apache-2.0
#pragma once

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

  private:
    wchar_t* mKey = nullptr;    // owned
    wchar_t* mValue = nullptr;  // owned
};
