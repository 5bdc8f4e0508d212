// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>

#include "PPDX/PPDObjects/Controls/JobNoteFlag.h"
#include "PPDX/PPDObjects/Controls/PPDXControl.h"

class CString;

// The group of the notes that the PPD puts nowhere else.
constexpr char kJobNoteGroup[] = "FPZUNotes";

// A text that the user fills in and that travels with the job: a note, a user name, a password, the
// code of a secure print. Its flags tell which characters the panel takes and how the job carries
// it; no length is enforced here.
//
// The text is bytes: for *Notes1, *Instruct and *Resume UTF-8, for any other keyword in the system
// encoding, or UTF-8 where that has no form for a character. It may be a secret, so what held one
// is overwritten before it is given back.
class PPDXJobNote : public PPDXControl {
  public:
    // `code`, a malloc block, is a template that holds "<keyword>" where the text goes, or null;
    // it and `defaultText`, which may be null, pass to the control. The text starts at the default;
    // that of *ZUUserAuthName without one at the name of the logged-in user. `languageEncoding` is
    // that of the PPD; it is borrowed, and no text depends on it. Lengths beyond 32 bits are
    // clamped. See PPDXControl for the rest.
    PPDXJobNote(char const* keyword, CFStringRef translation, PointerList& flags,
                unsigned char* code, long codeSize, CString* defaultText, CString* languageEncoding,
                bool visible, long maximum, JobNoteFlag const& noteFlags, long minimum);
    PPDXJobNote(Settings& settings, long id, CString* languageEncoding);
    ~PPDXJobNote() override;

    // Whether it has a parent doesn't matter.
    bool OkayToDisplay(_DISPLAY_OPTIONS_ const& options) override;
    short Save(Settings& settings, long const& id) override;
    void ResetToDefaultValue() override;
    // With the text in the template, of which it gets 512 bytes, or 511 of a longer one; the frame
    // line has the whole text. In a comment a blank stands for each control character, lest the
    // text end the comment. Without a template comes a comment by flags and keyword. 0 without a
    // text. The three keywords that share a list's (*ZURGBOverride, *ZUOutProfile, *ZUSimulation)
    // give 0 to who asks for the length, and a feature to who gives room for one.
    long PostScript(unsigned char* out) override;
    // Leaves made PostScript as it is; so does SetUTF8Notes.
    short Restore(Settings& settings, long id) override;
    CFStringRef CopyCurrentControlValueString() override;  // CopyNotes()
    // Null leaves no text. Tells the Job Properties exchange nothing.
    void SetCurrentControlWithCFString(CFStringRef value) override;
    // Enciphered; null where that fails.
    CFStringRef CopyPresetValueString() override;
    // What doesn't decipher leaves the text as it is. The three keywords take their value plain.
    void SetPresetValueString(CFStringRef value) override;

    char const* GetNotes() const;     // null for none; good until the next change
    void SetNotes(char const* text);  // copied, of any length; null leaves no text
    void SetUTF8Notes(CFStringRef text);
    // Puts another text in place of the present one, which it returns; either may be null. Tells
    // nobody of the change, and allocates nothing.
    [[nodiscard]] std::unique_ptr<CString> ExchangeNotes(std::unique_ptr<CString> notes) noexcept;
    // The caller releases it. The empty string without a text; null for one that is in no encoding.
    CFStringRef CopyNotes() const;
    char const* GetDefaultNotes() const;  // null for none

    std::int32_t MaxLength() const { return mMaximum; }
    // As it stands in the PPD, 0 for none; negative for one that was malformed: -1 without a digit,
    // -2 for more than two characters, -3 for a digit and something else.
    std::int32_t MinLength() const { return mMinimum; }
    std::uint32_t NoteFlags() const { return mNoteFlags; }
    // Whether the note is switched on, for who writes the notes into the job.
    bool GetNotesOnValue() const { return mNotesOn != 0; }
    void SetNotesOnValue(bool on) { mNotesOn = on; }

    // The bit, 0 when it isn't set.
    std::uint32_t IsAlpha() const { return mNoteFlags & kNoteAlpha; }
    std::uint32_t IsNumeric() const { return mNoteFlags & kNoteNumeric; }
    std::uint32_t IsDecimal() const { return mNoteFlags & kNoteDecimal; }
    std::uint32_t IsRequired() const { return mNoteFlags & kNoteRequired; }
    std::uint32_t Remember() const { return mNoteFlags & kNoteRemembered; }
    std::uint32_t IsPassword() const { return mNoteFlags & kNotePassword; }
    std::uint32_t AlwaysDisplay() const { return mNoteFlags & kNoteAlwaysDisplay; }
    std::uint32_t Resume() const { return mNoteFlags & kNoteResume; }
    std::uint32_t IsMember() const { return mNoteFlags & kNoteMember; }
    std::uint32_t IsOnOffSwitch() const { return mNoteFlags & kNoteOnOffSwitch; }
    std::uint32_t IsLengthReq() const { return mNoteFlags & kNoteLengthReq; }
    std::uint32_t IsSecPrint() const { return mNoteFlags & kNoteSecPrint; }
    std::uint32_t IsSpace() const { return mNoteFlags & kNoteSpace; }
    std::uint32_t IsNegative() const { return mNoteFlags & kNoteNegative; }
    std::uint32_t IsEncrypt() const { return mNoteFlags & kNoteEncrypt; }
    std::uint32_t IsMultiSpace() const { return mNoteFlags & kNoteMultiSpace; }
    std::uint32_t IsMultiComma() const { return mNoteFlags & kNoteMultiComma; }
    std::uint32_t IsLCD() const { return mNoteFlags & kNoteLCD; }
    std::uint32_t IsHyphen() const { return mNoteFlags & kNoteHyphen; }
    std::uint32_t IsTwoCharFields() const { return mNoteFlags & kNoteTwoCharField; }
    std::uint32_t IsNoComma() const { return mNoteFlags & kNoteNoComma; }
    std::uint32_t IsUTF8() const { return mNoteFlags & kNoteUTF8; }
    std::uint32_t IsAESEncrypt() const { return mNoteFlags & kNoteAESEncrypt; }
    // Whether its PostScript holds the text cut.
    bool IsCutInCode();
    // Whether the text is UTF-8 for its keyword's sake, whatever the flags say.
    bool HasUTF8Keyword() const;
    // No flag limits the characters.
    bool IsAnyText() const;

    // Makes the PostScript of a note without a template.
    void BuildPDLString(char const* value);

  private:
    void DiscardCode();
    void Substitute();

    std::unique_ptr<CString> mNotes;  // null, or without a text, when there is none
    std::int32_t mMaximum = 0;
    std::int32_t mMinimum = 0;
    std::uint32_t mNoteFlags = kNoteNoFlags;
    std::unique_ptr<CString> mDefaultNotes;  // may be null
    std::int32_t mNotesOn = 0;
    unsigned char* mSubstituted = nullptr;  // owned, from malloc; null when stale
    std::int32_t mSubstitutedLength = 0;
};
