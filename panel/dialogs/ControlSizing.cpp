// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "panel/dialogs/ControlUtils.h"
#include "platform/CFRef.h"
#include "platform/Menus.h"

namespace {

constexpr int kTextMargin = 28;  // also what a push button has on both sides
constexpr int kWidestPushButton = 200;
constexpr int kBoxMargin = 20;
constexpr int kPopupMargin = 24;
constexpr int kWidestPopup = 190;

void MoveRight(Rect& bounds, int width) {
    bounds.right = ClampedCoordinate(bounds.left + width);
}
void MoveLeft(Rect& bounds, int width) {
    bounds.left = ClampedCoordinate(bounds.right - width);
}

CFRef<CFStringRef> TextOf(ControlRef control, OSType kind) {
    CFRef<CFStringRef> text;
    if (kind == "stxt"_code) {
        GetControlData(control, kControlEntireControl, "cfst"_code, sizeof(CFStringRef),
                       text.Receive(), nullptr);
    } else {
        CopyControlTitleAsCFString(control, text.Receive());
    }
    return text;
}

int TextWidth(ControlRef control, OSType kind) {
    ControlFontStyleRec font = {};
    GetControlData(control, kControlEntireControl, "font"_code, sizeof font, &font, nullptr);
    Point size = {};
    GetThemeTextDimensions(
        TextOf(control, kind),
        font.size == kSmallSystemFontSize ? kThemeSmallSystemFont : kThemeSystemFont, &size,
        nullptr);
    return size.h;
}

void sizeTextControl(ControlRef control, OSType kind, bool, Rect& bounds) {
    MoveRight(bounds, TextWidth(control, kind) + kTextMargin);
}

void sizePushButton(ControlRef control, OSType kind, bool growRight, Rect& bounds) {
    int const needed = TextWidth(control, kind) + kTextMargin;
    if (needed <= WidthOf(bounds)) {
        return;
    }
    if (growRight) {
        MoveRight(bounds, std::min(needed, kWidestPushButton) + kTextMargin);
    } else {
        MoveLeft(bounds, needed + kTextMargin);
    }
}

void sizeCheckBox(ControlRef control, OSType kind, bool growRight, Rect& bounds) {
    (growRight ? MoveRight : MoveLeft)(bounds, TextWidth(control, kind) + kBoxMargin);
}

void sizePopup(ControlRef control, OSType, bool, Rect& bounds) {
    int const width = GetMenuWidth(GetControlPopupMenuHandle(control));
    if (width != WidthOf(bounds)) {
        MoveRight(bounds, std::min(width + kPopupMargin, kWidestPopup));
    }
}

struct Sizing {
    OSType kind;
    void (*size)(ControlRef control, OSType kind, bool growRight, Rect& bounds);
};
constexpr Sizing kSizings[] = {
    {"cbox"_code, sizeCheckBox},
    {"popb"_code, sizePopup},
    {"push"_code, sizePushButton},
    {"stxt"_code, sizeTextControl},
};

// What is measured is measured in the window's port, which stays as it is.
class PortScope {
  public:
    explicit PortScope(CGrafPtr port) {
        GetPort(&mFormer);
        SetPort(port);
    }
    PortScope(PortScope const&) = delete;
    PortScope& operator=(PortScope const&) = delete;
    ~PortScope() { SetPort(mFormer); }

  private:
    CGrafPtr mFormer = nullptr;
};

}  // namespace

void ControlUtils::SizeControl(ControlRef control, WindowRef window, bool growRight) {
    ControlKind kind = {};
    Rect bounds = {};
    if (GetControlKind(control, &kind) != noErr || GetControlBounds(control, &bounds) != noErr) {
        return;
    }
    PortScope const scope(GetWindowPort(window));
    for (Sizing const& row : kSizings) {
        if (row.kind == kind.kind) {
            row.size(control, kind.kind, growRight, bounds);
            SetControlBounds(control, &bounds);
        }
    }
}
