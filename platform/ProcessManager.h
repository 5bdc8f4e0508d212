// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"

// The running processes of this machine.

struct ProcessSerialNumber {
    std::uint32_t highLongOfPSN;
    std::uint32_t lowLongOfPSN;
};
constexpr std::uint32_t kNoProcess = 0;

struct ProcessInfoRec {
    std::uint8_t processName[256];  // length byte first
};

// The process after `process`, the first one after {0, kNoProcess}. procNotFound, and kNoProcess,
// at the end of the list.
OSErr GetNextProcess(ProcessSerialNumber* process);
OSErr GetCurrentProcess(ProcessSerialNumber* process);
OSErr GetProcessInformation(ProcessSerialNumber const* process, ProcessInfoRec* info);
// The caller releases the name; null when the result isn't 0.
OSStatus CopyProcessName(ProcessSerialNumber const* process, CFStringRef* name);
OSErr KillProcess(ProcessSerialNumber const* process);  // asks it to end

// The name under which this process is known, for a host that prints in an application's name.
void SetCurrentProcessName(char const* name);
