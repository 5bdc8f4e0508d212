// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "PPDX/PPDObjects/Controls/Numbers.h"
#include "ZUBUtils/PPDUtils/ClampTo32Bits.h"
#include "ZUBUtils/PPDUtils/StringUtils.h"

namespace {

constexpr ArchiveTags::Numeric kTags = ArchiveTags::kRange;

}  // namespace

PPDXRangeControl::PPDXRangeControl() : NumericControl(kRangeType, kTags) {}

PPDXRangeControl::PPDXRangeControl(char const* keyword, CFStringRef localName, PointerList& flags,
                                   unsigned char* code, long codeLength, long minimum, long maximum,
                                   long increment, long defaultValue, bool visible)
    : NumericControl(kRangeType, kTags, keyword, localName, flags, code, codeLength,
                     {ClampTo32Bits(minimum), ClampTo32Bits(maximum), ClampTo32Bits(increment)},
                     ClampTo32Bits(defaultValue), visible) {}

PPDXRangeControl::PPDXRangeControl(Settings& settings, long id)
    : NumericControl(kRangeType, kTags, settings, id) {}

void PPDXRangeControl::ResetToDefaultValue() {
    SetValue(DefaultValue());
}

void PPDXRangeControl::SetValue(long value) {
    // 64 bits: the least number divided by -1 has no place in 32.
    std::int64_t number = ClampTo32Bits(value);
    if (Increment() != 0) {
        number = Increment() * (number / Increment());
    }
    StoreClamped(ClampTo32Bits(number));
}

long PPDXRangeControl::PostScript(unsigned char* out) {
    char text[kNumberTextSize];
    return PostScriptWith(num2String(GetValue(), text), out);
}

CFStringRef PPDXRangeControl::CopyCurrentControlValueString() {
    char text[kNumberTextSize];
    return CFStringCreateWithCString(nullptr, num2String(GetValue(), text), kCFStringEncodingASCII);
}

void PPDXRangeControl::SetCurrentControlWithCFString(CFStringRef value) {
    SetValue(CFStringGetIntValue(value));
}

void SetRangeValue(PPDXRangeControl* range, long value) {
    if (range != nullptr) {
        range->SetValue(value);
    }
}

long GetRangeValue(PPDXRangeControl* range) {
    return range != nullptr ? range->GetValue() : 0;
}

long GetRangeDefaultVal(PPDXRangeControl* range) {
    return range != nullptr ? range->DefaultValue() : 0;
}

long GetRangeIncrement(PPDXRangeControl* range) {
    return range != nullptr ? range->Increment() : 0;
}

long GetRangeMinimum(PPDXRangeControl* range) {
    return range != nullptr ? range->MinVal() : 0;
}

long GetRangeMaximum(PPDXRangeControl* range) {
    return range != nullptr ? range->MaxVal() : 0;
}

long RangePostScript(PPDXRangeControl* range, unsigned char* out) {
    return range != nullptr ? range->PostScript(out) : 0;
}
