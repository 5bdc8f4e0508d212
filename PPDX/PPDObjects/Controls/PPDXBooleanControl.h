// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"

class CString;

// An option with the two choices "True" and "False", each with a text and PostScript of its own.
class PPDXBooleanControl : public PPDXControl {
  public:
    PPDXBooleanControl();
    // The texts and the malloc blocks pass to the control; each may be null. The texts are bytes
    // as they stand in the PPD. The value starts at the default. See PPDXControl for the rest.
    PPDXBooleanControl(char const* keyword, CFStringRef localName, PointerList& flags, bool visible,
                       CString* trueText, unsigned char* trueCode, long trueLength,
                       CString* falseText, unsigned char* falseCode, long falseLength,
                       bool defaultValue, UIConstraints* constraints);
    // From the record `id`. The constraint store hears of "False" whatever the value.
    PPDXBooleanControl(Settings& settings, long id, UIConstraints* constraints);
    ~PPDXBooleanControl() override;

    short Save(Settings& settings, long const& id) override;
    void ResetToDefaultValue() override;
    long PostScript(unsigned char* out) override;
    short Restore(Settings& settings, long id) override;   // reports the value to nobody
    CFStringRef CopyCurrentControlValueString() override;  // "True" or "False"
    // A text that begins with "True", in any case, means true, anything else false.
    void SetCurrentControlWithCFString(CFStringRef value) override;

    bool IsTrue() const { return mValue != 0; }
    bool DefaultState() const { return mDefault != 0; }
    void SetValue(bool value);
    char const* TrueDisplayText() const;  // null when there is none
    char const* FalseDisplayText() const;

  private:
    char const* ValueText() const;

    std::int32_t mValue = 0;
    std::int32_t mDefault = 0;
    CString* mTrueText = nullptr;  // owned, as are the three below; each may be null
    CString* mFalseText = nullptr;
    unsigned char* mTrueCode = nullptr;
    std::int32_t mTrueLength = 0;
    unsigned char* mFalseCode = nullptr;
    std::int32_t mFalseLength = 0;
};

// The same for callers that hold an opaque handle; a null handle gives null, 0 or false.
extern "C" {
bool IsTrue(PPDXBooleanControl* boolean);
bool DefaultState(PPDXBooleanControl* boolean);
char const* TrueDisplayText(PPDXBooleanControl* boolean);
char const* FalseDisplayText(PPDXBooleanControl* boolean);
void SetValue(PPDXBooleanControl* boolean, bool value);
long BooleanPostScript(PPDXBooleanControl* boolean, unsigned char* out);
}
