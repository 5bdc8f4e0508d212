// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Controls.h"
#include "platform/Events.h"
#include "platform/Windows.h"

// The controls that all dialogs have in common. The default button sends the command 'ok  ', the
// Cancel and the No button 'not!', and so do Return and Escape.
constexpr ControlID kOKButton = {"ok  "_code, 0};
constexpr ControlID kCancelButton = {"canc"_code, 0};
constexpr ControlID kNoButton = {"not!"_code, 0};

// How a dialog ended.
constexpr OSType kDialogConfirmed = "ok  "_code;
constexpr OSType kDialogCancelled = "not!"_code;
constexpr OSType kDialogNotShown = "canc"_code;

// A modal dialog. The derived class makes the window, installs the handler on it and ends it.
class UI_DialogWait {
  public:
    // `parentWindow` may be null; it is borrowed.
    explicit UI_DialogWait(WindowRef parentWindow);
    UI_DialogWait(UI_DialogWait const&) = delete;
    UI_DialogWait& operator=(UI_DialogWait const&) = delete;
    virtual ~UI_DialogWait();

    // 1: the dialog may end with 'ok  '; -1: it ends as cancelled; any other: it stays open.
    virtual long validateInput();
    virtual void enableOK(bool enabled);
    virtual void enableCancel(bool enabled);
    // Both hide the dialog, keep the result and end its loop.
    virtual void onCancel();
    virtual void onOK();
    // A sheet is shown on the parent, any other window in front.
    virtual void show();
    virtual void hide();

    // Runs the dialog until it is ended. One that nobody is left to end counts as cancelled.
    void waitForUser();
    // Once: a second call does nothing.
    OSStatus installEventHandler(WindowRef window);
    void removeEventHandler();
    // Each that isn't negative, over what the control has. paramErr for null.
    OSStatus setFontInfo(ControlRef control, std::int16_t font, std::int16_t size,
                         std::int16_t style);
    ControlRef getControlByID(OSType signature, std::int32_t id) const;  // null for none
    // The buttons are as wide as their titles need, OK growing right and Cancel left.
    void setStandardButtonTitles();

    WindowRef mDialogWindow = nullptr;  // the derived class's
    OSType mResult = 0;                 // 0 until the dialog has ended
    WindowRef mParentWindow;            // not owned, may be null

  protected:
    ControlRef getControl(ControlID id) const { return getControlByID(id.signature, id.id); }
    // The text of the table "Dialogs" on a button; where there is none it stays as it is.
    void setButtonTitle(ControlID button, CFStringRef key);

  private:
    static OSStatus waitDialogHandler(EventHandlerCallRef call, EventRef event, void* dialog);
    OSStatus handleCommand(OSType command);
    void setEnabled(ControlID button, bool enabled);
    void end(OSType result);
    bool isSheet() const;

    EventHandlerRef mDialogHandlerRef = nullptr;  // owned
    EventHandlerUPP mDialogHandlerUPP = nullptr;
};
