// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"

// Timers, run loop sources and waits. There is one loop, on one thread; any thread may signal a
// source and wake the loop.

struct OpaqueEventLoop;
using EventLoopRef = OpaqueEventLoop*;
struct OpaqueEventLoopTimer;
using EventLoopTimerRef = OpaqueEventLoopTimer*;
using EventTimerInterval = double;  // seconds
using EventLoopTimerProc = void (*)(EventLoopTimerRef timer, void* userData);
using EventLoopTimerUPP = EventLoopTimerProc;
constexpr EventLoopTimerUPP NewEventLoopTimerUPP(EventLoopTimerProc routine) {
    return routine;
}

EventLoopRef GetMainEventLoop();
// Fires first after `delay` and then every `interval`, a thousandth at least; 0 fires once. The
// reference lives until the timer is removed, also behind its only shot. A routine may remove and
// install any timer, its own too. A timer that comes late fires once for all that it missed.
OSStatus InstallEventLoopTimer(EventLoopRef loop, EventTimerInterval delay,
                               EventTimerInterval interval, EventLoopTimerUPP routine,
                               void* userData, EventLoopTimerRef* timer);
OSStatus RemoveEventLoopTimer(EventLoopTimerRef timer);

// Lets the time pass and runs nothing of the loop meanwhile: no timer, source, posted event or
// input. A face with windows goes on painting them. 0 or less does nothing.
void WaitWithoutEvents(EventTimerInterval seconds);

// ---- Run loops and their sources ----

struct __CFRunLoop;
struct __CFRunLoopSource;
using CFRunLoopRef = __CFRunLoop*;              // nothing to release
using CFRunLoopSourceRef = __CFRunLoopSource*;  // counted

struct CFRunLoopSourceContext {
    CFIndex version;  // 0
    void* info;       // handed to `perform`; not owned
    void (*perform)(void* info);
};

extern CFStringRef const kCFRunLoopCommonModes;  // nested loops too

CFRunLoopRef CFRunLoopGetCurrent();
CFRunLoopRef GetCFRunLoopFromEventLoop(EventLoopRef loop);  // null for a foreign one
// Null without a routine and without memory.
CFRunLoopSourceRef CFRunLoopSourceCreate(CFAllocatorRef, CFIndex order,
                                         CFRunLoopSourceContext const* context);
// The loop retains the source; adding it twice is adding it once.
void CFRunLoopAddSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFStringRef mode);
void CFRunLoopRemoveSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFStringRef mode);
bool CFRunLoopContainsSource(CFRunLoopRef loop, CFRunLoopSourceRef source, CFStringRef mode);
// Its routine runs once in the loop's next turns, however often it was signalled before.
void CFRunLoopSourceSignal(CFRunLoopSourceRef source);
// Never runs again, and leaves its loop.
void CFRunLoopSourceInvalidate(CFRunLoopSourceRef source);
bool CFRunLoopSourceIsValid(CFRunLoopSourceRef source);
void CFRunLoopWakeUp(CFRunLoopRef loop);
