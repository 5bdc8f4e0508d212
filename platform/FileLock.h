// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "platform/CoreFoundation.h"

// Keeps the processes of a user from changing one file at the same time: whoever reads, changes and
// writes it holds the lock meanwhile. It is an empty file beside the locked one, with ".lock"
// behind its name, for the user alone; the lock goes with this object or with the process.
class FileLock {
  public:
    FileLock() = default;
    FileLock(FileLock const&) = delete;
    FileLock& operator=(FileLock const&) = delete;
    ~FileLock();

    // Called once. `file` need not exist, its folder must. Waits for others, ten seconds at most.
    // 0, an errno (ETIMEDOUT among them, EPERM for a lock file of another user) or a negative
    // number.
    std::int32_t Take(CFURLRef file);

  private:
    std::int32_t Open();
    bool IsInPlace() const;

    std::string mPath;
    int mDescriptor = -1;
};
