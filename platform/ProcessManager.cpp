// SPDX-License-Identifier: Apache-2.0
#include "platform/ProcessManager.h"

#include <dirent.h>
#include <pthread.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <climits>
#include <csignal>
#include <cstring>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/internal/CFURLObject.h"

namespace platform {
namespace {

constexpr std::size_t kKernelNameLength = 15;  // the kernel cuts a process's name here

std::mutex gMutex;
std::string* gOwnName = nullptr;   // owned; null until set
std::string* gReadName = nullptr;  // owned; the system's name for this process, once read
std::vector<std::uint32_t>* gList = nullptr;  // owned; the walk's processes by rising number

std::atomic<std::uint32_t> gOwnId = 0;  // 0 until asked for

OSErr Error(OSStatus status) {
    return static_cast<OSErr>(status);
}

// Each commit asks, and a system call can take longer than all that it writes. A child of this
// process gets a number of its own.
std::uint32_t OwnId() {
    auto const ask = [] { gOwnId = static_cast<std::uint32_t>(getpid()); };
    static bool const sIsRenewed = pthread_atfork(nullptr, nullptr, ask) == 0;
    if (gOwnId == 0 || !sIsRenewed) {
        ask();
    }
    return gOwnId;
}

std::string ProcessFile(std::uint32_t process, char const* name) {
    return "/proc/" + std::to_string(process) + '/' + name;
}

// The letter behind the name, which itself may hold brackets and blanks.
bool IsRunning(std::uint32_t process) {
    std::string status;
    if (ReadWholeFile(ProcessFile(process, "stat"), status) != 0) {
        return false;
    }
    auto const nameEnd = status.rfind(')');
    if (nameEnd == std::string::npos || nameEnd + 2 >= status.size()) {
        return false;
    }
    char const state = status[nameEnd + 2];
    return state != 'Z' && state != 'X';
}

std::string ExecutablePath(std::uint32_t process) {
    char path[PATH_MAX];
    ssize_t const length = readlink(ProcessFile(process, "exe").c_str(), path, sizeof path);
    std::string executable(path, static_cast<std::size_t>(std::max<ssize_t>(length, 0)));
    constexpr std::string_view kDeleted = " (deleted)";
    if (executable.ends_with(kDeleted)) {
        executable.resize(executable.size() - kDeleted.size());
    }
    return executable;
}

std::string FirstArgument(std::uint32_t process) {
    std::string arguments;
    ReadWholeFile(ProcessFile(process, "cmdline"), arguments);
    return arguments.substr(0, arguments.find('\0'));
}

std::string ReadName(std::uint32_t process) {
    std::string name;
    if (ReadWholeFile(ProcessFile(process, "comm"), name) != 0) {
        return {};
    }
    if (name.ends_with('\n')) {
        name.pop_back();
    }
    if (name.size() < kKernelNameLength) {
        return name;
    }
    for (std::string const& path : {ExecutablePath(process), FirstArgument(process)}) {
        std::string longName = NameOf(path);
        if (longName.starts_with(name)) {
            return longName;
        }
    }
    return name;
}

std::string OwnName() {
    std::lock_guard const lock(gMutex);
    if (gOwnName != nullptr) {
        return *gOwnName;
    }
    if (gReadName == nullptr) {
        gReadName = new std::string(ReadName(OwnId()));
    }
    return *gReadName;
}

// Empty when there is no such process.
std::string NameOfProcess(std::uint32_t process) {
    if (process == OwnId()) {
        return OwnName();
    }
    return IsRunning(process) ? ReadName(process) : std::string();
}

struct DirectoryCloser {
    void operator()(DIR* folder) const { closedir(folder); }
};

std::vector<std::uint32_t> ListProcesses() {
    std::vector<std::uint32_t> list;
    std::unique_ptr<DIR, DirectoryCloser> const folder(opendir("/proc"));
    while (auto const* entry = folder == nullptr ? nullptr : readdir(folder.get())) {
        std::uint32_t process = 0;
        auto const* const end = entry->d_name + std::strlen(entry->d_name);
        auto const result = std::from_chars(entry->d_name, end, process);
        if (result.ec == std::errc() && result.ptr == end) {
            list.push_back(process);
        }
    }
    std::sort(list.begin(), list.end());
    return list;
}

// kNoProcess at the end.
std::uint32_t ProcessBehind(std::uint32_t process) {
    std::lock_guard const lock(gMutex);
    if (process == kNoProcess || gList == nullptr) {
        delete std::exchange(gList, nullptr);
        gList = new std::vector<std::uint32_t>(ListProcesses());
    }
    auto const next = std::find_if(std::upper_bound(gList->begin(), gList->end(), process),
                                   gList->end(), IsRunning);
    return next == gList->end() ? kNoProcess : *next;
}

bool IsProcess(ProcessSerialNumber const* process) {
    return process != nullptr && process->highLongOfPSN == 0 &&
           process->lowLongOfPSN != kNoProcess && process->lowLongOfPSN <= INT_MAX;
}

}  // namespace
}  // namespace platform

using platform::Error;
using platform::WithoutExceptions;

OSErr GetNextProcess(ProcessSerialNumber* process) {
    if (process == nullptr || process->highLongOfPSN != 0) {
        return Error(paramErr);
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        process->lowLongOfPSN = platform::ProcessBehind(process->lowLongOfPSN);
        return Error(process->lowLongOfPSN == kNoProcess ? procNotFound : noErr);
    });
}

OSErr GetCurrentProcess(ProcessSerialNumber* process) {
    if (process == nullptr) {
        return Error(paramErr);
    }
    *process = {0, platform::OwnId()};
    return Error(noErr);
}

OSErr GetProcessInformation(ProcessSerialNumber const* process, ProcessInfoRec* info) {
    if (info == nullptr) {
        return Error(paramErr);
    }
    *info = ProcessInfoRec{};
    return WithoutExceptions(Error(memFullErr), [&] {
        std::string const name =
            platform::IsProcess(process) ? platform::NameOfProcess(process->lowLongOfPSN) : "";
        std::size_t const length = std::min(name.size(), sizeof info->processName - 1);
        info->processName[0] = static_cast<std::uint8_t>(length);
        std::memcpy(info->processName + 1, name.data(), length);
        return Error(name.empty() ? procNotFound : noErr);
    });
}

OSStatus CopyProcessName(ProcessSerialNumber const* process, CFStringRef* name) {
    if (name == nullptr) {
        return paramErr;
    }
    *name = nullptr;
    return WithoutExceptions<OSStatus>(memFullErr, [&] {
        std::string const bytes =
            platform::IsProcess(process) ? platform::NameOfProcess(process->lowLongOfPSN) : "";
        if (bytes.empty()) {
            return procNotFound;
        }
        *name = platform::CreateStringFromSystemBytes(bytes);
        return *name == nullptr ? memFullErr : noErr;
    });
}

OSErr KillProcess(ProcessSerialNumber const* process) {
    if (!platform::IsProcess(process)) {
        return Error(procNotFound);
    }
    bool const isRunning =
        WithoutExceptions(false, [&] { return platform::IsRunning(process->lowLongOfPSN); });
    if (!isRunning) {
        return Error(procNotFound);
    }
    if (kill(static_cast<pid_t>(process->lowLongOfPSN), SIGTERM) == 0) {
        return Error(noErr);
    }
    return Error(errno == EPERM ? permErr : procNotFound);
}

void SetCurrentProcessName(char const* name) {
    WithoutExceptions(false, [&] {
        auto given =
            name == nullptr || *name == '\0' ? nullptr : std::make_unique<std::string>(name);
        std::lock_guard const lock(platform::gMutex);
        delete std::exchange(platform::gOwnName, given.release());
        return true;
    });
}
