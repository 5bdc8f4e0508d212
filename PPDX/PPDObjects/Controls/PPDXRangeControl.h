// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/Controls/NumericControl.h"

// An option whose value is a whole number of 32 bits.
class PPDXRangeControl : public NumericControl<std::int32_t> {
  public:
    PPDXRangeControl();
    // `code` holds the marker "<keyword>" where the value goes. Numbers beyond 32 bits are
    // clamped to that range. The value starts at the default as it stands, even out of the
    // limits. See PPDXControl for the rest.
    PPDXRangeControl(char const* keyword, CFStringRef localName, PointerList& flags,
                     unsigned char* code, long codeLength, long minimum, long maximum,
                     long increment, long defaultValue, bool visible);
    PPDXRangeControl(Settings& settings, long id);

    void ResetToDefaultValue() override;
    long PostScript(unsigned char* out) override;
    CFStringRef CopyCurrentControlValueString() override;
    void SetCurrentControlWithCFString(CFStringRef value) override;  // no number counts as 0

    // Takes the next multiple of the increment toward 0, then clamps to the limits. With the
    // increment 0 every number is a multiple.
    void SetValue(long value);
};

// The same for callers that hold an opaque handle; a null handle gives 0.
extern "C" {
void SetRangeValue(PPDXRangeControl* range, long value);
long GetRangeValue(PPDXRangeControl* range);
long GetRangeDefaultVal(PPDXRangeControl* range);
long GetRangeIncrement(PPDXRangeControl* range);
long GetRangeMinimum(PPDXRangeControl* range);
long GetRangeMaximum(PPDXRangeControl* range);
long RangePostScript(PPDXRangeControl* range, unsigned char* out);
}
