// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/MacTypes.h"

// Handles: growing blocks reached through a pointer to a pointer. *handle stays valid until the
// next change of size. Null handles are harmless and have size 0.

using Handle = char**;

Handle NewHandle(long size);  // zeroed; null when there is no memory or the size is negative
void DisposeHandle(Handle handle);
long GetHandleSize(Handle handle);
OSErr SetHandleSize(Handle handle, long size);  // memFullErr leaves the handle as it was
