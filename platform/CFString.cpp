// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <algorithm>
#include <clocale>
#include <cstdlib>
#include <cwctype>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <mutex>
#include <vector>

#include "platform/internal/CFObjects.h"

namespace platform {

constinit CFClass const kStringClass = {
    kStringTypeID, DestroyObject<__CFString>, [](CFObject const* left, CFObject const* right) {
        return static_cast<CFStringRef>(left)->text == static_cast<CFStringRef>(right)->text;
    }};

std::u16string_view TextOf(CFStringRef string) {
    return string == nullptr ? std::u16string_view() : std::u16string_view(string->text);
}

CFRef<CFStringRef> CopyOf(CFStringRef string) {
    CFRef<CFStringRef> copy(string == nullptr ? nullptr : CFStringCreateCopy(nullptr, string));
    if (string != nullptr && !copy) {
        throw std::bad_alloc();
    }
    return copy;
}

namespace {

// Simple case folding: one unit for one unit, so that positions in folded text stay true.
std::vector<char16_t> MakeFoldingTable() {
    std::vector<char16_t> table(0x10000);
    locale_t const unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    for (std::size_t unit = 0; unit < table.size(); ++unit) {
        auto const character = static_cast<wint_t>(unit);
        wint_t folded = character;
        if (unicode != nullptr) {
            // By way of the capital, so that the two small sigmas meet.
            folded = towlower_l(towupper_l(character, unicode), unicode);
        } else if (unit >= 'A' && unit <= 'Z') {
            folded = character + ('a' - 'A');
        }
        table[unit] = static_cast<char16_t>(folded < table.size() ? folded : character);
    }
    // The Turkish i with and without a dot are letters of their own.
    table[0x130] = 0x130;
    table[0x131] = 0x131;
    if (unicode != nullptr) {
        freelocale(unicode);
    }
    return table;
}

char16_t Fold(char16_t unit) {
    if (unit < 0x80) {
        return unit >= 'A' && unit <= 'Z' ? static_cast<char16_t>(unit + ('a' - 'A')) : unit;
    }
    static auto const& sTable = *new std::vector<char16_t>(MakeFoldingTable());
    return sTable[unit];
}

UTF16Text Folded(std::u16string_view text) {
    UTF16Text folded(text);
    std::transform(folded.begin(), folded.end(), folded.begin(), Fold);
    return folded;
}

bool IgnoresCase(CFOptionFlags options) {
    return (options & kCFCompareCaseInsensitive) != 0;
}

CFComparisonResult Compare(std::u16string_view left, std::u16string_view right,
                           CFOptionFlags options) {
    auto const common = std::min(left.size(), right.size());
    for (std::size_t index = 0; index < common; ++index) {
        char16_t const a = IgnoresCase(options) ? Fold(left[index]) : left[index];
        char16_t const b = IgnoresCase(options) ? Fold(right[index]) : right[index];
        if (a != b) {
            return a < b ? kCFCompareLessThan : kCFCompareGreaterThan;
        }
    }
    if (left.size() == right.size()) {
        return kCFCompareEqualTo;
    }
    return left.size() < right.size() ? kCFCompareLessThan : kCFCompareGreaterThan;
}

// The part of `range` that lies inside a text of `size` units.
std::pair<std::size_t, std::size_t> ClampedRange(CFRange range, std::size_t size) {
    if (range.location < 0 || range.length < 0) {
        return {0, 0};
    }
    auto const start = std::min(static_cast<std::size_t>(range.location), size);
    return {start, std::min(static_cast<std::size_t>(range.length), size - start)};
}

// Puts `text` in, cut to the string's maximum; without memory the string stays as it was.
void Assign(CFMutableStringRef string, UTF16Text&& text) {
    if (text.size() > string->maximum) {
        text.resize(string->maximum);
    }
    string->text = std::move(text);
}

// Looks up a literal without a copy of it.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view text) const {
        return std::hash<std::string_view>()(text);
    }
};
// With keys of its own: a literal goes when the library that holds it is unloaded.
using ConstantTable =
    std::unordered_map<std::string, std::unique_ptr<__CFString>, TextHash, std::equal_to<>>;

bool IsBlank(char16_t unit) {
    return unit == u' ' || (unit >= u'\t' && unit <= u'\r') || unit == 0xA0 || unit == 0x3000;
}

// The ASCII text behind the leading blanks, up to the first other unit; a number can't be longer.
std::string AsciiBehindBlanks(CFStringRef string) {
    auto const text = TextOf(string);
    auto const start = std::find_if_not(text.begin(), text.end(), IsBlank);
    auto const end = std::find_if(start, text.end(), [](char16_t unit) { return unit >= 0x80; });
    std::string ascii;
    std::transform(start, end, std::back_inserter(ascii),
                   [](char16_t unit) { return static_cast<char>(unit); });
    return ascii;
}

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// How much of `text` is a decimal number; 0 without a digit.
std::size_t DecimalLength(std::string const& text) {
    std::size_t end = text.find_first_not_of("+-") == 1 ? 1 : 0;
    auto const skipDigits = [&] {
        std::size_t const start = end;
        while (end < text.size() && IsDigit(text[end])) {
            ++end;
        }
        return end - start;
    };
    std::size_t digits = skipDigits();
    if (end < text.size() && text[end] == '.') {
        ++end;
        digits += skipDigits();
    }
    if (digits == 0) {
        return 0;
    }
    std::size_t const mantissaEnd = end;
    if (end < text.size() && (text[end] == 'e' || text[end] == 'E')) {
        ++end;
        if (end < text.size() && (text[end] == '+' || text[end] == '-')) {
            ++end;
        }
        if (skipDigits() == 0) {
            end = mantissaEnd;
        }
    }
    return end;
}

}  // namespace
}  // namespace platform

using platform::NewObject;
using platform::TextOf;
using platform::UTF16Text;
using platform::WithoutExceptions;

CFStringRef CFStringCreateWithCharacters(CFAllocatorRef, char16_t const* characters,
                                         CFIndex length) {
    if (length < 0 || (characters == nullptr && length > 0)) {
        return nullptr;
    }
    return WithoutExceptions<CFStringRef>(nullptr, [&] {
        UTF16Text text;
        if (length > 0) {
            text.assign(characters, static_cast<std::size_t>(length));
        }
        return NewObject<__CFString>(std::move(text), false);
    });
}

CFStringRef CFStringCreateCopy(CFAllocatorRef, CFStringRef string) {
    if (string == nullptr) {
        return nullptr;
    }
    if (!string->isMutable) {
        return static_cast<CFStringRef>(CFRetain(string));
    }
    return WithoutExceptions<CFStringRef>(
        nullptr, [&] { return NewObject<__CFString>(UTF16Text(string->text), false); });
}

CFMutableStringRef CFStringCreateMutable(CFAllocatorRef, CFIndex maximum) {
    auto* string = NewObject<__CFString>(UTF16Text(), true);
    if (string != nullptr && maximum > 0) {
        string->maximum = static_cast<std::size_t>(maximum);
    }
    return string;
}

CFMutableStringRef CFStringCreateMutableCopy(CFAllocatorRef allocator, CFIndex maximum,
                                             CFStringRef string) {
    return WithoutExceptions<CFMutableStringRef>(nullptr, [&] {
        UTF16Text text(TextOf(string));
        auto* copy = CFStringCreateMutable(allocator, maximum);
        if (copy != nullptr) {
            platform::Assign(copy, std::move(text));
        }
        return copy;
    });
}

CFStringRef CFStringConstant(char const* text) {
    static auto& sConstants = *new platform::ConstantTable;
    static std::mutex sMutex;
    if (text == nullptr) {
        return nullptr;
    }
    return WithoutExceptions<CFStringRef>(nullptr, [&]() -> CFStringRef {
        std::string_view const ascii(text);
        std::lock_guard const lock(sMutex);
        auto const found = sConstants.find(ascii);
        if (found != sConstants.end()) {
            return found->second.get();
        }
        auto constant = std::make_unique<__CFString>(UTF16Text(ascii.begin(), ascii.end()), false,
                                                     platform::kConstantCount);
        return sConstants.emplace(ascii, std::move(constant)).first->second.get();
    });
}

CFIndex CFStringGetLength(CFStringRef string) {
    return static_cast<CFIndex>(TextOf(string).size());
}

char16_t CFStringGetCharacterAtIndex(CFStringRef string, CFIndex index) {
    auto const text = TextOf(string);
    return index >= 0 && index < CFStringGetLength(string) ? text[static_cast<std::size_t>(index)]
                                                           : u'\0';
}

CFComparisonResult CFStringCompare(CFStringRef left, CFStringRef right, CFOptionFlags options) {
    return platform::Compare(TextOf(left), TextOf(right), options);
}

CFComparisonResult CFStringCompareWithOptions(CFStringRef left, CFStringRef right, CFRange range,
                                              CFOptionFlags options) {
    auto const text = TextOf(left);
    auto const [start, length] = platform::ClampedRange(range, text.size());
    return platform::Compare(text.substr(start, length), TextOf(right), options);
}

CFRange CFStringFind(CFStringRef string, CFStringRef wanted, CFOptionFlags options) {
    constexpr CFRange kNothing = {kCFNotFound, 0};
    auto const text = TextOf(string);
    auto const pattern = TextOf(wanted);
    if (pattern.empty() || pattern.size() > text.size()) {
        return kNothing;
    }
    return WithoutExceptions(kNothing, [&]() -> CFRange {
        auto const found = platform::IgnoresCase(options)
                               ? platform::Folded(text).find(platform::Folded(pattern))
                               : text.find(pattern);
        if (found == std::u16string_view::npos) {
            return kNothing;
        }
        return {static_cast<CFIndex>(found), static_cast<CFIndex>(pattern.size())};
    });
}

CFIndex CFStringFindAndReplace(CFMutableStringRef string, CFStringRef wanted,
                               CFStringRef replacement, CFRange range, CFOptionFlags options) {
    auto const pattern = TextOf(wanted);
    if (string == nullptr || pattern.empty()) {
        return 0;
    }
    return WithoutExceptions<CFIndex>(0, [&] {
        auto const [start, length] = platform::ClampedRange(range, string->text.size());
        bool const ignoresCase = platform::IgnoresCase(options);
        auto const searched = ignoresCase ? platform::Folded(string->text) : string->text;
        auto const sought = ignoresCase ? platform::Folded(pattern) : UTF16Text(pattern);
        UTF16Text result;
        std::size_t copied = 0;
        CFIndex count = 0;
        for (auto at = searched.find(sought, start);
             at != UTF16Text::npos && at + sought.size() <= start + length;
             at = searched.find(sought, copied)) {
            result.append(string->text, copied, at - copied).append(TextOf(replacement));
            copied = at + sought.size();
            ++count;
        }
        if (count > 0) {
            result.append(string->text, copied);
            platform::Assign(string, std::move(result));
        }
        return count;
    });
}

void CFStringAppend(CFMutableStringRef string, CFStringRef appended) {
    if (string == nullptr || TextOf(appended).empty()) {
        return;
    }
    WithoutExceptions(false, [&] {
        auto const room = string->maximum - std::min(string->maximum, string->text.size());
        string->text.append(TextOf(appended).substr(0, room));
        return true;
    });
}

void CFStringReplaceAll(CFMutableStringRef string, CFStringRef replacement) {
    if (string == nullptr) {
        return;
    }
    WithoutExceptions(false, [&] {
        platform::Assign(string, UTF16Text(TextOf(replacement)));
        return true;
    });
}

std::int32_t CFStringGetIntValue(CFStringRef string) {
    return WithoutExceptions<std::int32_t>(0, [&] {
        std::string const text = platform::AsciiBehindBlanks(string);
        bool const isSigned = !text.empty() && (text[0] == '+' || text[0] == '-');
        bool const isNegative = isSigned && text[0] == '-';
        std::int64_t const limit =
            std::int64_t{std::numeric_limits<std::int32_t>::max()} + (isNegative ? 1 : 0);
        std::int64_t value = 0;
        for (std::size_t index = isSigned ? 1 : 0;
             index < text.size() && platform::IsDigit(text[index]); ++index) {
            value = std::min(value * 10 + (text[index] - '0'), limit);
        }
        return static_cast<std::int32_t>(isNegative ? -value : value);
    });
}

double CFStringGetDoubleValue(CFStringRef string) {
    return WithoutExceptions(0.0, [&] {
        static locale_t const sPlain = newlocale(LC_ALL_MASK, "C", nullptr);
        std::string text = platform::AsciiBehindBlanks(string);
        text.resize(platform::DecimalLength(text));
        return text.empty() ? 0.0 : strtod_l(text.c_str(), nullptr, sPlain);
    });
}
