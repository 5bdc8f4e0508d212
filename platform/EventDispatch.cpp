// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "platform/internal/Desktop.h"
#include "platform/internal/Dispatch.h"

namespace platform {
namespace {

// An event on its way. It holds no node and no list: all may change under it.
class Dispatch {
  public:
    explicit Dispatch(EventRef event, EventRecord const& record)
        : mEvent(event),
          mType{record.eventClass, record.kind},
          mFirstDeaf(TheDesktop().nextHandlerSerial) {}

    OSStatus Run(TargetNode const& start) {
        for (HandleKey const key : Way(start)) {
            TargetNode const* const target = FindTarget(key);
            OSStatus const status = target == nullptr ? eventNotHandledErr : Offer(*target);
            if (status != eventNotHandledErr) {
                return status;
            }
        }
        return eventNotHandledErr;
    }

  private:
    static std::vector<HandleKey> Way(TargetNode const& start) {
        std::vector<HandleKey> way = {start.key};
        if (start.isWindow) {
            return way;
        }
        auto const& control = static_cast<ControlNode const&>(start);
        for (auto const* at = control.container; at != nullptr; at = at->container) {
            CountVisit();
            way.push_back(at->key);
        }
        if (control.window != nullptr) {
            way.push_back(control.window->key);
        }
        return way;
    }

    OSStatus Offer(TargetNode const& target) {
        auto const records = target.handlers;
        for (auto record = records.rbegin(); record != records.rend(); ++record) {
            CountVisit();
            if (!MayHear(**record)) {
                continue;
            }
            mHeard.emplace_back((*record)->routine, (*record)->userData);
            OSStatus const status = (*record)->routine(nullptr, mEvent, (*record)->userData);
            if (status != eventNotHandledErr) {
                return status;
            }
        }
        return eventNotHandledErr;
    }

    bool MayHear(HandlerRecord const& record) const {
        auto const isWanted = [&](EventTypeSpec const& type) {
            return type.eventClass == mType.eventClass && type.eventKind == mType.eventKind;
        };
        std::pair const listener{record.routine, record.userData};
        return record.isAlive && record.serial < mFirstDeaf &&
               std::any_of(record.types.begin(), record.types.end(), isWanted) &&
               std::find(mHeard.begin(), mHeard.end(), listener) == mHeard.end();
    }

    EventRef mEvent;  // not owned
    EventTypeSpec mType;
    std::uint64_t mFirstDeaf;  // handlers from this serial on came later than the event
    std::vector<std::pair<EventHandlerUPP, void*>> mHeard;
};

OSStatus Send(EventRef event, TargetNode const& target) {
    EventRecord const* const record = Find(event);
    if (record == nullptr) {
        return paramErr;
    }
    RetainEvent(event);
    OSStatus const status = Guarded([&] {
        DispatchScope const scope;
        return Dispatch(event, *record).Run(target);
    });
    ReleaseEvent(event);
    return status;
}

}  // namespace

OwnEvent::OwnEvent(OSType eventClass, std::uint32_t kind) {
    CreateEvent(nullptr, eventClass, kind, 0, kEventAttributeUserEvent, &mEvent);
}

OSStatus OwnEvent::SendTo(TargetNode* target) const {
    return target == nullptr || mEvent == nullptr ? noErr : Send(mEvent, *target);
}

OSStatus SendControlEvent(ControlRef control, std::uint32_t kind, std::int16_t part) {
    OwnEvent event(kEventClassControl, kind);
    event.With(kEventParamDirectObject, typeControlRef, control);
    if (kind == kEventControlHit) {
        event.With(kEventParamControlPart, typeControlPartCode, part);
    }
    return event.SendTo(Find(control));
}

OSStatus SendCommand(TargetNode* target, OSType command) {
    HICommand const record = {0, command, {0, 0, 0}};
    return OwnEvent(kEventClassCommand, kEventCommandProcess)
        .With(kEventParamDirectObject, typeHICommand, kHICommandSize, &record)
        .SendTo(target);
}

}  // namespace platform

using platform::Find;

EventTargetRef GetWindowEventTarget(WindowRef window) {
    auto const* const node = Find(window);
    return node == nullptr ? nullptr : platform::MakeRef<EventTargetRef>(node->key);
}

EventTargetRef GetControlEventTarget(ControlRef control) {
    auto const* const node = Find(control);
    return node == nullptr ? nullptr : platform::MakeRef<EventTargetRef>(node->key);
}

OSStatus InstallEventHandler(EventTargetRef target, EventHandlerUPP routine, std::uint32_t count,
                             EventTypeSpec const* types, void* userData, EventHandlerRef* handler) {
    if (handler != nullptr) {
        *handler = nullptr;
    }
    platform::TargetNode* const node = Find(target);
    if (node == nullptr || routine == nullptr || (types == nullptr && count > 0)) {
        return paramErr;
    }
    return platform::Guarded([&]() -> OSStatus {
        platform::Desktop& desktop = platform::TheDesktop();
        auto record = std::make_shared<platform::HandlerRecord>();
        record->target = node->key;
        record->routine = routine;
        record->userData = userData;
        record->types.assign(types, types + count);
        platform::ReserveOneMore(node->handlers);
        record->key = desktop.handlers.Add(record.get());
        record->serial = desktop.nextHandlerSerial++;
        if (handler != nullptr) {
            *handler = platform::MakeRef<EventHandlerRef>(record->key);
        }
        node->handlers.push_back(std::move(record));
        return noErr;
    });
}

OSStatus RemoveEventHandler(EventHandlerRef handler) {
    platform::Desktop& desktop = platform::TheDesktop();
    platform::HandlerRecord* const record = desktop.handlers.Find(platform::KeyOf(handler));
    if (record == nullptr) {
        return paramErr;
    }
    record->isAlive = false;
    desktop.handlers.Remove(record->key);
    // Last: it may be what keeps the record.
    if (auto* const target = platform::FindTarget(record->target); target != nullptr) {
        std::erase_if(target->handlers, [&](auto const& kept) { return kept.get() == record; });
    }
    return noErr;
}

OSStatus SendEventToEventTarget(EventRef event, EventTargetRef target) {
    platform::TargetNode const* const node = Find(target);
    return node == nullptr ? paramErr : platform::Send(event, *node);
}
