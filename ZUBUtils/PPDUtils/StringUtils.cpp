// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/StringUtils.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>

#include "ZUBUtils/PPDUtils/ClampTo32Bits.h"
#include "platform/CFRef.h"
#include "platform/CoreFoundation.h"

namespace {

constexpr std::size_t kLongestPascalText = 255;
constexpr std::size_t kWideNumberBytes = 128;

using Text = std::unique_ptr<char[]>;

// `text` with `removed` bytes at `position` replaced; null without memory.
Text Spliced(char const* text, std::size_t position, std::size_t removed, char const* with) {
    std::size_t const withLength = std::strlen(with);
    char const* const tail = text + position + removed;
    std::size_t const tailLength = std::strlen(tail);
    Text result(new (std::nothrow) char[position + withLength + tailLength + 1]);
    if (result) {
        std::memcpy(result.get(), text, position);
        std::memcpy(result.get() + position, with, withLength);
        std::memcpy(result.get() + position + withLength, tail, tailLength + 1);
    }
    return result;
}

// Where the search goes on after a replacement. Behind an overlap with what was put in nothing new
// can begin, so this finds what a search from the text's beginning would find.
std::size_t NextSearchPosition(std::size_t position, std::size_t whatLength, char const* with,
                               bool withContainsWhat) {
    if (withContainsWhat) {
        return position + std::strlen(with);
    }
    return position - std::min(position, whatLength - 1);
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

}  // namespace

char* num2String(long number, char* text) {
    std::snprintf(text, kNumberTextSize, "%d", ClampTo32Bits(number));
    return text;
}

char* float2String(float number, char* text) {
    std::snprintf(text, kFloatTextSize, "%9.4f", static_cast<double>(number));
    return text;
}

long string2Number(char const* text) {
    CFRef<CFStringRef> const string(
        CFStringCreateWithCString(nullptr, text, kCFStringEncodingMacRoman));
    return string ? CFStringGetIntValue(string) : 0;
}

char* deleteCharRangeInStr(char* text, short from, short to) {
    if (text == nullptr || from < 0 || to <= from) {
        return nullptr;
    }
    std::size_t const length = std::strlen(text);
    std::size_t const first = static_cast<std::size_t>(from);
    if (first > length) {
        return nullptr;
    }
    std::size_t const behind = std::min(static_cast<std::size_t>(to), length);
    std::memmove(text + first, text + behind, length - behind + 1);
    return text;
}

char* findChar(char* text, char wanted) {
    return text != nullptr && wanted != '\0' ? std::strchr(text, wanted) : nullptr;
}

char* newInitalizedCString(unsigned long count, char fill) {
    char* const text = count < PTRDIFF_MAX ? new (std::nothrow) char[count + 1] : nullptr;
    if (text != nullptr) {
        std::memset(text, fill, count);
        text[count] = '\0';
    }
    return text;
}

bool validateRangeValues(char const* text, long limit) {
    long run = 0;
    for (; text != nullptr && *text != '\0'; ++text) {
        run = IsDigit(*text) ? run + 1 : 0;
        if (run > limit && run > 0) {
            return false;
        }
    }
    return true;
}

int wtoi(wchar_t const* text) {
    char bytes[kWideNumberBytes + 1] = {};
    if (text != nullptr) {
        std::wcstombs(bytes, text, kWideNumberBytes);
    }
    return ClampTo32Bits(std::strtol(bytes, nullptr, 10));
}

char* _replace(char const* text, char const* what, char const* with) {
    if (text == nullptr || what == nullptr || with == nullptr) {
        std::puts("Not enough arguments");
        return nullptr;
    }
    std::size_t const whatLength = std::strlen(what);
    bool const withContainsWhat = std::strstr(with, what) != nullptr;
    Text result = Spliced(text, 0, 0, "");
    char const* found = result && whatLength != 0 ? std::strstr(result.get(), what) : nullptr;
    while (found != nullptr) {
        std::size_t const position = static_cast<std::size_t>(found - result.get());
        result = Spliced(result.get(), position, whatLength, with);
        std::size_t const next = NextSearchPosition(position, whatLength, with, withContainsWhat);
        found = result ? std::strstr(result.get() + next, what) : nullptr;
    }
    if (!result) {
        std::puts("Insufficient memory available");
    }
    return result.release();
}

unsigned char* ctoPStr(char const* text, unsigned char* pascal) {
    std::size_t const length = std::min(std::strlen(text), kLongestPascalText);
    std::memmove(pascal + 1, text, length);
    pascal[0] = static_cast<unsigned char>(length);
    return pascal;
}

char* ptoCStr(void const* pascal, char* text) {
    unsigned char const* const bytes = static_cast<unsigned char const*>(pascal);
    std::size_t const length = bytes[0];
    std::memmove(text, bytes + 1, length);
    text[length] = '\0';
    return text;
}
