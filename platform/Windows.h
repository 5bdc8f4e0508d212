// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"
#include "platform/WindowTypes.h"

// Windows and sheets, their order, their modal loops and their focus. One thread. A null or foreign
// window is paramErr, and an operation that fails clears what it should have filled.

using WindowClass = std::uint32_t;
constexpr WindowClass kMovableModalWindowClass = 4;
constexpr WindowClass kDocumentWindowClass = 6;
constexpr WindowClass kSheetWindowClass = 11;
constexpr WindowClass kSheetAlertWindowClass = 15;
constexpr bool IsSheetClass(WindowClass windowClass) {
    return windowClass == kSheetWindowClass || windowClass == kSheetAlertWindowClass;
}

constexpr std::uint16_t kWindowContentRgn = 33;
constexpr OSStatus errInvalidWindowRef = -5600;

// Ends the window with all that is embedded in it. A modal loop of it ends as if it had been quit.
OSStatus DisposeWindow(WindowRef window);

OSStatus GetWindowClass(WindowRef window, WindowClass* windowClass);
// The content on the screen.
OSStatus GetWindowBounds(WindowRef window, std::uint16_t region, Rect* bounds);
// Moves the content's top left corner; its size stays.
void MoveWindow(WindowRef window, std::int16_t left, std::int16_t top, bool bringToFront);
OSStatus SetWindowTitleWithCFString(WindowRef window, CFStringRef title);
OSStatus CopyWindowTitleAsCFString(WindowRef window, CFStringRef* title);  // null for no title

// ---- Showing ----

// A window that is shown comes to the front.
OSStatus ShowWindow(WindowRef window);
OSStatus HideWindow(WindowRef window);
bool IsWindowVisible(WindowRef window);
OSStatus SelectWindow(WindowRef window);  // to the front, hidden or not
// paramErr for a window that is no sheet.
OSStatus ShowSheetWindow(WindowRef sheet, WindowRef parent);
OSStatus HideSheetWindow(WindowRef sheet);
// The window that a sheet hangs on; errInvalidWindowRef for a window that hangs on none.
OSStatus GetSheetWindowParent(WindowRef sheet, WindowRef* parent);

// ---- Modal loops ----

// Runs a loop in which only this window takes input, until it is quit. Loops nest: one that was
// quit ends once it is the innermost. The default button gets the focus when nothing has it.
// userCanceledErr when the driver of the loop had nothing more to do before the window was quit.
constexpr OSStatus userCanceledErr = -128;
OSStatus RunAppModalLoopForWindow(WindowRef window);
// Quits the window's innermost loop that isn't quit yet; paramErr when it has none.
OSStatus QuitAppModalLoopForWindow(WindowRef window);

// ---- Keyboard focus ----

using ControlFocusPart = std::int16_t;
constexpr ControlFocusPart kControlFocusNoPart = 0;
constexpr ControlFocusPart kControlFocusNextPart = -1;
constexpr ControlFocusPart kControlFocusPrevPart = -2;
constexpr OSStatus errCouldntSetFocus = -30585;

// Any other part than none gives the control the focus; a field then has its whole text selected.
// errCouldntSetFocus for a kind of control that takes none, one of another window and a hidden one.
OSStatus SetKeyboardFocus(WindowRef window, ControlRef control, ControlFocusPart part);
OSStatus GetKeyboardFocus(WindowRef window, ControlRef* control);  // null when nothing has it
OSStatus ClearKeyboardFocus(WindowRef window);
// What Return and what Escape press; null for nothing. A disposed button is forgotten.
OSStatus SetWindowDefaultButton(WindowRef window, ControlRef button);
OSStatus SetWindowCancelButton(WindowRef window, ControlRef button);

// ---- Root and port ----

// A window has a root control, in which everything else is embedded, from its start: creating it
// again gives the same one.
OSStatus GetRootControl(WindowRef window, ControlRef* root);
OSStatus CreateRootControl(WindowRef window, ControlRef* root);

struct OpaquePort;
using CGrafPtr = OpaquePort*;
CGrafPtr GetWindowPort(WindowRef window);  // null for a null or foreign window

// ---- What a host sets up ----

// A hidden window; a sheet on `sheetParent` unless that is null. Null without memory.
WindowRef CreateHostWindow(Rect const& content, WindowRef sheetParent);
void DisposeHostWindow(WindowRef window);
// The name by which a nib's window is known; a host's has none until it gets one.
OSStatus SetWindowName(WindowRef window, CFStringRef name);
