// SPDX-License-Identifier: Apache-2.0
#include "panel/dialogs/UI_ZUBAlert.h"
#include "tests/panel/dialogs/DialogFixture.h"

namespace {

class AlertTest : public DialogFixture {
  protected:
    // Runs `look` while `tell`, which shows an alert, waits; its result.
    template <typename Tell>
    OSType While(Tell const& tell, std::function<void()> const& look) {
        bool looked = false;
        mFace.SetNextStep([&] { return !std::exchange(looked, true) && (look(), true); });
        OSType const result = tell();
        mFace.SetNextStep(nullptr);
        return result;
    }
    static InputResult Press(OSType signature) {
        return UserPressed(ControlIn(FrontWindow(), signature), 0, true);
    }
    // "OK|Cancel": those that show, from the right.
    static std::string Buttons() {
        std::string titles;
        for (OSType const button : {"ok  "_code, "canc"_code, "not!"_code}) {
            ControlView const view = ViewOf(ControlIn(FrontWindow(), button));
            titles += view.isVisible ? (titles.empty() ? "" : "|") + Text(view.title) : "";
        }
        return titles;
    }
};

TEST_F(AlertTest, ItsFlagsChooseButtonsAndSizes) {
    struct {
        std::uint32_t flags;
        char const *ok, *cancel, *buttons;
        int firstSize, secondSize;
    } const cases[] = {
        {0, nullptr, nullptr, "OK|Cancel", 13, 13},
        {1, nullptr, nullptr, "OK", 13, 13},
        {2, nullptr, nullptr, "OK|Cancel", 13, 13},
        {3, nullptr, nullptr, "OK", 13, 13},
        {4, nullptr, nullptr, "Yes|No", 13, 13},
        {6, nullptr, nullptr, "OK|Cancel", 13, 13},
        {0x102, "Open", nullptr, "Open|Cancel", 11, 13},
        {0x202, "Open", "Leave", "Open|Leave", 13, 11},
        {0x304, "Sure", "Leave", "Sure|No", 11, 11},
    };
    for (auto const& row : cases) {
        SCOPED_TRACE(row.flags);
        auto const tell = [&] {
            return UI_ZUBAlert::TellUser(CFSTR("First"), CFSTR("Second"), row.flags, nullptr,
                                         row.ok == nullptr ? nullptr : Str(row.ok).Get(),
                                         row.cancel == nullptr ? nullptr : Str(row.cancel).Get());
        };
        EXPECT_EQ(kDialogConfirmed, While(tell, [&] {
                      WindowRef const alert = FrontWindow();
                      EXPECT_EQ(row.buttons, Buttons());
                      ControlView const first = ViewOf(ControlIn(alert, "alrt"_code, 1));
                      ControlView const second = ViewOf(ControlIn(alert, "alrt"_code, 2));
                      EXPECT_EQ("First/Second", Text(first.text) + "/" + Text(second.text));
                      EXPECT_EQ(row.firstSize, first.font.size);
                      EXPECT_EQ(row.secondSize, second.font.size);
                      Press("ok  "_code);
                  }));
    }
}

TEST_F(AlertTest, EachOfItsButtonsAndKeysEndsIt) {
    struct {
        std::uint32_t flags;
        OSType button;  // 0: the key
        char32_t key;
        OSType result;
    } const cases[] = {
        {2, "ok  "_code, 0, kDialogConfirmed}, {2, "canc"_code, 0, kDialogCancelled},
        {4, "ok  "_code, 0, kDialogConfirmed}, {4, "not!"_code, 0, kDialogCancelled},
        {2, 0, kReturnKey, kDialogConfirmed},  {2, 0, kEscapeKey, kDialogCancelled},
        {4, 0, kEscapeKey, kDialogCancelled},  {1, 0, kSpaceKey, kDialogConfirmed},
        {1, 0, U'x', kDialogCancelled},        {1, 0, kEscapeKey, kDialogCancelled},
    };
    for (auto const& row : cases) {
        auto const tell = [&] { return UI_ZUBAlert::TellUser("Line", row.flags, nullptr); };
        EXPECT_EQ(row.result, While(tell,
                                    [&] {
                                        if (row.button != 0) {
                                            EXPECT_EQ(InputResult::kDone, Press(row.button));
                                        } else {
                                            UserPressedKey(FrontWindow(), row.key, 0);
                                        }
                                        // Escape has no button to press there: the alert ends for
                                        // want of steps.
                                        EXPECT_EQ(row.flags == 1 && row.key != kSpaceKey,
                                                  IsWindowVisible(ModalWindow()));
                                    }))
            << row.flags << " " << row.button << " " << static_cast<int>(row.key);
        EXPECT_EQ(mWindow, FrontWindow());
        EXPECT_EQ(0, ModalLoopCount());
    }
}

TEST_F(AlertTest, ItIsASheetOnAWindowAndAWindowOnASheetOrOnNothing) {
    WindowRef const sheet = CreateHostWindow({0, 0, 300, 400}, mWindow);
    struct {
        WindowRef parent;
        char const* second;
        char const* name;
    } const cases[] = {
        {nullptr, nullptr, "One Line"},       {nullptr, "b", "Two Line"},
        {mWindow, nullptr, "One Line Sheet"}, {mWindow, "b", "Two Line Sheet"},
        {sheet, nullptr, "One Line"},         {sheet, "b", "Two Line"},
    };
    for (auto const& row : cases) {
        auto const tell = [&] { return UI_ZUBAlert::TellUser("a", row.second, 2, row.parent); };
        EXPECT_EQ(kDialogConfirmed, While(tell,
                                          [&] {
                                              WindowView const view = ViewOf(FrontWindow());
                                              EXPECT_EQ(row.name, Text(view.name));
                                              EXPECT_EQ(row.parent == mWindow ? mWindow : nullptr,
                                                        view.parent);
                                              EXPECT_TRUE(view.isModal);
                                              EXPECT_EQ(view.defaultButton, view.focus);
                                              Press("ok  "_code);
                                          }))
            << row.name;
    }
}

TEST_F(AlertTest, AnAlertInAnAlertEndsFirst) {
    Listener nested{[&](EventRef) {
        WindowRef const outer = FrontWindow();
        int steps = 0;
        mFace.SetNextStep([&, outer] {
            ++steps;
            if (steps == 1) {
                EXPECT_EQ(2, ModalLoopCount());
                EXPECT_EQ("Two Line", Text(ViewOf(FrontWindow()).name)) << "on a sheet";
                EXPECT_EQ(InputResult::kBlocked,
                          UserPressed(ControlIn(outer, "ok  "_code), 0, true));
            }
            Press("canc"_code);
            return steps < 3;
        });
        EXPECT_EQ(kDialogCancelled, UI_ZUBAlert::TellUser("inner", "", 514, outer));
        EXPECT_EQ(outer, FrontWindow());
        EXPECT_EQ(1, steps);
        return eventNotHandledErr;
    }};
    auto const tell = [&] { return UI_ZUBAlert::TellUser("outer", "", 514, mWindow); };
    EXPECT_EQ(kDialogConfirmed, While(tell, [&] {
                  nested.Install(GetControlEventTarget(ControlIn(FrontWindow(), "ok  "_code)),
                                 {kHit});
                  Press("ok  "_code);
              }));
    EXPECT_EQ(mWindow, FrontWindow());
}

TEST_F(AlertTest, WithoutALineOrAParentThatIsLeftNothingGoesWrong) {
    EXPECT_EQ(kDialogNotShown,
              UI_ZUBAlert::TellUser(static_cast<char const*>(nullptr), 2, mWindow));
    EXPECT_EQ(kDialogNotShown, UI_ZUBAlert::TellUser(nullptr, CFSTR("b"), 2, mWindow));
    std::size_t const windows = WindowsInOrder().size();
    UI_ZUBAlert alert(CFSTR("a"), nullptr, 2, mWindow, nullptr, nullptr);
    DisposeWindow(std::exchange(mWindow, nullptr));
    alert.show();
    EXPECT_EQ(nullptr, FrontWindow());
    EXPECT_EQ(windows, WindowsInOrder().size());
}

TEST_F(AlertTest, ItSpeaksTheUsersLanguageAndBytesAreInTheApplicationsEncoding) {
    ScopedVariable const locale("LC_ALL", "ja_JP.UTF-8");
    SetSystemTextEncoding(0);
    auto const tell = [] { return UI_ZUBAlert::TellUser("caf\x8E", 4, nullptr); };
    While(tell, [&] {
        EXPECT_EQ("はい|いいえ", Buttons());
        EXPECT_EQ("café", ShownText(ControlIn(FrontWindow(), "alrt"_code, 1)));
    });
    auto const usual = [] { return UI_ZUBAlert::TellUser("a", 2, nullptr); };
    While(usual, [&] { EXPECT_EQ("OK|キャンセル", Buttons()); });
}

// A dialog whose answer to 'ok  ' is given.
class TestDialog : public UI_DialogWait {
  public:
    explicit TestDialog(WindowRef window) : UI_DialogWait(nullptr) {
        mDialogWindow = window;
        EXPECT_EQ(noErr, installEventHandler(window));
        EXPECT_EQ(noErr, installEventHandler(window));
    }
    long validateInput() override { return answer; }
    long answer = 0;
};

TEST_F(AlertTest, WhatTheInputIsWorthDecidesWhetherADialogCloses) {
    TestDialog dialog(mWindow);
    ControlRef const ok = Button();
    ControlID const id = {"ok  "_code, 0};
    SetControlID(ok, &id);
    dialog.enableOK(false);
    dialog.enableCancel(false);
    EXPECT_EQ(InputResult::kDisabled, UserPressed(ok, 0, true));
    dialog.enableOK(true);
    EXPECT_TRUE(IsControlEnabled(ok));
    UserSentCommand(mWindow, "ok  "_code);
    UserSentCommand(mWindow, "othr"_code);
    EXPECT_EQ(0U, dialog.mResult);
    EXPECT_TRUE(IsWindowVisible(mWindow));
    for (long const answer : {1, -1}) {
        dialog.answer = answer;
        dialog.show();
        UserSentCommand(mWindow, "ok  "_code);
        EXPECT_EQ(answer == 1 ? "ok  "_code : "not!"_code, dialog.mResult);
        EXPECT_FALSE(IsWindowVisible(mWindow));
    }
    EXPECT_EQ(nullptr, dialog.getControlByID("none"_code, 0));
    EXPECT_EQ(paramErr, dialog.setFontInfo(nullptr, 0, 11, 0));
}

}  // namespace
