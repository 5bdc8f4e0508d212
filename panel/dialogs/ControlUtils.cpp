// SPDX-License-Identifier: Apache-2.0
#include "panel/dialogs/ControlUtils.h"

#include <algorithm>
#include <iterator>

#include "platform/CFRef.h"
#include "platform/TextEncodingConverter.h"

namespace {

// From which length on a title has which size.
struct TitleSize {
    CFIndex length;
    std::int16_t size;
};
constexpr TitleSize kTitleSizes[] = {
    {0, ControlUtils::kLeaveAsItIs}, {21, 14}, {22, 13}, {24, 12}, {26, 11}, {28, 10}, {31, 9},
};

std::int16_t SizeOfTitle(CFStringRef title) {
    CFIndex const length = CFStringGetLength(title);
    auto const next = std::find_if(std::begin(kTitleSizes), std::end(kTitleSizes),
                                   [&](TitleSize const& row) { return row.length > length; });
    return std::prev(next)->size;
}

ControlRef RadioButton(ControlRef group, std::uint16_t index) {
    ControlRef button = nullptr;
    GetIndexedSubControl(group, index, &button);
    return button;
}

}  // namespace

OSStatus ControlUtils::setControlFontInfo(ControlRef control, std::int16_t font, std::int16_t size,
                                          std::int16_t style, std::int16_t justification) {
    auto const mask = [](std::int16_t value, std::int16_t flag) { return value < 0 ? 0 : flag; };
    ControlFontStyleRec const record = {
        static_cast<std::int16_t>(
            mask(font, kControlUseFontMask) | mask(size, kControlUseSizeMask) |
            mask(style, kControlUseFaceMask) | mask(justification, kControlUseJustMask)),
        font, size, style, justification};
    return SetControlFontStyle(control, &record);
}

void ControlUtils::SetControlTitle(ControlRef control, CFStringRef text) {
    ControlKind kind = {};
    if (text == nullptr || GetControlKind(control, &kind) != noErr) {
        return;
    }
    if (kind.kind == "rgrp"_code || kind.kind == "stxt"_code) {
        SetControlData(control, kControlEntireControl, "cfst"_code, sizeof text, &text);
        return;
    }
    if (std::int16_t const size = SizeOfTitle(text); size != kLeaveAsItIs) {
        setControlFontInfo(control, kLeaveAsItIs, size, kCondensed, kLeaveAsItIs);
    }
    SetControlTitleWithCFString(control, text);
}

void ControlUtils::SetControlTitle(ControlRef control, char const* text) {
    if (text != nullptr) {
        CFRef<CFStringRef> const title(
            CFStringCreateWithCString(nullptr, text, GetApplicationTextEncoding()));
        SetControlTitle(control, title.Get());
    }
}

void ControlUtils::SetRadioButtonText(ControlRef group, std::uint16_t index, CFStringRef text) {
    SetControlTitleWithCFString(RadioButton(group, index), text);
}

void ControlUtils::ShowRadioButton(ControlRef group, std::uint16_t index) {
    ShowControl(RadioButton(group, index));
}

void ControlUtils::HideRadioButton(ControlRef group, std::uint16_t index) {
    HideControl(RadioButton(group, index));
}
