// SPDX-License-Identifier: Apache-2.0
#include "panel/dialogs/UI_ZUBAlert.h"

#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "panel/dialogs/ControlUtils.h"
#include "platform/CFRef.h"
#include "platform/TextEncodingConverter.h"

namespace {

constexpr OSType kLineSignature = "alrt"_code;
constexpr std::int32_t kFirstLineID = 1;
constexpr std::int32_t kSecondLineID = 2;

// Null for null.
CFRef<CFStringRef> StringOf(char const* bytes) {
    return CFRef<CFStringRef>(
        bytes == nullptr ? nullptr
                         : CFStringCreateWithCString(nullptr, bytes, GetApplicationTextEncoding()));
}

}  // namespace

UI_ZUBAlert::UI_ZUBAlert(CFStringRef firstLine, CFStringRef secondLine, std::uint32_t flags,
                         WindowRef parentWindow, CFStringRef okTitle, CFStringRef cancelTitle)
    : UI_DialogWait(parentWindow), mAlertFlags(flags) {
    build(firstLine, secondLine, okTitle, cancelTitle);
}

UI_ZUBAlert::UI_ZUBAlert(char const* firstLine, char const* secondLine, std::uint32_t flags,
                         WindowRef parentWindow)
    : UI_DialogWait(parentWindow), mAlertFlags(flags) {
    build(StringOf(firstLine), StringOf(secondLine), nullptr, nullptr);
}

UI_ZUBAlert::~UI_ZUBAlert() {
    removeEventHandler();
    DisposeWindow(mDialogWindow);
    DisposeNibReference(mAlertNib);
    CFRelease(mFirstLine);
    CFRelease(mSecondLine);
}

OSType UI_ZUBAlert::TellUser(CFStringRef line, std::uint32_t flags, WindowRef parentWindow,
                             CFStringRef okTitle, CFStringRef cancelTitle) {
    return TellUser(line, nullptr, flags, parentWindow, okTitle, cancelTitle);
}

OSType UI_ZUBAlert::TellUser(CFStringRef firstLine, CFStringRef secondLine, std::uint32_t flags,
                             WindowRef parentWindow, CFStringRef okTitle, CFStringRef cancelTitle) {
    return UI_ZUBAlert(firstLine, secondLine, flags, parentWindow, okTitle, cancelTitle).tell();
}

OSType UI_ZUBAlert::TellUser(char const* line, std::uint32_t flags, WindowRef parentWindow) {
    return TellUser(line, nullptr, flags, parentWindow);
}

OSType UI_ZUBAlert::TellUser(char const* firstLine, char const* secondLine, std::uint32_t flags,
                             WindowRef parentWindow) {
    return UI_ZUBAlert(firstLine, secondLine, flags, parentWindow).tell();
}

void UI_ZUBAlert::build(CFStringRef firstLine, CFStringRef secondLine, CFStringRef okTitle,
                        CFStringRef cancelTitle) {
    if (firstLine == nullptr) {
        return;
    }
    mFirstLine = CFRef<CFStringRef>::Retained(firstLine).Release();
    mSecondLine = CFRef<CFStringRef>::Retained(secondLine).Release();
    if (!makeWindow() || installEventHandler(mDialogWindow) != noErr) {
        return;
    }
    setTitles(okTitle, cancelTitle);
    setLine(kFirstLineID, mFirstLine, (mAlertFlags & kAlertSmallFirstLine) != 0);
    setLine(kSecondLineID, mSecondLine, (mAlertFlags & kAlertSmallSecondLine) != 0);
    mAlertReady = true;
}

bool UI_ZUBAlert::makeWindow() {
    return PDEBundle::mInit &&
           CreateNibReferenceWithCFBundle(PDEBundle::mBundle, CFSTR("AlertUI"), &mAlertNib) ==
               noErr &&
           CreateWindowFromNib(mAlertNib, windowName(), &mDialogWindow) == noErr;
}

// No sheet hangs on a sheet.
CFStringRef UI_ZUBAlert::windowName() const {
    WindowClass parentClass = 0;
    bool const hasParent = GetWindowClass(mParentWindow, &parentClass) == noErr;
    if (hasParent && !IsSheetClass(parentClass)) {
        return mSecondLine != nullptr ? CFSTR("Two Line Sheet") : CFSTR("One Line Sheet");
    }
    return mSecondLine != nullptr ? CFSTR("Two Line") : CFSTR("One Line");
}

void UI_ZUBAlert::setTitles(CFStringRef okTitle, CFStringRef cancelTitle) {
    if ((mAlertFlags & (kAlertOKOnly | kAlertOKAndCancel)) != 0) {
        setStandardButtonTitles();
        if ((mAlertFlags & kAlertOKOnly) != 0) {
            HideControl(getControl(kCancelButton));
        }
    } else if ((mAlertFlags & kAlertYesAndNo) != 0) {
        offerYesAndNo();
    }
    if (okTitle != nullptr) {
        ControlUtils::SetControlTitle(getControl(kOKButton), okTitle);
    }
    if (cancelTitle != nullptr) {
        ControlUtils::SetControlTitle(getControl(kCancelButton), cancelTitle);
    }
}

// No stands in Cancel's place, for the Escape key too.
void UI_ZUBAlert::offerYesAndNo() {
    setButtonTitle(kOKButton, CFSTR("Yes"));
    setButtonTitle(kNoButton, CFSTR("No"));
    HideControl(getControl(kCancelButton));
    ShowControl(getControl(kNoButton));
    SetWindowCancelButton(mDialogWindow, getControl(kNoButton));
}

void UI_ZUBAlert::setLine(std::int32_t number, CFStringRef text, bool isSmall) {
    ControlRef const line = getControlByID(kLineSignature, number);
    if (text == nullptr || line == nullptr) {
        return;
    }
    ControlUtils::SetControlTitle(line, text);
    if (isSmall) {
        setFontInfo(line, kControlFontSystem, kSmallSystemFontSize, 0);
    }
}

OSType UI_ZUBAlert::tell() {
    if (!mAlertReady) {
        return kDialogNotShown;
    }
    show();
    waitForUser();
    return mResult;
}
