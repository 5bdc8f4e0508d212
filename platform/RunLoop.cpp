// SPDX-License-Identifier: Apache-2.0
#include "platform/RunLoop.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <map>
#include <utility>
#include <vector>

#include "platform/EventLoop.h"
#include "platform/internal/CFObjects.h"
#include "platform/internal/Desktop.h"
#include "platform/internal/Dispatch.h"

struct __CFRunLoopSource : platform::CFObject {
    explicit __CFRunLoopSource(CFRunLoopSourceContext const& theContext);

    CFRunLoopSourceContext context;
    std::atomic<bool> isSignalled{false};
    std::atomic<bool> isValid{true};
};

namespace platform {

template <>
constexpr HandleKey kTagOf<EventLoopTimerRef> = kTimerTag;

namespace {

using Due = std::pair<double, std::uint64_t>;  // the time, and the order of setting it

struct Timer {
    HandleKey key = 0;
    EventTimerInterval interval = 0;
    EventLoopTimerUPP routine = nullptr;
    void* userData = nullptr;  // the installer's
    Due due = {0, 0};
    bool isArmed = false;
};

struct Loop {
    HandleTable<Timer> timers;
    std::map<Due, Timer*> schedule;  // owns none
    std::uint64_t nextOrder = 0;
    std::vector<CFRef<CFRunLoopSourceRef>> sources;
};

Loop& TheLoop() {
    static Loop& sLoop = *new Loop;
    return sLoop;
}

LoopDriver& Driver() {
    return *TheDesktop().driver.load();
}

EventLoopRef MainLoop() {
    static char sLoop;
    return reinterpret_cast<EventLoopRef>(&sLoop);
}
CFRunLoopRef MainRunLoop() {
    static char sLoop;
    return reinterpret_cast<CFRunLoopRef>(&sLoop);
}

void Arm(Timer& timer, double at) {
    Loop& loop = TheLoop();
    timer.due = {at, loop.nextOrder++};
    loop.schedule.emplace(timer.due, &timer);
    timer.isArmed = true;
    Wake(at);
}

void Disarm(Timer& timer) {
    if (std::exchange(timer.isArmed, false)) {
        TheLoop().schedule.erase(timer.due);
    }
}

// The next time of the timer's row that hasn't come yet.
double NextTime(Timer const& timer, double now) {
    double const missed = std::floor(std::max(0.0, now - timer.due.first) / timer.interval);
    double const next = timer.due.first + (missed + 1) * timer.interval;
    // A clock that has run for long tells small intervals no longer.
    return std::max(next, std::nextafter(now, std::numeric_limits<double>::infinity()));
}

bool RunTimer() {
    Loop& loop = TheLoop();
    double const now = Driver().Now();
    if (loop.schedule.empty() || loop.schedule.begin()->first.first > now) {
        return false;
    }
    Timer& timer = *loop.schedule.begin()->second;
    Disarm(timer);
    if (timer.interval > 0) {
        // Without memory for it the timer has had its last shot.
        Guarded([&]() -> OSStatus {
            Arm(timer, NextTime(timer, now));
            return noErr;
        });
    }
    DispatchScope const scope;
    timer.routine(MakeRef<EventLoopTimerRef>(timer.key), timer.userData);
    return true;
}

// The first of the sources that is signalled.
CFRef<CFRunLoopSourceRef> SignalledSource() {
    for (auto const& source : TheLoop().sources) {
        if (source.Get()->isSignalled) {
            return source;
        }
    }
    return {};
}

bool RunSource() {
    CFRef<CFRunLoopSourceRef> const source = SignalledSource();
    if (!source) {
        return false;
    }
    source.Get()->isSignalled = false;
    DispatchScope const scope;
    source.Get()->context.perform(source.Get()->context.info);
    return true;
}

bool RunPostedEvent() {
    EventRef const event = TakePostedEvent();
    if (event == nullptr) {
        return false;
    }
    EventTargetRef target = nullptr;
    GetEventParameter(event, kEventParamPostTarget, typeEventTargetRef, nullptr, sizeof target,
                      nullptr, &target);
    SendEventToEventTarget(event, target);
    ReleaseEvent(event);
    return true;
}

}  // namespace

constinit CFClass const kRunLoopSourceClass = {
    kRunLoopSourceTypeID, DestroyObject<__CFRunLoopSource>,
    [](CFObject const*, CFObject const*) { return false; }};

bool RunLoop::Turn() {
    if (RunSource() || RunPostedEvent() || RunTimer()) {
        return true;
    }
    bool const drew = DrawChanged();
    return Flush() || drew;
}

std::optional<double> RunLoop::NextDue() {
    Desktop const& desktop = TheDesktop();
    bool const isPending = SignalledSource() || HasPostedEvent() || !desktop.undrawn.empty() ||
                           !desktop.changedControls.empty() || !desktop.changedWindows.empty() ||
                           !desktop.goneControls.empty() || !desktop.goneWindows.empty();
    if (isPending) {
        return Driver().Now();
    }
    auto const& schedule = TheLoop().schedule;
    return schedule.empty() ? std::optional<double>() : schedule.begin()->first.first;
}

}  // namespace platform

using platform::TheLoop;

__CFRunLoopSource::__CFRunLoopSource(CFRunLoopSourceContext const& theContext)
    : CFObject(&platform::kRunLoopSourceClass), context(theContext) {}

CFStringRef const kCFRunLoopCommonModes = CFSTR("kCFRunLoopCommonModes");

EventLoopRef GetMainEventLoop() {
    return platform::MainLoop();
}

OSStatus InstallEventLoopTimer(EventLoopRef loop, EventTimerInterval delay,
                               EventTimerInterval interval, EventLoopTimerUPP routine,
                               void* userData, EventLoopTimerRef* timer) {
    if (timer == nullptr) {
        return paramErr;
    }
    *timer = nullptr;
    // Neither may be a NaN or endless.
    if (loop != platform::MainLoop() || routine == nullptr || !std::isfinite(delay) ||
        !std::isfinite(interval)) {
        return paramErr;
    }
    auto* const made = platform::NewObject<platform::Timer>();
    if (made == nullptr) {
        return memFullErr;
    }
    constexpr EventTimerInterval kShortest = 0.001;
    made->interval = interval > 0 ? std::max(interval, kShortest) : 0;
    made->routine = routine;
    made->userData = userData;
    return platform::Guarded([&]() -> OSStatus {
        try {
            made->key = TheLoop().timers.Add(made);
            platform::Arm(*made, platform::Driver().Now() + std::max(0.0, delay));
        } catch (...) {
            TheLoop().timers.Remove(made->key);
            platform::DeleteObject(made);
            throw;
        }
        *timer = platform::MakeRef<EventLoopTimerRef>(made->key);
        return noErr;
    });
}

OSStatus RemoveEventLoopTimer(EventLoopTimerRef timer) {
    auto* const found = TheLoop().timers.Find(platform::KeyOf(timer));
    if (found == nullptr) {
        return paramErr;
    }
    platform::Disarm(*found);
    TheLoop().timers.Remove(found->key);
    platform::DeleteObject(found);
    return noErr;
}

void WaitWithoutEvents(EventTimerInterval seconds) {
    if (seconds > 0) {
        platform::Driver().Wait(seconds);
    }
}

CFRunLoopRef CFRunLoopGetCurrent() {
    return platform::MainRunLoop();
}

CFRunLoopRef GetCFRunLoopFromEventLoop(EventLoopRef loop) {
    return loop == platform::MainLoop() ? platform::MainRunLoop() : nullptr;
}

CFRunLoopSourceRef CFRunLoopSourceCreate(CFAllocatorRef, CFIndex,
                                         CFRunLoopSourceContext const* context) {
    return context == nullptr || context->perform == nullptr
               ? nullptr
               : platform::NewObject<__CFRunLoopSource>(*context);
}

bool CFRunLoopContainsSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFStringRef) {
    auto const& sources = TheLoop().sources;
    return loop == platform::MainRunLoop() &&
           std::any_of(sources.begin(), sources.end(),
                       [&](auto const& added) { return added.Get() == source; });
}

void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFStringRef mode) {
    if (loop != platform::MainRunLoop() || !CFRunLoopSourceIsValid(source) ||
        CFRunLoopContainsSource(loop, source, mode)) {
        return;
    }
    platform::Guarded([&]() -> OSStatus {
        TheLoop().sources.push_back(CFRef<CFRunLoopSourceRef>::Retained(source));
        return noErr;
    });
}

void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFStringRef) {
    if (loop == platform::MainRunLoop()) {
        std::erase_if(TheLoop().sources, [&](auto const& added) { return added.Get() == source; });
    }
}

void CFRunLoopSourceSignal(CFRunLoopSourceRef source) {
    if (CFRunLoopSourceIsValid(source)) {
        source->isSignalled = true;
    }
}

void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source) {
    if (source != nullptr) {
        source->isValid = false;
        source->isSignalled = false;
        CFRunLoopRemoveSource(platform::MainRunLoop(), source, nullptr);
    }
}

bool CFRunLoopSourceIsValid(CFRunLoopSourceRef source) {
    return source != nullptr && source->isValid;
}

void CFRunLoopWakeUp(CFRunLoopRef loop) {
    if (loop == platform::MainRunLoop()) {
        platform::Wake(platform::Driver().Now());
    }
}
