// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"

// Windows, controls and nibs, as far as a plug-in's pane needs them. Coordinates are pixels, y
// grows downward from the top of the screen.

struct OpaqueWindow;
using WindowRef = OpaqueWindow*;
struct OpaqueControl;
using ControlRef = OpaqueControl*;
struct OpaqueIBNib;
using IBNibRef = OpaqueIBNib*;

struct Rect {
    std::int16_t top;
    std::int16_t left;
    std::int16_t bottom;
    std::int16_t right;
};

constexpr std::uint16_t kWindowContentRgn = 33;
constexpr OSStatus errInvalidWindowRef = -5600;
constexpr OSStatus kIBCarbonRuntimeCantFindNibFile = -10960;

// Opens Contents/Resources/<name>.nib of the bundle, which must be a property list.
OSStatus CreateNibReferenceWithCFBundle(CFBundleRef bundle, CFStringRef name, IBNibRef* nib);
void DisposeNibReference(IBNibRef nib);

WindowRef GetControlOwner(ControlRef control);  // null for null
bool IsControlVisible(ControlRef control);
// The window that a sheet hangs on; errInvalidWindowRef for a window that is no sheet.
OSStatus GetSheetWindowParent(WindowRef sheet, WindowRef* parent);
OSStatus GetWindowBounds(WindowRef window, std::uint16_t region, Rect* bounds);
// Moves the content's top left corner.
void MoveWindow(WindowRef window, std::int16_t left, std::int16_t top, bool bringToFront);

// ---- What a host sets up ----

WindowRef CreateHostWindow(Rect const& content, WindowRef sheetParent);  // null parent: no sheet
void DisposeHostWindow(WindowRef window);
ControlRef CreateUserPane(WindowRef owner, bool visible);
void DisposeUserPane(ControlRef control);
