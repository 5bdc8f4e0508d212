// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "platform/Events.h"
#include "platform/HeadlessFace.h"
#include "platform/Menus.h"
#include "platform/UserInput.h"
#include "tests/platform/TestSupport.h"

// Hears events; what it hears of them it tells to `hear`.
struct Listener {
    std::function<OSStatus(EventRef)> hear;
    EventHandlerRef handler = nullptr;

    static OSStatus Routine(EventHandlerCallRef, EventRef event, void* self) {
        return static_cast<Listener*>(self)->hear(event);
    }
    void Install(EventTargetRef target, std::initializer_list<EventTypeSpec> types) {
        ASSERT_EQ(noErr,
                  InstallEventHandler(target, Routine, static_cast<std::uint32_t>(types.size()),
                                      std::data(types), this, &handler));
    }
};

// A shown window of 400 x 300 on a headless face, and a log of what its listeners heard.
class WindowTest : public OwnershipTest {
  protected:
    static constexpr EventTypeSpec kClick = {kEventClassControl, kEventControlClick};
    static constexpr EventTypeSpec kHit = {kEventClassControl, kEventControlHit};
    static constexpr EventTypeSpec kChange = {kEventClassControl, kEventControlValueFieldChanged};
    static constexpr EventTypeSpec kDraw = {kEventClassControl, kEventControlDraw};
    static constexpr EventTypeSpec kCommand = {kEventClassCommand, kEventCommandProcess};
    static constexpr EventTypeSpec kText = {kEventClassTextInput,
                                            kEventTextInputUnicodeForKeyEvent};
    static constexpr EventTypeSpec kRawKey = {kEventClassKeyboard, kEventRawKeyDown};

    void SetUp() override {
        InstallFace(&mFace, &mFace);
        mWindow = NewWindow();
        mFace.Settle();
    }
    void TearDown() override {
        for (WindowRef const window : WindowsInOrder()) {
            DisposeWindow(window);
        }
        mFace.Settle();
        InstallFace(nullptr, nullptr);
        OwnershipTest::TearDown();
    }

    WindowRef NewWindow() {
        WindowRef const window = CreateHostWindow({0, 0, 300, 400}, nullptr);
        ShowWindow(window);
        return window;
    }
    ControlRef Button(WindowRef window = nullptr, Rect const& bounds = {10, 10, 30, 90}) {
        ControlRef control = nullptr;
        CreatePushButtonControl(window == nullptr ? mWindow : window, &bounds, CFSTR("Button"),
                                &control);
        return control;
    }
    ControlRef CheckBox() {
        Rect const bounds = {40, 10, 60, 90};
        ControlRef control = nullptr;
        CreateCheckBoxControl(mWindow, &bounds, CFSTR("Box"), 0, true, &control);
        return control;
    }
    ControlRef Pane(Rect const& bounds = {0, 0, 200, 200}) {
        ControlRef control = nullptr;
        CreateUserPaneControl(mWindow, &bounds, 0, &control);
        return control;
    }
    ControlRef Field(char const* text = "") {
        Rect const bounds = {70, 10, 90, 190};
        ControlRef control = nullptr;
        CreateEditUnicodeTextControl(mWindow, &bounds, Str(text), false, nullptr, &control);
        return control;
    }
    // Its items are the letters.
    ControlRef Popup(std::string const& letters) {
        Rect const bounds = {100, 10, 120, 190};
        ControlRef control = nullptr;
        CreatePopupButtonControl(mWindow, &bounds, nullptr, &control);
        for (char const letter : letters) {
            AppendMenuItemTextWithCFString(GetControlPopupMenuHandle(control),
                                           Str(std::string(1, letter)), 0, 0, nullptr);
        }
        SetControl32BitMaximum(control, static_cast<std::int32_t>(letters.size()));
        return control;
    }

    static std::string ShownText(ControlRef control) {
        ControlView view;
        return DescribeControl(control, &view) ? Text(view.text) : "(gone)";
    }

    // "name:kind", with the part or the command behind it where the event has one.
    static std::string Told(std::string const& name, EventRef event) {
        std::string text = name + ":" + std::to_string(GetEventKind(event));
        std::int16_t part = 0;
        if (GetEventParameter(event, kEventParamControlPart, typeControlPartCode, nullptr,
                              sizeof part, nullptr, &part) == noErr) {
            text += "/" + std::to_string(part);
        }
        HICommand command = {};
        if (GetEventParameter(event, kEventParamDirectObject, typeHICommand, nullptr,
                              sizeof command, nullptr, &command) == noErr) {
            text += "/" + std::to_string(command.commandID);
        }
        return text;
    }
    // Writes what it hears into the log and answers with `status`.
    std::function<OSStatus(EventRef)> Log(std::string const& name,
                                          OSStatus status = eventNotHandledErr) {
        return [this, name, status](EventRef event) {
            mLog.push_back(Told(name, event));
            return status;
        };
    }
    std::string TakeLog() {
        std::string joined;
        for (std::string const& line : std::exchange(mLog, {})) {
            joined += (joined.empty() ? "" : " ") + line;
        }
        return joined;
    }

    HeadlessFace mFace;
    WindowRef mWindow = nullptr;
    std::vector<std::string> mLog;
};
