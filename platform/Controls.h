// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"
// A control is nothing without its window, and a pane's come out of a nib.
#include "platform/Nibs.h"
#include "platform/WindowTypes.h"
#include "platform/Windows.h"

// Controls. One thread. A null or foreign control is paramErr, and an operation that fails clears
// what it should have filled. Bounds are in the window's content, whatever the control is embedded
// in. Nothing that the logic does to a control sends an event: only the user's hands do. A disabled
// control still takes values from the logic.

constexpr OSStatus errDataNotSupported = -30581;  // no such data in this kind of control
constexpr OSStatus errDataSizeMismatch = -30591;
constexpr OSStatus errControlIDNotFound = -30583;  // also a place past the last sub-control
constexpr OSStatus controlPropertyNotFoundErr = -5604;
constexpr OSStatus errCantEmbedIntoSelf = -30594;

struct ControlID {
    OSType signature;
    std::int32_t id;
};
// {0, 0} is none.
OSStatus SetControlID(ControlRef control, ControlID const* id);
OSStatus GetControlID(ControlRef control, ControlID* id);
// The control of the window that got this identifier last; null and errControlIDNotFound for none.
OSStatus GetControlByID(WindowRef window, ControlID const* id, ControlRef* control);

struct ControlKind {
    OSType signature;
    OSType kind;  // "push"_code and the like, see Nibs.h
};
OSStatus GetControlKind(ControlRef control, ControlKind* kind);
OSStatus SetControlCommandID(ControlRef control, OSType command);  // 0 for none
OSStatus GetControlCommandID(ControlRef control, OSType* command);

// Anything that the caller wants to find again with the control.
void SetControlReference(ControlRef control, std::intptr_t reference);
std::intptr_t GetControlReference(ControlRef control);  // 0 for a null or foreign control
OSStatus SetControlProperty(ControlRef control, OSType creator, OSType tag, std::uint32_t size,
                            void const* data);
// At most `bufferSize` bytes; `actualSize`, if given, gets the whole size.
// controlPropertyNotFoundErr for none.
OSStatus GetControlProperty(ControlRef control, OSType creator, OSType tag,
                            std::uint32_t bufferSize, std::uint32_t* actualSize, void* data);

// ---- Place ----

WindowRef GetControlOwner(ControlRef control);  // null for a null or foreign control
OSStatus GetControlBounds(ControlRef control, Rect* bounds);
// What is embedded moves along with the top left corner.
OSStatus SetControlBounds(ControlRef control, Rect const* bounds);
// Moves the control with all that is embedded in it behind the last one in `container`, of whatever
// window; identifiers go along, bounds stay. errCantEmbedIntoSelf for a container inside of it.
OSStatus EmbedControl(ControlRef control, ControlRef container);
// From 1, in the order of embedding.
OSStatus GetIndexedSubControl(ControlRef control, std::uint16_t index, ControlRef* subControl);
OSStatus CountSubControls(ControlRef control, std::uint16_t* count);
// Ends the control with all that is embedded in it. The root goes with its window alone: paramErr.
OSStatus DisposeControl(ControlRef control);

// ---- Appearance ----

void ShowControl(ControlRef control);
void HideControl(ControlRef control);  // takes the focus from it and from what it embeds
OSStatus SetControlVisibility(ControlRef control, bool visible, bool draw);
// With all that embeds it; whether the window is shown doesn't count.
bool IsControlVisible(ControlRef control);
OSStatus EnableControl(ControlRef control);
OSStatus DisableControl(ControlRef control);
bool IsControlEnabled(ControlRef control);  // with all that embeds it
OSStatus ActivateControl(ControlRef control);
OSStatus DeactivateControl(ControlRef control);
bool IsControlActive(ControlRef control);
void HiliteControl(ControlRef control, std::int16_t part);  // 0 for none
void Draw1Control(ControlRef control);                      // it is drawn when the loop idles next

// ---- Value ----

// Kept within minimum and maximum; a maximum below the minimum is no range and keeps nothing. The
// forms without 32 answer with the nearest number of 16 bits.
std::int32_t GetControl32BitValue(ControlRef control);
void SetControl32BitValue(ControlRef control, std::int32_t value);
std::int32_t GetControl32BitMinimum(ControlRef control);
void SetControl32BitMinimum(ControlRef control, std::int32_t minimum);
std::int32_t GetControl32BitMaximum(ControlRef control);
void SetControl32BitMaximum(ControlRef control, std::int32_t maximum);
std::int16_t GetControlValue(ControlRef control);
void SetControlValue(ControlRef control, std::int16_t value);
std::int16_t GetControlMinimum(ControlRef control);
void SetControlMinimum(ControlRef control, std::int16_t minimum);
std::int16_t GetControlMaximum(ControlRef control);
void SetControlMaximum(ControlRef control, std::int16_t maximum);

// ---- Text and font ----

OSStatus SetControlTitleWithCFString(ControlRef control, CFStringRef title);
OSStatus CopyControlTitleAsCFString(ControlRef control, CFStringRef* title);  // empty for none

constexpr std::int16_t kControlUseFontMask = 0x0001;
constexpr std::int16_t kControlUseFaceMask = 0x0002;
constexpr std::int16_t kControlUseSizeMask = 0x0004;
constexpr std::int16_t kControlUseJustMask = 0x0040;
constexpr std::int16_t kControlFontSystem = 0;
constexpr std::int16_t kControlFontSmallSystemFont = -2;  // of size 11 unless another is given
constexpr std::int16_t kSystemFontSize = 13;
constexpr std::int16_t kSmallSystemFontSize = 11;

struct ControlFontStyleRec {
    std::int16_t flags;  // which of the others count
    std::int16_t font;
    std::int16_t size;  // points
    std::int16_t style;
    std::int16_t just;
};
// Those that the flags name; the others stay.
OSStatus SetControlFontStyle(ControlRef control, ControlFontStyleRec const* style);

struct ControlEditTextSelectionRec {
    std::int16_t selStart;  // UTF-16 units
    std::int16_t selEnd;
};

// "cfst" CFStringRef     the text of a field or a static text, the title of a radio group; set: it
//                        is copied, get: the caller releases it; a password comes out as U+2022
// "text" bytes           the same in the application's encoding; "?" for what has no form in it
// "pwcf" CFStringRef     a field's text as it is; set: makes the field one that shows U+2022
// "ispw" bool            whether the field shows U+2022
// "sele" ControlEditTextSelectionRec    a field's selection, kept within the text
// "font" ControlFontStyleRec            get: all flags are set
// "draw" ControlDrawProc                a pane's own drawing
// A text that is set leaves the insertion point at its end.
constexpr std::int16_t kControlEntireControl = 0;
using ControlDrawProc = void (*)(ControlRef control, std::int16_t part);
// errDataNotSupported where the kind has no such data, errDataSizeMismatch for a wrong size.
OSStatus SetControlData(ControlRef control, std::int16_t part, OSType tag, std::int64_t size,
                        void const* data);
// At most `bufferSize` bytes of it; `actualSize`, if given, gets the whole size. Only bytes are
// cut: anything else wants room for the whole.
OSStatus GetControlData(ControlRef control, std::int16_t part, OSType tag, std::int64_t bufferSize,
                        void* buffer, std::int64_t* actualSize);
OSStatus GetControlDataSize(ControlRef control, std::int16_t part, OSType tag, std::int64_t* size);

using ThemeFontID = std::uint16_t;
constexpr ThemeFontID kThemeSystemFont = 0;
constexpr ThemeFontID kThemeSmallSystemFont = 1;
// Width and height of one line of text in points; `baseline`, if given, how far below the line's
// bottom the baseline lies, a negative number.
OSStatus GetThemeTextDimensions(CFStringRef text, ThemeFontID font, Point* size,
                                std::int16_t* baseline);

// ---- Tracking ----

constexpr std::uint16_t kMouseTrackingMouseDown = 1;
constexpr std::uint16_t kMouseTrackingMouseUp = 2;
// Never waits: a press is told when it has ended. `result` is always the mouse up; `where`, in the
// port's coordinates, lies in the control that is pressed or outside of it. Without a press, and
// for a foreign port, paramErr and a point outside of everything.
OSStatus TrackMouseLocation(CGrafPtr port, Point* where, std::uint16_t* result);

// ---- Making ----

// Each is made visible, enabled and embedded in the window's root, with an empty range of 0 to 1. A
// null title is the empty one.
OSStatus CreatePushButtonControl(WindowRef window, Rect const* bounds, CFStringRef title,
                                 ControlRef* control);
OSStatus CreateCheckBoxControl(WindowRef window, Rect const* bounds, CFStringRef title,
                               std::int32_t value, bool autoToggle, ControlRef* control);
OSStatus CreateStaticTextControl(WindowRef window, Rect const* bounds, CFStringRef text,
                                 ControlFontStyleRec const* style, ControlRef* control);
OSStatus CreateEditUnicodeTextControl(WindowRef window, Rect const* bounds, CFStringRef text,
                                      bool isPassword, ControlFontStyleRec const* style,
                                      ControlRef* control);
OSStatus CreatePopupButtonControl(WindowRef window, Rect const* bounds, CFStringRef title,
                                  ControlRef* control);
OSStatus CreateSeparatorControl(WindowRef window, Rect const* bounds, ControlRef* control);
OSStatus CreateChasingArrowsControl(WindowRef window, Rect const* bounds, ControlRef* control);
OSStatus CreateUserPaneControl(WindowRef window, Rect const* bounds, std::uint32_t features,
                               ControlRef* control);

// ---- What a host sets up ----

// As large as the owner's content and embedded in its root; without an owner in nothing. Null
// without memory.
ControlRef CreateUserPane(WindowRef owner, bool visible);
void DisposeUserPane(ControlRef control);
