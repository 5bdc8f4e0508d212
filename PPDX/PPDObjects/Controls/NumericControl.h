// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <type_traits>

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/Controls/SubstitutedCode.h"

// What the options with a number as their value share: the five numbers, their record in an
// archive, and the code with the value in it. Number is std::int32_t or float. Takes no part in
// constraints.
template <typename Number>
class NumericControl : public PPDXControl {
  public:
    // What a caller reckons with: the difference of two numbers of 32 bits needs more.
    using Wide = std::conditional_t<std::is_integral_v<Number>, long, Number>;

    short Save(Settings& settings, long const& id) override;
    // Takes the value as it is stored. Code that was already made for the former value stays.
    short Restore(Settings& settings, long id) override;

    Wide MinVal() const { return mMinimum; }
    Wide MaxVal() const { return mMaximum; }
    Wide Increment() const { return mIncrement; }
    Wide DefaultValue() const { return mDefault; }
    Wide GetValue() const { return mValue; }

  protected:
    struct Limits {
        Number minimum;
        Number maximum;
        Number increment;
    };

    // `tags` is borrowed and must outlive the control. All numbers 0.
    NumericControl(CNTL_TYPE type, ArchiveTags::Numeric const& tags);
    // The value starts at the default as it stands. See PPDXControl for the rest.
    NumericControl(CNTL_TYPE type, ArchiveTags::Numeric const& tags, char const* keyword,
                   CFStringRef localName, PointerList& flags, unsigned char* code, long codeLength,
                   Limits const& limits, Number defaultValue, bool visible);
    NumericControl(CNTL_TYPE type, ArchiveTags::Numeric const& tags, Settings& settings, long id);

    // Within the limits; where the minimum is above the maximum, the maximum. Code made for the
    // former value goes.
    void StoreClamped(Number value);
    // The framed code with `value`, the present one, in it.
    long PostScriptWith(char const* value, unsigned char* out);

  private:
    ArchiveTags::Numeric const& mTags;
    Number mValue = 0;
    Number mMinimum = 0;
    Number mMaximum = 0;
    Number mIncrement = 0;
    Number mDefault = 0;
    SubstitutedCode mSubstituted;
};
