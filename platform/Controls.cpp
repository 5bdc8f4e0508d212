// SPDX-License-Identifier: Apache-2.0
#include "platform/Controls.h"

#include <algorithm>
#include <limits>
#include <string>

#include "platform/internal/CFURLObject.h"

struct OpaqueWindow {
    Rect content;
    WindowRef sheetParent;  // not owned; null for a window that is no sheet
    bool isFront;
};

struct OpaqueControl {
    WindowRef owner;  // not owned
    bool isVisible;
};

struct OpaqueIBNib {
    CFRef<CFTypeRef> contents;
};

namespace platform {
namespace {

std::int16_t Clamped(int coordinate) {
    using Limits = std::numeric_limits<std::int16_t>;
    return static_cast<std::int16_t>(std::clamp<int>(coordinate, Limits::min(), Limits::max()));
}

CFRef<CFTypeRef> ReadNib(CFBundleRef bundle, CFStringRef name) {
    CFRef<CFURLRef> const url(CFBundleCopyBundleURL(bundle));
    std::string file;
    if (!GetUTF8(name, file) || file.find('/') != file.npos) {
        return {};
    }
    std::string bytes;
    if (ReadWholeFile(AbsolutePath(url) + "/Contents/Resources/" + file + ".nib", bytes) != 0) {
        return {};
    }
    CFRef<CFDataRef> const data(CFDataCreate(nullptr,
                                             reinterpret_cast<std::uint8_t const*>(bytes.data()),
                                             static_cast<CFIndex>(bytes.size())));
    return CFRef<CFTypeRef>(
        CFPropertyListCreateFromXMLData(nullptr, data, kCFPropertyListImmutable, nullptr));
}

}  // namespace
}  // namespace platform

OSStatus CreateNibReferenceWithCFBundle(CFBundleRef bundle, CFStringRef name, IBNibRef* nib) {
    if (nib == nullptr) {
        return paramErr;
    }
    *nib = nullptr;
    return platform::WithoutExceptions<OSStatus>(memFullErr, [&]() -> OSStatus {
        auto contents = platform::ReadNib(bundle, name);
        if (!contents) {
            return kIBCarbonRuntimeCantFindNibFile;
        }
        *nib = platform::NewObject<OpaqueIBNib>(OpaqueIBNib{std::move(contents)});
        return *nib == nullptr ? memFullErr : noErr;
    });
}

void DisposeNibReference(IBNibRef nib) {
    platform::DeleteObject(nib);
}

WindowRef GetControlOwner(ControlRef control) {
    return control == nullptr ? nullptr : control->owner;
}

bool IsControlVisible(ControlRef control) {
    return control != nullptr && control->isVisible;
}

OSStatus GetSheetWindowParent(WindowRef sheet, WindowRef* parent) {
    if (parent == nullptr) {
        return paramErr;
    }
    *parent = sheet == nullptr ? nullptr : sheet->sheetParent;
    return *parent == nullptr ? errInvalidWindowRef : noErr;
}

OSStatus GetWindowBounds(WindowRef window, std::uint16_t region, Rect* bounds) {
    if (bounds == nullptr) {
        return paramErr;
    }
    *bounds = Rect{};
    if (window == nullptr) {
        return errInvalidWindowRef;
    }
    if (region != kWindowContentRgn) {
        return paramErr;
    }
    *bounds = window->content;
    return noErr;
}

void MoveWindow(WindowRef window, std::int16_t left, std::int16_t top, bool bringToFront) {
    if (window == nullptr) {
        return;
    }
    Rect const& old = window->content;
    window->content = {top, left, platform::Clamped(top + (old.bottom - old.top)),
                       platform::Clamped(left + (old.right - old.left))};
    window->isFront = window->isFront || bringToFront;
}

WindowRef CreateHostWindow(Rect const& content, WindowRef sheetParent) {
    return platform::NewObject<OpaqueWindow>(OpaqueWindow{content, sheetParent, false});
}

void DisposeHostWindow(WindowRef window) {
    platform::DeleteObject(window);
}

ControlRef CreateUserPane(WindowRef owner, bool visible) {
    return platform::NewObject<OpaqueControl>(OpaqueControl{owner, visible});
}

void DisposeUserPane(ControlRef control) {
    platform::DeleteObject(control);
}
