// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "PPDX/PPDObjects/Controls/Numbers.h"

namespace {

constexpr ArchiveTags::Numeric kTags = ArchiveTags::kFloatRange;

}  // namespace

PPDXFloatRangeControl::PPDXFloatRangeControl() : NumericControl(kFloatRangeType, kTags) {}

PPDXFloatRangeControl::PPDXFloatRangeControl(char const* keyword, CFStringRef localName,
                                             PointerList& flags, unsigned char* code,
                                             long codeLength, double minimum, double maximum,
                                             double increment, double defaultValue, bool visible)
    : NumericControl(kFloatRangeType, kTags, keyword, localName, flags, code, codeLength,
                     {NarrowToFloat(minimum), NarrowToFloat(maximum), NarrowToFloat(increment)},
                     NarrowToFloat(defaultValue), visible) {}

PPDXFloatRangeControl::PPDXFloatRangeControl(Settings& settings, long id)
    : NumericControl(kFloatRangeType, kTags, settings, id) {}

void PPDXFloatRangeControl::ResetToDefaultValue() {
    SetValue(DefaultValue());
}

void PPDXFloatRangeControl::SetValue(float value) {
    StoreClamped(NarrowToFloat(value));
}

long PPDXFloatRangeControl::PostScript(unsigned char* out) {
    return PostScriptWith(FixedText(GetValue(), 4, 9).c_str(), out);
}

CFStringRef PPDXFloatRangeControl::CopyCurrentControlValueString() {
    return CFStringCreateWithCString(nullptr, FixedText(GetValue(), 3).c_str(),
                                     kCFStringEncodingASCII);
}

void PPDXFloatRangeControl::SetCurrentControlWithCFString(CFStringRef value) {
    SetValue(NarrowToFloat(CFStringGetDoubleValue(value)));
}
