// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"
#include "platform/WindowTypes.h"

// Events: what the user did, and what somebody posted. An event goes to the control that it is
// about, to what embeds that, to the window; at each to the handlers that ask for it, newest first,
// until one answers with anything but eventNotHandledErr. A routine gets an event once for each
// user datum, however often it is installed. While an event is under way a handler may install,
// remove and send as it likes: what is removed no longer hears it, what is installed doesn't hear
// it yet.
//
// One thread, except that any thread may create, fill, post and release events.

struct OpaqueEvent;
using EventRef = OpaqueEvent*;
struct OpaqueEventHandler;
using EventHandlerRef = OpaqueEventHandler*;
struct OpaqueEventHandlerCall;
using EventHandlerCallRef = OpaqueEventHandlerCall*;  // always null
struct OpaqueEventQueue;
using EventQueueRef = OpaqueEventQueue*;

using EventTime = double;  // seconds of the loop's clock
using EventHandlerProc = OSStatus (*)(EventHandlerCallRef call, EventRef event, void* userData);
using EventHandlerUPP = EventHandlerProc;
constexpr EventHandlerUPP NewEventHandlerUPP(EventHandlerProc routine) {
    return routine;
}
constexpr void DisposeEventHandlerUPP(EventHandlerUPP) {}

struct EventTypeSpec {
    OSType eventClass;
    std::uint32_t eventKind;
};

constexpr OSStatus eventNotHandledErr = -9874;
constexpr OSStatus eventParameterNotFoundErr = -9870;

constexpr OSType kEventClassCommand = "cmds"_code;
constexpr std::uint32_t kEventCommandProcess = 1;
constexpr OSType kEventClassControl = "cntl"_code;
constexpr std::uint32_t kEventControlHit = 1;
constexpr std::uint32_t kEventControlDraw = 4;
constexpr std::uint32_t kEventControlClick = 13;
constexpr std::uint32_t kEventControlValueFieldChanged = 151;
constexpr OSType kEventClassTextInput = "text"_code;
constexpr std::uint32_t kEventTextInputUnicodeForKeyEvent = 2;
constexpr OSType kEventClassKeyboard = "keyb"_code;
constexpr std::uint32_t kEventRawKeyDown = 1;

// What the platform's own events carry:
//     control    kEventParamDirectObject typeControlRef; a hit also kEventParamControlPart
//     command    kEventParamDirectObject typeHICommand
//     text       kEventParamTextInputSendText typeUnicodeText: one character, composed, whatever it
//                is; kEventParamKeyModifiers
//     raw key    kEventParamKeyMacCharCodes typeChar (the application's encoding, 0 for what has no
//                form in it), kEventParamKeyUnicodes typeUnicodeText, kEventParamKeyCode and
//                kEventParamKeyModifiers typeUInt32
constexpr OSType kEventParamDirectObject = "----"_code;
constexpr OSType kEventParamControlPart = "cprt"_code;
constexpr OSType kEventParamTextInputSendText = "tstx"_code;
constexpr OSType kEventParamKeyMacCharCodes = "kchr"_code;
constexpr OSType kEventParamKeyUnicodes = "kuni"_code;
constexpr OSType kEventParamKeyCode = "kcod"_code;
constexpr OSType kEventParamKeyModifiers = "kmod"_code;
constexpr OSType kEventParamPostTarget = "ptrg"_code;

constexpr OSType typeControlRef = "ctrl"_code;       // 8 bytes
constexpr OSType typeControlPartCode = "cpar"_code;  // 2 bytes
constexpr OSType typeHICommand = "hcmd"_code;        // kHICommandSize bytes
constexpr OSType typeUnicodeText = "utxt"_code;      // UTF-16 in the machine's order, no terminator
constexpr OSType typeChar = "TEXT"_code;             // 1 byte
constexpr OSType typeUInt32 = "magn"_code;
constexpr OSType typeEventTargetRef = "etrg"_code;  // 8 bytes
constexpr OSType typeWildCard = "****"_code;        // whatever type it has

struct HICommand {
    std::uint32_t attributes;
    std::uint32_t commandID;
    std::uint16_t menu[3];  // nobody's
};
// In an event it has so many bytes; the rest of the record is the compiler's.
constexpr std::size_t kHICommandSize = 14;

// Modifier keys.
constexpr std::uint32_t kCommandKey = 0x0100;
constexpr std::uint32_t kShiftKey = 0x0200;
constexpr std::uint32_t kOptionKey = 0x0800;
constexpr std::uint32_t kControlKey = 0x1000;
constexpr std::uint32_t kNumLockKey = 0x10000;

// ---- Handlers ----

EventTargetRef GetWindowEventTarget(WindowRef window);     // null for a null or foreign one
EventTargetRef GetControlEventTarget(ControlRef control);  // null for a null or foreign one

// The handler lives until it is removed or its target goes. `handler` may be null.
OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP routine, std::uint32_t count,
                             EventTypeSpec const* types, void* userData, EventHandlerRef* handler);
OSStatus RemoveEventHandler(EventHandlerRef handler);

// ---- Events ----

constexpr std::uint32_t kEventAttributeNone = 0;
constexpr std::uint32_t kEventAttributeUserEvent = 1;

// A time of 0 is now. The caller releases the event.
OSStatus CreateEvent(CFAllocatorRef, OSType eventClass, std::uint32_t kind, EventTime time,
                     std::uint32_t attributes, EventRef* event);
EventRef RetainEvent(EventRef event);  // the same event
void ReleaseEvent(EventRef event);
// 0 for a null or foreign event.
OSType GetEventClass(EventRef event);
std::uint32_t GetEventKind(EventRef event);
EventTime GetEventTime(EventRef event);
// The bytes are copied and replace an earlier value of that name.
OSStatus SetEventParameter(EventRef event, OSType name, OSType type, std::size_t size,
                           void const* data);
// At most `bufferSize` bytes; `actualType` and `actualSize` (the whole size), if given, tell what
// there is. eventParameterNotFoundErr where there is none of that name and type, and the buffer is
// cleared.
OSStatus GetEventParameter(EventRef event, OSType name, OSType type, OSType* actualType,
                           std::size_t bufferSize, std::size_t* actualSize, void* data);

// What the handlers answered, eventNotHandledErr where none took it.
OSStatus SendEventToEventTarget(EventRef event, EventTargetRef target);

// ---- The queue ----

using EventPriority = std::int16_t;
constexpr EventPriority kEventPriorityLow = 0;
constexpr EventPriority kEventPriorityStandard = 1;
constexpr EventPriority kEventPriorityHigh = 2;

EventQueueRef GetMainEventQueue();
// The loop sends it to its kEventParamPostTarget, the highest priority first and then in the order
// of arrival. The queue retains it. An event without a living target is dropped when its turn
// comes.
OSStatus PostEventToQueue(EventQueueRef queue, EventRef event, EventPriority priority);

EventTime GetCurrentEventTime();         // now
std::uint32_t GetCurrentKeyModifiers();  // those of the key that is being handled, else 0
