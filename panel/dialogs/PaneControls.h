// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Controls.h"

// Putting the controls of a template into the host's pane.

// Moves a control of a window with these bounds so that the window's content would lie in the
// middle of the pane, and not beyond its top left corner.
OSStatus CentreInPane(Rect const& window, Rect const& pane, ControlRef control);

// Centres the control of `window` in the pane, makes it visible and embeds it there. `out`, if
// given, gets the control, null where that failed.
OSStatus MyEmbedControl(WindowRef window, ControlRef pane, ControlRef control, ControlRef* out);
OSStatus MyEmbedControl(WindowRef window, ControlRef pane, ControlID const& id, ControlRef* out);
