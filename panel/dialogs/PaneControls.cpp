// SPDX-License-Identifier: Apache-2.0
#include "panel/dialogs/PaneControls.h"

#include <algorithm>

namespace {

OSStatus Embed(WindowRef window, ControlRef pane, ControlRef control) {
    Rect windowBounds = {};
    Rect paneBounds = {};
    OSStatus status = GetWindowBounds(window, kWindowContentRgn, &windowBounds);
    if (status == noErr) {
        status = GetControlBounds(pane, &paneBounds);
    }
    if (status == noErr) {
        status = CentreInPane(windowBounds, paneBounds, control);
    }
    if (status == noErr) {
        status = SetControlVisibility(control, true, false);
    }
    return status == noErr ? EmbedControl(control, pane) : status;
}

}  // namespace

OSStatus CentreInPane(Rect const& window, Rect const& pane, ControlRef control) {
    Rect bounds = {};
    OSStatus const status = GetControlBounds(control, &bounds);
    if (status != noErr) {
        return status;
    }
    OffsetRect(&bounds, std::max((WidthOf(pane) - WidthOf(window)) / 2, 0) + pane.left,
               std::max((HeightOf(pane) - HeightOf(window)) / 2, 0) + pane.top);
    return SetControlBounds(control, &bounds);
}

OSStatus MyEmbedControl(WindowRef window, ControlRef pane, ControlRef control, ControlRef* out) {
    OSStatus const status = Embed(window, pane, control);
    if (out != nullptr) {
        *out = status == noErr ? control : nullptr;
    }
    return status;
}

OSStatus MyEmbedControl(WindowRef window, ControlRef pane, ControlID const& id, ControlRef* out) {
    ControlRef control = nullptr;
    OSStatus const status = GetControlByID(window, &id, &control);
    if (status != noErr) {
        if (out != nullptr) {
            *out = nullptr;
        }
        return status;
    }
    return MyEmbedControl(window, pane, control, out);
}
