// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/Events.h"
#include "platform/Windows.h"

// An event with a command that is posted to a window instead of being sent at once.
class CustomCarbonEvent {
  public:
    // Without a window, or memory, the event isn't valid.
    CustomCarbonEvent(OSType command, WindowRef targetWindow, OSType eventClass,
                      std::uint32_t eventKind);
    CustomCarbonEvent(CustomCarbonEvent const&) = delete;
    CustomCarbonEvent& operator=(CustomCarbonEvent const&) = delete;
    virtual ~CustomCarbonEvent();

    // paramErr for an event that isn't valid. The bytes are copied.
    OSStatus addParameter(OSType name, OSType type, std::size_t size, void const* data);
    OSStatus setEventTarget(EventTargetRef target);  // paramErr for null too
    // To the window, through `queue` or, for null, the main queue; the host's loop wakes up.
    // paramErr, and nothing is posted, for an event that isn't valid.
    OSStatus send(EventQueueRef queue, EventPriority priority);

    WindowRef mTargetWindow;  // not owned
    bool mEventValid = false;
    EventRef mEvent = nullptr;  // owned
};
