// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/NumericControl.h"

#include <algorithm>

#include "PPDX/PPDObjects/Controls/ControlRecord.h"

template <typename Number>
NumericControl<Number>::NumericControl(CNTL_TYPE type, ArchiveTags::Numeric const& tags)
    : mTags(tags) {
    SetType(type);
}

template <typename Number>
NumericControl<Number>::NumericControl(CNTL_TYPE type, ArchiveTags::Numeric const& tags,
                                       char const* keyword, CFStringRef localName,
                                       PointerList& flags, unsigned char* code, long codeLength,
                                       Limits const& limits, Number defaultValue, bool visible)
    : PPDXControl(keyword, localName, flags, code, codeLength, visible, nullptr),
      mTags(tags),
      mValue(defaultValue),
      mMinimum(limits.minimum),
      mMaximum(limits.maximum),
      mIncrement(limits.increment),
      mDefault(defaultValue) {
    SetType(type);
}

template <typename Number>
NumericControl<Number>::NumericControl(CNTL_TYPE type, ArchiveTags::Numeric const& tags,
                                       Settings& settings, long id)
    : PPDXControl(settings, id, nullptr), mTags(tags) {
    SetType(type);
    ControlRecord const record(settings, id);
    record.Read(tags.value, mValue);
    record.Read(tags.minimum, mMinimum);
    record.Read(tags.maximum, mMaximum);
    record.Read(tags.increment, mIncrement);
    record.Read(tags.defaultValue, mDefault);
}

template <typename Number>
short NumericControl<Number>::Save(Settings& settings, long const& id) {
    ControlRecord record(settings, id, PPDXControl::Save(settings, id));
    record.AddMark(mTags.kind);
    record.AddNumber(mTags.value, mValue);
    record.AddNumber(mTags.minimum, mMinimum);
    record.AddNumber(mTags.maximum, mMaximum);
    record.AddNumber(mTags.increment, mIncrement);
    record.AddNumber(mTags.defaultValue, mDefault);
    return record.Status();
}

template <typename Number>
short NumericControl<Number>::Restore(Settings& settings, long id) {
    return ControlRecord(settings, id).Restore(mTags.value, mValue);
}

template <typename Number>
void NumericControl<Number>::StoreClamped(Number value) {
    mValue = std::min(std::max(value, mMinimum), mMaximum);
    mSubstituted.Discard();
}

template <typename Number>
long NumericControl<Number>::PostScriptWith(char const* value, unsigned char* out) {
    return mSubstituted.PostScript(*this, value, out);
}

template class NumericControl<std::int32_t>;
template class NumericControl<float>;
