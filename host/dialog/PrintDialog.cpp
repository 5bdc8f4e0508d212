// SPDX-License-Identifier: Apache-2.0
#include "host/dialog/PrintDialog.h"

#include <utility>

#include "platform/Windows.h"

namespace {

constexpr OSType kButtonSignature = "pdlg"_code;
constexpr std::int32_t kPrintID = 1;
constexpr std::int32_t kCancelID = 2;
constexpr int kButtonWidth = 80;
constexpr int kButtonHeight = 20;
constexpr int kMargin = 12;

}  // namespace

PrintDialog::PrintDialog(DialogSession& session, bool keepsPairs)
    : mSession(session), mKeepsPairs(keepsPairs) {
    WindowRef const window = mSession.Window();
    SetWindowName(window, CFSTR("Print"));
    SetWindowTitleWithCFString(window, CFSTR("Print"));
    Rect bounds = {};
    GetPortBounds(GetWindowPort(window), &bounds);
    mPrint = AddButton(kPrintID, CFSTR("Print"), bounds.right - kMargin);
    mCancel = AddButton(kCancelID, CFSTR("Cancel"), bounds.right - kButtonWidth - 2 * kMargin);
    SetWindowDefaultButton(window, mPrint);
    SetWindowCancelButton(window, mCancel);
    constexpr EventTypeSpec kHit = {kEventClassControl, kEventControlHit};
    InstallEventHandler(GetWindowEventTarget(window), HearHit, 1, &kHit, this, &mHandler);
}

PrintDialog::~PrintDialog() {
    RemoveEventHandler(mHandler);
    for (ControlRef const button : {mPrint, mCancel}) {
        DisposeControl(button);
    }
}

ControlRef PrintDialog::AddButton(std::int32_t number, CFStringRef title, int right) {
    WindowRef const window = mSession.Window();
    Rect content = {};
    GetPortBounds(GetWindowPort(window), &content);
    int const top = content.bottom - kMargin - kButtonHeight;
    Rect const bounds = {ClampedCoordinate(top), ClampedCoordinate(right - kButtonWidth),
                         ClampedCoordinate(top + kButtonHeight), ClampedCoordinate(right)};
    ControlID const id = {kButtonSignature, number};
    ControlRef button = nullptr;
    CreatePushButtonControl(window, &bounds, title, &button);
    SetControlID(button, &id);
    return button;
}

Outcome PrintDialog::Show() {
    if (mPrint == nullptr || mCancel == nullptr || mHandler == nullptr) {
        return Outcome::Failed("can't make the print dialog's window");
    }
    ShowWindow(mSession.Window());
    ShowPane();
    return mFailure;
}

InputResult PrintDialog::PressPrint() {
    return UserPressed(mPrint, 0, true);
}

InputResult PrintDialog::PressCancel() {
    return UserPressed(mCancel, 0, true);
}

OSStatus PrintDialog::HearHit(EventHandlerCallRef, EventRef event, void* dialog) {
    ControlRef control = nullptr;
    GetEventParameter(event, kEventParamDirectObject, typeControlRef, nullptr, sizeof control,
                      nullptr, &control);
    return static_cast<PrintDialog*>(dialog)->Hear(control);
}

OSStatus PrintDialog::Hear(ControlRef control) {
    if (control != mPrint && control != mCancel) {
        return eventNotHandledErr;
    }
    if (control == mPrint) {
        Commit();
    }
    Close(control == mPrint ? End::kPrint : End::kCancel);
    return noErr;
}

void PrintDialog::Commit() {
    Outcome outcome = mSession.Commit();
    mJob = {};
    if (outcome.Ok() && mKeepsPairs && !JobDataPath().empty()) {
        outcome = mJob.Take(DialogSession::JobPairs());
    }
    Note(std::move(outcome));
}

void PrintDialog::Rebuild() {
    Note(mSession.Rebuild());
}

void PrintDialog::HidePane() {
    if (std::exchange(mIsPaneOpen, false)) {
        Note(mSession.ClosePane());
        HideControl(mSession.Pane());
    }
}

void PrintDialog::ShowPane() {
    if (!std::exchange(mIsPaneOpen, true)) {
        ShowControl(mSession.Pane());
        Note(mSession.OpenPane());
    }
}

void PrintDialog::Close(End end) {
    if (mEnd == End::kNone) {
        mEnd = end;
        HidePane();
        HideWindow(mSession.Window());
    }
}

void PrintDialog::Note(Outcome outcome) {
    if (mFailure.Ok()) {
        mFailure = std::move(outcome);
    }
}
