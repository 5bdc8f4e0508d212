// SPDX-License-Identifier: Apache-2.0
#include "platform/Controls.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/internal/CFObjects.h"
#include "platform/internal/Desktop.h"

namespace platform {
namespace {

// Runs `work`, which returns a status, on a living control.
template <typename Work>
OSStatus OnControl(ControlRef control, Work&& work) {
    ControlNode* const node = Find(control);
    return node == nullptr ? paramErr : Guarded([&]() -> OSStatus { return work(*node); });
}

// Runs `work`, and the control looks different if that answers so.
template <typename Work>
OSStatus Change(ControlRef control, Work&& work) {
    return OnControl(control, [&](ControlNode& node) -> OSStatus {
        if (work(node)) {
            MarkChanged(node);
        }
        return noErr;
    });
}

template <typename Value>
bool Replace(Value& field, Value value) {
    bool const changes = field != value;
    field = value;
    return changes;
}

std::int16_t NearestShort(std::int32_t value) {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<std::int32_t>(value, Limits::min(), Limits::max()));
}

// Who hides the control with the focus in it takes the focus away.
void DropFocusWithin(ControlNode& node) {
    if (node.window == nullptr) {
        return;
    }
    ControlNode const* const focus = Find(node.window->focus);
    if (focus != nullptr && IsWithin(*focus, node)) {
        SetFocus(*node.window, nullptr);
    }
}

OSStatus SetVisible(ControlRef control, bool visible) {
    return OnControl(control, [&](ControlNode& node) -> OSStatus {
        if (node.isVisible == visible) {
            return noErr;
        }
        node.isVisible = visible;
        MarkChanged(node);
        if (visible) {
            MarkBranchForDrawing(node);
        } else {
            DropFocusWithin(node);
        }
        return noErr;
    });
}

OSStatus SetLimit(ControlRef control, std::int32_t ControlNode::*limit, std::int32_t value) {
    return Change(control, [&](ControlNode& node) {
        bool const changes = Replace(node.*limit, value);
        return SetValue(node, node.value) || changes;
    });
}

std::int32_t Number(ControlRef control, std::int32_t ControlNode::*field) {
    ControlNode const* const node = Find(control);
    return node == nullptr ? 0 : node->*field;
}

struct NewControlRequest {
    OSType kind;
    WindowRef window;
    Rect const* bounds;
    ControlRef* control;
};

// Makes a control in the window's root and lets `prepare` give it what its kind has besides.
template <typename Prepare>
OSStatus Create(NewControlRequest const& request, Prepare&& prepare) {
    if (request.control == nullptr) {
        return paramErr;
    }
    *request.control = nullptr;
    WindowNode* const window = Find(request.window);
    if (window == nullptr || request.bounds == nullptr) {
        return paramErr;
    }
    return Guarded([&]() -> OSStatus {
        ControlNode* const node =
            NewControl(*TraitsOf(request.kind), *request.bounds, window->root);
        try {
            prepare(*node);
        } catch (...) {
            DeleteBranch(node);
            throw;
        }
        *request.control = node->Ref();
        return noErr;
    });
}

OSStatus CreateTitled(NewControlRequest const& request, CFStringRef title) {
    return Create(request, [&](ControlNode& node) { node.title = CopyOf(title); });
}

OSStatus CreateText(NewControlRequest const& request, CFStringRef text, bool isPassword,
                    ControlFontStyleRec const* style) {
    return Create(request, [&](ControlNode& node) {
        node.As<FieldText>()->isPassword = isPassword;
        SetText(node, std::u16string(TextOf(text)));
        if (style != nullptr) {
            SetControlFontStyle(node.Ref(), style);
        }
    });
}

// Takes those fields that the flags name.
void Merge(ControlFontStyleRec& font, ControlFontStyleRec const& wanted) {
    if ((wanted.flags & kControlUseFontMask) != 0) {
        font.font = wanted.font;
        if (wanted.font == kControlFontSmallSystemFont) {
            font.size = kSmallSystemFontSize;
        }
    }
    if ((wanted.flags & kControlUseSizeMask) != 0) {
        font.size = wanted.size;
    }
    if ((wanted.flags & kControlUseFaceMask) != 0) {
        font.style = wanted.style;
    }
    if ((wanted.flags & kControlUseJustMask) != 0) {
        font.just = wanted.just;
    }
}

}  // namespace
}  // namespace platform

using platform::Change;
using platform::ControlNode;
using platform::Find;
using platform::OnControl;

OSStatus SetControlCommandID(ControlRef control, OSType command) {
    return OnControl(control, [&](ControlNode& node) -> OSStatus {
        node.command = command;
        platform::MarkForFace(node);
        return noErr;
    });
}

OSStatus GetControlCommandID(ControlRef control, OSType* command) {
    if (command == nullptr) {
        return paramErr;
    }
    ControlNode const* const node = Find(control);
    *command = node == nullptr ? 0 : node->command;
    return node == nullptr ? paramErr : noErr;
}

OSStatus GetControlKind(ControlRef control, ControlKind* kind) {
    if (kind == nullptr) {
        return paramErr;
    }
    ControlNode const* const node = Find(control);
    *kind = node == nullptr ? ControlKind{0, 0} : ControlKind{"appl"_code, node->traits->kind};
    return node == nullptr ? paramErr : noErr;
}

void SetControlReference(ControlRef control, std::intptr_t reference) {
    if (ControlNode* const node = Find(control); node != nullptr) {
        node->reference = reference;
    }
}

std::intptr_t GetControlReference(ControlRef control) {
    ControlNode const* const node = Find(control);
    return node == nullptr ? 0 : node->reference;
}

OSStatus SetControlProperty(ControlRef control, OSType creator, OSType tag, std::uint32_t size,
                            void const* data) {
    if (data == nullptr && size > 0) {
        return paramErr;
    }
    return OnControl(control, [&](ControlNode& node) -> OSStatus {
        auto const* const bytes = static_cast<std::uint8_t const*>(data);
        std::vector<std::uint8_t> value(bytes, bytes + size);
        for (auto& property : node.properties) {
            if (property.creator == creator && property.tag == tag) {
                property.bytes = std::move(value);
                return noErr;
            }
        }
        node.properties.push_back({creator, tag, std::move(value)});
        return noErr;
    });
}

OSStatus GetControlProperty(ControlRef control, OSType creator, OSType tag,
                            std::uint32_t bufferSize, std::uint32_t* actualSize, void* data) {
    if (actualSize != nullptr) {
        *actualSize = 0;
    }
    if (data != nullptr && bufferSize > 0) {
        std::memset(data, 0, bufferSize);
    }
    return OnControl(control, [&](ControlNode const& node) -> OSStatus {
        for (auto const& property : node.properties) {
            if (property.creator != creator || property.tag != tag) {
                continue;
            }
            if (actualSize != nullptr) {
                *actualSize = static_cast<std::uint32_t>(property.bytes.size());
            }
            std::size_t const copied = std::min<std::size_t>(bufferSize, property.bytes.size());
            if (data != nullptr && copied > 0) {
                std::memcpy(data, property.bytes.data(), copied);
            }
            return noErr;
        }
        return controlPropertyNotFoundErr;
    });
}

// ---- Appearance ----

void ShowControl(ControlRef control) {
    platform::SetVisible(control, true);
}

void HideControl(ControlRef control) {
    platform::SetVisible(control, false);
}

OSStatus SetControlVisibility(ControlRef control, bool visible, bool) {
    return platform::SetVisible(control, visible);
}

bool IsControlVisible(ControlRef control) {
    ControlNode const* const node = Find(control);
    return node != nullptr && platform::IsShown(*node);
}

OSStatus EnableControl(ControlRef control) {
    return Change(control,
                  [](ControlNode& node) { return platform::Replace(node.isEnabled, true); });
}

OSStatus DisableControl(ControlRef control) {
    return Change(control,
                  [](ControlNode& node) { return platform::Replace(node.isEnabled, false); });
}

bool IsControlEnabled(ControlRef control) {
    ControlNode const* const node = Find(control);
    return node != nullptr && platform::CanBeUsed(*node);
}

OSStatus ActivateControl(ControlRef control) {
    return Change(control,
                  [](ControlNode& node) { return platform::Replace(node.isActive, true); });
}

OSStatus DeactivateControl(ControlRef control) {
    return Change(control,
                  [](ControlNode& node) { return platform::Replace(node.isActive, false); });
}

bool IsControlActive(ControlRef control) {
    ControlNode const* const node = Find(control);
    return node != nullptr && node->isActive;
}

void HiliteControl(ControlRef control, std::int16_t part) {
    Change(control, [&](ControlNode& node) { return platform::Replace(node.hilite, part); });
}

void Draw1Control(ControlRef control) {
    Change(control, [](ControlNode const&) { return true; });
}

// ---- Value ----

std::int32_t GetControl32BitValue(ControlRef control) {
    return platform::Number(control, &ControlNode::value);
}
void SetControl32BitValue(ControlRef control, std::int32_t value) {
    if (ControlNode* const node = Find(control); node != nullptr) {
        platform::SetValue(*node, value);
    }
}
std::int32_t GetControl32BitMinimum(ControlRef control) {
    return platform::Number(control, &ControlNode::minimum);
}
void SetControl32BitMinimum(ControlRef control, std::int32_t minimum) {
    platform::SetLimit(control, &ControlNode::minimum, minimum);
}
std::int32_t GetControl32BitMaximum(ControlRef control) {
    return platform::Number(control, &ControlNode::maximum);
}
void SetControl32BitMaximum(ControlRef control, std::int32_t maximum) {
    platform::SetLimit(control, &ControlNode::maximum, maximum);
}
std::int16_t GetControlValue(ControlRef control) {
    return platform::NearestShort(GetControl32BitValue(control));
}
void SetControlValue(ControlRef control, std::int16_t value) {
    SetControl32BitValue(control, value);
}
std::int16_t GetControlMinimum(ControlRef control) {
    return platform::NearestShort(GetControl32BitMinimum(control));
}
void SetControlMinimum(ControlRef control, std::int16_t minimum) {
    SetControl32BitMinimum(control, minimum);
}
std::int16_t GetControlMaximum(ControlRef control) {
    return platform::NearestShort(GetControl32BitMaximum(control));
}
void SetControlMaximum(ControlRef control, std::int16_t maximum) {
    SetControl32BitMaximum(control, maximum);
}

// ---- Title and font ----

OSStatus SetControlTitleWithCFString(ControlRef control, CFStringRef title) {
    return Change(control, [&](ControlNode& node) {
        node.title = platform::CopyOf(title);
        return true;
    });
}

OSStatus CopyControlTitleAsCFString(ControlRef control, CFStringRef* title) {
    if (title == nullptr) {
        return paramErr;
    }
    *title = nullptr;
    return OnControl(control, [&](ControlNode const& node) -> OSStatus {
        *title = CFStringCreateCopy(nullptr, node.title ? node.title.Get() : CFSTR(""));
        return *title == nullptr ? memFullErr : noErr;
    });
}

OSStatus SetControlFontStyle(ControlRef control, ControlFontStyleRec const* style) {
    if (style == nullptr) {
        return paramErr;
    }
    return Change(control, [&](ControlNode& node) {
        platform::Merge(node.font, *style);
        return true;
    });
}

OSStatus GetThemeTextDimensions(CFStringRef text, ThemeFontID font, Point* size,
                                std::int16_t* baseline) {
    if (baseline != nullptr) {
        *baseline = 0;
    }
    if (size == nullptr) {
        return paramErr;
    }
    *size = {0, 0};
    if (text == nullptr || font > kThemeSmallSystemFont) {
        return paramErr;
    }
    std::int16_t const points =
        font == kThemeSmallSystemFont ? kSmallSystemFontSize : kSystemFontSize;
    FloatSize measured = {};
    OSStatus const status = platform::TellFace(
        [&](ControlFace& face) { measured = face.MeasureText(text, points, 0); });
    if (status != noErr) {
        return status;
    }
    using Limits = std::numeric_limits<std::int16_t>;
    auto const fitted = [](double length) {
        return static_cast<std::int16_t>(std::min<double>(length, Limits::max()));
    };
    *size = {fitted(measured.height), fitted(measured.width)};
    if (baseline != nullptr) {
        *baseline = static_cast<std::int16_t>(points - size->v);
    }
    return noErr;
}

// ---- Tracking ----

OSStatus TrackMouseLocation(CGrafPtr port, Point* where, std::uint16_t* result) {
    if (where == nullptr || result == nullptr) {
        return paramErr;
    }
    using Limits = std::numeric_limits<std::int16_t>;
    *where = {Limits::max(), Limits::max()};
    *result = kMouseTrackingMouseUp;
    platform::Gesture const* const gesture = platform::TheDesktop().gesture;
    ControlNode const* const node = gesture == nullptr ? nullptr : Find(gesture->control);
    if (node == nullptr || node->window == nullptr || node->window != Find(port)) {
        return paramErr;
    }
    Rect const& bounds = node->bounds;
    // The bottom right corner is the first point outside.
    *where = gesture->releasedInside ? Point{ClampedCoordinate((bounds.top + bounds.bottom) / 2),
                                             ClampedCoordinate((bounds.left + bounds.right) / 2)}
                                     : Point{bounds.bottom, bounds.right};
    return noErr;
}

// ---- Making ----

OSStatus CreatePushButtonControl(WindowRef window, Rect const* bounds, CFStringRef title,
                                 ControlRef* control) {
    return platform::CreateTitled({"push"_code, window, bounds, control}, title);
}

OSStatus CreateCheckBoxControl(WindowRef window, Rect const* bounds, CFStringRef title,
                               std::int32_t value, bool autoToggle, ControlRef* control) {
    return platform::Create({"cbox"_code, window, bounds, control}, [&](ControlNode& node) {
        node.title = platform::CopyOf(title);
        node.toggles = autoToggle;
        platform::SetValue(node, value);
    });
}

OSStatus CreateStaticTextControl(WindowRef window, Rect const* bounds, CFStringRef text,
                                 ControlFontStyleRec const* style, ControlRef* control) {
    return platform::CreateText({"stxt"_code, window, bounds, control}, text, false, style);
}

OSStatus CreateEditUnicodeTextControl(WindowRef window, Rect const* bounds, CFStringRef text,
                                      bool isPassword, ControlFontStyleRec const* style,
                                      ControlRef* control) {
    return platform::CreateText({"edit"_code, window, bounds, control}, text, isPassword, style);
}

OSStatus CreatePopupButtonControl(WindowRef window, Rect const* bounds, CFStringRef title,
                                  ControlRef* control) {
    return platform::CreateTitled({"popb"_code, window, bounds, control}, title);
}

OSStatus CreateSeparatorControl(WindowRef window, Rect const* bounds, ControlRef* control) {
    return platform::CreateTitled({"sepa"_code, window, bounds, control}, nullptr);
}

OSStatus CreateChasingArrowsControl(WindowRef window, Rect const* bounds, ControlRef* control) {
    return platform::CreateTitled({"chas"_code, window, bounds, control}, nullptr);
}

OSStatus CreateUserPaneControl(WindowRef window, Rect const* bounds, std::uint32_t,
                               ControlRef* control) {
    return platform::CreateTitled({"pane"_code, window, bounds, control}, nullptr);
}

ControlRef CreateUserPane(WindowRef owner, bool visible) {
    return platform::WithoutExceptions<ControlRef>(nullptr, [&] {
        platform::WindowNode const* const window = Find(owner);
        ControlNode* const root = window == nullptr ? nullptr : window->root;
        ControlNode* const pane = platform::NewControl(
            *platform::TraitsOf("pane"_code), root == nullptr ? Rect{} : root->bounds, root);
        pane->isVisible = visible;
        return pane->Ref();
    });
}

void DisposeUserPane(ControlRef control) {
    DisposeControl(control);
}
