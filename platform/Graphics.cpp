// SPDX-License-Identifier: Apache-2.0
#include "platform/Graphics.h"

#include <cmath>
#include <string>
#include <string_view>

#include "platform/internal/CFURLObject.h"
#include "platform/internal/Desktop.h"

struct __CGDataProvider : platform::CFObject {
    explicit __CGDataProvider(std::string&& filePath)
        : CFObject(&platform::kDataProviderClass), path(std::move(filePath)) {}

    std::string path;
};

struct __CGImage : platform::CFObject {
    __CGImage(CFRef<CFStringRef>&& file, std::uint32_t pixelsAcross, std::uint32_t pixelsDown)
        : CFObject(&platform::kImageClass),
          path(std::move(file)),
          width(pixelsAcross),
          height(pixelsDown) {}

    CFRef<CFStringRef> path;
    std::uint32_t width;
    std::uint32_t height;
};

namespace platform {

template <>
constexpr HandleKey kTagOf<CGContextRef> = kContextTag;

namespace {

struct Context {
    WindowRef window = nullptr;
    CGAffineTransform transform = {1, 0, 0, 1, 0, 0};
};
constexpr CGAffineTransform kIdentity = {1, 0, 0, 1, 0, 0};

HandleTable<Context>& Contexts() {
    static HandleTable<Context>& sContexts = *new HandleTable<Context>;
    return sContexts;
}

Context* FindContext(CGContextRef context) {
    return Contexts().Find(KeyOf(context));
}

bool NeverEqual(CFObject const*, CFObject const*) {
    return false;
}

// First `inner`, then `outer`.
CGAffineTransform Concatenated(CGAffineTransform const& inner, CGAffineTransform const& outer) {
    FloatPoint const origin = CGPointApplyAffineTransform({inner.tx, inner.ty}, outer);
    return {inner.a * outer.a + inner.b * outer.c,
            inner.a * outer.b + inner.b * outer.d,
            inner.c * outer.a + inner.d * outer.c,
            inner.c * outer.b + inner.d * outer.d,
            origin.x,
            origin.y};
}

std::int16_t Rounded(double coordinate) {
    constexpr double kFar = 40000;  // beyond what a coordinate can be
    return std::isfinite(coordinate)
               ? ClampedCoordinate(
                     static_cast<int>(std::lround(std::min(std::max(coordinate, -kFar), kFar))))
               : std::int16_t{0};
}

Rect DeviceRect(FloatRect const& rect, CGAffineTransform const& transform) {
    FloatPoint const one = CGPointApplyAffineTransform(rect.origin, transform);
    FloatPoint const other = CGPointApplyAffineTransform(
        {rect.origin.x + rect.size.width, rect.origin.y + rect.size.height}, transform);
    return {Rounded(std::min(one.y, other.y)), Rounded(std::min(one.x, other.x)),
            Rounded(std::max(one.y, other.y)), Rounded(std::max(one.x, other.x))};
}

void SetPicture(WindowNode* window, Rect const& place, CFStringRef path) {
    ControlNode* const pane = window == nullptr ? nullptr : window->index.PaneAt(place);
    if (pane == nullptr) {
        return;
    }
    CFRef<CFStringRef>& picture = pane->As<DrawnPane>()->picture;
    if (!CFEqual(picture, path)) {
        picture = CFRef<CFStringRef>::Retained(path);
        MarkForFace(*pane);
    }
}

std::uint32_t BigEndian(std::string_view bytes) {
    std::uint32_t number = 0;
    for (char const byte : bytes) {
        number = (number << 8) | static_cast<unsigned char>(byte);
    }
    return number;
}

// Signature, the length of the first chunk and its name, then width and height.
CGImageRef ReadImage(std::string const& path) {
    constexpr std::string_view kBegin("\x89PNG\r\n\x1A\n\0\0\0\x0DIHDR", 16);
    constexpr std::size_t kHeaderSize = 24;
    std::string bytes;
    if (ReadBeginning(path, kHeaderSize, bytes) != 0 || bytes.size() < kHeaderSize ||
        !bytes.starts_with(kBegin)) {
        return nullptr;
    }
    CFRef<CFStringRef> name(CreateStringFromSystemBytes(path));
    std::string_view const header(bytes);
    return name ? NewObject<__CGImage>(std::move(name), BigEndian(header.substr(16, 4)),
                                       BigEndian(header.substr(20, 4)))
                : nullptr;
}

}  // namespace

constinit CFClass const kDataProviderClass = {kDataProviderTypeID, DestroyObject<__CGDataProvider>,
                                              NeverEqual};
constinit CFClass const kImageClass = {kImageTypeID, DestroyObject<__CGImage>, NeverEqual};

}  // namespace platform

using platform::Find;

CGAffineTransform CGAffineTransformInvert(CGAffineTransform transform) {
    auto const& [a, b, c, d, tx, ty] = transform;
    double const determinant = a * d - b * c;
    if (determinant == 0 || !std::isfinite(determinant)) {
        return transform;
    }
    return {d / determinant,
            -b / determinant,
            -c / determinant,
            a / determinant,
            (c * ty - d * tx) / determinant,
            (b * tx - a * ty) / determinant};
}

FloatPoint CGPointApplyAffineTransform(FloatPoint point, CGAffineTransform transform) {
    return {transform.a * point.x + transform.c * point.y + transform.tx,
            transform.b * point.x + transform.d * point.y + transform.ty};
}

// ---- Images ----

CGDataProviderRef CGDataProviderCreateWithURL(CFURLRef url) {
    return platform::WithoutExceptions<CGDataProviderRef>(nullptr, [&]() -> CGDataProviderRef {
        std::string path = platform::AbsolutePath(url);
        return path.empty() ? nullptr : platform::NewObject<__CGDataProvider>(std::move(path));
    });
}

void CGDataProviderRelease(CGDataProviderRef provider) {
    CFRelease(provider);
}

CGImageRef CGImageCreateWithPNGDataProvider(CGDataProviderRef provider, double const*, bool,
                                            std::int32_t) {
    if (provider == nullptr) {
        return nullptr;
    }
    return platform::WithoutExceptions<CGImageRef>(
        nullptr, [&] { return platform::ReadImage(provider->path); });
}

void CGImageRelease(CGImageRef image) {
    CFRelease(image);
}

std::uint32_t CGImageGetWidth(CGImageRef image) {
    return image == nullptr ? 0 : image->width;
}

std::uint32_t CGImageGetHeight(CGImageRef image) {
    return image == nullptr ? 0 : image->height;
}

CFStringRef CGImageGetPath(CGImageRef image) {
    return image == nullptr ? nullptr : image->path.Get();
}

// ---- Drawing ----

void GetPort(CGrafPtr* port) {
    if (port != nullptr) {
        CGrafPtr const current = platform::TheDesktop().port;
        *port = Find(current) == nullptr ? nullptr : current;
    }
}

void SetPort(CGrafPtr port) {
    platform::TheDesktop().port = port;
}

OSStatus GetPortBounds(CGrafPtr port, Rect* bounds) {
    if (bounds == nullptr) {
        return paramErr;
    }
    platform::WindowNode const* const window = Find(port);
    *bounds = window == nullptr ? Rect{}
                                : Rect{0, 0, ClampedCoordinate(HeightOf(window->content)),
                                       ClampedCoordinate(WidthOf(window->content))};
    return window == nullptr ? paramErr : noErr;
}

OSStatus QDBeginCGContext(CGrafPtr port, CGContextRef* context) {
    if (context == nullptr) {
        return paramErr;
    }
    *context = nullptr;
    platform::WindowNode const* const window = Find(port);
    if (window == nullptr) {
        return paramErr;
    }
    auto* const made = platform::NewObject<platform::Context>(
        platform::Context{window->Ref(), platform::kIdentity});
    if (made == nullptr) {
        return memFullErr;
    }
    OSStatus const status = platform::Guarded([&]() -> OSStatus {
        *context = platform::MakeRef<CGContextRef>(platform::Contexts().Add(made));
        return noErr;
    });
    if (status != noErr) {
        platform::DeleteObject(made);
    }
    return status;
}

OSStatus QDEndCGContext(CGrafPtr, CGContextRef* context) {
    platform::Context* const found = context == nullptr ? nullptr : platform::FindContext(*context);
    if (found == nullptr) {
        return paramErr;
    }
    platform::Contexts().Remove(platform::KeyOf(*context));
    platform::DeleteObject(found);
    *context = nullptr;
    return noErr;
}

OSStatus SyncCGContextOriginWithPort(CGContextRef context, CGrafPtr port) {
    platform::Context* const found = platform::FindContext(context);
    if (found == nullptr || Find(port) == nullptr) {
        return paramErr;
    }
    found->transform = platform::kIdentity;
    return noErr;
}

void CGContextTranslateCTM(CGContextRef context, double x, double y) {
    if (platform::Context* const found = platform::FindContext(context); found != nullptr) {
        found->transform = platform::Concatenated({1, 0, 0, 1, x, y}, found->transform);
    }
}

void CGContextScaleCTM(CGContextRef context, double x, double y) {
    if (platform::Context* const found = platform::FindContext(context); found != nullptr) {
        found->transform = platform::Concatenated({x, 0, 0, y, 0, 0}, found->transform);
    }
}

CGAffineTransform CGContextGetCTM(CGContextRef context) {
    platform::Context const* const found = platform::FindContext(context);
    return found == nullptr ? platform::kIdentity : found->transform;
}

void CGContextDrawImage(CGContextRef context, FloatRect rect, CGImageRef image) {
    platform::Context const* const found = platform::FindContext(context);
    if (found != nullptr && image != nullptr) {
        platform::SetPicture(Find(found->window), platform::DeviceRect(rect, found->transform),
                             image->path);
    }
}

void EraseRect(Rect const* rect) {
    if (rect != nullptr) {
        platform::SetPicture(Find(platform::TheDesktop().port), *rect, nullptr);
    }
}

// ---- Display, cursor, beep ----

namespace {

constexpr CGDirectDisplayID kMainDisplay = 1;

}  // namespace

CGDirectDisplayID CGMainDisplayID() {
    return kMainDisplay;
}

FloatRect CGDisplayBounds(CGDirectDisplayID display) {
    FloatRect bounds = {};
    if (display == kMainDisplay) {
        platform::TellFace([&](ControlFace& face) { bounds = face.MainDisplay(); });
    }
    return bounds;
}

OSStatus SetThemeCursor(ThemeCursor cursor) {
    platform::TellFace([&](ControlFace& face) { face.SetCursor(cursor); });
    return noErr;
}

void SysBeep(std::int16_t) {
    platform::TellFace([](ControlFace& face) { face.Beep(); });
}
