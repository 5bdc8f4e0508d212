// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "panel/dialogs/UI_DialogWait.h"
#include "platform/CoreFoundation.h"
#include "platform/Nibs.h"

constexpr std::uint32_t kAlertOKOnly = 1;  // standard titles
constexpr std::uint32_t kAlertOKAndCancel = 2;
constexpr std::uint32_t kAlertYesAndNo = 4;
constexpr std::uint32_t kAlertSmallFirstLine = 0x100;  // of size 11
constexpr std::uint32_t kAlertSmallSecondLine = 0x200;
// What nearly every alert has.
constexpr std::uint32_t kUsualAlert = kAlertOKAndCancel | kAlertSmallSecondLine;

// An alert of one line or two: a sheet on its parent, or a window of its own where there is none
// or the parent is a sheet itself. Byte strings are in the application's encoding.
class UI_ZUBAlert : public UI_DialogWait {
  public:
    // The second line, the parent and the titles may be null; without a first line, a bundle or
    // memory the alert isn't ready.
    UI_ZUBAlert(CFStringRef firstLine, CFStringRef secondLine, std::uint32_t flags,
                WindowRef parentWindow, CFStringRef okTitle, CFStringRef cancelTitle);
    UI_ZUBAlert(char const* firstLine, char const* secondLine, std::uint32_t flags,
                WindowRef parentWindow);
    ~UI_ZUBAlert() override;

    // Show an alert and wait: kDialogConfirmed, kDialogCancelled, or kDialogNotShown.
    static OSType TellUser(CFStringRef line, std::uint32_t flags, WindowRef parentWindow,
                           CFStringRef okTitle = nullptr, CFStringRef cancelTitle = nullptr);
    static OSType TellUser(CFStringRef firstLine, CFStringRef secondLine, std::uint32_t flags,
                           WindowRef parentWindow, CFStringRef okTitle = nullptr,
                           CFStringRef cancelTitle = nullptr);
    static OSType TellUser(char const* line, std::uint32_t flags, WindowRef parentWindow);
    static OSType TellUser(char const* firstLine, char const* secondLine, std::uint32_t flags,
                           WindowRef parentWindow);

    IBNibRef mAlertNib = nullptr;  // owned
    bool mAlertReady = false;
    CFStringRef mSecondLine = nullptr;  // retained; null for none
    CFStringRef mFirstLine = nullptr;   // retained
    std::uint32_t mAlertFlags = 0;

  private:
    void build(CFStringRef firstLine, CFStringRef secondLine, CFStringRef okTitle,
               CFStringRef cancelTitle);
    bool makeWindow();
    CFStringRef windowName() const;
    void setTitles(CFStringRef okTitle, CFStringRef cancelTitle);
    void offerYesAndNo();
    void setLine(std::int32_t number, CFStringRef text, bool isSmall);
    OSType tell();
};
