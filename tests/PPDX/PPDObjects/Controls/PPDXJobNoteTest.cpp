// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"

#include <gtest/gtest.h>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "platform/Testing.h"
#include "tests/PPDX/PPDObjects/Controls/ControlHelpers.h"

namespace {

constexpr long kID = 5001;

struct NoteTraits {
    std::string code;
    char const* text = nullptr;
    std::uint32_t flags = 0;
    bool visible = true;
};

std::unique_ptr<PPDXJobNote> NewNote(char const* keyword, NoteTraits const& traits = {}) {
    PointerList flags;
    return std::make_unique<PPDXJobNote>(
        keyword, CFSTR("Note"), flags, traits.code.empty() ? nullptr : Code(traits.code),
        static_cast<long>(traits.code.size()),
        traits.text != nullptr ? new CString(traits.text) : nullptr, nullptr, traits.visible, 20,
        static_cast<JobNoteFlag>(traits.flags), -2);
}

std::string Framed(std::string const& option, std::string const& code) {
    return "%%BeginFeature: " + option + "\n" + code + "%%EndFeature\n";
}

TEST(PPDXJobNoteTest, PostScriptPutsTheTextIntoTheTemplateOrAComment) {
    struct {
        char const* keyword;
        NoteTraits traits;
        std::string emitted;
    } const cases[] = {
        {"*N", {"(<*N>) note\n", "AB"}, Framed("*N AB", "<4142> note\n")},
        {"*N", {"%% <*n>\n", "a\\b"}, Framed("*N a\\b", "%% a\\b\n")},
        {"*N", {"(<*N>)\n", "a\nb"}, Framed("*N a b", "<610A62>\n")},
        {"*N", {"%% <*N>\n", "a\r\x7F/x"}, Framed("*N a  /x", "%% a  /x\n")},
        {"*N", {"(<*N>)\n", ""}, ""},
        {"*N", {"(<*N>)\n", nullptr}, ""},
        {"*N", {"", "x"}, Framed("*N x", "%%EmptyOption\n\n")},
        {"*Notes1", {"", "x\ny"}, Framed("*Notes1 x y", "%%ZUBCustom1: x y\n")},
        {"*Notes2", {"", "x"}, Framed("*Notes2 x", "%%ZUBCustom2: x\n")},
        {"*Instruct", {"", "x"}, Framed("*Instruct x", "%%ZUBCustom3: x\n")},
        {"*Notes1", {"", "x", 0x180}, Framed("*Notes1 x", "%%PersPassword: x\n")},
        {"*Notes1", {"", "x", kNoteMember}, Framed("*Notes1 x", "%%DeptPassword: x\n")},
    };
    for (auto const& row : cases) {
        EXPECT_EQ(Emitted(*NewNote(row.keyword, row.traits)), row.emitted);
    }
    EXPECT_EQ(NewNote(nullptr, {"", "x"})->PostScript(nullptr), 0);
}

TEST(PPDXJobNoteTest, CodeGets512BytesOfTheTextAndTheFrameAll) {
    for (auto const& [length, inCode] : {std::pair(511, 511), {512, 512}, {513, 511}}) {
        std::string const text(static_cast<std::size_t>(length), 'n');
        EXPECT_EQ(Emitted(*NewNote("*N", {"%%<*N>", text.c_str()})),
                  Framed("*N " + text, "%%" + text.substr(0, static_cast<std::size_t>(inCode))));
    }
}

TEST(PPDXJobNoteTest, BehindACommentTheTextIsAStringAgain) {
    EXPECT_EQ(
        Emitted(*NewNote("*N", {"%%A <*n>\r\n%<*N>\n/n (<*N>) def %<*N>\n", "a) b ("})),
        Framed("*N a) b (", "%%A a) b (\r\n%a) b (\n/n <612920622028> def %<612920622028>\n"));
    EXPECT_EQ(Emitted(*NewNote("*N", {"%%A\f(<*N>)", ")"})), Framed("*N )", "%%A\f<29>"));
}

TEST(PPDXJobNoteTest, NotesThatShareAListsKeywordReportNoLength) {
    for (char const* keyword : {"*ZUSimulation", "*ZUOutProfile", "*ZURGBOverride"}) {
        auto const note = NewNote(keyword, {"", "Offset"});
        EXPECT_EQ(note->PostScript(nullptr), 0);
        std::string const wanted = Framed(std::string(keyword) + " Offset", "\n");
        std::vector<unsigned char> out(wanted.size());
        EXPECT_EQ(note->PostScript(out.data()), static_cast<long>(wanted.size()));
        EXPECT_EQ(std::string(out.begin(), out.end()), wanted);
    }
}

TEST(PPDXJobNoteTest, MadeCodeIsKeptUntilTheTextIsSetAsAnOptionsValue) {
    auto const note = NewNote("*N", {"%%<*N>\n", "old"});
    Settings settings;
    ASSERT_EQ(NewNote("*N", {"", "stored"})->Save(settings, kID), 0);
    Emitted(*note);
    note->SetUTF8Notes(CFSTR("new"));
    EXPECT_EQ(Emitted(*note), Framed("*N new", "%%old\n"));
    EXPECT_EQ(note->Restore(settings, kID), 0);
    EXPECT_EQ(Emitted(*note), Framed("*N stored", "%%old\n"));
    note->SetCurrentControlWithCFString(CFSTR("set"));
    EXPECT_EQ(Emitted(*note), Framed("*N set", "%%set\n"));
    TakeReportedChanges();
    note->SetNotes("typed");
    EXPECT_EQ(Emitted(*note), Framed("*N typed", "%%typed\n"));
    note->SetNotes(note->GetNotes());
    EXPECT_STREQ(note->GetNotes(), "typed");
    note->ResetToDefaultValue();
    EXPECT_STREQ(note->GetNotes(), "old");
    note->SetNotes(nullptr);
    EXPECT_EQ(note->GetNotes(), nullptr);
    EXPECT_EQ(note->PostScript(nullptr), 0);
    EXPECT_EQ(TakeReportedChanges(),
              (std::vector<std::string>{"*N=typed", "*N=typed", "*N=old", "*N="}));
    EXPECT_EQ(note->Restore(settings, kID + 1), 0);
    EXPECT_EQ(note->GetNotes(), nullptr);
}

TEST(PPDXJobNoteTest, TextsAreUTF8ForThreeKeywordsAndInTheSystemEncodingElse) {
    struct {
        char const* keyword;
        char const* value;
        char const* notes;
        char const* copied;
    } const cases[] = {
        {"*Notes1", "Büro", "B\xC3\xBCro", "Büro"},
        {"*Instruct", "日本", "日本", "日本"},
        {"*Resume", "", "", ""},
        {"*Notes2", "Büro", "B\x9Fro", "Büro"},
        {"*Notes2", "日", "日", "Êó•"},
    };
    for (auto const& row : cases) {
        auto const note = NewNote(row.keyword);
        EXPECT_EQ(Text(CFRef(note->CopyNotes())), "");
        note->SetCurrentControlWithCFString(Str(row.value));
        EXPECT_STREQ(note->GetNotes(), row.notes);
        EXPECT_EQ(Text(CFRef(note->CopyCurrentControlValueString())), row.copied);
    }
    // Bytes that are no UTF-8, as a default of the PPD may be.
    EXPECT_EQ(Text(CFRef(NewNote("*Notes1", {"", "B\x9Fro"})->CopyNotes())), "Büro");
    auto const note = NewNote("*Notes2");
    note->SetUTF8Notes(Str("é"));
    EXPECT_STREQ(note->GetNotes(), "é");
    note->SetUTF8Notes(nullptr);
    EXPECT_STREQ(note->GetNotes(), "é");
    note->SetCurrentControlWithCFString(nullptr);
    EXPECT_EQ(note->GetNotes(), nullptr);
}

TEST(PPDXJobNoteTest, AUserNameStartsAtTheNameOfTheUserUnlessThereIsADefault) {
    SetUserName("J\xC3\xBCrg");
    auto const note = NewNote("*ZUUserAuthName");
    EXPECT_STREQ(note->GetNotes(), "J\x9Frg");
    EXPECT_STREQ(note->GetDefaultNotes(), "J\x9Frg");
    EXPECT_STREQ(NewNote("*ZUUserAuthName", {"", "guest"})->GetNotes(), "guest");
    EXPECT_EQ(NewNote("*ZUUserAuthNames")->GetNotes(), nullptr);
    SetUserName("日本");
    EXPECT_EQ(NewNote("*ZUUserAuthName")->GetNotes(), nullptr);
    SetUserName(nullptr);
}

TEST(PPDXJobNoteTest, PresetsOfTheThreeSharedKeywordsArePlain) {
    auto const shared = NewNote("*ZUSimulation");
    shared->SetPresetValueString(CFSTR("Offset"));
    EXPECT_STREQ(shared->GetNotes(), "Offset");
    auto const note = NewNote("*N", {"", "kept"});
    for (CFStringRef const value : {CFSTR("no cipher text"), static_cast<CFStringRef>(nullptr)}) {
        note->SetPresetValueString(value);
        shared->SetPresetValueString(nullptr);
        EXPECT_STREQ(note->GetNotes(), "kept");
        EXPECT_STREQ(shared->GetNotes(), "Offset");
    }
}

TEST(PPDXJobNoteTest, APresetHidesTheTextAndGivesItBack) {
    for (char const* text : {"secret", "J\x9Frg", ""}) {
        auto const note = NewNote("*N", {"", text});
        CFRef<CFStringRef> const stored(note->CopyPresetValueString());
        ASSERT_TRUE(stored);
        note->SetNotes("other");
        TakeReportedChanges();
        note->SetPresetValueString(stored);
        EXPECT_STREQ(note->GetNotes(), text);
        auto const shared = NewNote("*ZUSimulation");
        shared->SetPresetValueString(stored);
        EXPECT_EQ(shared->GetNotes(), Text(stored));
        EXPECT_STRNE(shared->GetNotes(), text);
    }
}

TEST(PPDXJobNoteTest, AnArchiveKeepsAllOfANote) {
    Settings settings;
    auto const note = NewNote("*N", {"%%<*N>\n", "first", kNotePassword | kNoteAESEncrypt});
    note->SetNotes("now");
    note->SetNotesOnValue(true);
    ASSERT_EQ(note->Save(settings, kID), 0);
    PPDXJobNote const back(settings, kID, nullptr);
    EXPECT_EQ(back.Type(), kJobNoteType);
    EXPECT_STREQ(back.GetNotes(), "now");
    EXPECT_STREQ(back.GetDefaultNotes(), "first");
    EXPECT_EQ(back.MaxLength(), 20);
    EXPECT_EQ(back.MinLength(), -2);
    EXPECT_EQ(back.NoteFlags(), 0x1000020U);
    EXPECT_TRUE(back.GetNotesOnValue());

    constexpr unsigned long kMaximumEntry = 0x6A4D784C;  // jMxL
    settings.Add(kMaximumEntry, kID, "xx", 2);
    EXPECT_EQ(PPDXJobNote(settings, kID, nullptr).MaxLength(), 0);
}

TEST(PPDXJobNoteTest, OnlyTheseFlagsLimitTheCharacters) {
    for (std::uint32_t flag = 1; flag <= kNoteAESEncrypt; flag <<= 1) {
        EXPECT_EQ(NewNote("*N", {"", nullptr, flag})->IsAnyText(), (flag & 0x36007) == 0) << flag;
    }
}

TEST(PPDXJobNoteTest, AListShowsAndCountsVisibleNotesWhetherTheyHaveAParentOrNot) {
    auto const shown = NewNote("*N");
    auto const hidden = NewNote("*Hidden", {"", nullptr, 0, false});
    PPDXControls controls;
    ASSERT_TRUE(controls.Add(hidden.get()));
    EXPECT_TRUE(controls.NoJobNotes());
    EXPECT_TRUE(controls.Empty());
    ASSERT_TRUE(controls.Add(shown.get()));
    for (int option = 0; option <= 4; ++option) {
        DisplayOptionsScope const scope(static_cast<_DISPLAY_OPTIONS_>(option));
        CNTL_TYPE type = kControlType;
        EXPECT_EQ(controls.First(type), option < 2 ? shown.get() : hidden.get()) << option;
        EXPECT_EQ(type, kJobNoteType);
        EXPECT_EQ(controls.JobNoteCount(), 1);
        EXPECT_EQ(controls.ControlCount(), 1);
        EXPECT_FALSE(controls.Empty());
        EXPECT_EQ(controls.FirstJobNote(), hidden.get());
        EXPECT_EQ(controls.NextJobNote(), shown.get());
        EXPECT_EQ(controls.NextJobNote(), nullptr);
        EXPECT_EQ(controls.FindJobNote("Hid", false), hidden.get());
        EXPECT_EQ(controls.FindJobNote("*n", true), nullptr);
        EXPECT_EQ(DisplayOptions::Options(), option);
    }
}

}  // namespace
