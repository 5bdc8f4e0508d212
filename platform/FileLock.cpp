// SPDX-License-Identifier: Apache-2.0
#include "platform/FileLock.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <thread>
#include <utility>

#include "platform/MacTypes.h"
#include "platform/internal/CFURLObject.h"

namespace {

constexpr mode_t kPrivateMode = 0600;
constexpr std::chrono::seconds kLongestWait{10};
constexpr std::chrono::milliseconds kPause{2};

}  // namespace

FileLock::~FileLock() {
    if (mDescriptor >= 0) {
        // While it is locked: whoever waits for it sees that it has gone and makes a new one.
        unlink(mPath.c_str());
        close(mDescriptor);
    }
}

std::int32_t FileLock::Take(CFURLRef file) {
    return platform::WithoutExceptions<std::int32_t>(memFullErr, [&]() -> std::int32_t {
        mPath = platform::AbsolutePath(file);
        if (mPath.empty()) {
            return fnfErr;
        }
        // Whatever name leads to the file, there is one lock.
        if (std::int32_t const error = platform::ResolveLinks(mPath); error != 0) {
            return error;
        }
        mPath += ".lock";
        auto const end = std::chrono::steady_clock::now() + kLongestWait;
        for (;;) {
            std::int32_t const error = Open();
            if (error != EWOULDBLOCK) {
                return error;
            }
            if (std::chrono::steady_clock::now() > end) {
                return ETIMEDOUT;
            }
            std::this_thread::sleep_for(kPause);
        }
    });
}

// EWOULDBLOCK while another has the lock.
std::int32_t FileLock::Open() {
    int const flags = O_RDWR | O_CREAT | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    mDescriptor = open(mPath.c_str(), flags, kPrivateMode);
    if (mDescriptor < 0) {
        return errno;
    }
    struct stat status {};
    std::int32_t error = 0;
    if (fstat(mDescriptor, &status) != 0) {
        error = errno;
    } else if (!S_ISREG(status.st_mode) || (status.st_uid != geteuid() && geteuid() != 0)) {
        error = EPERM;
    } else if (flock(mDescriptor, LOCK_EX | LOCK_NB) != 0) {
        error = errno == EINTR ? EWOULDBLOCK : errno;
    } else if (!IsInPlace()) {
        error = EWOULDBLOCK;
    }
    if (error != 0) {
        close(std::exchange(mDescriptor, -1));
    }
    return error;
}

// Whether the locked file is still the one that others would open.
bool FileLock::IsInPlace() const {
    struct stat own {};
    struct stat there {};
    return fstat(mDescriptor, &own) == 0 && lstat(mPath.c_str(), &there) == 0 &&
           own.st_ino == there.st_ino && own.st_dev == there.st_dev;
}
