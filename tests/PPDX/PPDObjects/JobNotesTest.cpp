// SPDX-License-Identifier: Apache-2.0
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PPDText.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"

namespace {

constexpr char kGrouped[] = "*%ZUBFlags *N: Setup\n*%ZUBGroup *N: Finish/F\n";
constexpr char kNotesGroup[] =
    "*%ZUBGroupName FPZUNotes/Notes: True\n*%ZUBParent FPZUNotes/Pane1: True|Rolldown\n";

// The errors, then the note as "maximum minimum flags default parent code".
std::string OutcomeOf(ZUBPPD& ppd) {
    std::string outcome;
    for (std::string const& error : ErrorsOf(ppd)) {
        outcome += error + ", ";
    }
    auto* const note = ControlOf<PPDXJobNote>(ppd, "*N");
    if (note == nullptr) {
        return outcome + "none";
    }
    char const* const text = note->GetDefaultNotes();
    std::string code(static_cast<std::size_t>(note->PPDXControl::PostScript(nullptr)), '\0');
    note->PPDXControl::PostScript(reinterpret_cast<unsigned char*>(code.data()));
    return outcome + std::to_string(note->MaxLength()) + " " + std::to_string(note->MinLength()) +
           " " + std::to_string(note->NoteFlags()) + " " + (text != nullptr ? text : "-") + " " +
           (note->GetParent() != nullptr ? note->GetParent()->Keyword() : "-") + " " + code;
}

struct Case {
    std::string lines;
    std::string outcome;
};

void ExpectOutcomes(std::vector<Case> const& cases) {
    for (Case const& row : cases) {
        EXPECT_EQ(OutcomeOf(*ParseBody(kTree + row.lines)), row.outcome) << row.lines;
    }
}

TEST(JobNotesTest, ANoteOfItsOwnTakesTheLineBehindItOnlyIfThatIsItsCompanion) {
    std::string const line = "*%ZUBJobNote *N/Note: 8|Alpha|Numeric|Other|MinLength4\n";
    std::string const group = kNotesGroup;
    ExpectOutcomes({
        {line, "8 0 3 - - "},
        {group + line, "8 0 3 - FPZUNotes "},
        {line + group, "8 0 3 - - "},
        {line + "*%DefaultOther: text |rest\n*%ZUBPropPage\n", "4, 8 0 3 text - "},
        {line + "*%DefaultN: \"text\"\n", "8 0 3 - - "},
        {line + "*%N: \"(<*N>)\"\n*%ZUBPropPage\n", "4, 8 0 3 - - (<*N>)\n"},
        // A value that goes on meets its own line again, and the next one is lost.
        {line + "*%N: \"a\n*%ZUBPropPage\n*%ZUBGroupName\n", "12, 8 0 3 - - a\nN: \n"},
        {line + "*%ZUBPropPage\n", "4, 8 0 3 - - "},
        {"*%ZUBJobNote *N/Note: \"20\"|Alpha\n", "0 0 0 - - "},
        {"*%ZUBJobNote *N/Note:\"20\"\n", "27, none"},
        {"*%ZUBJobNote *N/: 20\n", "27, none"},
        {"*%ZUBJobNote\n*LanguageEncoding: UTF-8\n*%ZUBJobNote *N/\xFE: 20\n", "6, 6 *N, 27, none"},
    });
}

TEST(JobNotesTest, ANoteBehindAFlagsLineTakesTheNextLineInAnyCase) {
    std::string const line = std::string(kGrouped) + "*%ZUBJobNote *N/Note: 8|Required\n";
    ExpectOutcomes({
        {line, "8 0 8 - Finish "},
        {line + "*%ZUBPropPage\n*%ZUBGroupName\n", "12, 8 0 8 - Finish "},
        {line + "*%DefaultOther: \"two\nlines\"\n", "8 0 8 two Finish "},
        {line + "*%DefaultN: text\n", "8 0 8 - Finish "},
        {line + "*%N: \"a\n*%b\"\n*%ZUBPropPage\n", "4, 8 0 8 - Finish a\nb\n"},
        {kGrouped + std::string("*%ZUBJobNote *M/Note: 8\n*%ZUBPropPage\n"), "6 *M, 27, none"},
        {kGrouped + std::string("*%ZUBJobNote\n*%ZUBPropPage\n"), "6, 27, none"},
        {"*%ZUBFlags *N:\n*%ZUBGroup *N: Pane1/P\n*%ZUBJobNote *N/Note: 8\n", "8 0 0 - - "},
        {kNotesGroup +
             std::string("*%ZUBFlags *N:\n*%ZUBGroup *N: Pane1/P\n*%ZUBJobNote *N/Note: 8\n"),
         "8 0 0 - FPZUNotes "},
    });
    EXPECT_STREQ(ControlOf(*ParseBody(kTree + line), "*N")->FirstControlFlag(), "Setup");
}

TEST(JobNotesTest, TheDigitsOfALeastLengthAreReadOrToldAsMalformed) {
    for (auto const& [digits, minimum] :
         std::vector<std::pair<std::string, std::string>>{{"", "0"},
                                                          {"2", "2"},
                                                          {"12", "12"},
                                                          {"00", "0"},
                                                          {"123", "-2"},
                                                          {"1xx", "-2"},
                                                          {"x", "-1"},
                                                          {"-1", "-1"},
                                                          {"4x", "-3"}}) {
        PPDPtr const ppd = ParseBody(kTree + std::string(kGrouped) +
                                     "*%ZUBJobNote *N/Note: 8|MinLength" + digits + "|UTF8\n");
        EXPECT_EQ(OutcomeOf(*ppd), "8 " + minimum + " 12582912 - Finish ") << digits;
    }
}

TEST(JobNotesTest, OlderLevelsRefuseTheFlagsThatTheyDontKnow) {
    struct {
        int level;
        char const* known;
        char const* unknown;
    } const cases[] = {{0, "Member", "OnOfSwitch"}, {1, "SecPrint", "Command"},
                       {2, "Negative", "Encrypt"},  {0, "MinLengt", "MinLength4"},
                       {-1, "AESEncrypt", nullptr}, {3, "AESEncrypt", nullptr}};
    for (auto const& row : cases) {
        ZUBPPD::SetExtensions(static_cast<_EXTENSIONS_SUPPORT_>(row.level));
        std::string const start = kTree + std::string(kGrouped) + "*%ZUBJobNote *N/Note: 8|";
        EXPECT_EQ(ErrorsOf(*ParseBody(start + row.known + "\n")), std::vector<std::string>{});
        if (row.unknown != nullptr) {
            // Its companion is taken with it.
            EXPECT_EQ(OutcomeOf(*ParseBody(start + row.unknown + "\n*%ZUBPropPage\n")),
                      "32 *N, 27, none");
        }
    }
    ZUBPPD::SetExtensions(kExtensionsAll);
}

TEST(JobNotesTest, NotesOfTheOlderSeriesAreShortcutsOnce) {
    std::string const lines = std::string(kTree) + kGrouped + "*%ZUBJobNote *N/Note: 8\n";
    for (auto const& [version, count] :
         std::vector<std::pair<std::string, long>>{{"2.1", 1}, {"3.0", 0}, {"4.2", 0}}) {
        PPDPtr const ppd = ParseBody("*%ZUVersion: " + version + "\n" + lines);
        EXPECT_EQ(GetShortcutCount(ppd->GetShortcuts()), count) << version;
    }
    PPDPtr const twice = ParseBody("*%ZUVersion: 2\n*%ZUShortcut *N\n" + lines);
    EXPECT_EQ(GetShortcutCount(twice->GetShortcuts()), 1);
    PPDPtr const plain = ParseBody("*%ZUVersion: 2\n*%ZUBJobNote *N/Note: 8\n");
    EXPECT_EQ(GetShortcutCount(plain->GetShortcuts()), 0);
}

}  // namespace
