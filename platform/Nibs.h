// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"
#include "platform/WindowTypes.h"

// Nibs: descriptions of windows. A nib is a property list, Contents/Resources/<name>.nib of a
// bundle: a dictionary from a window's name to
//
//     Class      integer, as in Windows.h (6)
//     Bounds     array of four integers: top, left, bottom, right of the content on the screen
//     Title      string
//     Controls   array of dictionaries
//
// A control in it is
//
//     Kind       string: push cbox popb stxt edit scrl list pane rgrp rado grup sepa chas
//     Bounds     array of four integers, in the window's content
//     Signature, ID          string of four letters, integer
//     Command    string of four letters
//     Title      string; a text's and a field's text
//     Value, Minimum, Maximum    integers (0, 0, 1, or as many as there are Items)
//     Hidden, Disabled, Default, Cancel, Password    booleans (false)
//     Size, Style, Justification    integers (13, 0, 0), of the font
//     Items      array of strings, a popup's
//     Columns    array of dictionaries, a list's: Code (four letters), Title, Fixed (boolean: its
//                heading doesn't sort), Disclosure (boolean)
//     Controls   array of dictionaries: what is embedded
//
// Everything but Kind and Bounds may be left out.

struct OpaqueIBNib;
using IBNibRef = OpaqueIBNib*;

constexpr OSStatus kIBCarbonRuntimeCantFindNibFile = -10960;
constexpr OSStatus kIBCarbonRuntimeObjectNotOfRequestedType = -10961;
constexpr OSStatus kIBCarbonRuntimeCantFindObject = -10962;

// Null and kIBCarbonRuntimeCantFindNibFile for a file that isn't there or is no property list.
OSStatus CreateNibReferenceWithCFBundle(CFBundleRef bundle, CFStringRef name, IBNibRef* nib);
void DisposeNibReference(IBNibRef nib);
// A hidden window with all its controls. A window that isn't in the nib is
// kIBCarbonRuntimeCantFindObject, one that is described wrongly
// kIBCarbonRuntimeObjectNotOfRequestedType; the window is null then, never a part of one.
OSStatus CreateWindowFromNib(IBNibRef nib, CFStringRef name, WindowRef* window);
