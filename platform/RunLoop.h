// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>

// How a LoopDriver turns the loop. One thread; may be entered again from whatever it runs.

namespace platform {

class RunLoop {
  public:
    // Takes one due thing out (a signalled source, a posted event, a timer), forgets it and runs
    // it; without one, draws what wants to be drawn and tells the face what changed. False when
    // there was neither.
    static bool Turn();
    // When something is due next, on the driver's clock: the time that has come already for what
    // can run at once. None while there are no timers and nothing waits.
    static std::optional<double> NextDue();
};

}  // namespace platform
