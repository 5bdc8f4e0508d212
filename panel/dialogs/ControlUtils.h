// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/Controls.h"
#include "platform/Graphics.h"

// Titles, fonts, sizes and pictures of controls. A null or foreign control is left alone.
namespace ControlUtils {

constexpr std::int16_t kLeaveAsItIs = -1;
constexpr std::int16_t kCondensed = 32;  // a style

// Font, size, style and justification, each that isn't negative. paramErr for a null control.
OSStatus setControlFontInfo(ControlRef control, std::int16_t font, std::int16_t size,
                            std::int16_t style, std::int16_t justification);

// The text of a static text or a radio group, the title of any other control, in a smaller
// condensed font from 21 UTF-16 units on. Bytes are in the application's encoding.
void SetControlTitle(ControlRef control, CFStringRef text);
void SetControlTitle(ControlRef control, char const* text);

// Makes the control as wide as what it shows. Push buttons and check boxes keep their left edge
// with `growRight` and else their right one; texts and popups always keep the left.
void SizeControl(ControlRef control, WindowRef window, bool growRight);

// The buttons of a radio group, from 1. One that isn't there is passed over.
void SetRadioButtonText(ControlRef group, std::uint16_t index, CFStringRef text);
void ShowRadioButton(ControlRef group, std::uint16_t index);
void HideRadioButton(ControlRef group, std::uint16_t index);

// The bundle's picture `<pictureID>.png`, in the control's own window.
void DrawResourcePicture(ControlRef control, std::int16_t pictureID);

// The folder of the bundle's resources, with a slash at its end; empty without a bundle and for
// what doesn't fit.
constexpr std::size_t kResourcePathSize = 1024;
void GetResourceURL(char (&buffer)[kResourcePathSize]);

// Erases the control's place and draws the picture there, a path below the resources.
void DrawPNG(CGrafPtr port, ControlRef control, char const* relativePath);

}  // namespace ControlUtils
