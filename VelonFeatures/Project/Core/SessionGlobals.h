// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/Controls.h"
#include "platform/CoreFoundation.h"

class PDEData;

// What the whole process shares. All of it belongs to the dialog's thread.

// The file whose presence makes all printers share one set of stored settings. Its content is
// never read.
extern char const* gCommonPresetsPath;
// Set by the factory when that file exists; stays set as long as the process lives.
extern bool gUseCommonPresets;
// A dialog that closes may end the Job Properties application, for which it looks at every process
// of the machine. Cleared by a host whose dialogs start none.
extern bool gMayEndApplications;
// A dialog is under way: the factory sets it, Close and Terminate clear it.
extern bool gFactoryBusy;
// The pane shrinks once for each ProjectPDE.
extern bool gNeedShrink;
// The printing application's bundle path holds "Adobe" or "Quark".
extern bool gAppIsAdobe;
extern bool gMacOSx105;      // the system's minor version is 5
extern bool gMacOSx105plus;  // it is 5 or higher
// The pane is coming back from the Job Properties application.
extern bool gBackFromJP;

// The session data. Owned; outlives the ProjectPDE that made it, until the next one replaces it.
extern PDEData* gPDEData;
// The nib of the interface instances. Owned by all of them: the first that goes closes it.
extern IBNibRef gSharedNib;
// The first bundle that MyGetBundle found; retained.
extern CFBundleRef gCachedBundle;
