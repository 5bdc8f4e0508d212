// SPDX-License-Identifier: Apache-2.0
// How notes come into the job: as comments, as feature code, and as the user's record.
#include <cstdlib>
#include <string>
#include <vector>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/PPDXUserAuthLib.h"
#include "VelonFeatures/Project/Core/Job/NoteText.h"
#include "VelonFeatures/Project/Core/Job/ZUBJobNote.h"
#include "VelonFeatures/Project/Core/Job/ZUBJobNoteList.h"
#include "ciphers/NoteCipher.h"
#include "tests/VelonFeatures/Project/Core/Job/JobFixture.h"

namespace {

constexpr int kComment = 30;
constexpr int kFeature = 81;
constexpr int kLayout = 504;

class JobNotesTest : public JobFixture {
  protected:
    using Pairs = TestSession::Pairs;

    static std::string Note(std::string const& keyword, std::string const& flags,
                            std::string const& code = "") {
        return "*%ZUBFlags *" + keyword + ": Dynamic\n*%ZUBGroup *" + keyword +
               ": Finish/Group\n*%ZUBJobNote *" + keyword + "/Name of it: 1000|" + flags + "\n*%" +
               keyword + ": \"" + code + "\"\n";
    }
    void OpenNotes(std::string const& lines) {
        Open(TestSession::Head("*%ZUVersion: 4.4\n") + lines);
    }
    PPDXJobNote& NoteOf(char const* keyword) {
        return *GetFindJobNote(mPPD->GetControls(), keyword, true);
    }
    std::string TextOf(char const* keyword) {
        char const* const text = NoteOf(keyword).GetNotes();
        return text == nullptr ? "(none)" : text;
    }
    // The notes of a commit, without what else there is in it.
    Pairs Notes() {
        Pairs notes;
        for (auto const& pair : Job()) {
            bool const isElse =
                pair.first == kFeature && pair.second == SourceApplication("PREVIEW");
            if ((pair.first == kComment || pair.first == kFeature) && !isElse) {
                notes.push_back(pair);
            }
        }
        return notes;
    }
    static std::string Feature(std::string const& keyword, std::string const& text,
                               std::string const& code) {
        return "%%BeginFeature: " + keyword + " " + text + "\n" + code + "\n%%EndFeature\n";
    }
    static std::string Enciphered(char const* text, NoteCipherChoice const& choice) {
        char digits[kNoteDigitsSize];
        EXPECT_TRUE(EncipherNote(text, choice, digits));
        return std::string(NoteDigits(digits));
    }
    static std::string Hex(std::string_view text) {
        static constexpr char kDigits[] = "0123456789ABCDEF";
        std::string hex;
        for (unsigned char const byte : text) {
            hex += kDigits[byte >> 4];
            hex += kDigits[byte & 15];
        }
        return hex;
    }
};

TEST_F(JobNotesTest, EachNoteHasItsCommentAndItsCode) {
    std::string lines;
    for (char const* keyword : {"Notes1", "Free", "Resume", "Empty"}) {
        lines += Note(keyword, "", "(<*" + std::string(keyword) + ">) note");
    }
    OpenNotes(lines);
    NoteOf("*Notes1").SetNotes("Two (2)");
    NoteOf("*Free").SetNotes("a\nb");
    NoteOf("*Resume").SetNotes("1\r%!\x7f");
    Pairs const expected = {
        {kComment, "%%ZUBCustom1: Two (2)\n"},
        {kFeature, Feature("*Notes1", "Two (2)", "<" + Hex("Two (2)") + "> note")},
        {kFeature, Feature("*Free", "a b", "<" + Hex("a\nb") + "> note")},
        {kComment, "%%PersPassword: 1 %! \n"},
        {kFeature, Feature("*Resume", "1 %! ", "<" + Hex("1\r%!\x7f") + "> note")},
    };
    EXPECT_EQ(expected, Notes());
    EXPECT_EQ("1\r%!\x7f", TextOf("*Resume"));
}

TEST_F(JobNotesTest, EverySpecialKeywordHasItsPrefix) {
    std::string lines;
    for (NoteKeyword const& row : gKeywordMap) {
        lines += Note(row.keyword + 1, "");
    }
    OpenNotes(lines);
    for (NoteKeyword const& row : gKeywordMap) {
        NoteOf(row.keyword).SetNotes("x");
    }
    EXPECT_EQ(
        (Texts{"%%ZUBCustom1: x\n", "%%ZUBCustom2: x\n", "%%ZUBCustom3: x\n", "%%ZUBCustom4: x\n",
               "%%PersPassword: x\n", "%%DeptPassword: x\n", "%%ZUBPrintTime: x\n"}),
        At(Job(), kComment));
}

TEST_F(JobNotesTest, ACommentTakes255BytesAndNoHalfCharacter) {
    struct {
        std::string text;
        std::string comment;
    } const cases[] = {
        {std::string(255, 'a'), std::string(255, 'a')},
        {std::string(256, 'a'), std::string(255, 'a')},
        {std::string(513, 'a'), std::string(255, 'a')},
        {std::string(254, 'a') + "é", std::string(254, 'a')},
        {std::string(253, 'a') + "é", std::string(253, 'a') + "é"},
        {std::string(252, 'a') + "\xF0\x9F\x96\xA8", std::string(252, 'a')},
        {std::string(254, 'a') + "\x80\x80", std::string(254, 'a') + "\x80"},
        {std::string(254, 'a') + "\xD2\x8A\x8E", std::string(254, 'a') + "\xD2"},
    };
    for (auto const& [text, comment] : cases) {
        OpenNotes(Note("Notes2", ""));
        NoteOf("*Notes2").SetNotes(text.c_str());
        EXPECT_EQ(Texts{"%%ZUBCustom2: " + comment + "\n"}, At(Job(), kComment));
        EXPECT_EQ(text, TextOf("*Notes2"));
    }
}

TEST_F(JobNotesTest, TheLayoutStandsInComments) {
    struct {
        int orientation;
        int rows;  // 0: not told
        int columns;
        char const* version;
        Texts comments;
    } const cases[] = {
        {1, 0, 0, "4.4", {"%%Orientation: Portrait\n"}},
        {4, 0, 0, "4.4", {"%%Orientation: Landscape\n"}},
        {3, 1, 2, "4.4", {"%%MacCoreNUp: true\n", "%%Orientation: Landscape\n"}},
        {2, 3, 2, "4.4", {"%%MacCoreNUp: true\n", "%%Orientation: Portrait\n"}},
        {1, 2, 2, "2.1", {"%%Mac Core N-Up: 4\n", "%%Orientation: Portrait\n"}},
        {1, 6, 1, "2", {"%%Mac Core N-Up: 6\n", "%%Orientation: Landscape\n"}},
    };
    for (auto const& [orientation, rows, columns, version, comments] : cases) {
        mSession.SetOrientation(orientation);
        if (rows != 0) {
            PMTicketSetSInt32(mSession.Settings(), Str("c"),
                              Str("com.apple.print.PrintSettings.PMLayoutRows"), rows, false);
            PMTicketSetSInt32(mSession.Settings(), Str("c"),
                              Str("com.apple.print.PrintSettings.PMLayoutColumns"), columns, false);
        }
        Open(TestSession::Head("*%ZUVersion: " + std::string(version) + "\n"));
        EXPECT_EQ(comments, At(Job(), kLayout)) << rows << "x" << columns;
        ZUBJobNoteList notes(mPPD.get(), false);
        ZUBJobTicket ticket(&mSettings, CFSTR("job"));
        EXPECT_EQ(noErr, notes.outInjectionData(&ticket, mSession.Get()));
        EXPECT_EQ(orientation, notes.Orientation());
    }
}

TEST_F(JobNotesTest, AnEncipheredNoteIsACipherInCommentAndCode) {
    struct {
        char const* flags;
        char const* options;
        NoteCipherChoice choice;
    } const cases[] = {
        {"Encrypt", "", {nullptr, nullptr, false}},
        {"AESEncrypt", "", {nullptr, nullptr, true}},
        {"AESEncrypt", "*%ZUBSpecialOption *UseSpecialAlgorithm: 1\n", {"1", nullptr, true}},
        {"Encrypt",
         "*%ZUBSpecialOption *UseSpecialAlgorithm: 2\n*%ZUBSpecialOption *UseSpecialKey: 5\n",
         {"2", "5", false}},
    };
    for (auto const& [flags, options, choice] : cases) {
        OpenNotes(options + Note("DeptPassword", flags, "<*DeptPassword> key"));
        NoteOf("*DeptPassword").SetNotes("Geheim");
        std::string const digits = Enciphered("Geheim", choice);
        Pairs const expected = {
            {kComment, "%%DeptPassword: " + digits + "\n"},
            {kFeature, Feature("*DeptPassword", digits, "<" + Hex(digits) + "> key")},
        };
        EXPECT_EQ(expected, Notes());
        EXPECT_EQ("Geheim", TextOf("*DeptPassword"));
    }
}

TEST_F(JobNotesTest, ANoteThatIsTooLongForItsCipherIsLeftOut) {
    OpenNotes(Note("DeptPassword", "Encrypt", "<*DeptPassword> key") +
              Note("Other", "Encrypt", "<*Other> key"));
    for (auto const& [length, entries] : {std::pair{127, 3}, std::pair{128, 0}}) {
        std::string const text(static_cast<std::size_t>(length), 'p');
        NoteOf("*DeptPassword").SetNotes(text.c_str());
        NoteOf("*Other").SetNotes(text.c_str());
        Pairs const notes = Notes();
        EXPECT_EQ(static_cast<std::size_t>(entries), notes.size()) << length;
        for (auto const& pair : notes) {
            EXPECT_EQ(std::string::npos, pair.second.find("ppp"));
        }
    }
}

// Name and password in one record, which only the print server reads.
class UserRecordTest : public JobNotesTest {
  protected:
    struct Record {
        std::string user;
        std::string password;
    };

    void OpenUser(bool isDirectory, bool isCopied, char const* flags = "Password") {
        std::string lines;
        lines += isDirectory ? SpecialOption("ZUBAuthenticateWithLDAP", "True") : "";
        lines += isCopied ? SpecialOption("CopierUserAuth", "True") : "";
        OpenNotes(lines + Note("ZUUserAuthName", "", "<*ZUUserAuthName> name") +
                  Note("ZUUserAuthPwd", flags, "<*ZUUserAuthPwd> word"));
    }
    static Record Unpacked(std::string const& comment) {
        constexpr std::string_view kPrefix = "%%ZUBUATag: ";
        EXPECT_EQ(0U, comment.find(kPrefix));
        EXPECT_EQ('\n', comment.back());
        std::string const text =
            comment.substr(kPrefix.size(), comment.size() - kPrefix.size() - 1);
        char* parts[3] = {};
        UAL_DomainType type{};
        unsigned char identifier[16];
        EXPECT_EQ(0, UAL_UnpackAndDecrypt(text.c_str(), &parts[0], &parts[1], &parts[2], &type,
                                          identifier));
        Record record = {parts[0], parts[1]};
        for (char*& part : parts) {
            AUTH_freeBuffer(&part);
        }
        return record;
    }
};

TEST_F(UserRecordTest, ADirectoryGetsNameAndPasswordInOneRecord) {
    struct {
        std::string name;
        std::string inRecord;
        std::string password;
    } const cases[] = {
        {"ann", "ann", "secret"},
        {"a/b/:c/:d", "a/b//:c/:d", "secret"},
        {"a//b/:c", "a//b/:c", ""},
        {"", "", ""},
        {"\x8e", "é", std::string(300, 'p')},
    };
    for (auto const& [name, inRecord, password] : cases) {
        OpenUser(true, false);
        NoteOf("*ZUUserAuthName").SetNotes(name.c_str());
        NoteOf("*ZUUserAuthPwd").SetNotes(password.c_str());
        Pairs const notes = Notes();
        ASSERT_EQ(1U, notes.size());
        EXPECT_EQ(kComment, notes[0].first);
        Record const record = Unpacked(notes[0].second);
        EXPECT_EQ(inRecord, record.user);
        EXPECT_EQ(name.empty() ? "" : password.substr(0, 255), record.password);
    }
    EXPECT_EQ("\x8e", TextOf("*ZUUserAuthName"));
}

TEST_F(UserRecordTest, ACopierGetsTheCodeOfBothNotes) {
    OpenUser(true, true, "Password|Encrypt");
    NoteOf("*ZUUserAuthName").SetNotes("ann/:x");
    NoteOf("*ZUUserAuthPwd").SetNotes("secret");
    std::string const digits = Enciphered("secret", {});
    Pairs const notes = Notes();
    ASSERT_EQ(3U, notes.size());
    EXPECT_EQ(Feature("*ZUUserAuthName", "ann//:x", "<" + Hex("ann//:x") + "> name"),
              notes[0].second);
    EXPECT_EQ("secret", Unpacked(notes[1].second).password);
    EXPECT_EQ(Feature("*ZUUserAuthPwd", digits, "<" + Hex(digits) + "> word"), notes[2].second);
    EXPECT_EQ("secret", TextOf("*ZUUserAuthPwd"));
}

TEST_F(UserRecordTest, WithoutADirectoryThePasswordStaysHere) {
    OpenUser(false, true);
    NoteOf("*ZUUserAuthName").SetNotes("ann/:x");
    NoteOf("*ZUUserAuthPwd").SetNotes("secret");
    Pairs const expected = {
        {kFeature, Feature("*ZUUserAuthName", "ann/:x", "<" + Hex("ann/:x") + "> name")}};
    EXPECT_EQ(expected, Notes());
}

TEST_F(JobNotesTest, ATextThatIsToBeUTF8IsConvertedAndKeptSo) {
    OpenNotes(Note("Notes1", "UTF8") + Note("Notes2", "UTF8") + Note("Free", "UTF8"));
    for (char const* keyword : {"*Notes1", "*Notes2", "*Free"}) {
        NoteOf(keyword).SetNotes("caf\x8e");  // Mac Roman
    }
    EXPECT_EQ((Texts{"%%ZUBCustom1: caf\x8e\n", "%%ZUBCustom2: café\n"}), At(Job(), kComment));
    EXPECT_EQ("caf\x8e", TextOf("*Notes1"));
    EXPECT_EQ("café", TextOf("*Notes2"));
    EXPECT_EQ("caf\x8e", TextOf("*Free"));
}

TEST_F(JobNotesTest, AnOptionOfTheServersOwnStandsInADynamicOption) {
    std::string const profile = TestSession::Popup("Duplex") + TestSession::Popup("ZUOutProfile");
    Pairs::value_type const first = {kFeature, OptionA("Duplex")};
    struct {
        std::string text;
        std::string inJob;
    } const cases[] = {
        {"Coated", "Coated"},
        {"EFBBBFx EFBBBF", "\xEF\xBB\xBFx \xEF\xBB\xBF"},
        {"a (b)", "a (b)"},
    };
    for (auto const& [text, inJob] : cases) {
        OpenNotes(profile);
        SetTwoWay(true);
        NoteOf("*ZUOutProfile").SetNotes(text.c_str());
        EXPECT_EQ((Pairs{first,
                         {kFeature, "%%BeginFeature: *ZUOutProfile " + inJob +
                                        "\n /KTXsetDynamicOption where\n        { pop "
                                        "(*ZUOutProfile) (" +
                                        inJob + ") KTXsetDynamicOption } if\n%%EndFeature\n"}}),
                  Notes());
    }
    for (std::string const& text : {std::string("a) exec ("), std::string("a\nb"),
                                    std::string("a\\"), std::string(700, 'x')}) {
        NoteOf("*ZUOutProfile").SetNotes(text.c_str());
        EXPECT_EQ(Pairs{first}, Notes()) << text;
    }
    SetTwoWay(false);
    EXPECT_EQ((Pairs{first, {kFeature, OptionA("ZUOutProfile")}}), Notes());
    EXPECT_EQ("", TextOf("*ZUOutProfile"));
}

TEST_F(JobNotesTest, AListTellsOfItsNotes) {
    OpenNotes(Note("Notes1", "Password|TwoCharField") + Note("Other", "Password") +
              Note("Third", ""));
    NoteOf("*Other").SetNotes("text");
    ZUBJobNoteList notes(mPPD.get(), true);
    EXPECT_TRUE(notes.IsListValid());
    EXPECT_EQ(3U, notes.Count());
    EXPECT_EQ(2U, notes.countProtectedFields());
    EXPECT_EQ(nullptr, notes.find("*Gone"));
    EXPECT_EQ(nullptr, notes.find(nullptr));
    ZUBJobNote* const other = notes.find("*Other");
    ASSERT_NE(nullptr, other);
    char text[64];
    EXPECT_EQ(5U, other->getUserData(text));
    EXPECT_STREQ("text", text);
    EXPECT_EQ(11U, other->getTitle(text));
    EXPECT_STREQ("Name of it", text);
    EXPECT_EQ(0U, notes.find("*Third")->getUserData(text));
    EXPECT_STREQ("", text);
    EXPECT_TRUE(other->checkRangeValues("1-999"));
    EXPECT_FALSE(notes.find("*Notes1")->checkRangeValues("1-999"));
    EXPECT_TRUE(notes.find("*Notes1")->checkRangeValues("1-99"));
    EXPECT_TRUE(other->IsOn());
    EXPECT_TRUE(NoteOf("*Other").GetNotesOnValue());
    EXPECT_EQ(paramErr, notes.outInjectionData(nullptr, mSession.Get()));
}

TEST_F(JobNotesTest, WithoutAPageFormatNotesEndAtTheFirstFeature) {
    OpenNotes(Note("Notes1", "") + Note("Notes2", "", "<*Notes2> note") + Note("Notes3", ""));
    for (char const* keyword : {"*Notes1", "*Notes2", "*Notes3"}) {
        NoteOf(keyword).SetNotes("x");
    }
    PMSessionSetDataInSession(mSession.Get(), Str("PMPageFormatTicket"), Str("no ticket"));
    EXPECT_EQ((Texts{"%%ZUBCustom1: x\n"}), At(Job(), kComment));
    EXPECT_EQ(Texts(), At(Job(), kLayout));
}

}  // namespace
