// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/EventLoop.h"

// Wakes the host's loop. Some hosts look at posted events only when their run loop wakes, so there
// is a source that does nothing but wake it.
class EventHack {
  public:
    static constexpr int kAlreadyInstalled = -1;
    static constexpr int kNoSource = -5;

    EventHack() { testHack(); }

    // Installs the source, once: 0, kAlreadyInstalled or kNoSource.
    int testHack();
    void wakeHack();

  private:
    static bool mInstalled;
    static CFRunLoopRef mRunLoop;       // not owned
    static CFRunLoopSourceRef mSource;  // owned as long as the process lives
};

extern EventHack gEventHack;
