// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

// The entry of the plug-in. An instance of the factory (PlugInFactory in platform/PlugInHost.h)
// with one reference, or null: when a dialog is under way, when the bundle isn't known to the
// process, or when it lists no factory for the type. After a failed call the next one fails too,
// until a Close or Terminate has run.
extern "C" void* PrinterInfoPluginFactory(CFAllocatorRef allocator, CFUUIDRef typeID);
