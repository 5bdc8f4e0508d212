// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/DisplayOptions.h"

_DISPLAY_OPTIONS_ DisplayOptions::sDisplayOptions = kDisplayPlacedAndVisible;
