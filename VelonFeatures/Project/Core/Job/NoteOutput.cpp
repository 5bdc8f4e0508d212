// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/NoteOutput.h"

#include <algorithm>
#include <memory>
#include <new>
#include <optional>
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
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/PlainText.h"

namespace {

constexpr std::size_t kNoteTextSize = 256;  // with the terminator
constexpr char kDirectoryOption[] = "*ZUBAuthenticateWithLDAP";

using WipedBytes = std::vector<unsigned char, WipingAllocator<unsigned char>>;

std::string_view TextOf(PPDXJobNote const& control) {
    char const* const text = control.GetNotes();
    return text == nullptr ? std::string_view() : std::string_view(text);
}

std::string NameOf(PPDXJobNote& control) {
    char const* const keyword = control.Keyword();
    return keyword == nullptr ? "A note" : keyword;
}

// The text in UTF-8; as it is where it has no such form.
WipedText InUTF8(WipedText const& text) {
    WipedText converted;
    bool const isConverted = ConvertTextFromApplicationToUTF8(text.View(), converted) == noErr;
    return isConverted ? converted : text;
}

// What the note emits with the text that it has now.
WipedBytes PostScriptOf(PPDXJobNote& control) {
    WipedBytes code(static_cast<std::size_t>(std::max(control.PostScript(nullptr), 0L)));
    if (!code.empty()) {
        control.PostScript(code.data());
    }
    return code;
}

// The cipher of a text that the note has; empty, and a warning, where it has no room in a job.
WipedText Enciphered(ZUBJobNote const& note, WipedText const& text, char const* consequence) {
    WipedText cipher;
    if (!note.encryptNote(text.CStr(), cipher)) {
        Warn(NameOf(*note.Control()) + consequence + ": it is too long to be enciphered");
    }
    return cipher;
}

// Gives the note another text for as long as this object lives.
class OtherNotes {
  public:
    OtherNotes(PPDXJobNote& control, char const* text)
        : mControl(control), mNotes(control.ExchangeNotes(std::make_unique<CString>(text))) {}
    OtherNotes(OtherNotes const&) = delete;
    OtherNotes& operator=(OtherNotes const&) = delete;
    ~OtherNotes() { static_cast<void>(mControl.ExchangeNotes(std::move(mNotes))); }

  private:
    PPDXJobNote& mControl;
    std::unique_ptr<CString> mNotes;
};

}  // namespace

NoteOutput::NoteOutput(ZUBJobTicket& ticket, ZUBPPD* ppd, OSStatus status)
    : mTicket(ticket), mPPD(ppd), mStatus(status) {}

bool NoteOutput::Out(ZUBJobNote& note) {
    try {
        return OutNote(note);
    } catch (std::bad_alloc const&) {
        mStatus = memFullErr;
        return false;
    }
}

bool NoteOutput::OutNote(ZUBJobNote& note) {
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
        text = control.HasUTF8Keyword() ? text : InUTF8(text);
        control.SetNotes(text.CStr());
    }
    Comment comment;
    comment.line = WipedText(gKeywordMap[static_cast<std::size_t>(row)].commentPrefix);
    if (isEnciphered) {
        WipedText const cipher = Enciphered(note, text, " is left out");
        if (cipher.Empty()) {
            return {{}, true};
        }
        comment.line.Append(cipher.View());
    } else if (row == kUserNameRow) {
        return UserName(note, text);
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

NoteOutput::Comment NoteOutput::UserName(ZUBJobNote& note, WipedText const& text) {
    if (!IsSent(kUserNameRow)) {
        return {};
    }
    mUserKnown = true;
    mUserName.Clear();
    if (!text.View().empty()) {
        WipedText const name = WithSlashDoubled(text.View());
        note.Control()->SetNotes(name.CStr());
        mUserName = InUTF8(name);
    }
    return {{}, !CopiesFeature()};
}

NoteOutput::Comment NoteOutput::Password(WipedText const& text, WipedText line) {
    if (!IsSent(kPasswordRow)) {
        return {{}, true};
    }
    if (mUserName.Empty() && !text.Empty()) {
        Warn("the user's password is left out: there is no user name");
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
    std::optional<OtherNotes> other;
    if (IsEnciphered(note)) {
        WipedText const cipher =
            Enciphered(note, WipedText(TextOf(control)), ": its code is left out");
        if (cipher.Empty()) {
            return true;
        }
        other.emplace(control, cipher.CStr());
    }
    if (control.IsCutInCode()) {
        Warn(NameOf(control) + " is cut in its code, which takes 511 bytes of a longer text");
    }
    WipedBytes const code = PostScriptOf(control);
    return mTicket.Add(kFeatureSite, code.data(), code.size()) && mStatus == noErr;
}

bool NoteOutput::IsEnciphered(ZUBJobNote const& note) {
    return note.Control()->IsEncrypt() != 0 || note.Control()->IsAESEncrypt() != 0;
}

bool NoteOutput::CopiesFeature() const {
    return IsSpecialOptionTrue(mPPD, "*CopierUserAuth");
}
