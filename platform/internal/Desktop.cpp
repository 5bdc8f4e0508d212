// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/Desktop.h"

#include <utility>

#include "platform/Testing.h"
#include "platform/internal/Dispatch.h"

namespace platform {
namespace {

void Draw(ControlRef control) {
    ControlNode* node = Find(control);
    if (node == nullptr) {
        return;
    }
    node->awaitsDrawing = false;
    // What isn't shown is drawn once it is.
    if (node->window == nullptr || !node->window->isVisible || !IsShown(*node)) {
        return;
    }
    node->isBeingDrawn = true;
    TheDesktop().port = GetWindowPort(node->window->Ref());
    OSStatus const status = SendControlEvent(control, kEventControlDraw);
    auto* const pane = FindAs<DrawnPane>(control);
    if (status == eventNotHandledErr && pane != nullptr && pane->draw != nullptr) {
        DispatchScope const scope;
        pane->draw(control, kControlEntireControl);
    }
    if (node = Find(control); node != nullptr) {
        node->isBeingDrawn = false;
    }
}

}  // namespace

HeadlessFace& NobodysFace() {
    static HeadlessFace& sFace = *new HeadlessFace;
    return sFace;
}

// Never destroyed: what is left at the program's end may still ask it.
Desktop& TheDesktop() {
    static Desktop& sDesktop = *new Desktop{};
    return sDesktop;
}

void CountVisit() {
    TheDesktop().visits.fetch_add(1, std::memory_order_relaxed);
}

// ---- Finding ----

TargetNode* FindTarget(HandleKey key) {
    CountVisit();
    return TheDesktop().targets.Find(key);
}

WindowNode* Find(WindowRef window) {
    TargetNode* const node = FindTarget(KeyOf(window));
    return node != nullptr && node->isWindow ? static_cast<WindowNode*>(node) : nullptr;
}
ControlNode* Find(ControlRef control) {
    TargetNode* const node = FindTarget(KeyOf(control));
    return node != nullptr && !node->isWindow ? static_cast<ControlNode*>(node) : nullptr;
}
TargetNode* Find(EventTargetRef target) {
    return FindTarget(KeyOf(target));
}
ControlNode* Find(MenuRef menu) {
    ControlNode* const node = Find(MakeRef<ControlRef>(KeyOf(menu)));
    return node != nullptr && node->As<PopupMenu>() != nullptr ? node : nullptr;
}
WindowNode* Find(CGrafPtr port) {
    return Find(MakeRef<WindowRef>(KeyOf(port)));
}

// ---- What the face hears ----

void Wake(double at) {
    Guarded([&]() -> OSStatus {
        TheDesktop().driver.load()->Wake(at);
        return noErr;
    });
}

bool Flush() {
    Desktop& desktop = TheDesktop();
    auto const goneControls = std::exchange(desktop.goneControls, {});
    auto const goneWindows = std::exchange(desktop.goneWindows, {});
    auto const windows = std::exchange(desktop.changedWindows, {});
    auto controls = std::exchange(desktop.changedControls, {});
    for (ControlRef const control : goneControls) {
        TellFace([&](ControlFace& face) { face.ControlGone(control); });
    }
    for (WindowRef const window : goneWindows) {
        TellFace([&](ControlFace& face) { face.WindowGone(window); });
    }
    for (WindowRef const window : windows) {
        if (WindowNode* const node = Find(window); node != nullptr) {
            node->awaitsFace = false;
            TellFace([&](ControlFace& face) { face.WindowChanged(window); });
        }
    }
    std::erase_if(controls, [](ControlRef control) {
        ControlNode* const node = Find(control);
        if (node != nullptr) {
            node->awaitsFace = false;
        }
        return node == nullptr;
    });
    if (!controls.empty()) {
        TellFace([&](ControlFace& face) { face.ControlsChanged(controls); });
    }
    return !(goneControls.empty() && goneWindows.empty() && windows.empty() && controls.empty());
}

// Each is taken out for itself: a loop that one of them runs draws the others. What is marked
// meanwhile waits for the next pass.
bool DrawChanged() {
    auto& undrawn = TheDesktop().undrawn;
    std::size_t const count = undrawn.size();
    for (std::size_t at = 0; at < count && !undrawn.empty(); ++at) {
        ControlRef const control = undrawn.front();
        undrawn.pop_front();
        Draw(control);
    }
    return count > 0;
}

// ---- Scopes ----

DispatchScope::DispatchScope() {
    ++TheDesktop().depth;
}

DispatchScope::~DispatchScope() {
    if (--TheDesktop().depth == 0) {
        Flush();
    }
}

NestedLoopScope::NestedLoopScope()
    : mDepth(std::exchange(TheDesktop().depth, 0)),
      mGesture(std::exchange(TheDesktop().gesture, nullptr)),
      mModifiers(std::exchange(TheDesktop().modifiers, 0)),
      mPort(TheDesktop().port) {
    Flush();
}

NestedLoopScope::~NestedLoopScope() {
    Desktop& desktop = TheDesktop();
    desktop.depth = mDepth;
    desktop.gesture = mGesture;
    desktop.modifiers = mModifiers;
    desktop.port = mPort;
}

}  // namespace platform

long VisitedControls() {
    return platform::TheDesktop().visits;
}
