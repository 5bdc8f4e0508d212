// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/PlugInHost.h"

// A new instance of the interface, whose table lives and dies with it. It has one reference for
// the caller, and each Retain adds one that a Release takes off. Null without memory.
PrinterInfoInterface* CreatePrinterInfoInstance();
