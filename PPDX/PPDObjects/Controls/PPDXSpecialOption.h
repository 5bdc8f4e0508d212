// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/Controls/PPDXControl.h"

class CString;

// A named text that tells what the print server can do. Nobody sees or changes it.
class PPDXSpecialOption : public PPDXControl {
  public:
    PPDXSpecialOption();  // the empty text
    // `value` is copied and may be null. See PPDXControl for the rest.
    PPDXSpecialOption(char const* keyword, CFStringRef localName, PointerList& flags, char* value,
                      unsigned char* code, long codeSize, bool visible);
    // From the record `id`; no value when the record has none.
    PPDXSpecialOption(Settings& settings, long id);
    ~PPDXSpecialOption() override;

    short Save(Settings& settings, long const& id) override;
    void ResetToDefaultValue() override;  // the empty text
    short Restore(Settings& settings, long id) override;
    CFStringRef CopyCurrentControlValueString() override;  // empty without a value
    void SetCurrentControlWithCFString(CFStringRef) override {}

    CString* GetValue() const { return mValue; }  // the control's; may be null

  private:
    void ReplaceValue(CString* value);

    CString* mValue = nullptr;  // owned, may be null
};
