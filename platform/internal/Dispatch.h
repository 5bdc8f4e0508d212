// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

#include "platform/Events.h"
#include "platform/internal/ControlNode.h"

// Events as records, and sending the platform's own ones.

namespace platform {

struct EventParameter {
    OSType name;
    OSType type;
    std::vector<std::uint8_t> bytes;
};

template <>
constexpr HandleKey kTagOf<EventRef> = kEventTag;

struct EventRecord {
    HandleKey key = 0;
    int references = 1;
    OSType eventClass = 0;
    std::uint32_t kind = 0;
    EventTime time = 0;
    std::vector<EventParameter> parameters;
};

// Null for null and foreign references. Any thread; the record stays as long as somebody retains
// it.
EventRecord* Find(EventRef event);

// An event that its scope releases.
class OwnEvent {
  public:
    OwnEvent(OSType eventClass, std::uint32_t kind);
    OwnEvent(OwnEvent const&) = delete;
    OwnEvent& operator=(OwnEvent const&) = delete;
    ~OwnEvent() { ReleaseEvent(mEvent); }

    template <typename Value>
    OwnEvent& With(OSType name, OSType type, Value const& value) {
        return With(name, type, sizeof value, &value);
    }
    OwnEvent& With(OSType name, OSType type, std::size_t size, void const* data) {
        SetEventParameter(mEvent, name, type, size, data);
        return *this;
    }
    // eventNotHandledErr where nobody took it, and noErr where the target is gone: then nothing
    // that would follow from it makes sense any more.
    OSStatus SendTo(TargetNode* target) const;

  private:
    EventRef mEvent = nullptr;  // owned
};

// To the control, what embeds it and the window. `part` goes into hits alone.
OSStatus SendControlEvent(ControlRef control, std::uint32_t kind, std::int16_t part = 0);
OSStatus SendCommand(TargetNode* target, OSType command);

// The event that was posted with the highest priority, first among those; the caller releases it.
EventRef TakePostedEvent();
bool HasPostedEvent();

}  // namespace platform
