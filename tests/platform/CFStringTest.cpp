// SPDX-License-Identifier: Apache-2.0
#include <limits>

#include "tests/platform/TestSupport.h"

namespace {

using CFStringTest = OwnershipTest;

CFRef<CFMutableStringRef> Mutable(std::string_view text, CFIndex maximum = 0) {
    return CFRef<CFMutableStringRef>(CFStringCreateMutableCopy(nullptr, maximum, Str(text)));
}

TEST_F(CFStringTest, CopyOfAnImmutableStringIsTheSameAndOfAMutableOneIsNot) {
    auto const fixed = Str("abc");
    CFRef<CFStringRef> const sameCopy(CFStringCreateCopy(nullptr, fixed));
    EXPECT_EQ(sameCopy.Get(), fixed.Get());
    EXPECT_EQ(CFGetRetainCount(fixed), 2);

    auto const changing = Mutable("abc");
    CFRef<CFStringRef> const snapshot(CFStringCreateCopy(nullptr, changing));
    CFStringAppend(changing, fixed);
    EXPECT_EQ(Text(snapshot), "abc");
    EXPECT_EQ(Text(changing), "abcabc");
    CFStringAppend(changing, changing);
    CFStringAppendCString(changing, "\xC4\xFF", kCFStringEncodingUTF8);  // no text
    EXPECT_EQ(Text(changing), "abcabcabcabc");
}

TEST_F(CFStringTest, ConstantsAreOneObjectForEachTextAndOutliveEveryRelease) {
    auto const constant = CFSTR("PrintSettings");
    std::string const sameText = "PrintSettings";
    EXPECT_EQ(CFStringConstant(sameText.c_str()), constant);
    CFRelease(constant);
    CFRelease(constant);
    EXPECT_EQ(Text(constant), "PrintSettings");
    EXPECT_TRUE(CFEqual(constant, Str("PrintSettings")));
}

TEST_F(CFStringTest, NullIsAnEmptyTextAndAnIndexOutsideATextGivesZero) {
    EXPECT_EQ(CFStringGetCharacterAtIndex(nullptr, 0), 0);
    EXPECT_EQ(CFStringGetCharacterAtIndex(CFSTR("x"), 1), 0);
    EXPECT_EQ(CFStringGetCharacterAtIndex(CFSTR("x"), -1), 0);
    EXPECT_EQ(CFStringCompare(nullptr, CFSTR(""), 0), kCFCompareEqualTo);
    EXPECT_EQ(CFStringFind(nullptr, CFSTR("a"), 0).location, kCFNotFound);
}

TEST_F(CFStringTest, ComparisonOrdersByUnitsAndMayIgnoreCase) {
    constexpr auto kLess = kCFCompareLessThan;
    constexpr auto kEqual = kCFCompareEqualTo;
    constexpr auto kGreater = kCFCompareGreaterThan;
    struct {
        char const* left;
        char const* right;
        CFComparisonResult exact;
        CFComparisonResult ignoringCase;
    } const cases[] = {
        {"Duplex", "duplex", kLess, kEqual},
        {"duplex", "Duplexer", kGreater, kLess},
        {"a_", "aZ", kGreater, kLess},  // '_' lies between the capitals and the small letters
        {"ÄÖÜ", "äöü", kLess, kEqual},
        {"Σίσυφος", "ΣΊΣΥΦΟΣ", kGreater, kEqual},
        {"I", "ı", kLess, kLess},  // the dotless i is another letter
        {"İ", "i", kGreater, kGreater},
        {"ß", "SS", kGreater, kGreater},
    };
    for (auto const& c : cases) {
        EXPECT_EQ(CFStringCompare(Str(c.left), Str(c.right), 0), c.exact) << c.left;
        EXPECT_EQ(CFStringCompare(Str(c.left), Str(c.right), kCFCompareCaseInsensitive),
                  c.ignoringCase)
            << c.left;
    }
}

TEST_F(CFStringTest, RangeOfAComparisonIsCutToTheText) {
    auto const text = Str("ProfileBidi");
    auto const compare = [&](CFIndex location, CFIndex length, char const* with) {
        return CFStringCompareWithOptions(text, Str(with), {location, length}, 0);
    };
    EXPECT_EQ(compare(7, 4, "Bidi"), kCFCompareEqualTo);
    EXPECT_EQ(compare(7, std::numeric_limits<CFIndex>::max(), "Bidi"), kCFCompareEqualTo);
    EXPECT_EQ(compare(50, 4, ""), kCFCompareEqualTo);
}

TEST_F(CFStringTest, FindGivesTheFirstOccurrence) {
    struct {
        char const* text;
        char const* wanted;
        CFOptionFlags options;
        CFIndex location;
    } const cases[] = {
        {"com.Preview.preview", "preview", 0, 12},
        {"com.Preview.preview", "PREVIEW", kCFCompareCaseInsensitive, 4},
        {"abc", "abcd", 0, kCFNotFound},
        {"abc", "", 0, kCFNotFound},
        {"grün GRÜN", "ÜN", kCFCompareCaseInsensitive, 2},
    };
    for (auto const& c : cases) {
        auto const found = CFStringFind(Str(c.text), Str(c.wanted), c.options);
        EXPECT_EQ(found.location, c.location) << c.text;
        EXPECT_EQ(found.length, c.location == kCFNotFound ? 0 : CFStringGetLength(Str(c.wanted)));
    }
}

TEST_F(CFStringTest, ReplacingTakesEveryOccurrenceInTheRangeOnce) {
    struct {
        char const* text;
        char const* wanted;
        char const* replacement;
        CFRange range;
        CFOptionFlags options;
        CFIndex count;
        char const* result;
    } const cases[] = {
        {"<*ZUScale> x <*zuscale>", "<*ZUScale>", "1", {0, 100}, 1, 2, "1 x 1"},
        {"<*ZUScale> x <*zuscale>", "<*ZUScale>", "1", {0, 100}, 0, 1, "1 x <*zuscale>"},
        {"aaaa", "a", "aa", {1, 2}, 0, 2, "aaaaaa"},
        {"aaa", "aa", "b", {0, 3}, 0, 1, "ba"},
        {"abab", "ab", "x", {0, 3}, 0, 1, "xab"},  // the second one ends outside
        {"abab", "ab", "x", {-1, 3}, 0, 0, "abab"},
        {"abab", "ab", "x", {9, 3}, 0, 0, "abab"},
        {"abab", "", "x", {0, 4}, 0, 0, "abab"},
    };
    for (auto const& c : cases) {
        auto const text = Mutable(c.text);
        EXPECT_EQ(
            CFStringFindAndReplace(text, Str(c.wanted), Str(c.replacement), c.range, c.options),
            c.count)
            << c.text;
        EXPECT_EQ(Text(text), c.result);
    }
}

TEST_F(CFStringTest, MutableStringKeepsToItsMaximum) {
    auto const text = Mutable("abcdef", 4);
    EXPECT_EQ(Text(text), "abcd");
    CFStringReplaceAll(text, CFSTR("xy"));
    CFStringAppend(text, CFSTR("z123"));
    EXPECT_EQ(Text(text), "xyz1");
    CFStringAppend(text, text);
    EXPECT_EQ(Text(text), "xyz1");
    CFStringFindAndReplace(text, CFSTR("x"), CFSTR("longer"), {0, 4}, 0);
    EXPECT_EQ(Text(text), "long");
}

TEST_F(CFStringTest, NumbersAreReadFromTheStartOfAText) {
    struct {
        char const* text;
        std::int32_t integer;
        double real;
    } const cases[] = {
        {"  -17 mm", -17, -17},
        {"\t+5", 5, 5},
        {"x9", 0, 0},
        {"+-9", 0, 0},
        {"2147483648", 2147483647, 2147483648.0},
        {"-99999999999999999999", -2147483647 - 1, -1e20},
        {".5e1x", 0, 5},
        {"1e+", 1, 1},
        {".", 0, 0},
        {"-2.5E-1", -2, -0.25},
        {"0x10", 0, 0},
        {"inf", 0, 0},
        {"7\u0660", 7, 7},  // an Arabic zero is no digit here
    };
    for (auto const& c : cases) {
        EXPECT_EQ(CFStringGetIntValue(Str(c.text)), c.integer) << c.text;
        EXPECT_DOUBLE_EQ(CFStringGetDoubleValue(Str(c.text)), c.real) << c.text;
    }
    EXPECT_EQ(CFStringGetDoubleValue(Str("1e999")), std::numeric_limits<double>::infinity());
}

}  // namespace
