// SPDX-License-Identifier: Apache-2.0
#include "panel/dialogs/ResourcePicture.h"

#include <cstring>
#include <string>
#include <string_view>

#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "panel/dialogs/ControlUtils.h"
#include "platform/CFRef.h"

namespace {

// Null without a bundle: what lies in the working directory is none of its pictures.
CFRef<CFURLRef> ResourceURL(char const* relativePath) {
    char folder[ControlUtils::kResourcePathSize];
    ControlUtils::GetResourceURL(folder);
    if (folder[0] == '\0') {
        return {};
    }
    std::string const path = std::string(folder) + relativePath;
    return CFRef<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<std::uint8_t const*>(path.data()),
        static_cast<CFIndex>(path.size()), false));
}

void DrawImage(CGrafPtr port, Rect const& bounds, CGImageRef image) {
    CGContextRef context = nullptr;
    if (QDBeginCGContext(port, &context) != noErr) {
        return;
    }
    SyncCGContextOriginWithPort(context, port);
    CGContextDrawImage(context, ConvertQDRectToCGRect(port, context, bounds), image);
    QDEndCGContext(port, &context);
}

}  // namespace

CGImageRef LoadAnImageRef(CFURLRef url) {
    CFRef<CGDataProviderRef> const provider(CGDataProviderCreateWithURL(url));
    return CGImageCreateWithPNGDataProvider(provider, nullptr, false, 0);
}

FloatRect ConvertQDRectToCGRect(CGrafPtr port, CGContextRef context, Rect const& rect) {
    Rect bounds = {};
    GetPortBounds(port, &bounds);
    CGContextTranslateCTM(context, 0, HeightOf(bounds));
    CGContextScaleCTM(context, 1, -1);
    FloatPoint const corner = {static_cast<double>(rect.left), static_cast<double>(rect.bottom)};
    return {CGPointApplyAffineTransform(corner, CGAffineTransformInvert(CGContextGetCTM(context))),
            {static_cast<double>(WidthOf(rect)), static_cast<double>(HeightOf(rect))}};
}

void ControlUtils::DrawResourcePicture(ControlRef control, std::int16_t pictureID) {
    DrawPNG(GetWindowPort(GetControlOwner(control)), control,
            (std::to_string(pictureID) + ".png").c_str());
}

void ControlUtils::GetResourceURL(char (&buffer)[kResourcePathSize]) {
    buffer[0] = '\0';
    constexpr std::string_view kFolder = "/Resources/";
    CFRef<CFURLRef> const url(CFBundleCopyExecutableURL(PDEBundle::mBundle));
    char path[kResourcePathSize];
    if (!url || !CFURLGetFileSystemRepresentation(url, true, reinterpret_cast<std::uint8_t*>(path),
                                                  sizeof path)) {
        return;
    }
    std::string_view const executable(path);
    std::size_t const end = executable.rfind("/MacOS");
    if (end != std::string_view::npos && end + kFolder.size() < sizeof buffer) {
        std::memcpy(buffer, path, end);
        std::memcpy(buffer + end, kFolder.data(), kFolder.size());
        buffer[end + kFolder.size()] = '\0';
    }
}

void ControlUtils::DrawPNG(CGrafPtr port, ControlRef control, char const* relativePath) {
    Rect bounds = {};
    if (relativePath == nullptr || GetControlBounds(control, &bounds) != noErr) {
        return;
    }
    CFRef<CGImageRef> const image(LoadAnImageRef(ResourceURL(relativePath)));
    CGrafPtr former = nullptr;
    GetPort(&former);
    SetPort(port);
    EraseRect(&bounds);
    SetPort(former);
    if (image) {
        DrawImage(port, bounds, image);
    }
}
