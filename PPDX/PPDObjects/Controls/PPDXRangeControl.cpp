// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"

#include <algorithm>

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "PPDX/PPDObjects/Controls/Numbers.h"
#include "ZUBUtils/PPDUtils/StringUtils.h"

namespace {

constexpr unsigned long kClassTag = RecordTag("RngC");
constexpr unsigned long kValueTag = RecordTag("RCVl");
constexpr unsigned long kMinimumTag = RecordTag("RCMn");
constexpr unsigned long kMaximumTag = RecordTag("RCMx");
constexpr unsigned long kIncrementTag = RecordTag("RCIn");
constexpr unsigned long kDefaultTag = RecordTag("RCDf");

}  // namespace

PPDXRangeControl::PPDXRangeControl() {
    SetType(kRangeType);
}

PPDXRangeControl::PPDXRangeControl(char const* keyword, CFStringRef localName, PointerList& flags,
                                   unsigned char* code, long codeLength, long minimum, long maximum,
                                   long increment, long defaultValue, bool visible)
    : PPDXControl(keyword, localName, flags, code, codeLength, visible, nullptr),
      mValue(ClampTo32Bits(defaultValue)),
      mMinimum(ClampTo32Bits(minimum)),
      mMaximum(ClampTo32Bits(maximum)),
      mIncrement(ClampTo32Bits(increment)),
      mDefault(mValue) {
    SetType(kRangeType);
}

PPDXRangeControl::PPDXRangeControl(Settings& settings, long id)
    : PPDXControl(settings, id, nullptr) {
    SetType(kRangeType);
    ControlRecord const record(settings, id);
    record.Read(kValueTag, mValue);
    record.Read(kMinimumTag, mMinimum);
    record.Read(kMaximumTag, mMaximum);
    record.Read(kIncrementTag, mIncrement);
    record.Read(kDefaultTag, mDefault);
}

short PPDXRangeControl::Save(Settings& settings, long const& id) {
    ControlRecord record(settings, id, PPDXControl::Save(settings, id));
    record.AddMark(kClassTag);
    record.AddNumber(kValueTag, mValue);
    record.AddNumber(kMinimumTag, mMinimum);
    record.AddNumber(kMaximumTag, mMaximum);
    record.AddNumber(kIncrementTag, mIncrement);
    record.AddNumber(kDefaultTag, mDefault);
    return record.Status();
}

short PPDXRangeControl::Restore(Settings& settings, long id) {
    return ControlRecord(settings, id).Restore(kValueTag, mValue);
}

void PPDXRangeControl::ResetToDefaultValue() {
    SetValue(mDefault);
}

void PPDXRangeControl::SetValue(long value) {
    // 64 bits: the least number divided by -1 has no place in 32.
    std::int64_t number = ClampTo32Bits(value);
    if (mIncrement != 0) {
        number = mIncrement * (number / mIncrement);
    }
    number = std::max<std::int64_t>(number, mMinimum);
    number = std::min<std::int64_t>(number, mMaximum);
    mValue = static_cast<std::int32_t>(number);
    mSubstituted.Discard();
}

long PPDXRangeControl::PostScript(unsigned char* out) {
    char text[kNumberTextSize];
    return mSubstituted.PostScript(*this, num2String(mValue, text), out);
}

CFStringRef PPDXRangeControl::CopyCurrentControlValueString() {
    char text[kNumberTextSize];
    return CFStringCreateWithCString(nullptr, num2String(mValue, text), kCFStringEncodingASCII);
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
