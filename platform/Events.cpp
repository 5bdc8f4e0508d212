// SPDX-License-Identifier: Apache-2.0
#include "platform/Events.h"

#include <algorithm>
#include <cstring>
#include <map>
#include <mutex>

#include "platform/internal/Desktop.h"
#include "platform/internal/Dispatch.h"

namespace platform {
namespace {

// Other threads make and post events: everything here is behind one lock, and no routine of others
// runs inside of it.
struct EventStore {
    std::mutex mutex;
    HandleTable<EventRecord> records;
    // The highest priority first; each in the order of arrival. Owns a reference to each event.
    std::multimap<EventPriority, EventRef, std::greater<>> queue;
};

EventStore& Store() {
    static EventStore& sStore = *new EventStore;
    return sStore;
}

EventQueueRef MainQueue() {
    static char sQueue;
    return reinterpret_cast<EventQueueRef>(&sQueue);
}

EventParameter* FindParameter(EventRecord& record, OSType name) {
    auto const found =
        std::find_if(record.parameters.begin(), record.parameters.end(),
                     [&](EventParameter const& parameter) { return parameter.name == name; });
    return found == record.parameters.end() ? nullptr : &*found;
}

void ReportPosted(EventRef event) {
    HICommand command = {};
    if (GetEventClass(event) == kEventClassCommand &&
        GetEventParameter(event, kEventParamDirectObject, typeHICommand, nullptr, kHICommandSize,
                          nullptr, &command) == noErr) {
        TellFace([&](ControlFace& face) { face.CommandPosted(command.commandID); });
    }
}

}  // namespace

EventRecord* Find(EventRef event) {
    EventStore& store = Store();
    std::lock_guard const lock(store.mutex);
    return store.records.Find(KeyOf(event));
}

EventRef TakePostedEvent() {
    EventStore& store = Store();
    std::lock_guard const lock(store.mutex);
    if (store.queue.empty()) {
        return nullptr;
    }
    EventRef const event = store.queue.begin()->second;
    store.queue.erase(store.queue.begin());
    return event;
}

bool HasPostedEvent() {
    EventStore& store = Store();
    std::lock_guard const lock(store.mutex);
    return !store.queue.empty();
}

}  // namespace platform

using platform::EventRecord;
using platform::Find;
using platform::Store;

OSStatus CreateEvent(CFAllocatorRef, OSType eventClass, std::uint32_t kind, EventTime time,
                     std::uint32_t, EventRef* event) {
    if (event == nullptr) {
        return paramErr;
    }
    *event = nullptr;
    auto* const record = platform::NewObject<EventRecord>();
    if (record == nullptr) {
        return memFullErr;
    }
    record->eventClass = eventClass;
    record->kind = kind;
    record->time = time > 0 ? time : GetCurrentEventTime();
    OSStatus const status = platform::Guarded([&]() -> OSStatus {
        std::lock_guard const lock(Store().mutex);
        record->key = Store().records.Add(record);
        *event = platform::MakeRef<EventRef>(record->key);
        return noErr;
    });
    if (status != noErr) {
        platform::DeleteObject(record);
    }
    return status;
}

EventRef RetainEvent(EventRef event) {
    std::lock_guard const lock(Store().mutex);
    if (auto* const record = Store().records.Find(platform::KeyOf(event)); record != nullptr) {
        ++record->references;
    }
    return event;
}

void ReleaseEvent(EventRef event) {
    std::lock_guard const lock(Store().mutex);
    auto* const record = Store().records.Find(platform::KeyOf(event));
    if (record != nullptr && --record->references == 0) {
        Store().records.Remove(record->key);
        platform::DeleteObject(record);
    }
}

OSType GetEventClass(EventRef event) {
    auto const* const record = Find(event);
    return record == nullptr ? 0 : record->eventClass;
}

std::uint32_t GetEventKind(EventRef event) {
    auto const* const record = Find(event);
    return record == nullptr ? 0 : record->kind;
}

EventTime GetEventTime(EventRef event) {
    auto const* const record = Find(event);
    return record == nullptr ? 0 : record->time;
}

OSStatus SetEventParameter(EventRef event, OSType name, OSType type, std::size_t size,
                           void const* data) {
    auto* const record = Find(event);
    if (record == nullptr || (data == nullptr && size > 0)) {
        return paramErr;
    }
    return platform::Guarded([&]() -> OSStatus {
        auto const* const bytes = static_cast<std::uint8_t const*>(data);
        std::vector<std::uint8_t> value(bytes, bytes + size);
        if (auto* const present = platform::FindParameter(*record, name); present != nullptr) {
            present->type = type;
            present->bytes = std::move(value);
        } else {
            record->parameters.push_back({name, type, std::move(value)});
        }
        return noErr;
    });
}

OSStatus GetEventParameter(EventRef event, OSType name, OSType type, OSType* actualType,
                           std::size_t bufferSize, std::size_t* actualSize, void* data) {
    if (actualType != nullptr) {
        *actualType = 0;
    }
    if (actualSize != nullptr) {
        *actualSize = 0;
    }
    if (data != nullptr && bufferSize > 0) {
        std::memset(data, 0, bufferSize);
    }
    auto* const record = Find(event);
    if (record == nullptr) {
        return paramErr;
    }
    auto const* const parameter = platform::FindParameter(*record, name);
    if (parameter == nullptr || (type != typeWildCard && type != parameter->type)) {
        return eventParameterNotFoundErr;
    }
    if (actualType != nullptr) {
        *actualType = parameter->type;
    }
    if (actualSize != nullptr) {
        *actualSize = parameter->bytes.size();
    }
    std::size_t const copied = std::min(bufferSize, parameter->bytes.size());
    if (data != nullptr && copied > 0) {
        std::memcpy(data, parameter->bytes.data(), copied);
    }
    return noErr;
}

EventQueueRef GetMainEventQueue() {
    return platform::MainQueue();
}

OSStatus PostEventToQueue(EventQueueRef queue, EventRef event, EventPriority priority) {
    if (queue != platform::MainQueue() || Find(event) == nullptr) {
        return paramErr;
    }
    OSStatus const status = platform::Guarded([&]() -> OSStatus {
        std::lock_guard const lock(Store().mutex);
        auto* const kept = Store().records.Find(platform::KeyOf(event));
        Store().queue.emplace(priority, event);
        ++kept->references;
        return noErr;
    });
    if (status == noErr) {
        platform::ReportPosted(event);
        platform::Wake(GetCurrentEventTime());
    }
    return status;
}

EventTime GetCurrentEventTime() {
    return platform::TheDesktop().driver.load()->Now();
}

std::uint32_t GetCurrentKeyModifiers() {
    return platform::TheDesktop().modifiers;
}
