// SPDX-License-Identifier: Apache-2.0
#include <cmath>
#include <limits>
#include <vector>

#include "tests/platform/TestSupport.h"

namespace {

using CFDataTest = OwnershipTest;
using CFArrayTest = OwnershipTest;
using CFDictionaryTest = OwnershipTest;
using CFNumberTest = OwnershipTest;

CFRef<CFMutableArrayRef> NewArray() {
    return CFRef<CFMutableArrayRef>(CFArrayCreateMutable(nullptr, 0));
}
CFRef<CFMutableDictionaryRef> NewDictionary() {
    return CFRef<CFMutableDictionaryRef>(CFDictionaryCreateMutable(nullptr, 0));
}

TEST_F(CFDataTest, GrowsByForeignAndByItsOwnBytes) {
    CFRef<CFMutableDataRef> const data(CFDataCreateMutable(nullptr, 2));
    CFDataAppendBytes(data, Bytes("abc"), 3);
    CFRef<CFDataRef> const snapshot(CFDataCreateCopy(nullptr, data));
    CFDataAppendBytes(data, CFDataGetBytePtr(data), CFDataGetLength(data));
    CFDataAppendBytes(data, Bytes("x"), -1);
    EXPECT_EQ(Text(data), "abcabc");
    EXPECT_EQ(Text(snapshot), "abc");
}

TEST_F(CFArrayTest, RetainsItsElementsAndGivesNullBeyondItsEnds) {
    auto const array = NewArray();
    auto const text = Str("tray");
    CFArrayAppendValue(array, text);
    CFArrayAppendValue(array, nullptr);
    CFArrayInsertValueAtIndex(array, 0, kCFBooleanTrue);
    CFArrayInsertValueAtIndex(array, 9, text);  // beyond the end
    EXPECT_EQ(CFArrayGetValueAtIndex(array, 0), kCFBooleanTrue);
    EXPECT_EQ(CFArrayGetValueAtIndex(array, 1), text.Get());
    EXPECT_EQ(CFArrayGetValueAtIndex(array, 2), nullptr);
    EXPECT_EQ(CFArrayGetValueAtIndex(array, 3), nullptr);
    EXPECT_EQ(CFArrayGetValueAtIndex(array, -1), nullptr);

    CFRef<CFMutableArrayRef> const copy(CFArrayCreateMutableCopy(nullptr, 0, array));
    EXPECT_TRUE(CFEqual(copy, array));
    CFArraySetValueAtIndex(array, 1, Str("other"));
    CFArraySetValueAtIndex(array, 3, text);  // at the end: appended
    CFArrayRemoveValueAtIndex(array, 0);
    EXPECT_EQ(CFArrayGetCount(array), 3);
    EXPECT_EQ(Text(static_cast<CFStringRef>(CFArrayGetValueAtIndex(array, 0))), "other");
    EXPECT_EQ(CFArrayGetValueAtIndex(copy, 1), text.Get());
    EXPECT_EQ(CFGetRetainCount(text), 3);
}

TEST_F(CFArrayTest, EqualityLooksIntoNestedContainers) {
    auto const make = [](std::int32_t number) {
        auto const inner = NewDictionary();
        CFDictionarySetValue(inner, CFSTR("n"), Number(number));
        CFDictionarySetValue(inner, CFSTR("d"), Data("xy"));
        auto const outer = NewArray();
        CFArrayAppendValue(outer, inner);
        return outer;
    };
    EXPECT_TRUE(CFEqual(make(1), make(1)));
    EXPECT_FALSE(CFEqual(make(1), make(2)));
    EXPECT_FALSE(CFEqual(make(1), nullptr));
}

TEST_F(CFDictionaryTest, KeepsTheOrderOfInsertionThroughReplacementAndRemoval) {
    auto const dictionary = NewDictionary();
    for (std::int32_t index = 0; index < 40; ++index) {
        CFDictionarySetValue(dictionary, Str("key" + std::to_string(index)), Number(index));
    }
    CFDictionarySetValue(dictionary, CFSTR("key0"), CFSTR("replaced"));
    for (std::int32_t index = 1; index < 38; ++index) {
        CFDictionaryRemoveValue(dictionary, Str("key" + std::to_string(index)));
    }
    CFDictionarySetValue(dictionary, CFSTR("last"), kCFBooleanFalse);

    std::vector<CFTypeRef> keys(static_cast<std::size_t>(CFDictionaryGetCount(dictionary)));
    std::vector<CFTypeRef> values(keys.size());
    CFDictionaryGetKeysAndValues(dictionary, keys.data(), values.data());
    std::string order;
    for (std::size_t index = 0; index < keys.size(); ++index) {
        auto const* key = static_cast<CFStringRef>(keys[index]);
        EXPECT_EQ(CFDictionaryGetValue(dictionary, key), values[index]);
        order += Text(key) + ' ';
    }
    EXPECT_EQ(order, "key0 key38 key39 last ");
    EXPECT_EQ(CFDictionaryGetValue(dictionary, CFSTR("key5")), nullptr);
}

TEST_F(CFDictionaryTest, KeyThatChangesAfterwardsStillStandsForItsOldText) {
    auto const dictionary = NewDictionary();
    CFRef<CFMutableStringRef> const key(CFStringCreateMutableCopy(nullptr, 0, CFSTR("PageSize")));
    CFDictionarySetValue(dictionary, key, CFSTR("A4"));
    CFStringReplaceAll(key, CFSTR("InputSlot"));
    EXPECT_EQ(CFDictionaryGetValue(dictionary, key), nullptr);
    EXPECT_EQ(CFDictionaryGetValue(dictionary, Str("PageSize")), CFSTR("A4"));
}

TEST_F(CFDictionaryTest, CopiesAreIndependentAndEqualInAnyOrder) {
    auto const first = NewDictionary();
    CFDictionarySetValue(first, CFSTR("a"), CFSTR("1"));
    CFDictionarySetValue(first, CFSTR("b"), CFSTR("2"));
    auto const second = NewDictionary();
    CFDictionarySetValue(second, CFSTR("b"), Str("2"));
    CFDictionarySetValue(second, CFSTR("a"), Str("1"));
    EXPECT_TRUE(CFEqual(first, second));

    CFRef<CFMutableDictionaryRef> const copy(CFDictionaryCreateMutableCopy(nullptr, 0, first));
    CFDictionaryRemoveValue(first, CFSTR("a"));
    CFDictionarySetValue(copy, CFSTR("c"), CFSTR("3"));
    EXPECT_EQ(CFDictionaryGetValue(copy, CFSTR("a")), CFSTR("1"));
    EXPECT_EQ(CFDictionaryGetCount(first), 1);
    EXPECT_FALSE(CFEqual(first, copy));
    CFDictionarySetValue(first, CFSTR("x"), nullptr);
    EXPECT_EQ(CFDictionaryGetCount(first), 1);
}

CFRef<CFNumberRef> Real(double value) {
    return CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberFloat64Type, &value));
}
CFRef<CFNumberRef> Wide(std::int64_t value) {
    return CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberSInt64Type, &value));
}

TEST_F(CFNumberTest, ValueOutsideATypeComesAsTheNearestAndIsReported) {
    constexpr auto kMinimum = std::numeric_limits<std::int64_t>::min();
    constexpr auto kMaximum = std::numeric_limits<std::int64_t>::max();
    struct {
        CFRef<CFNumberRef> number;
        std::int32_t narrow;
        bool narrowExact;
        std::int64_t wide;
        bool wideExact;
    } const cases[] = {
        {Number(-7), -7, true, -7, true},
        {Wide(1LL << 31), 2147483647, false, 1LL << 31, true},
        {Wide(kMinimum), -2147483647 - 1, false, kMinimum, true},
        {Real(3.0), 3, true, 3, true},
        {Real(-3.9), -3, false, -3, false},
        {Real(-9223372036854775808.0), -2147483647 - 1, false, kMinimum, true},
        {Real(9223372036854775808.0), 2147483647, false, kMaximum, false},
        {Real(std::nan("")), 0, false, 0, false},
    };
    for (auto const& c : cases) {
        std::int32_t narrow = 99;
        std::int64_t wide = 99;
        EXPECT_EQ(CFNumberGetValue(c.number, kCFNumberSInt32Type, &narrow), c.narrowExact);
        EXPECT_EQ(CFNumberGetValue(c.number, kCFNumberSInt64Type, &wide), c.wideExact);
        EXPECT_EQ(narrow, c.narrow);
        EXPECT_EQ(wide, c.wide);
    }
    double real = 0;
    EXPECT_TRUE(CFNumberGetValue(Wide(1LL << 53), kCFNumberFloat64Type, &real));
    EXPECT_FALSE(CFNumberGetValue(Wide((1LL << 53) + 1), kCFNumberFloat64Type, &real));
    EXPECT_FALSE(CFNumberGetValue(Wide(kMaximum), kCFNumberFloat64Type, &real));
    EXPECT_EQ(real, 9223372036854775808.0);
}

TEST_F(CFNumberTest, EqualityGoesByValueAcrossTypes) {
    EXPECT_TRUE(CFEqual(Number(5), Wide(5)));
    EXPECT_TRUE(CFEqual(Number(5), Real(5)));
    EXPECT_FALSE(CFEqual(Real(5.5), Number(5)));
    EXPECT_FALSE(CFEqual(Wide((1LL << 53) + 1), Real(9007199254740992.0)));
    EXPECT_FALSE(CFEqual(Number(1), kCFBooleanTrue));
}

}  // namespace
