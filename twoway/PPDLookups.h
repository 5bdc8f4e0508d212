// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

class PPDXPopupControl;
class PPDXScrollPane;
class ZUBPPD;

// Puts the local name of the item at `index`, counted from 1, into `out`. False, with an empty
// `out`, for a null popup and an index of no item; false for a null `out`. Moves the popup's walk.
bool GetPPDPopupItemDisplayNameAsCFString(PPDXPopupControl* popup, long index,
                                          CFMutableStringRef out);

// The scroll pane of the property page with this keyword. False, with a null `out`, when there is
// no such page or no pane on it. The pane belongs to the PPD. Moves the walk through the pages.
bool GetScrollPane(ZUBPPD* ppd, char const* keyword, PPDXScrollPane*& out);
