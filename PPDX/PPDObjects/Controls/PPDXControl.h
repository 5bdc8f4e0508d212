// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "PPDX/PPDObjects/Controls/PPDXElement.h"
#include "ZUBUtils/PPDUtils/PointerList.h"
#include "platform/CoreFoundation.h"

class UIConstraints;

// What kind of option a control is; each class's constructors set it.
enum CNTL_TYPE : std::int32_t {
    kControlType = 0,
    kJobNoteType = 1,
    kRangeType = 2,
    kFloatRangeType = 3,
    kBooleanType = 4,
    kPopupType = 5,
    kSpecialOptionType = 6,
    kCustomPageSizeType = 7
};

// An option of the PPD: its control flags, its PostScript, and what all kinds do with a value.
// Value, default and the choice of PostScript belong to the derived classes.
//
// PostScript in memory is a malloc block with a length and no terminator.
class PPDXControl : public PPDXElement {
  public:
    PPDXControl(PPDXControl const&) = delete;
    PPDXControl& operator=(PPDXControl const&) = delete;
    ~PPDXControl() override;

    // Adds the element's entries, order, PostScript and flags to the record `id`. Stops at the
    // first entry that the archive refuses and returns that error, 0 for none.
    short Save(Settings& settings, long const& id) override;
    virtual void ResetToDefaultValue() = 0;
    // The code that the job gets for the current value. Returns its length in bytes; writes it
    // when `out` isn't null, which must have that much room. Here: the PPD's code as it stands.
    virtual long PostScript(unsigned char* out);
    // Takes the value from the record `id`. The archive's error, 0 for none.
    virtual short Restore(Settings& settings, long id) = 0;
    // The value as text, as stored in a ticket; the caller releases it.
    virtual CFStringRef CopyCurrentControlValueString() = 0;
    virtual void SetCurrentControlWithCFString(CFStringRef value) = 0;
    // The value as text, as stored in a preset; the same form unless a kind says otherwise.
    virtual CFStringRef CopyPresetValueString();
    virtual void SetPresetValueString(CFStringRef value);
    // Whether this tells what is built into the printer; presets leave such options alone.
    virtual bool IsInstallableOption() { return false; }

    CNTL_TYPE Type() const { return mType; }

    // Words that the PPD attached. The walk and FindControlFlag share one position.
    long ControlFlagCount() const { return static_cast<long>(mFlags.Size()); }
    char const* FirstControlFlag();  // null at the end
    char const* NextControlFlag();
    bool FindControlFlag(char const* flag);  // exact

    bool IsDynamic() { return FindControlFlag("Dynamic"); }
    bool IsCommand() { return FindControlFlag("Command"); }
    bool IsSpooler() { return FindControlFlag("Spooler"); }
    bool IsSetup() { return FindControlFlag("Setup"); }
    bool IsMacVJN() { return FindControlFlag("MacVJN"); }
    bool IsMacImgShift() { return FindControlFlag("MacIS"); }
    bool IsNoVelonDriverUI();

    // Whether a shortcut may name this keyword; false for null.
    static bool ValidKeyword(char const* keyword);

    // Code between "%%BeginFeature: keyword option" and "%%EndFeature"; a single line feed stands
    // in for missing code, which is null `ps` or a length below 1. Without `framed` only what
    // stands between. Returns the length, the same with a null and with a real `out`.
    long GeneratePSOutputData(unsigned char* out, unsigned char const* ps, long psLength,
                              char const* option, bool framed) const;

    // Puts `value` in place of every "<name>" in the code, upper and lower case taken as the same.
    // Unless the code begins with "%%", backslashes of the value are doubled. A job note's value
    // goes in as a hexadecimal string that also takes the place of parentheses around it, but as it
    // is into the comments at the beginning of code that begins with "%%". A value that isn't
    // ASCII, where it isn't made hexadecimal, counts as empty. All other bytes of the code stay as
    // they are.
    //
    // Returns the length. `result` is a new malloc block, which the caller frees, with a
    // terminator behind that length; null with the length 0 without memory.
    long Inject(char const* name, unsigned char const* ps, long psLength, char const* value,
                unsigned char*& result) const;

    // Tells the constraint store the current choice. Nothing happens for a control without a store
    // or a null text.
    void UpdateKVCache(char const* keyword, char const* option);
    void UpdateKVCache(long key, long option);

    // A number of the panel's, kept for it.
    std::uint32_t GetItemID() const { return mItemID; }
    void SetItemID(unsigned long itemID) { mItemID = static_cast<std::uint32_t>(itemID); }

  protected:
    PPDXControl() = default;
    // `localName` must not be null. The strings in `flags` and the malloc block `psData` pass to
    // the control; the list is empty then, also when a derived class's constructor throws. Where
    // the list's nodes lie in an arena, so do its strings, which then stay there.
    // `constraints` is borrowed, may be null, and must outlive the control.
    PPDXControl(char const* keyword, CFStringRef localName, PointerList& flags,
                unsigned char* psData, long psLength, bool visible, UIConstraints* constraints);
    // From the record `id`; what it lacks stays empty.
    PPDXControl(Settings& settings, long id, UIConstraints* constraints);

    void SetType(CNTL_TYPE type) { mType = type; }
    // What GeneratePSOutputData gives for framed code.
    long Frame(unsigned char* out, std::string_view code, std::string_view option) const;
    // Tells the Job Properties exchange the current value; nothing for a control without keyword.
    void ReportChange(char const* value) const;

  private:
    void ReadFlags(Settings& settings, long id);

    CNTL_TYPE mType = kControlType;
    std::int16_t mOrder = 0;  // kept for the archive; nothing sorts by it
    PointerList mFlags;       // CString*, owned but where they lie in an arena
    PointerListItr mFlagCursor;
    unsigned char* mPSCode = nullptr;  // owned
    std::int32_t mPSLength = 0;
    std::uint32_t mItemID = 0;
    UIConstraints* mConstraints = nullptr;  // not owned
};

// The same for callers that hold an opaque handle; a null handle gives null, 0 or false.
extern "C" {
char const* GetFirstControlFlag(PPDXControl* control);
char const* GetNextControlFlag(PPDXControl* control);
long GetControlFlagCount(PPDXControl* control);
bool IsCommandControl(PPDXControl* control);
bool IsSpoolerControl(PPDXControl* control);
bool IsSetupControl(PPDXControl* control);
bool IsMacVJNControl(PPDXControl* control);
bool IsMacImgShiftControl(PPDXControl* control);
bool IsNoVelonDriverUIControl(PPDXControl* control);
bool IsValidControlKeyword(PPDXControl* control, char const* keyword);
long GetPostScript(PPDXControl* control, unsigned char* out);
void ResetControlToDefault(PPDXControl* control);
}
