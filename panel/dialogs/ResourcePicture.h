// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"
#include "platform/Graphics.h"

// The PNG image of a file; the caller releases it. Null for what is none.
CGImageRef LoadAnImageRef(CFURLRef url);

// Turns the context over, so that y grows upward from the port's bottom, and gives the rectangle,
// which is in the port's coordinates, in the context's.
FloatRect ConvertQDRectToCGRect(CGrafPtr port, CGContextRef context, Rect const& rect);
