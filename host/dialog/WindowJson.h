// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "host/JsonText.h"
#include "platform/Face.h"

// Windows and controls as the replies to a script describe them.
class WindowJson {
  public:
    // Those that were shown, front first.
    static Json Windows();
    static Json Control(ControlRef control);  // null for none
    static Json Code(OSType code);            // blanks that end it left off; null for 0
    static Json Number(WindowRef window);     // null for none
};
