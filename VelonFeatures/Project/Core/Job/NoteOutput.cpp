// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/NoteOutput.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/Controls/PPDXUserAuthLib/PPDXUserAuthLib.h"
#include "VelonFeatures/Project/Core/ControlLookup.h"
#include "VelonFeatures/Project/Core/Job/NoteText.h"
#include "VelonFeatures/Project/Core/Job/ZUBJobNote.h"
#include "VelonFeatures/Project/Core/Warning.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "ZUBUtils/PPDUtils/PlainText.h"

namespace {

constexpr std::size_t kNoteTextSize = 256;  // with the terminator
constexpr char kDirectoryOption[] = "*ZUBAuthenticateWithLDAP";

// Their text is UTF-8 as it stands.
constexpr std::array<std::string_view, 3> kUTF8Keywords = {"*Notes1", "*Instruct", "*Resume"};

using WipedBytes = std::vector<unsigned char, WipingAllocator<unsigned char>>;

std::string_view TextOf(PPDXJobNote const& control) {
    char const* const text = control.GetNotes();
    return text == nullptr ? std::string_view() : std::string_view(text);
}

std::string NameOf(PPDXJobNote& control) {
    char const* const keyword = control.Keyword();
    return keyword == nullptr ? "A note" : keyword;
}

// The text in UTF-8, where the note is to be that; the note takes it over.
void MakeUTF8(PPDXJobNote& control, WipedText& text) {
    char const* const keyword = control.Keyword();
    WipedText converted;
    if (std::ranges::find(kUTF8Keywords, std::string_view(keyword)) == kUTF8Keywords.end() &&
        ConvertTextFromApplicationToUTF8(text.View(), converted) == noErr) {
        text = std::move(converted);
    }
    control.SetNotes(text.CStr());
}

// The name in UTF-8; as it is where it has no such form.
WipedText NameInUTF8(WipedText name) {
    WipedText converted;
    bool const isConverted = ConvertTextFromApplicationToUTF8(name.View(), converted) == noErr;
    return isConverted ? std::move(converted) : std::move(name);
}

// What the note emits with the text that it has now. False without memory.
bool TakePostScript(PPDXJobNote& control, WipedBytes& code) {
    long const size = control.PostScript(nullptr);
    if (size < 1) {
        code.clear();
        return true;
    }
    try {
        code.resize(static_cast<std::size_t>(size));
    } catch (std::bad_alloc const&) {
        return false;
    }
    control.PostScript(code.data());
    return true;
}

// Gives the note another text for as long as this object lives.
class OtherNotes {
  public:
    OtherNotes(PPDXJobNote& control, char const* text)
        : mControl(control), mHadText(control.GetNotes() != nullptr), mText(TextOf(control)) {
        mControl.SetNotes(text);
    }
    OtherNotes(OtherNotes const&) = delete;
    OtherNotes& operator=(OtherNotes const&) = delete;
    ~OtherNotes() { mControl.SetNotes(mHadText ? mText.CStr() : nullptr); }

  private:
    PPDXJobNote& mControl;
    bool mHadText;
    WipedText mText;
};

}  // namespace

NoteOutput::NoteOutput(ZUBJobTicket& ticket, ZUBPPD* ppd, OSStatus status)
    : mTicket(ticket), mPPD(ppd), mStatus(status) {}

bool NoteOutput::Out(ZUBJobNote& note) {
    short row = kNoKeywordRow;
    bool const isSpecial = note.specialKeyword(&row);
    if (note.getUserData(nullptr) == 0 && row != kUserNameRow && row != kPasswordRow) {
        return true;
    }
    if (!isSpecial) {
        return OutFeature(note, row);
    }
    Comment const comment = CommentOf(note, row);
    std::string_view const line = comment.line.View();
    if (!mTicket.Add(kNoteCommentSite, reinterpret_cast<unsigned char const*>(line.data()),
                     line.size())) {
        return false;
    }
    return comment.skipFeature || OutFeature(note, row);
}

NoteOutput::Comment NoteOutput::CommentOf(ZUBJobNote& note, short row) {
    PPDXJobNote& control = *note.Control();
    bool const isEmpty = note.getUserData(nullptr) == 0;
    bool const isEnciphered = !isEmpty && IsEnciphered(note) && row != kPasswordRow;
    WipedText text(CutText(TextOf(control), kNoteTextSize - 1));
    bool const isCut = text.View().size() < TextOf(control).size();
    if (isCut && (control.IsUTF8() != 0 || (!isEnciphered && IsSent(row)))) {
        Warn(NameOf(control) + " is cut: of it the job takes " +
             std::to_string(text.View().size()) + " bytes");
    }
    if (control.IsUTF8() != 0) {
        MakeUTF8(control, text);
    }
    Comment comment;
    comment.line = WipedText(gKeywordMap[static_cast<std::size_t>(row)].commentPrefix);
    if (isEnciphered) {
        WipedText cipher;
        if (!note.encryptNote(text.CStr(), cipher)) {
            Warn(NameOf(control) + " is left out: it is too long to be enciphered");
            return {{}, true};
        }
        comment.line.Append(cipher.View());
    } else if (row == kUserNameRow) {
        return UserName(note, std::move(text));
    } else if (row == kPasswordRow) {
        return Password(text, std::move(comment.line));
    } else {
        text.BlankControlCharacters();
        comment.line.Append(text.View());
    }
    comment.line.Append("\n");
    return comment;
}

// User name and password go out in the record alone.
bool NoteOutput::IsSent(short row) const {
    return row == kUserNameRow ? IsSpecialOptionTrue(mPPD, kDirectoryOption)
                               : row != kPasswordRow || mUserKnown;
}

NoteOutput::Comment NoteOutput::UserName(ZUBJobNote& note, WipedText text) {
    if (!IsSent(kUserNameRow)) {
        return {};
    }
    mUserKnown = true;
    mUserName.Clear();
    if (!text.View().empty()) {
        WipedText name = WithSlashDoubled(text.View());
        note.Control()->SetNotes(name.CStr());
        mUserName = NameInUTF8(std::move(name));
    }
    return {{}, !CopiesFeature()};
}

NoteOutput::Comment NoteOutput::Password(WipedText const& text, WipedText line) {
    if (!IsSent(kPasswordRow)) {
        return {{}, true};
    }
    char* record = nullptr;
    if (AUTH_packAndEncrypt(mUserName.CStr(), text.CStr(), "", kUALUserDomain, 0, &record) != 0) {
        Warn("the user's password is left out: it couldn't be packed");
        return {{}, !CopiesFeature()};
    }
    line.Append(record);
    AUTH_freeBuffer(&record);
    line.Append("\n");
    return {std::move(line), !CopiesFeature()};
}

bool NoteOutput::OutFeature(ZUBJobNote& note, short row) {
    PPDXJobNote& control = *note.Control();
    if (control.PostScript(nullptr) == 0 && row != kPasswordRow) {
        return true;
    }
    WipedBytes code;
    bool hasMemory = false;
    if (IsEnciphered(note)) {
        WipedText cipher;
        if (!note.encryptNote(WipedText(TextOf(control)).CStr(), cipher)) {
            Warn(NameOf(control) + ": its code is left out, it is too long to be enciphered");
            return true;
        }
        OtherNotes const enciphered(control, cipher.CStr());
        hasMemory = TakePostScript(control, code);
    } else {
        hasMemory = TakePostScript(control, code);
    }
    if (!hasMemory) {
        mStatus = memFullErr;
    }
    return mTicket.Add(kFeatureSite, code.data(), code.size()) && mStatus == noErr;
}

bool NoteOutput::IsEnciphered(ZUBJobNote const& note) {
    return note.Control()->IsEncrypt() != 0 || note.Control()->IsAESEncrypt() != 0;
}

bool NoteOutput::CopiesFeature() const {
    return IsSpecialOptionTrue(mPPD, "*CopierUserAuth");
}
