// SPDX-License-Identifier: Apache-2.0
#include "panel/dialogs/CustomCarbonEvent.h"

#include "panel/dialogs/EventHack.h"

CustomCarbonEvent::CustomCarbonEvent(OSType command, WindowRef targetWindow, OSType eventClass,
                                     std::uint32_t eventKind)
    : mTargetWindow(targetWindow) {
    if (targetWindow == nullptr ||
        CreateEvent(nullptr, eventClass, eventKind, GetCurrentEventTime(), kEventAttributeUserEvent,
                    &mEvent) != noErr) {
        return;
    }
    HICommand const record = {0, command, {0, 0, 0}};
    mEventValid = SetEventParameter(mEvent, kEventParamDirectObject, typeHICommand, kHICommandSize,
                                    &record) == noErr;
}

CustomCarbonEvent::~CustomCarbonEvent() {
    ReleaseEvent(mEvent);
}

OSStatus CustomCarbonEvent::addParameter(OSType name, OSType type, std::size_t size,
                                         void const* data) {
    return mEventValid ? SetEventParameter(mEvent, name, type, size, data) : paramErr;
}

OSStatus CustomCarbonEvent::setEventTarget(EventTargetRef target) {
    return target == nullptr
               ? paramErr
               : addParameter(kEventParamPostTarget, typeEventTargetRef, sizeof target, &target);
}

OSStatus CustomCarbonEvent::send(EventQueueRef queue, EventPriority priority) {
    OSStatus status = setEventTarget(GetWindowEventTarget(mTargetWindow));
    if (status == noErr) {
        status = PostEventToQueue(queue == nullptr ? GetMainEventQueue() : queue, mEvent, priority);
    }
    if (status == noErr) {
        gEventHack.wakeHack();
    }
    return status;
}
