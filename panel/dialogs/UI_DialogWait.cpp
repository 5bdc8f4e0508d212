// SPDX-License-Identifier: Apache-2.0
#include "panel/dialogs/UI_DialogWait.h"

#include <utility>

#include "VelonFeatures/Project/Core/PDEBundle.h"
#include "panel/dialogs/ControlUtils.h"
#include "platform/CFRef.h"

UI_DialogWait::UI_DialogWait(WindowRef parentWindow) : mParentWindow(parentWindow) {}

UI_DialogWait::~UI_DialogWait() {
    removeEventHandler();
}

long UI_DialogWait::validateInput() {
    return 1;
}

void UI_DialogWait::enableOK(bool enabled) {
    setEnabled(kOKButton, enabled);
}

void UI_DialogWait::enableCancel(bool enabled) {
    setEnabled(kCancelButton, enabled);
}

void UI_DialogWait::onCancel() {
    end(kDialogCancelled);
}

void UI_DialogWait::onOK() {
    end(kDialogConfirmed);
}

void UI_DialogWait::show() {
    if (isSheet()) {
        ShowSheetWindow(mDialogWindow, mParentWindow);
        return;
    }
    SelectWindow(mDialogWindow);
    ShowWindow(mDialogWindow);
}

void UI_DialogWait::hide() {
    if (isSheet()) {
        HideSheetWindow(mDialogWindow);
    } else {
        HideWindow(mDialogWindow);
    }
}

void UI_DialogWait::waitForUser() {
    RunAppModalLoopForWindow(mDialogWindow);
    if (mResult == 0) {
        onCancel();
    }
}

OSStatus UI_DialogWait::installEventHandler(WindowRef window) {
    if (mDialogHandlerRef != nullptr) {
        return noErr;
    }
    constexpr EventTypeSpec kCommand = {kEventClassCommand, kEventCommandProcess};
    mDialogHandlerUPP = NewEventHandlerUPP(waitDialogHandler);
    return InstallEventHandler(GetWindowEventTarget(window), mDialogHandlerUPP, 1, &kCommand, this,
                               &mDialogHandlerRef);
}

void UI_DialogWait::removeEventHandler() {
    RemoveEventHandler(std::exchange(mDialogHandlerRef, nullptr));
    DisposeEventHandlerUPP(std::exchange(mDialogHandlerUPP, nullptr));
}

OSStatus UI_DialogWait::setFontInfo(ControlRef control, std::int16_t font, std::int16_t size,
                                    std::int16_t style) {
    return ControlUtils::setControlFontInfo(control, font, size, style, ControlUtils::kLeaveAsItIs);
}

ControlRef UI_DialogWait::getControlByID(OSType signature, std::int32_t id) const {
    ControlID const identifier = {signature, id};
    ControlRef control = nullptr;
    GetControlByID(mDialogWindow, &identifier, &control);
    return control;
}

void UI_DialogWait::setStandardButtonTitles() {
    setButtonTitle(kOKButton, CFSTR("OK"));
    ControlUtils::SizeControl(getControl(kOKButton), mDialogWindow, true);
    setButtonTitle(kCancelButton, CFSTR("Cancel"));
    ControlUtils::SizeControl(getControl(kCancelButton), mDialogWindow, false);
}

void UI_DialogWait::setButtonTitle(ControlID button, CFStringRef key) {
    CFRef<CFStringRef> const title(PDEBundle::CopyLocalizedCFStringFromFile(key, CFSTR("Dialogs")));
    if (title) {
        ControlUtils::SetControlTitle(getControl(button), title.Get());
    }
}

OSStatus UI_DialogWait::waitDialogHandler(EventHandlerCallRef, EventRef event, void* dialog) {
    HICommand command = {};
    OSStatus const status = GetEventParameter(event, kEventParamDirectObject, typeHICommand,
                                              nullptr, kHICommandSize, nullptr, &command);
    return status != noErr ? eventNotHandledErr
                           : static_cast<UI_DialogWait*>(dialog)->handleCommand(command.commandID);
}

// What ends the dialog may end this object too.
OSStatus UI_DialogWait::handleCommand(OSType command) {
    if (command != kDialogConfirmed && command != kDialogCancelled) {
        return eventNotHandledErr;
    }
    long const answer = command == kDialogCancelled ? -1 : validateInput();
    if (answer == 1) {
        onOK();
    } else if (answer == -1) {
        onCancel();
    }
    return noErr;
}

void UI_DialogWait::setEnabled(ControlID button, bool enabled) {
    ControlRef const control = getControl(button);
    if (enabled) {
        EnableControl(control);
    } else {
        DisableControl(control);
    }
}

void UI_DialogWait::end(OSType result) {
    hide();
    mResult = result;
    QuitAppModalLoopForWindow(mDialogWindow);
}

bool UI_DialogWait::isSheet() const {
    WindowClass windowClass = 0;
    GetWindowClass(mDialogWindow, &windowClass);
    return IsSheetClass(windowClass);
}
