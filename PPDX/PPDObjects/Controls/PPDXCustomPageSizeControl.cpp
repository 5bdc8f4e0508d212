// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"

#include <string>

#include "PPDX/PPDObjects/Controls/Numbers.h"
#include "platform/CFRef.h"

PPDXCustomPageSizeControl::PPDXCustomPageSizeControl(char const* keyword, PointerList& flags)
    : PPDXCustomPageSizeControl(keyword, flags, 0, 0, 0, 0) {}

PPDXCustomPageSizeControl::PPDXCustomPageSizeControl(char const* keyword, PointerList& flags,
                                                     double minWidth, double maxWidth,
                                                     double minHeight, double maxHeight)
    : PPDXControl(keyword, CFSTR("Custom Page Size"), flags, nullptr, 0, true, nullptr),
      mMinWidth(NarrowToFloat(minWidth)),
      mMaxWidth(NarrowToFloat(maxWidth)),
      mMinHeight(NarrowToFloat(minHeight)),
      mMaxHeight(NarrowToFloat(maxHeight)) {
    SetType(kCustomPageSizeType);
}

short PPDXCustomPageSizeControl::Save(Settings&, long const&) {
    return 0;
}

short PPDXCustomPageSizeControl::Restore(Settings&, long) {
    return 0;
}

CFStringRef PPDXCustomPageSizeControl::CopyCurrentControlValueString() {
    std::string const text = FixedText(mWidth, 6) + " " + FixedText(mHeight, 6);
    return CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingASCII);
}

void PPDXCustomPageSizeControl::SetCurrentControlWithCFString(CFStringRef value) {
    SetWidth(NarrowToFloat(CFStringGetDoubleValue(value)));
    CFIndex const length = CFStringGetLength(value);
    std::u16string text;
    for (CFIndex position = 0; position < length; ++position) {
        text += CFStringGetCharacterAtIndex(value, position);
    }
    std::size_t const blank = text.find(u' ');
    if (blank == std::u16string::npos) {
        return;
    }
    text.erase(0, blank + 1);
    CFRef<CFStringRef> const height(
        CFStringCreateWithCharacters(nullptr, text.data(), static_cast<CFIndex>(text.size())));
    SetHeight(NarrowToFloat(CFStringGetDoubleValue(height)));
}
