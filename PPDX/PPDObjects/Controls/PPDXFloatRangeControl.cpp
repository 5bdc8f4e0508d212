// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"

#include <algorithm>

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "PPDX/PPDObjects/Controls/Numbers.h"

namespace {

constexpr unsigned long kClassTag = RecordTag("FrgC");
constexpr unsigned long kValueTag = RecordTag("FCVl");
constexpr unsigned long kMinimumTag = RecordTag("FCMn");
constexpr unsigned long kMaximumTag = RecordTag("FCMx");
constexpr unsigned long kIncrementTag = RecordTag("FCIn");
constexpr unsigned long kDefaultTag = RecordTag("FCDf");

}  // namespace

PPDXFloatRangeControl::PPDXFloatRangeControl() {
    SetType(kFloatRangeType);
}

PPDXFloatRangeControl::PPDXFloatRangeControl(char const* keyword, CFStringRef localName,
                                             PointerList& flags, unsigned char* code,
                                             long codeLength, double minimum, double maximum,
                                             double increment, double defaultValue, bool visible)
    : PPDXControl(keyword, localName, flags, code, codeLength, visible, nullptr),
      mValue(NarrowToFloat(defaultValue)),
      mMinimum(NarrowToFloat(minimum)),
      mMaximum(NarrowToFloat(maximum)),
      mIncrement(NarrowToFloat(increment)),
      mDefault(mValue) {
    SetType(kFloatRangeType);
}

PPDXFloatRangeControl::PPDXFloatRangeControl(Settings& settings, long id)
    : PPDXControl(settings, id, nullptr) {
    SetType(kFloatRangeType);
    ControlRecord const record(settings, id);
    record.Read(kValueTag, mValue);
    record.Read(kMinimumTag, mMinimum);
    record.Read(kMaximumTag, mMaximum);
    record.Read(kIncrementTag, mIncrement);
    record.Read(kDefaultTag, mDefault);
}

short PPDXFloatRangeControl::Save(Settings& settings, long const& id) {
    ControlRecord record(settings, id, PPDXControl::Save(settings, id));
    record.AddMark(kClassTag);
    record.AddNumber(kValueTag, mValue);
    record.AddNumber(kMinimumTag, mMinimum);
    record.AddNumber(kMaximumTag, mMaximum);
    record.AddNumber(kIncrementTag, mIncrement);
    record.AddNumber(kDefaultTag, mDefault);
    return record.Status();
}

short PPDXFloatRangeControl::Restore(Settings& settings, long id) {
    return ControlRecord(settings, id).Restore(kValueTag, mValue);
}

void PPDXFloatRangeControl::ResetToDefaultValue() {
    SetValue(mDefault);
}

void PPDXFloatRangeControl::SetValue(float value) {
    mValue = std::min(std::max(NarrowToFloat(value), mMinimum), mMaximum);
    mSubstituted.Discard();
}

long PPDXFloatRangeControl::PostScript(unsigned char* out) {
    return mSubstituted.PostScript(*this, FixedText(mValue, 4, 9).c_str(), out);
}

CFStringRef PPDXFloatRangeControl::CopyCurrentControlValueString() {
    return CFStringCreateWithCString(nullptr, FixedText(mValue, 3).c_str(), kCFStringEncodingASCII);
}

void PPDXFloatRangeControl::SetCurrentControlWithCFString(CFStringRef value) {
    SetValue(NarrowToFloat(CFStringGetDoubleValue(value)));
}
