// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/OptionPair.h"

#include <cwchar>
#include <new>

namespace {

bool Replace(wchar_t*& text, wchar_t const* with) {
    wchar_t* copy = nullptr;
    if (with != nullptr) {
        copy = new (std::nothrow) wchar_t[std::wcslen(with) + 1];
        if (copy == nullptr) {
            return false;
        }
        std::wcscpy(copy, with);
    }
    delete[] text;
    text = copy;
    return true;
}

}  // namespace

OptionPair::~OptionPair() {
    delete[] mKey;
    delete[] mValue;
}

bool OptionPair::SetKey(wchar_t const* key) {
    return Replace(mKey, key);
}

bool OptionPair::SetValue(wchar_t const* value) {
    return Replace(mValue, value);
}
