// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"
#include "platform/WindowTypes.h"
#include "platform/Windows.h"

// Pictures, drawing them into panes, the display, the cursor and the beep. One thread.
//
// A pane remembers what was drawn on it: the last picture whose place was the pane's bounds is its
// picture, until that place is erased. A face paints it.

struct FloatPoint {
    double x;
    double y;
};
struct FloatSize {
    double width;
    double height;
};
struct FloatRect {
    FloatPoint origin;
    FloatSize size;
};
// x' = a x + c y + tx, y' = b x + d y + ty
struct CGAffineTransform {
    double a, b, c, d, tx, ty;
};
// A transform that has no inverse comes back as it is.
CGAffineTransform CGAffineTransformInvert(CGAffineTransform transform);
FloatPoint CGPointApplyAffineTransform(FloatPoint point, CGAffineTransform transform);

// ---- Images: released with CFRelease or the functions here; null is harmless ----

struct __CGDataProvider;
struct __CGImage;
using CGDataProviderRef = __CGDataProvider const*;
using CGImageRef = __CGImage const*;

CGDataProviderRef CGDataProviderCreateWithURL(CFURLRef url);  // null for what is no file's URL
void CGDataProviderRelease(CGDataProviderRef provider);
// Null unless the file can be read and begins as a PNG image does (ISO/IEC 15948: signature and
// header). `decode` and the rest are for nobody.
CGImageRef CGImageCreateWithPNGDataProvider(CGDataProviderRef provider, double const* decode,
                                            bool interpolate, std::int32_t intent);
void CGImageRelease(CGImageRef image);
std::uint32_t CGImageGetWidth(CGImageRef image);  // pixels; 0 for null
std::uint32_t CGImageGetHeight(CGImageRef image);
CFStringRef CGImageGetPath(CGImageRef image);  // of its file; borrowed

// ---- Drawing into a window ----

// The port that drawing goes to when nobody says otherwise; a control's own while it is drawn.
void GetPort(CGrafPtr* port);
void SetPort(CGrafPtr port);
OSStatus GetPortBounds(CGrafPtr port, Rect* bounds);  // the content, from 0, 0

struct OpaqueContext;
using CGContextRef = OpaqueContext*;
// A context begins in the port's own coordinates: points, y downward. It must be ended, which
// clears `context`, before its window goes.
OSStatus QDBeginCGContext(CGrafPtr port, CGContextRef* context);
OSStatus QDEndCGContext(CGrafPtr port, CGContextRef* context);
// Back to the port's own coordinates.
OSStatus SyncCGContextOriginWithPort(CGContextRef context, CGrafPtr port);
void CGContextTranslateCTM(CGContextRef context, double x, double y);
void CGContextScaleCTM(CGContextRef context, double x, double y);
CGAffineTransform CGContextGetCTM(CGContextRef context);
void CGContextDrawImage(CGContextRef context, FloatRect rect, CGImageRef image);
// In the current port.
void EraseRect(Rect const* rect);

// ---- Display, cursor, beep ----

using CGDirectDisplayID = std::uint32_t;
CGDirectDisplayID CGMainDisplayID();
FloatRect CGDisplayBounds(CGDirectDisplayID display);  // points; empty for an unknown display

using ThemeCursor = std::uint32_t;
constexpr ThemeCursor kThemeArrowCursor = 0;
constexpr ThemeCursor kThemeWatchCursor = 7;
OSStatus SetThemeCursor(ThemeCursor cursor);
void SysBeep(std::int16_t duration);
