// SPDX-License-Identifier: Apache-2.0
#include "platform/FileManager.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <limits>
#include <new>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "platform/internal/CFURLObject.h"

namespace platform {
namespace {

constexpr std::int16_t kVolume = -100;     // the one volume that there is
constexpr std::int32_t kParentOfRoot = 1;  // where the root folder itself lies
constexpr std::size_t kMaximumNameLength = 63;

struct ErrorRow {
    int posix;
    OSStatus result;
};
constexpr ErrorRow kErrors[] = {
    {ENOENT, fnfErr},   {ENOTDIR, dirNFErr},  {EEXIST, dupFNErr},       {EACCES, permErr},
    {EPERM, permErr},   {EROFS, wPrErr},      {ENOSPC, dskFulErr},      {EDQUOT, dskFulErr},
    {EFBIG, dskFulErr}, {ENOMEM, memFullErr}, {ENAMETOOLONG, bdNamErr},
};

OSErr Error(OSStatus status) {
    return static_cast<OSErr>(status);
}

OSErr ErrorOf(int posix) {
    for (auto const& row : kErrors) {
        if (row.posix == posix) {
            return Error(row.result);
        }
    }
    return Error(ioErr);
}

// The directory numbers and the shortened names that this process has given out.
class DirectoryTable {
  public:
    std::int32_t NumberOf(std::string const& path);
    std::string const* PathOf(std::int32_t number) const;  // null for a number never given out
    std::string ShortName(std::int32_t directory, std::string const& name);
    std::string FullName(std::int32_t directory, std::string const& name) const;

  private:
    static constexpr std::int32_t kFirstNumber = 2;

    std::vector<std::string> mPaths;
    std::unordered_map<std::string, std::int32_t> mNumbers;
    // By "<directory>/<name>".
    std::unordered_map<std::string, std::string> mShortNames;
    std::unordered_map<std::string, std::string> mFullNames;
};

std::int32_t DirectoryTable::NumberOf(std::string const& path) {
    if (auto const known = mNumbers.find(path); known != mNumbers.end()) {
        return known->second;
    }
    // A number without its path would stay so for good: nothing may fail between the two.
    std::string copy = path;
    mPaths.reserve(mPaths.size() + 1);
    std::int32_t const number = kFirstNumber + static_cast<std::int32_t>(mPaths.size());
    mNumbers.emplace(path, number);
    mPaths.push_back(std::move(copy));
    return number;
}

std::string const* DirectoryTable::PathOf(std::int32_t number) const {
    bool const isKnown =
        number >= kFirstNumber && static_cast<std::size_t>(number - kFirstNumber) < mPaths.size();
    return isKnown ? &mPaths[static_cast<std::size_t>(number - kFirstNumber)] : nullptr;
}

std::string DirectoryTable::ShortName(std::int32_t directory, std::string const& name) {
    if (name.size() <= kMaximumNameLength) {
        return name;
    }
    std::string const prefix = std::to_string(directory) + '/';
    auto const known = mShortNames.find(prefix + name);
    if (known != mShortNames.end()) {
        return known->second;
    }
    char suffix[16];
    std::snprintf(suffix, sizeof suffix, "#%zX", mShortNames.size() + 1);
    std::size_t length = kMaximumNameLength - std::strlen(suffix);
    while (length > 0 && (static_cast<unsigned char>(name[length]) & 0xC0) == 0x80) {
        --length;  // not within a character
    }
    std::string shortened = name.substr(0, length) + suffix;
    mFullNames.emplace(prefix + shortened, name);
    mShortNames.emplace(prefix + name, shortened);
    return shortened;
}

std::string DirectoryTable::FullName(std::int32_t directory, std::string const& name) const {
    auto const found = mFullNames.find(std::to_string(directory) + '/' + name);
    return found == mFullNames.end() ? name : found->second;
}

DirectoryTable& Directories() {
    static auto& sTable = *new DirectoryTable;
    return sTable;
}

std::string NameInSpec(FSSpec const& file) {
    auto const length = std::min<std::size_t>(file.name[0], kMaximumNameLength);
    return Directories().FullName(file.parID, std::string(file.name + 1, file.name + 1 + length));
}

OSErr PathOf(FSSpec const* file, std::string& path) {
    if (file == nullptr) {
        return Error(paramErr);
    }
    if (file->parID == kParentOfRoot) {
        path.assign(1, '/');
        return Error(noErr);
    }
    auto const* folder = Directories().PathOf(file->parID);
    if (folder == nullptr || file->name[0] == 0) {
        return Error(bdNamErr);
    }
    path = PathIn(*folder, NameInSpec(*file));
    return Error(noErr);
}

void Fill(std::int32_t directory, std::string const& name, FSSpec& file) {
    std::string const shortened = Directories().ShortName(directory, name);
    file.vRefNum = kVolume;
    file.parID = directory;
    file.name[0] = static_cast<std::uint8_t>(shortened.size());
    std::memcpy(file.name + 1, shortened.data(), shortened.size());
}

OSErr ExistenceOf(std::string const& path) {
    struct stat status {};
    return stat(path.c_str(), &status) == 0 ? Error(noErr) : Error(fnfErr);
}

OSErr MakeSpec(std::string const& path, FSSpec& file) {
    if (path == "/") {
        Fill(kParentOfRoot, path, file);
        return Error(noErr);
    }
    std::string const folder = FolderOf(path);
    struct stat status {};
    if (stat(folder.c_str(), &status) != 0 || !S_ISDIR(status.st_mode)) {
        return Error(dirNFErr);
    }
    Fill(Directories().NumberOf(folder), NameOf(path), file);
    return ExistenceOf(path);
}

OSErr CopyOut(std::string const& text, char* buffer, unsigned long size) {
    if (buffer == nullptr || size == 0) {
        return Error(paramErr);
    }
    bool const fits = text.size() < size;
    std::size_t const length = fits ? text.size() : 0;
    std::memcpy(buffer, text.data(), length);
    buffer[length] = '\0';
    return Error(fits ? noErr : paramErr);
}

// Runs `work` with the file's path.
template <typename Work>
OSErr WithPath(FSSpec const* file, Work&& work) {
    return WithoutExceptions(Error(memFullErr), [&] {
        std::string path;
        OSErr const error = PathOf(file, path);
        return error == noErr ? work(path) : error;
    });
}

// ---- Open files ----

constexpr int kClosed = -1;

std::vector<int>& OpenFiles() {
    static auto& sFiles = *new std::vector<int>;
    return sFiles;
}

int DescriptorOf(std::int16_t reference) {
    auto const& files = OpenFiles();
    return reference < 1 || static_cast<std::size_t>(reference) > files.size()
               ? kClosed
               : files[static_cast<std::size_t>(reference) - 1];
}

// A number that is never 0; 0 where there is no room.
std::int16_t AddOpenFile(int descriptor) {
    auto& files = OpenFiles();
    auto slot = std::find(files.begin(), files.end(), kClosed);
    if (slot == files.end()) {
        if (files.size() == std::numeric_limits<std::int16_t>::max()) {
            return 0;
        }
        try {
            slot = files.insert(files.end(), kClosed);
        } catch (std::bad_alloc const&) {
            return 0;
        }
    }
    *slot = descriptor;
    return static_cast<std::int16_t>(slot - files.begin() + 1);
}

OSErr Open(std::string const& path, int flags, std::int16_t& reference) {
    // Not blocking, since opening a pipe would wait for its other end.
    int const descriptor = open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return ErrorOf(errno);
    }
    struct stat status {};
    bool const isFile =
        fstat(descriptor, &status) == 0 && (S_ISREG(status.st_mode) || S_ISCHR(status.st_mode));
    reference = isFile ? AddOpenFile(descriptor) : std::int16_t{0};
    if (reference == 0) {
        close(descriptor);
        return Error(ioErr);
    }
    return Error(noErr);
}

// Calls `transfer` for what is left until all is done or it gives 0 or an error.
template <typename Transfer>
OSErr TransferAll(long wanted, long& done, Transfer&& transfer) {
    done = 0;
    while (done < wanted) {
        ssize_t const count = transfer(done, static_cast<std::size_t>(wanted - done));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            return ErrorOf(errno);
        }
        if (count == 0) {
            return Error(eofErr);
        }
        done += count;
    }
    return Error(noErr);
}

std::atomic<std::int16_t> gResourceFile{0};

}  // namespace
}  // namespace platform

using platform::DescriptorOf;
using platform::Error;
using platform::ErrorOf;
using platform::WithoutExceptions;
using platform::WithPath;

OSErr FSSpecGetPath(FSSpec const* file, char* path, unsigned long size) {
    return WithPath(file,
                    [&](std::string const& found) { return platform::CopyOut(found, path, size); });
}

OSErr FSMakeFSSpecFromURL(CFURLRef url, FSSpec* file) {
    if (file == nullptr) {
        return Error(paramErr);
    }
    *file = FSSpec{};
    return WithoutExceptions(Error(memFullErr), [&] {
        std::string const path = platform::AbsolutePath(url);
        return path.empty() ? Error(paramErr) : platform::MakeSpec(path, *file);
    });
}

OSErr FSMakeFSSpec(std::int16_t, std::int32_t directory, std::uint8_t const* name, FSSpec* file) {
    if (file == nullptr || name == nullptr) {
        return Error(paramErr);
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        std::string const given(name + 1, name + 1 + name[0]);
        *file = FSSpec{};
        auto const* folder = platform::Directories().PathOf(directory);
        if (folder == nullptr) {
            return Error(dirNFErr);
        }
        std::string const full = platform::Directories().FullName(directory, given);
        if (full.empty() || full.find('/') != full.npos || full.find('\0') != full.npos) {
            return Error(bdNamErr);
        }
        return platform::MakeSpec(platform::PathIn(*folder, full), *file);
    });
}

OSErr FSSpecGetName(FSSpec const* file, char* name, unsigned long size) {
    if (file == nullptr) {
        return Error(paramErr);
    }
    return WithoutExceptions(Error(memFullErr), [&] {
        return platform::CopyOut(platform::NameInSpec(*file), name, size);
    });
}

OSErr FSpCreate(FSSpec const* file, OSType, OSType) {
    constexpr mode_t kMode = 0666;
    return WithPath(file, [&](std::string const& path) {
        int const descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode);
        if (descriptor < 0) {
            return ErrorOf(errno);
        }
        close(descriptor);
        return Error(noErr);
    });
}

OSErr FSpOpenDF(FSSpec const* file, char permission, std::int16_t* reference) {
    if (reference == nullptr) {
        return Error(paramErr);
    }
    *reference = 0;
    return WithPath(file, [&](std::string const& path) {
        switch (permission) {
            case fsRdPerm:
                return platform::Open(path, O_RDONLY, *reference);
            case fsWrPerm:
                return platform::Open(path, O_WRONLY, *reference);
            case fsRdWrPerm:
                return platform::Open(path, O_RDWR, *reference);
            default:
                return Error(paramErr);
        }
    });
}

OSErr FSClose(std::int16_t reference) {
    int const descriptor = DescriptorOf(reference);
    if (descriptor == platform::kClosed) {
        return Error(fnOpnErr);
    }
    platform::OpenFiles()[static_cast<std::size_t>(reference) - 1] = platform::kClosed;
    return close(descriptor) == 0 || errno == EINTR ? Error(noErr) : ErrorOf(errno);
}

OSErr FSRead(std::int16_t reference, long* count, void* buffer) {
    if (count == nullptr || *count < 0 || buffer == nullptr) {
        return Error(paramErr);
    }
    int const descriptor = DescriptorOf(reference);
    if (descriptor == platform::kClosed) {
        *count = 0;
        return Error(fnOpnErr);
    }
    return platform::TransferAll(*count, *count, [&](long done, std::size_t left) {
        return read(descriptor, static_cast<char*>(buffer) + done, left);
    });
}

OSErr FSWrite(std::int16_t reference, long* count, void const* buffer) {
    if (count == nullptr || *count < 0 || buffer == nullptr) {
        return Error(paramErr);
    }
    int const descriptor = DescriptorOf(reference);
    if (descriptor == platform::kClosed) {
        *count = 0;
        return Error(fnOpnErr);
    }
    return platform::TransferAll(*count, *count, [&](long done, std::size_t left) {
        return write(descriptor, static_cast<char const*>(buffer) + done, left);
    });
}

OSErr GetEOF(std::int16_t reference, long* size) {
    if (size == nullptr) {
        return Error(paramErr);
    }
    *size = 0;
    int const descriptor = DescriptorOf(reference);
    struct stat status {};
    if (descriptor == platform::kClosed) {
        return Error(fnOpnErr);
    }
    if (fstat(descriptor, &status) != 0) {
        return ErrorOf(errno);
    }
    *size = status.st_size;
    return Error(noErr);
}

bool CFURLGetFSRef(CFURLRef url, FSRef* reference) {
    FSRef found{};
    bool const exists = FSMakeFSSpecFromURL(url, &found.file) == noErr;
    if (reference != nullptr) {
        *reference = exists ? found : FSRef{};
    }
    return exists;
}

std::int16_t CurResFile() {
    return platform::gResourceFile;
}

void UseResFile(std::int16_t reference) {
    platform::gResourceFile = reference;
}
