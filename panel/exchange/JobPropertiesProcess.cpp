// SPDX-License-Identifier: Apache-2.0
#include "panel/exchange/JobPropertiesProcess.h"

#include "platform/CFRef.h"

namespace {

// The Job Properties application under the names that its versions run by.
struct JobPropertiesProcess {
    char const* mName;
    std::int32_t mNumber;
};
constexpr JobPropertiesProcess kJobPropertiesProcesses[] = {
    {"ZUB VD3toJP", 3},    {"ZUB VD4toJP", 4},    {"ZUB VD4.1toJP", 41},
    {"ZUB VD4.2toJP", 42}, {"ZUB VD4.4toJP", 44},
};

// 0 for a process that isn't the Job Properties application.
std::int32_t JobPropertiesNumber(CFStringRef processName) {
    for (JobPropertiesProcess const& process : kJobPropertiesProcesses) {
        if (CFEqual(processName, CFStringConstant(process.mName))) {
            return process.mNumber;
        }
    }
    return 0;
}

}  // namespace

std::int32_t FindJobProperties(ProcessSerialNumber* psn) {
    while (GetNextProcess(psn) == noErr) {
        CFRef<CFStringRef> name;
        OSStatus const status = CopyProcessName(psn, name.Receive());
        if (status == procNotFound) {
            continue;  // it has ended since the list was made
        }
        if (status != noErr) {
            break;
        }
        if (std::int32_t const number = JobPropertiesNumber(name); number != 0) {
            return number;
        }
    }
    return kNoJobProperties;
}

bool EndJobProperties() {
    ProcessSerialNumber process = {0, kNoProcess};
    return FindJobProperties(&process) != kNoJobProperties && KillProcess(&process) == noErr;
}
