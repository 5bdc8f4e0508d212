// SPDX-License-Identifier: Apache-2.0
#include <limits>
#include <new>
#include <thread>

#include "platform/EventLoop.h"
#include "platform/RunLoop.h"
#include "tests/platform/WindowTestSupport.h"

namespace {

// A timer that its scope removes.
struct TestTimer {
    std::function<void()> fire;
    EventLoopTimerRef timer = nullptr;

    static void Routine(EventLoopTimerRef, void* self) { static_cast<TestTimer*>(self)->fire(); }
    void Install(double delay, double interval = 0) {
        ASSERT_EQ(noErr, InstallEventLoopTimer(GetMainEventLoop(), delay, interval, Routine, this,
                                               &timer));
    }
    ~TestTimer() { RemoveEventLoopTimer(timer); }
};

class RunLoopTest : public WindowTest {
  protected:
    // Notes the name and the time.
    std::function<void()> Note(std::string const& name) {
        return [this, name] {
            mLog.push_back(name + "@" + std::to_string(GetCurrentEventTime()).substr(0, 5));
        };
    }
    // Acts out the steps, one each time the loop has nothing to do.
    void Steps(std::vector<std::function<void()>> steps) {
        auto const rest = std::make_shared<std::vector<std::function<void()>>>(std::move(steps));
        auto const next = std::make_shared<std::size_t>(0);
        mFace.SetNextStep([rest, next] {
            if (*next == rest->size()) {
                return false;
            }
            (*rest)[(*next)++]();
            return true;
        });
    }
};

TEST_F(RunLoopTest, TimersComeInTheOrderOfTheirTimesAndShootOnceWithoutAnInterval) {
    TestTimer once{Note("once")}, often{Note("often")}, late{Note("late")}, now{Note("now")};
    once.Install(0.25);
    often.Install(0.1, 0.1);
    late.Install(9);
    now.Install(-1);
    mFace.Advance(0.35);
    EXPECT_EQ("now@0.000 often@0.100 often@0.200 once@0.250 often@0.300", TakeLog());
    EXPECT_EQ(noErr, RemoveEventLoopTimer(once.timer)) << "it lived on behind its only shot";
    EXPECT_EQ(paramErr, RemoveEventLoopTimer(once.timer));
    mFace.Wait(1);
    mFace.Settle();
    EXPECT_EQ("often@1.350", TakeLog()) << "once for all that it missed";
    mFace.Advance(0.06);
    EXPECT_EQ("often@1.400", TakeLog());
}

TEST_F(RunLoopTest, TenTenthsReachWhatIsDueInASecond) {
    TestTimer timer{Note("timer")};
    timer.Install(1);
    for (int count = 0; count < 10; ++count) {
        mFace.Advance(0.1);
    }
    EXPECT_EQ("timer@1.000", TakeLog());
}

TEST_F(RunLoopTest, AnIntervalBelowWhatTheClockTellsStillLetsTheLoopRest) {
    TestTimer timer{Note("timer")};
    for (double const now : {0.0, 1000.0, 1e14}) {
        mFace.Wait(now);
        timer.Install(0, 1e-15);
        mFace.Settle();
        EXPECT_EQ(1U, mLog.size()) << now;
        TakeLog();
        RemoveEventLoopTimer(timer.timer);
    }
}

TEST_F(RunLoopTest, ATimersRoutineMayRemoveAndInstallTimersAndItself) {
    TestTimer victim{Note("victim")}, next, self;
    victim.Install(0.1);
    next.fire = Note("next");
    self.fire = [&] {
        Note("self")();
        EXPECT_EQ(noErr, RemoveEventLoopTimer(self.timer));
        RemoveEventLoopTimer(victim.timer);
        if (next.timer == nullptr) {
            next.Install(0);
            self.Install(0.2);
        }
    };
    self.Install(0.05, 0.01);
    mFace.Advance(1);
    EXPECT_EQ("self@0.050 next@0.050 self@0.250", TakeLog());
}

TEST_F(RunLoopTest, AWaitLetsTimePassAndRunsNothing) {
    TestTimer timer{Note("timer")};
    timer.Install(0.5);
    WaitWithoutEvents(1);
    EXPECT_EQ("", TakeLog());
    EXPECT_EQ(1.0, GetCurrentEventTime());
    mFace.Settle();
    EXPECT_EQ("timer@1.000", TakeLog());
}

TEST_F(RunLoopTest, WrongTimersAreRefused) {
    EventLoopTimerRef timer = nullptr;
    auto const install = [&](EventLoopRef loop, double delay, double interval,
                             EventLoopTimerProc routine) {
        timer = reinterpret_cast<EventLoopTimerRef>(&timer);
        return InstallEventLoopTimer(loop, delay, interval, routine, nullptr, &timer);
    };
    auto const never = [](EventLoopTimerRef, void*) { FAIL(); };
    EXPECT_EQ(paramErr, install(nullptr, 0, 0, never));
    EXPECT_EQ(nullptr, timer);
    EXPECT_EQ(paramErr, install(GetMainEventLoop(), 0, 0, nullptr));
    EXPECT_EQ(paramErr, install(GetMainEventLoop(), 0.0 / 0.0, 0, never));
    EXPECT_EQ(paramErr,
              install(GetMainEventLoop(), 0, std::numeric_limits<double>::infinity(), never));
    EXPECT_EQ(paramErr, RemoveEventLoopTimer(reinterpret_cast<EventLoopTimerRef>(&timer)));
}

TEST_F(RunLoopTest, ASourceRunsOnceHoweverOftenItWasSignalledAndNoMoreOnceInvalid) {
    int runs = 0;
    CFRunLoopSourceContext const context = {0, &runs,
                                            [](void* info) { ++*static_cast<int*>(info); }};
    CFRef<CFRunLoopSourceRef> const source(CFRunLoopSourceCreate(nullptr, 0, &context));
    CFRunLoopAddSource(CFRunLoopGetCurrent(), source, kCFRunLoopCommonModes);
    CFRunLoopAddSource(CFRunLoopGetCurrent(), source, kCFRunLoopCommonModes);
    EXPECT_EQ(2, CFGetRetainCount(source));
    CFRunLoopSourceSignal(source);
    CFRunLoopSourceSignal(source);
    CFRunLoopWakeUp(GetCFRunLoopFromEventLoop(GetMainEventLoop()));
    mFace.Settle();
    EXPECT_EQ(1, runs);
    CFRunLoopSourceSignal(source);
    CFRunLoopSourceInvalidate(source);
    CFRunLoopAddSource(CFRunLoopGetCurrent(), source, kCFRunLoopCommonModes);
    mFace.Settle();
    EXPECT_EQ(1, runs);
    EXPECT_EQ(1, CFGetRetainCount(source));
    EXPECT_EQ(nullptr, CFRunLoopSourceCreate(nullptr, 0, nullptr));
}

TEST_F(RunLoopTest, OtherThreadsMayPost) {
    int heard = 0;
    Listener listener{[&](EventRef) {
        ++heard;
        return noErr;
    }};
    listener.Install(GetWindowEventTarget(mWindow), {{"test"_code, 1}});
    EventTargetRef const target = GetWindowEventTarget(mWindow);
    constexpr int kEach = 200;
    auto const post = [&] {
        for (int count = 0; count < kEach; ++count) {
            EventRef event = nullptr;
            CreateEvent(nullptr, "test"_code, 1, 1, 0, &event);
            SetEventParameter(event, kEventParamPostTarget, typeEventTargetRef, sizeof target,
                              &target);
            PostEventToQueue(GetMainEventQueue(), event, kEventPriorityStandard);
            ReleaseEvent(event);
        }
    };
    std::thread one(post), two(post);
    while (heard < 2 * kEach) {
        mFace.Settle();
    }
    one.join();
    two.join();
    EXPECT_EQ(2 * kEach, heard);
}

TEST_F(RunLoopTest, NestedLoopsEndFromTheInsideOutInWhateverOrderTheyAreQuit) {
    for (bool const outerFirst : {false, true}) {
        WindowRef const outer = NewWindow();
        WindowRef const inner = NewWindow();
        TestTimer ticking{Note("tick")};
        auto const quit = [&](WindowRef window) {
            EXPECT_EQ(noErr, QuitAppModalLoopForWindow(window));
            EXPECT_EQ(2, ModalLoopCount());
        };
        Steps({[&] {
                   EXPECT_EQ(outer, ModalWindow());
                   EXPECT_EQ(noErr, RunAppModalLoopForWindow(inner));
                   mLog.emplace_back("inner ended");
                   EXPECT_EQ(InputResult::kDone, UserSentCommand(outer, 1));
               },
               [&] {
                   EXPECT_EQ(InputResult::kBlocked, UserSentCommand(outer, 1));
                   EXPECT_EQ(InputResult::kBlocked, UserSentCommand(mWindow, 1));
                   ticking.Install(0);
               },
               [&] { quit(outerFirst ? outer : inner); },
               [&] {
                   if (outerFirst) {
                       quit(inner);
                   } else {
                       EXPECT_EQ(noErr, QuitAppModalLoopForWindow(outer));
                   }
               }});
        EXPECT_EQ(noErr, RunAppModalLoopForWindow(outer));
        std::string const log = TakeLog();
        EXPECT_NE(std::string::npos, log.find("tick@0.000 inner ended")) << log;
        EXPECT_EQ(0, ModalLoopCount());
        EXPECT_EQ(paramErr, QuitAppModalLoopForWindow(outer));
        DisposeWindow(outer);
        DisposeWindow(inner);
    }
}

TEST_F(RunLoopTest, AWindowClosedInItsOwnHandlerEndsItsLoop) {
    WindowRef const dialog = NewWindow();
    ControlRef const button = Button(dialog);
    SetWindowCancelButton(dialog, button);
    Listener closer;
    closer.hear = [&](EventRef) {
        EXPECT_EQ(noErr, DisposeWindow(dialog));
        return eventNotHandledErr;
    };
    closer.Install(GetWindowEventTarget(dialog), {kHit});
    Steps({[&] { EXPECT_EQ(InputResult::kDone, UserClosedWindow(dialog)); }});
    EXPECT_EQ(noErr, RunAppModalLoopForWindow(dialog));
    EXPECT_EQ(InputResult::kMissing, UserClosedWindow(dialog));
    EXPECT_EQ(paramErr, RunAppModalLoopForWindow(dialog));
}

TEST_F(RunLoopTest, ALoopThatNothingCanEndGivesUp) {
    TestTimer never{Note("never")};
    never.Install(100);
    EXPECT_EQ(userCanceledErr, RunAppModalLoopForWindow(mWindow));
    EXPECT_EQ(0, ModalLoopCount());
}

TEST_F(RunLoopTest, ALoopWhoseStepRunsOutOfMemoryIsForgotten) {
    Steps({[] { throw std::bad_alloc(); }});
    EXPECT_EQ(memFullErr, RunAppModalLoopForWindow(mWindow));
    EXPECT_EQ(0, ModalLoopCount());
    EXPECT_EQ(InputResult::kDone, UserSentCommand(NewWindow(), 1)) << "nothing is blocked";
}

TEST_F(RunLoopTest, ATimerMayRunADialogAndTheTimeOfItsStepsCounts) {
    TestTimer opens, later{Note("later")};
    opens.fire = [&] {
        EXPECT_EQ(noErr, RunAppModalLoopForWindow(mWindow));
        Note("closed")();
    };
    Steps({[&] { mFace.Advance(0.5); }, [&] { QuitAppModalLoopForWindow(mWindow); }});
    opens.Install(0.1);
    later.Install(0.3);
    mFace.Advance(0.4);
    EXPECT_EQ("later@0.300 closed@0.600", TakeLog());
    EXPECT_DOUBLE_EQ(0.6, GetCurrentEventTime());
}

}  // namespace
