// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

class PPDXControl;
class ZUBPPD;
class ZUBTolvanePrinterPList;
struct PPDTree;

// The options that stand in rows of their own, and their list in a printer's record.

// Whether the pane may offer the control in a row; false for null.
bool MayStandInARow(PPDXControl* control);
// Replaces the tree's shortcuts by those of the printer's record that the PPD still has and that
// may stand in a row. `records` and `ppd` may be null; a record without any leaves the tree as it
// is.
void ReadShortcuts(ZUBTolvanePrinterPList* records, CFStringRef printer, ZUBPPD* ppd,
                   PPDTree& tree);
// Puts the tree's shortcuts into the printer's record; false when it couldn't be written.
bool WriteShortcuts(ZUBTolvanePrinterPList& records, CFStringRef printer, PPDTree const& tree);
