// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/Controls/PPDXControl.h"

// Width and height of a page of one's own, in points, with their limits. Emits nothing: the job
// reads the numbers. Never archived. Takes no part in constraints.
class PPDXCustomPageSizeControl : public PPDXControl {
  public:
    // All numbers 0.
    PPDXCustomPageSizeControl(char const* keyword, PointerList& flags);
    PPDXCustomPageSizeControl(char const* keyword, PointerList& flags, double minWidth,
                              double maxWidth, double minHeight, double maxHeight);

    short Save(Settings& settings, long const& id) override;  // writes nothing
    void ResetToDefaultValue() override {}
    short Restore(Settings& settings, long id) override;   // reads nothing
    CFStringRef CopyCurrentControlValueString() override;  // "612.000000 792.000000"
    // Width from the start of the text, height from what is behind the first blank; each is 0 when
    // no number stands there. A text without a blank leaves the height alone.
    void SetCurrentControlWithCFString(CFStringRef value) override;

    float GetWidth() const { return mWidth; }
    float GetHeight() const { return mHeight; }
    float MinWidth() const { return mMinWidth; }
    float MaxWidth() const { return mMaxWidth; }
    float MinHeight() const { return mMinHeight; }
    float MaxHeight() const { return mMaxHeight; }
    // None of these looks at the limits.
    void SetWidth(float width) { mWidth = width; }
    void SetHeight(float height) { mHeight = height; }
    void SetMinWidth(float width) { mMinWidth = width; }
    void SetMaxWidth(float width) { mMaxWidth = width; }
    void SetMinHeight(float height) { mMinHeight = height; }
    void SetMaxHeight(float height) { mMaxHeight = height; }

  private:
    float mWidth = 0;
    float mHeight = 0;
    float mMinWidth = 0;
    float mMaxWidth = 0;
    float mMinHeight = 0;
    float mMaxHeight = 0;
};
