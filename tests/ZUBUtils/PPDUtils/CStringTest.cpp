// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/CString.h"

#include <string>
#include <utility>

#include "ZUBUtils/PPDUtils/Arena.h"
#include "tests/ZUBUtils/PPDUtils/FailingNew.h"

namespace {

constexpr char const* kNoText = nullptr;
constexpr CFStringRef kNoString = nullptr;

using CStringTest = MacRomanTest;

TEST_F(CStringTest, NoTextAndTheEmptyTextAreTwoThings) {
    CString assigned("Duplex");
    assigned = kNoText;
    for (CString const& none : {CString(), CString(kNoText), CString(kNoString), assigned}) {
        EXPECT_EQ(none.GetCharData(), nullptr);
        EXPECT_TRUE(none.Empty());
        EXPECT_FALSE(none == none);
        EXPECT_FALSE(none == "");
        EXPECT_FALSE(none.Contains(""));
    }
    assigned = kNoString;
    EXPECT_STREQ(assigned, "");
    EXPECT_TRUE(assigned.Empty());
}

TEST_F(CStringTest, PlatformStringsWithoutASystemFormAreMadeInUTF8AndAssignedAsTheEmptyText) {
    CString text(Str("日本").Get());
    EXPECT_STREQ(text, "日本");
    EXPECT_EQ(text.Size(), 6U);
    text = Str("Größe").Get();
    EXPECT_STREQ(text, "Gr\232\247e");
    text = Str("日本").Get();
    EXPECT_STREQ(text, "");
    SetSystemTextEncoding(1);
    text = Str("日本").Get();
    EXPECT_STREQ(text, "\x93\xFA\x96\x7B");
}

TEST_F(CStringTest, AppendAndAssignmentTakeTheStringsOwnText) {
    CString text;
    EXPECT_EQ(&(text + ""), &text);
    EXPECT_EQ(text.GetCharData(), nullptr);
    text + "ab" + kNoText + "c";
    text + text;
    EXPECT_STREQ(text, "abcabc");
    EXPECT_EQ(text.Size(), 6U);
    text = text.GetCharData() + 4;
    char const* const buffer = text;
    text = text.GetCharData();
    EXPECT_EQ(text.GetCharData(), buffer);
    EXPECT_STREQ(text, "bc");
}

TEST_F(CStringTest, AMovedTextIsLeftByTheFormerStringWhoeverOwnsTheBytes) {
    Arena arena;
    CString inArena(arena, "Tray");
    CString onHeap("Duplex");
    for (CString* from : {&inArena, &onHeap}) {
        std::string const text(*from);
        CString moved(std::move(*from));
        EXPECT_EQ(from->GetCharData(), nullptr);
        *from = "new";
        moved + "ed";
        EXPECT_EQ(std::string(moved), text + "ed");
        EXPECT_EQ(moved.Size(), text.size() + 2);
    }
}

TEST_F(CStringTest, ContainsTakesUpperAndLowerCaseAsTheSame) {
    CString const text("*ManualFeed True");
    EXPECT_TRUE(text.Contains("MANUALfeed"));
    EXPECT_FALSE(text.Contains("true "));
}

TEST_F(CStringTest, RemoveStaysInsideTheText) {
    CString text("0123456789");
    char const* const buffer = text;
    text.Remove(buffer + 2, 3);
    EXPECT_STREQ(text, "0156789");
    text.Remove(buffer + 4, 1000);
    EXPECT_STREQ(text, "0156");
    text.Remove(buffer + 5, 1);
    text.Remove(buffer - 1, 1);
    EXPECT_STREQ(text, "0156");
    EXPECT_EQ(text.Size(), 4U);
    EXPECT_EQ(text.GetCharData(), buffer);
}

TEST_F(CStringTest, InsertGivesTheNewBufferOrLeavesTheString) {
    CString text("ac");
    char const* const buffer = text.Insert(text.GetCharData() + 1, "b");
    EXPECT_EQ(buffer, text.GetCharData());
    EXPECT_NE(text.Insert(buffer + 3, buffer + 1), nullptr);
    EXPECT_EQ(text.Insert(text.GetCharData() + 6, "x"), nullptr);
    EXPECT_STREQ(text, "abcbc");
    EXPECT_EQ(text.Size(), 5U);
}

TEST_F(CStringTest, ReplaceChangesTheFirstOccurrenceOnly) {
    char const* const cases[][4] = {
        // text, what, with, result
        {"a%sb%s", "%s", "longer", "alongerb%s"},
        {"abab", "ab", "", "ab"},
        {"abc", "c", kNoText, "ab"},
        {"abc", "", "x", "xabc"},
        {"abc", kNoText, "x", "abc"},
    };
    for (auto const& [before, what, with, result] : cases) {
        CString text(before);
        text.Replace(what, with);
        EXPECT_STREQ(text, result);
        EXPECT_EQ(text.Size(), std::string(result).size());
    }
    CString text("ab");
    text.Replace("b", text);
    EXPECT_STREQ(text, "aab");
}

TEST_F(CStringTest, LackOfMemoryLeavesTheStringAsItWas) {
    CString text("before");
    FailNewAfter(0);
    text + "x";
    FailNewAfter(0);
    text = "after";
    FailNewAfter(0);
    EXPECT_EQ(text.Insert(text, "x"), nullptr);
    CString const what("for");
    FailNewAfter(0);
    text.Replace(what, what);
    EXPECT_STREQ(text, "before");
    FailNewAfter(0);
    text = Str("after").Get();
    EXPECT_STREQ(text, "");
    FailNewAfter(0);
    EXPECT_EQ(CString("x").GetCharData(), nullptr);
}

}  // namespace
