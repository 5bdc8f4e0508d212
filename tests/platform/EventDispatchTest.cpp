// SPDX-License-Identifier: Apache-2.0
#include <memory>
#include <new>

#include "platform/EventLoop.h"
#include "tests/platform/WindowTestSupport.h"

namespace {

class EventDispatchTest : public WindowTest {
  protected:
    void Press(ControlRef control) { EXPECT_EQ(InputResult::kDone, UserPressed(control, 0, true)); }
};

TEST_F(EventDispatchTest, AnEventGoesFromTheControlToTheWindowNewestFirstUntilTaken) {
    ControlRef const pane = Pane();
    ControlRef const button = Button();
    EmbedControl(button, pane);
    Listener window{Log("window")}, around{Log("pane")}, older{Log("older")}, newer{Log("newer")};
    window.Install(GetWindowEventTarget(mWindow), {kClick});
    around.Install(GetControlEventTarget(pane), {kClick});
    older.Install(GetControlEventTarget(button), {kClick});
    newer.Install(GetControlEventTarget(button), {kClick});
    Press(button);
    EXPECT_EQ("newer:13 older:13 pane:13 window:13", TakeLog());
    around.hear = Log("pane", noErr);
    Press(button);
    EXPECT_EQ("newer:13 older:13 pane:13", TakeLog());
}

TEST_F(EventDispatchTest, ARoutineHearsAnEventOnceForEachDatumHoweverOftenInstalled) {
    ControlRef const button = Button();
    Listener one{Log("one")}, two{Log("two")};
    one.Install(GetWindowEventTarget(mWindow), {kClick, kHit});
    one.Install(GetControlEventTarget(button), {kClick, kHit, kClick});
    two.Install(GetControlEventTarget(button), {kHit});
    Press(button);
    EXPECT_EQ("one:13 two:1/10 one:1/10", TakeLog());
}

TEST_F(EventDispatchTest, HandlersMayBeRemovedDestroyedAndAddedInTheMiddleOfAnEvent) {
    ControlRef const button = Button();
    EventTargetRef const target = GetControlEventTarget(button);
    auto removed = std::make_unique<Listener>(Listener{Log("removed")});
    removed->Install(target, {kClick});
    Listener own, added{Log("added")}, last{Log("last")};
    last.Install(GetWindowEventTarget(mWindow), {kClick});
    own.hear = [&](EventRef event) {
        Log("own")(event);
        if (removed != nullptr) {
            EXPECT_EQ(noErr, RemoveEventHandler(removed->handler));
            removed.reset();
            EXPECT_EQ(noErr, RemoveEventHandler(own.handler));
            added.Install(target, {kClick});
            added.Install(GetWindowEventTarget(mWindow), {kClick});
        }
        return eventNotHandledErr;
    };
    own.Install(target, {kClick});
    Press(button);
    EXPECT_EQ("own:13 last:13", TakeLog()) << "the added one hears the next event only";
    Press(button);
    EXPECT_EQ("added:13 last:13", TakeLog());
    EXPECT_EQ(paramErr, RemoveEventHandler(own.handler));
}

TEST_F(EventDispatchTest, AHandlerIsEnteredAgainByTheEventsThatItSends) {
    ControlRef const button = Button();
    int depth = 0;
    Listener listener;
    listener.hear = [&](EventRef event) {
        mLog.push_back(std::to_string(++depth));
        if (depth < 3) {
            EXPECT_EQ(noErr, SendEventToEventTarget(event, GetControlEventTarget(button)));
        }
        --depth;
        return noErr;
    };
    listener.Install(GetControlEventTarget(button), {kClick});
    Press(button);
    EXPECT_EQ("1 2 3", TakeLog());
}

TEST_F(EventDispatchTest, AnEventSurvivesTheEndOfItsControlItsContainerAndItsWindow) {
    for (int victim = 0; victim < 3; ++victim) {
        WindowRef const window = NewWindow();
        ControlRef pane = nullptr;
        Rect const bounds = {0, 0, 100, 100};
        CreateUserPaneControl(window, &bounds, 0, &pane);
        ControlRef const button = Button(window);
        EmbedControl(button, pane);
        SetControlCommandID(button, "boom"_code);
        Listener killer, around{Log("pane")}, whole{Log("window")};
        killer.hear = [&](EventRef event) {
            Log("killer")(event);
            EXPECT_EQ(noErr, victim == 0   ? DisposeControl(button)
                             : victim == 1 ? DisposeControl(pane)
                                           : DisposeWindow(window));
            return eventNotHandledErr;
        };
        around.Install(GetControlEventTarget(pane), {kClick, kHit});
        whole.Install(GetWindowEventTarget(window), {kClick, kHit, kCommand});
        killer.Install(GetControlEventTarget(button), {kHit});
        Press(button);
        char const* const heard[] = {"pane:13 window:13 killer:1/10 pane:1/10 window:1/10",
                                     "pane:13 window:13 killer:1/10 window:1/10",
                                     "pane:13 window:13 killer:1/10"};
        EXPECT_EQ(heard[victim], TakeLog()) << "no command of a button that is gone";
        EXPECT_EQ(paramErr, RemoveEventHandler(killer.handler)) << "it went with its control";
        EXPECT_EQ(InputResult::kMissing, UserPressed(button, 0, true));
    }
}

TEST_F(EventDispatchTest, ParametersAreATypedBagAndClearWhatTheyDoNotHave) {
    EventRef event = nullptr;
    ASSERT_EQ(noErr, CreateEvent(nullptr, "test"_code, 7, 2.5, 0, &event));
    EXPECT_EQ(2.5, GetEventTime(event));
    std::uint32_t const number = 0x01020304;
    EXPECT_EQ(noErr, SetEventParameter(event, "numb"_code, typeUInt32, sizeof number, &number));
    std::uint8_t bytes[8] = {9, 9, 9, 9, 9, 9, 9, 9};
    OSType type = 1;
    std::size_t size = 1;
    EXPECT_EQ(noErr, GetEventParameter(event, "numb"_code, typeWildCard, &type, 8, &size, bytes));
    EXPECT_EQ(typeUInt32, type);
    EXPECT_EQ(4U, size);
    EXPECT_EQ(0, bytes[7]);
    for (auto const& [name, asked] :
         {std::pair{"numb"_code, typeChar}, {"none"_code, typeWildCard}}) {
        bytes[0] = 9;
        EXPECT_EQ(eventParameterNotFoundErr,
                  GetEventParameter(event, name, asked, &type, 8, &size, bytes));
        EXPECT_EQ(0U, bytes[0] + type + size);
    }
    ReleaseEvent(event);
    EXPECT_EQ(0U, GetEventKind(event));
    EXPECT_EQ(paramErr, SetEventParameter(event, "numb"_code, typeUInt32, 4, &number));
    EXPECT_EQ(paramErr, PostEventToQueue(GetMainEventQueue(), event, 1));
}

TEST_F(EventDispatchTest, PostedEventsComeByPriorityAndThenInTheOrderOfArrival) {
    Listener listener{Log("window")};
    listener.Install(GetWindowEventTarget(mWindow), {kCommand});
    auto const post = [&](std::uint32_t command, EventPriority priority, WindowRef window) {
        EventRef event = nullptr;
        CreateEvent(nullptr, kEventClassCommand, kEventCommandProcess, 0, 1, &event);
        HICommand const record = {0, command, {}};
        SetEventParameter(event, kEventParamDirectObject, typeHICommand, kHICommandSize, &record);
        EventTargetRef const target = GetWindowEventTarget(window);
        SetEventParameter(event, kEventParamPostTarget, typeEventTargetRef, sizeof target, &target);
        EXPECT_EQ(noErr, PostEventToQueue(GetMainEventQueue(), event, priority));
        ReleaseEvent(event);
    };
    post(1, kEventPriorityLow, mWindow);
    post(2, kEventPriorityHigh, mWindow);
    post(3, kEventPriorityHigh, mWindow);
    post(4, kEventPriorityStandard, mWindow);
    WindowRef const gone = NewWindow();
    post(5, kEventPriorityHigh, gone);
    DisposeWindow(gone);
    EXPECT_EQ("", TakeLog());
    mFace.Settle();
    EXPECT_EQ("window:1/2 window:1/3 window:1/4 window:1/1", TakeLog());
    EXPECT_EQ(5U, mFace.TakePosted().size());
}

TEST_F(EventDispatchTest, EachDirtyControlIsDrawnOnceAtIdleAndOnlyWhereItShows) {
    ControlRef const pane = Pane();
    ControlRef const box = CheckBox();
    EmbedControl(box, pane);
    Listener listener{Log("box")};
    listener.Install(GetControlEventTarget(box), {kDraw});
    mFace.Settle();
    EXPECT_EQ("box:4", TakeLog());
    SetControl32BitValue(box, 1);
    Draw1Control(box);
    Draw1Control(box);
    EXPECT_EQ("", TakeLog());
    mFace.Settle();
    EXPECT_EQ("box:4", TakeLog());
    HideControl(pane);
    Draw1Control(box);
    mFace.Settle();
    EXPECT_EQ("", TakeLog());
    ShowControl(pane);
    mFace.Settle();
    EXPECT_EQ("box:4", TakeLog());
    listener.hear = [&](EventRef) {
        mLog.emplace_back("drawn");
        Draw1Control(box);
        return eventNotHandledErr;
    };
    Draw1Control(box);
    mFace.Settle();
    EXPECT_EQ("drawn", TakeLog()) << "drawing itself anew would never end";
}

TEST_F(EventDispatchTest, ALoopThatADrawingRunsDrawsWhatStillWaits) {
    ControlRef const first = CheckBox();
    ControlRef const second = Button();
    mFace.Settle();
    Listener alert, drawn{Log("second")};
    alert.hear = [&](EventRef) {
        mFace.SetNextStep([&] {
            EXPECT_EQ("second:4", TakeLog());
            QuitAppModalLoopForWindow(mWindow);
            return true;
        });
        return RunAppModalLoopForWindow(mWindow);
    };
    alert.Install(GetControlEventTarget(first), {kDraw});
    drawn.Install(GetControlEventTarget(second), {kDraw});
    Draw1Control(first);
    Draw1Control(second);
    mFace.Settle();
    EXPECT_EQ("", TakeLog());
}

// Counts what the face is told, and misses it where it has no memory.
struct TellingFace : HeadlessFace {
    void WindowChanged(WindowRef) override {
        ++windows;
        Remember();
    }
    void ControlsChanged(std::vector<ControlRef> const& controls) override {
        told.push_back(controls);
        Remember();
    }
    void ControlGone(ControlRef) override { Remember(); }
    void Wake(double) override { Remember(); }
    void Beep() override { Remember(); }
    FloatSize MeasureText(CFStringRef text, std::int16_t size, std::int16_t style) override {
        Remember();
        return HeadlessFace::MeasureText(text, size, style);
    }
    void Remember() const {
        if (isFull) {
            throw std::bad_alloc();
        }
    }
    std::vector<std::vector<ControlRef>> told;
    int windows = 0;
    bool isFull = false;
};

TEST_F(EventDispatchTest, AFaceThatMissesWhatItIsToldHurtsNobody) {
    TellingFace face;
    InstallFace(&face, &face);
    ControlRef const box = CheckBox();
    DisposeControl(Button());
    bool hasFired = false;
    EventLoopTimerRef timer = nullptr;
    EventLoopTimerProc const fire = [](EventLoopTimerRef, void* fired) {
        *static_cast<bool*>(fired) = true;
    };
    face.isFull = true;
    EXPECT_EQ(noErr, InstallEventLoopTimer(GetMainEventLoop(), 0, 0, fire, &hasFired, &timer));
    Press(box);
    face.SetNextStep([&] { return QuitAppModalLoopForWindow(mWindow) == noErr; });
    EXPECT_EQ(noErr, RunAppModalLoopForWindow(mWindow));
    SysBeep(1);
    EXPECT_EQ(0, GetMenuWidth(GetControlPopupMenuHandle(Popup("a"))));
    face.Settle();
    EXPECT_TRUE(hasFired);
    EXPECT_EQ(1, GetControl32BitValue(box));
    face.isFull = false;
    face.told.clear();
    Press(box);
    ASSERT_EQ(1U, face.told.size()) << "the next change is told";
    EXPECT_EQ(std::vector{box}, face.told[0]);
    RemoveEventLoopTimer(timer);
    InstallFace(&mFace, &mFace);
}

TEST_F(EventDispatchTest, TheFaceHearsWhenAWindowLosesItsFocusOrAButton) {
    TellingFace face;
    InstallFace(&face, &face);
    ControlRef const field = Field(), ok = Button(), cancel = Button();
    WindowRef const other = NewWindow();
    ControlRef root = nullptr;
    GetRootControl(other, &root);
    UserFocused(field);
    SetWindowDefaultButton(mWindow, ok);
    SetWindowCancelButton(mWindow, cancel);
    std::function<void()> const losses[] = {[&] { DisposeControl(field); },
                                            [&] { EmbedControl(ok, root); },
                                            [&] { DisposeControl(cancel); }};
    for (auto const& lose : losses) {
        face.Settle();
        face.windows = 0;
        lose();
        face.Settle();
        EXPECT_EQ(1, face.windows);
    }
    WindowView view;
    DescribeWindow(mWindow, &view);
    EXPECT_TRUE(!view.focus && !view.defaultButton && !view.cancelButton);
    InstallFace(&mFace, &mFace);
}

TEST_F(EventDispatchTest, TheFaceHearsTheWholeChangeWhenTheOutermostEventEndsOrALoopBegins) {
    TellingFace face;
    InstallFace(&face, &face);
    ControlRef const first = CheckBox();
    ControlRef const second = Button();
    face.Settle();
    face.told.clear();
    bool runsLoop = false;
    Listener listener;
    listener.hear = [&](EventRef) {
        SetControl32BitValue(second, 0);
        DisableControl(second);
        HiliteControl(first, 11);
        DisableControl(first);
        EnableControl(first);
        EXPECT_TRUE(face.told.empty());
        if (runsLoop) {
            face.SetNextStep([&] {
                EXPECT_EQ(1U, face.told.size());
                QuitAppModalLoopForWindow(mWindow);
                return true;
            });
            EXPECT_EQ(noErr, RunAppModalLoopForWindow(mWindow));
        }
        return noErr;
    };
    listener.Install(GetControlEventTarget(first), {kClick});
    Press(first);
    ASSERT_EQ(1U, face.told.size());
    EXPECT_EQ((std::vector{second, first}), face.told[0]);
    EnableControl(second);
    HiliteControl(first, 0);
    face.Settle();
    face.told.clear();
    runsLoop = true;
    Press(first);
    EXPECT_FALSE(face.told.empty());
    InstallFace(&mFace, &mFace);
}

}  // namespace
