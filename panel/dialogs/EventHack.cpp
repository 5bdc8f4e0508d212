// SPDX-License-Identifier: Apache-2.0
#include "panel/dialogs/EventHack.h"

bool EventHack::mInstalled = false;
CFRunLoopRef EventHack::mRunLoop = nullptr;
CFRunLoopSourceRef EventHack::mSource = nullptr;

EventHack gEventHack;

int EventHack::testHack() {
    if (mInstalled) {
        return kAlreadyInstalled;
    }
    CFRunLoopSourceContext const context = {0, nullptr, [](void*) {}};
    mSource = CFRunLoopSourceCreate(nullptr, 0, &context);
    if (mSource == nullptr) {
        return kNoSource;
    }
    mRunLoop = CFRunLoopGetCurrent();
    CFRunLoopAddSource(mRunLoop, mSource, kCFRunLoopCommonModes);
    mInstalled = true;
    return 0;
}

void EventHack::wakeHack() {
    CFRunLoopSourceSignal(mSource);
    CFRunLoopWakeUp(GetCFRunLoopFromEventLoop(GetMainEventLoop()));
}
