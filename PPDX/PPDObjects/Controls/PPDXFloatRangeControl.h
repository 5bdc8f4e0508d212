// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/Controls/NumericControl.h"

// An option whose value is a number with decimals, kept in single precision. Its increment is a
// hint for the panel.
class PPDXFloatRangeControl : public NumericControl<float> {
  public:
    PPDXFloatRangeControl();
    // As for PPDXRangeControl. Numbers that a float can't hold become the nearest one that it can;
    // one that is no number becomes 0.
    PPDXFloatRangeControl(char const* keyword, CFStringRef localName, PointerList& flags,
                          unsigned char* code, long codeLength, double minimum, double maximum,
                          double increment, double defaultValue, bool visible);
    PPDXFloatRangeControl(Settings& settings, long id);

    void ResetToDefaultValue() override;
    long PostScript(unsigned char* out) override;          // the value with four decimals, 9 wide
    CFStringRef CopyCurrentControlValueString() override;  // three decimals
    void SetCurrentControlWithCFString(CFStringRef value) override;  // no number counts as 0

    void SetValue(float value);  // clamps to the limits
};
