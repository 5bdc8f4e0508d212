// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/OptionPair.h"

#include <cwchar>
#include <new>
#include <string>

#include "platform/CFRef.h"

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

bool FitsStore(CFStringRef string) {
    char text[OptionPair::kStoredSize];
    return CFStringGetCString(string, text, sizeof text, kCFStringEncodingUTF8);
}

// Wide characters are code points, strings are UTF-16.
constexpr char32_t kFirstSupplementary = 0x10000;

bool IsSurrogate(char16_t unit, char16_t first) {
    return (unit & 0xFC00) == first;
}

std::wstring Widen(CFStringRef string) {
    std::wstring wide;
    for (CFIndex i = 0; i < CFStringGetLength(string); ++i) {
        char16_t const unit = CFStringGetCharacterAtIndex(string, i);
        char16_t const next = CFStringGetCharacterAtIndex(string, i + 1);
        if (IsSurrogate(unit, 0xD800) && IsSurrogate(next, 0xDC00)) {
            wide += static_cast<wchar_t>(kFirstSupplementary + ((unit & 0x3FFU) << 10) +
                                         (next & 0x3FFU));
            ++i;
        } else {
            wide += static_cast<wchar_t>(unit);
        }
    }
    return wide;
}

CFStringRef CopyNarrow(wchar_t const* wide) {
    if (wide == nullptr) {
        return nullptr;
    }
    std::u16string text;
    for (; *wide != L'\0'; ++wide) {
        auto const character = static_cast<char32_t>(*wide);
        if (character < kFirstSupplementary) {
            text += static_cast<char16_t>(character);
        } else {
            text += static_cast<char16_t>(0xD7C0 + (character >> 10));
            text += static_cast<char16_t>(0xDC00 + (character & 0x3FF));
        }
    }
    CFRef<CFStringRef> string(
        CFStringCreateWithCharacters(nullptr, text.data(), static_cast<CFIndex>(text.size())));
    return FitsStore(string) ? string.Release() : nullptr;
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

CFStringRef OptionPair::CopyKey() const {
    return CopyNarrow(mKey);
}

CFStringRef OptionPair::CopyValue() const {
    return CopyNarrow(mValue);
}

bool OptionPair::Take(CFStringRef key, CFStringRef value) {
    if ((key != nullptr && !FitsStore(key)) || (value != nullptr && !FitsStore(value))) {
        return false;
    }
    bool const hasKey = key == nullptr || SetKey(Widen(key).c_str());
    return (value == nullptr || SetValue(Widen(value).c_str())) && hasKey;
}
