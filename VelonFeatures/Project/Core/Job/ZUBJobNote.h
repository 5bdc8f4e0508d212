// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

#include "ZUBUtils/PPDUtils/LinkElement_Dual.h"
#include "ZUBUtils/PPDUtils/WipedText.h"
#include "ciphers/NoteCipher.h"

class PPDXJobNote;
class ZUBPPD;

// A row of the special keywords: notes that have a comment of their own in the job.
struct NoteKeyword {
    char const* keyword;
    char const* commentPrefix;
};

// Rows of gKeywordMap that the job treats in a way of their own.
constexpr short kNoKeywordRow = -1;
constexpr short kUserNameRow = 6;
constexpr short kPasswordRow = 7;

constexpr std::array<NoteKeyword, 9> gKeywordMap = {{
    {"*Notes1", "%%ZUBCustom1: "},
    {"*Notes2", "%%ZUBCustom2: "},
    {"*Instruct", "%%ZUBCustom3: "},
    {"*Notes3", "%%ZUBCustom4: "},
    {"*Resume", "%%PersPassword: "},
    {"*DeptPassword", "%%DeptPassword: "},
    {"*ZUUserAuthName", ""},
    {"*ZUUserAuthPwd", "%%ZUBUATag: "},
    {"*ZUBPrintTime", "%%ZUBPrintTime: "},
}};
static_assert(std::string_view(gKeywordMap[kUserNameRow].keyword) == "*ZUUserAuthName");
static_assert(std::string_view(gKeywordMap[kPasswordRow].keyword) == "*ZUUserAuthPwd");

// How a note is enciphered, by the PPD's special options and the note's own flag. The texts belong
// to the PPD, which may be null.
NoteCipherChoice CipherChoiceOf(ZUBPPD* ppd, bool hasAESFlag);

// A note of the PPD on its way into one job.
class ZUBJobNote : public LinkElement_Dual {
  public:
    // Both borrowed, they must outlive this object; `ppd` may be null. With `flag` the note counts
    // as switched on, and the session data as not writing notes; otherwise as the control says, and
    // as writing.
    ZUBJobNote(PPDXJobNote* control, bool flag, ZUBPPD* ppd);

    PPDXJobNote* Control() const { return mControl; }
    bool IsOn() const { return mNotesOn; }

    // Whether the keyword stands in gKeywordMap; `row` is kNoKeywordRow if it doesn't.
    bool specialKeyword(short* row) const;
    // The length of the note's text with its terminator, 0 for an empty or absent one. `out`, which
    // may be null, has room for all of it and takes the text, or the empty text.
    std::size_t getUserData(char* out) const;
    std::size_t getTitle(char* out) const;  // the same for the name that people see, in UTF-8
    // Whether the control takes the text, by the length of the numbers in it.
    bool checkRangeValues(char const* text) const;
    // The text enciphered as the PPD and the control's flags say, in hexadecimal digits. False, and
    // `out` empty, without a PPD and for a text whose cipher has no room in a job.
    bool encryptNote(char const* in, WipedText& out) const;

  private:
    PPDXJobNote* mControl;
    bool mNotesOn;
    ZUBPPD* mPPD;
};
