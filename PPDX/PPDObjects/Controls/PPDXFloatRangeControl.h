// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/Controls/SubstitutedCode.h"

// An option whose value is a number with decimals, kept in single precision. Takes no part in
// constraints.
class PPDXFloatRangeControl : public PPDXControl {
  public:
    PPDXFloatRangeControl();
    // As for PPDXRangeControl. Numbers that a float can't hold become the nearest one that it can;
    // one that is no number becomes 0.
    PPDXFloatRangeControl(char const* keyword, CFStringRef localName, PointerList& flags,
                          unsigned char* code, long codeLength, double minimum, double maximum,
                          double increment, double defaultValue, bool visible);
    PPDXFloatRangeControl(Settings& settings, long id);

    short Save(Settings& settings, long const& id) override;
    void ResetToDefaultValue() override;
    long PostScript(unsigned char* out) override;  // the value with four decimals, 9 wide
    // Takes the value as it is stored. Code that was already made for the former value stays.
    short Restore(Settings& settings, long id) override;
    CFStringRef CopyCurrentControlValueString() override;            // three decimals
    void SetCurrentControlWithCFString(CFStringRef value) override;  // no number counts as 0

    float MinVal() const { return mMinimum; }
    float MaxVal() const { return mMaximum; }
    float Increment() const { return mIncrement; }  // a hint for the panel
    float DefaultValue() const { return mDefault; }
    float GetValue() const { return mValue; }
    void SetValue(float value);  // clamps to the limits

  private:
    float mValue = 0;
    float mMinimum = 0;
    float mMaximum = 0;
    float mIncrement = 0;
    float mDefault = 0;
    SubstitutedCode mSubstituted;
};
