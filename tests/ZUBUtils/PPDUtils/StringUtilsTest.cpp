// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/StringUtils.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <string>

#include "ZUBUtils/PPDUtils/DebugMessage.h"
#include "ZUBUtils/PPDUtils/ZUBAssert.h"
#include "tests/ZUBUtils/PPDUtils/FailingNew.h"

namespace {

std::string Replaced(char const* text, char const* what, char const* with) {
    std::unique_ptr<char[]> const result(_replace(text, what, with));
    return result ? result.get() : "(null)";
}

TEST(StringUtilsTest, NumbersFitTheirBuffersAtBothEnds) {
    char number[kNumberTextSize];
    EXPECT_STREQ(num2String(-2147483648L, number), "-2147483648");
    EXPECT_STREQ(num2String(1L << 40, number), "2147483647");
    char decimal[kFloatTextSize];
    EXPECT_STREQ(float2String(1.5F, decimal), "   1.5000");
    float2String(std::numeric_limits<float>::lowest(), decimal);
    EXPECT_STREQ(decimal, "-340282346638528859811704183484516925440.0000");
}

TEST(StringUtilsTest, TextsGiveTheNumberThatTheyBeginWith) {
    EXPECT_EQ(string2Number(" -12 pt"), -12);
    EXPECT_EQ(string2Number("99999999999"), 2147483647);
    EXPECT_EQ(string2Number(nullptr), 0);
    EXPECT_EQ(wtoi(L"-99999999999"), -2147483647 - 1);
    EXPECT_EQ(wtoi((std::wstring(126, L' ') + L"12345").c_str()), 12);
}

TEST(StringUtilsTest, DeletingARangeStaysInsideTheText) {
    struct {
        short from;
        short to;
        char const* result;  // null: refused
    } const cases[] = {
        {0, 2, "cdef"},  {2, 4, "abef"},  {3, 100, "abc"}, {6, 9, "abcdef"},
        {2, 2, nullptr}, {7, 9, nullptr}, {4, 2, nullptr}, {-1, 3, nullptr},
    };
    for (auto const& row : cases) {
        char text[] = "abcdef";
        EXPECT_EQ(deleteCharRangeInStr(text, row.from, row.to), row.result ? text : nullptr);
        EXPECT_STREQ(text, row.result ? row.result : "abcdef");
    }
}

TEST(StringUtilsTest, AFilledTextHasItsTerminatorOrIsRefused) {
    std::unique_ptr<char[]> const text(newInitalizedCString(3, '*'));
    EXPECT_STREQ(text.get(), "***");
    EXPECT_EQ(newInitalizedCString(~0UL, '*'), nullptr);
    FailNewAfter(0);
    EXPECT_EQ(newInitalizedCString(3, '*'), nullptr);
}

TEST(StringUtilsTest, RunsOfDigitsAndCharactersAreFound) {
    EXPECT_TRUE(validateRangeValues("1-12,14", 2));
    EXPECT_FALSE(validateRangeValues("1-12,145", 2));
    char text[] = "a=b=c";
    EXPECT_EQ(findChar(text, '='), text + 1);
    EXPECT_EQ(findChar(text, '\0'), nullptr);
}

TEST(StringUtilsTest, ReplaceChangesEveryOccurrenceAndThoseThatItMakes) {
    EXPECT_EQ(Replaced("EFBBBFaEFBBBF", "EFBBBF", "\xEF\xBB\xBF"), "\xEF\xBB\277a\xEF\xBB\xBF");
    EXPECT_EQ(Replaced("xaabbx", "ab", ""), "xx");
    EXPECT_EQ(Replaced("abc", "", "y"), "abc");
    EXPECT_EQ(Replaced("aa", "a", "aa"), "aaaa");
}

TEST(StringUtilsTest, ReplaceWithoutMemoryGivesNothing) {
    for (long const count : {0, 1}) {
        FailNewAfter(count);
        EXPECT_EQ(Replaced("a", "a", "b"), "(null)");
    }
}

TEST(StringUtilsTest, LengthPrefixedTextsConvertInPlaceAndAreCut) {
    char block[256] = "Tolvane";
    auto* const bytes = reinterpret_cast<unsigned char*>(block);
    EXPECT_EQ(ctoPStr(block, bytes), bytes);
    EXPECT_EQ(std::memcmp(block, "\7Tolvane", 8), 0);
    EXPECT_STREQ(ptoCStr(bytes, block), "Tolvane");
    unsigned char pascal[256];
    ctoPStr(std::string(300, 'x').c_str(), pascal);
    EXPECT_EQ(pascal[0], 255);
    EXPECT_EQ(std::string(ptoCStr(pascal, block)), std::string(255, 'x'));
}

TEST(DebugMessageTest, PrintsOnlyWhenTheEnvironmentAsksForIt) {
    testing::internal::CaptureStdout();
    unsetenv("PDEDebug");
    MyDebugMessage("quiet", 1);
    setenv("PDEDebug", "", 1);
    MyDebugMessage("Sync", -9530);
    unsetenv("PDEDebug");
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "Sync (-9530)\n");
}

TEST(ZUBAssertDeathTest, AFailedAssertionSaysWhereAndAborts) {
    char const* name = "Duplex";
    ZUB_ASSERT(name != nullptr, "inLocalName != NULL", "PPDX/PPDObjects/PPDXElement", 86);
    name = nullptr;
    EXPECT_EXIT(
        ZUB_ASSERT(name != nullptr, "inLocalName != NULL", "PPDX/PPDObjects/PPDXElement", 86),
        testing::KilledBySignal(SIGABRT),
        "^PPDX/PPDObjects/PPDXElement:86: failed assertion `inLocalName != NULL'\n$");
}

}  // namespace
