// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <vector>

#include "platform/Face.h"
#include "platform/HeadlessFace.h"
#include "platform/internal/ControlNode.h"

// What there is once: the windows in their order, the modal loops, what the face hasn't heard yet
// and the gesture that is under way.

namespace platform {

// What stands in a host's place where there is none.
HeadlessFace& NobodysFace();

struct Gesture {
    ControlRef control = nullptr;
    bool releasedInside = false;
};

struct ModalLoop {
    WindowRef window;
    std::uint64_t number;
    bool isQuit;
};

struct Desktop {
    HandleTable<TargetNode> targets;
    HandleTable<HandlerRecord> handlers;
    std::uint64_t nextHandlerSerial = 0;

    std::vector<WindowNode*> windows;  // front first; owned
    std::int32_t lastWindowNumber = 0;
    std::vector<ModalLoop> loops;  // innermost last
    std::uint64_t nextLoopNumber = 0;

    // The host's; never null. Any thread may post to the one and wake the other.
    std::atomic<ControlFace*> face{&NobodysFace()};
    std::atomic<LoopDriver*> driver{&NobodysFace()};
    std::vector<ControlRef> changedControls;
    std::vector<WindowRef> changedWindows;
    std::vector<ControlRef> goneControls;
    std::vector<WindowRef> goneWindows;
    std::deque<ControlRef> undrawn;

    int depth = 0;  // of events and input that are under way in the innermost loop
    Gesture const* gesture = nullptr;  // on the stack of who reports it
    std::uint32_t modifiers = 0;
    CGrafPtr port = nullptr;
    std::atomic<long> visits{0};
};

Desktop& TheDesktop();

// Tells the face something, or asks it; what it has no memory for it misses. Any thread.
template <typename Tell>
OSStatus TellFace(Tell&& tell) {
    return Guarded([&]() -> OSStatus {
        tell(*TheDesktop().face.load());
        return noErr;
    });
}
// Likewise the driver.
void Wake(double at);

// Tells the face what changed.
bool Flush();  // whether there was anything
// Sends draw events to what wants to be drawn; whether there was anything.
bool DrawChanged();

// While an event or a gesture is under way the face hears nothing; it does when the outermost ends.
class DispatchScope {
  public:
    DispatchScope();
    DispatchScope(DispatchScope const&) = delete;
    DispatchScope& operator=(DispatchScope const&) = delete;
    ~DispatchScope();
};

// A loop inside of an event begins as if there were none.
class NestedLoopScope {
  public:
    NestedLoopScope();
    NestedLoopScope(NestedLoopScope const&) = delete;
    NestedLoopScope& operator=(NestedLoopScope const&) = delete;
    ~NestedLoopScope();

  private:
    int mDepth;
    Gesture const* mGesture;
    std::uint32_t mModifiers;
    CGrafPtr mPort;
};

}  // namespace platform
