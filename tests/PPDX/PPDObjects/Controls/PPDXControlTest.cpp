// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXControl.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <numeric>

#include "ZUBUtils/PPDUtils/Settings.h"
#include "constraints/UIConstraints.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

constexpr unsigned long kFlagsEntry = 0x43466C67;       // CFlg
constexpr unsigned long kPostScriptEntry = 0x50534474;  // PSDt

// The base by itself, of whatever type.
class PlainControl : public PPDXControl {
  public:
    PlainControl(char const* keyword, PointerList flags, std::string const& code,
                 CNTL_TYPE type = kControlType, UIConstraints* constraints = nullptr)
        : PPDXControl(keyword, CFSTR("Plain"), flags, code.empty() ? nullptr : Code(code),
                      static_cast<long>(code.size()), true, constraints) {
        SetType(type);
    }
    PlainControl(Settings& settings, long id) : PPDXControl(settings, id, nullptr) {}

    void ResetToDefaultValue() override {}
    short Restore(Settings&, long) override { return 0; }
    CFStringRef CopyCurrentControlValueString() override { return nullptr; }
    void SetCurrentControlWithCFString(CFStringRef) override {}
};

std::vector<std::string> FlagsOf(PPDXControl& control) {
    std::vector<std::string> flags;
    for (auto* flag = control.FirstControlFlag(); flag; flag = control.NextControlFlag()) {
        flags.emplace_back(flag);
    }
    return flags;
}

std::string Injected(PPDXControl const& control, std::string const& code, char const* value) {
    unsigned char* block = nullptr;
    long const length =
        control.Inject(control.Keyword(), reinterpret_cast<unsigned char const*>(code.data()),
                       static_cast<long>(code.size()), value, block);
    EXPECT_NE(block, nullptr);
    EXPECT_EQ(block[length], '\0');
    std::string text(reinterpret_cast<char*>(block), static_cast<std::size_t>(length));
    std::free(block);
    return text;
}

TEST(PPDXControlTest, InjectReplacesEveryMarkerByTheValue) {
    struct {
        CNTL_TYPE type;
        char const* code;
        char const* value;
        char const* result;
    } const cases[] = {
        {kRangeType, "<*Key> x <*KEY><*key>", "12", "12 x 1212"},
        {kRangeType, "no marker <*Ke> <Key>", "12", "no marker <*Ke> <Key>"},
        {kRangeType, "(<*Key>)", "a\\b(", "(a\\\\b()"},
        {kRangeType, "%%X <*Key>", "a\\b", "%%X a\\b"},
        {kRangeType, "[<*Key>]", "", "[]"},
        {kRangeType, "[<*Key>]", "\xC3\xA9", "[]"},
        {kRangeType, "[<*Key>]", "<*Key>", "[<*Key>]"},
        {kJobNoteType, "(<*Key>) [<*Key>]", "AB", "<4142> [<4142>]"},
        {kJobNoteType, "(<*Key>)", "J\\\xC3\xBF", "<4A5CC3BF>"},
        {kJobNoteType, "(<*Key>)", "", "()"},
        {kJobNoteType, "%%Note: <*Key>", "a\\b", "%%Note: a\\b"},
        {kJobNoteType, "% <*Key>", "AB", "% <4142>"},
    };
    for (auto const& [type, code, value, result] : cases) {
        PlainControl const control("*Key", Words({}), "", type);
        EXPECT_EQ(Injected(control, code, value), result) << code;
    }
    PlainControl const control("*Key", Words({}), "");
    EXPECT_EQ(Injected(control, "[<*Key>]", nullptr), "[]");
    EXPECT_EQ(Injected(control, "", "12"), "");
}

TEST(PPDXControlTest, InjectKeepsAllOtherBytesOfTheCode) {
    std::string bytes(256, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    PlainControl const control("*K\x8Ey", Words({}), "");
    EXPECT_EQ(Injected(control, bytes + "<*K\x8Ey>" + bytes, "1"), bytes + "1" + bytes);
}

TEST(PPDXControlTest, ArchiveKeepsFlagsCodeAndVisibility) {
    Settings settings;
    std::string const code("a\0b", 3);
    PlainControl control("*Key", Words({"Setup", "Command"}), code);
    ASSERT_EQ(control.Save(settings, 5001), 0);
    PlainControl restored(settings, 5001);
    EXPECT_STREQ(restored.Keyword(), "*Key");
    EXPECT_EQ(FlagsOf(restored), (std::vector<std::string>{"Setup", "Command"}));
    EXPECT_EQ(Emitted(restored), code);
    EXPECT_TRUE(restored.IsVisible());

    ASSERT_EQ(PlainControl("*Bare", Words({}), "").Save(settings, 5002), 0);
    long size = 0;
    EXPECT_NE(settings.Get(kFlagsEntry, 5002, nullptr, size, false), 0);
    EXPECT_NE(settings.Get(kPostScriptEntry, 5002, nullptr, size, false), 0);
    settings.Add(kFlagsEntry, 5003, "||A||B", 6);
    PlainControl odd(settings, 5003);
    EXPECT_EQ(FlagsOf(odd), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(odd.PostScript(nullptr), 0);
}

TEST(PPDXControlTest, SavingStopsAtTheFirstRefusedEntry) {
    Settings settings;
    PlainControl control("*Key", Words({"Setup"}), "code");
    settings.Add(kPostScriptEntry, 5001, "x", 1);
    settings.Lock(kPostScriptEntry, 5001);
    EXPECT_NE(control.Save(settings, 5001), 0);
    long size = 0;
    EXPECT_NE(settings.Get(kFlagsEntry, 5001, nullptr, size, false), 0);
}

TEST(PPDXControlTest, SelectionReachesTheConstraintStoreIfThereIsOne) {
    UIConstraints constraints;
    PlainControl linked("*Key", Words({}), "", kControlType, &constraints);
    linked.UpdateKVCache("*Key", "A");
    linked.UpdateKVCache("*Key", nullptr);
    linked.UpdateKVCache(nullptr, "B");
    EXPECT_NE(constraints.GetConstraintStrings().Find("A"), -1);
    EXPECT_EQ(constraints.GetConstraintStrings().Find("B"), -1);
    PlainControl loose("*Key", Words({}), "");
    loose.UpdateKVCache("*Key", "A");
    loose.UpdateKVCache(0, 1);
}

}  // namespace
