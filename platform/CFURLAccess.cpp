// SPDX-License-Identifier: Apache-2.0
#include "platform/CoreFoundation.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstring>
#include <utility>

#include "platform/MacTypes.h"
#include "platform/NewFiles.h"
#include "platform/internal/CFURLObject.h"

namespace platform {
namespace {

constexpr std::size_t kSmallestBuffer = 4096;
constexpr int kMaximumLinks = 40;
constexpr int kMaximumNameAttempts = 100;
constexpr mode_t kSharedMode = 0666;
constexpr mode_t kPrivateMode = 0600;

class FileDescriptor {
  public:
    explicit FileDescriptor(int descriptor) : mDescriptor(descriptor) {}
    FileDescriptor(FileDescriptor const&) = delete;
    FileDescriptor& operator=(FileDescriptor const&) = delete;
    ~FileDescriptor() { Close(); }

    int Get() const { return mDescriptor; }
    bool IsOpen() const { return mDescriptor >= 0; }
    // 0, or the error that a write had kept back until now.
    std::int32_t Close() {
        int const descriptor = std::exchange(mDescriptor, -1);
        return descriptor >= 0 && close(descriptor) != 0 && errno != EINTR ? errno : 0;
    }

  private:
    int mDescriptor;
};

std::int32_t WriteAll(int descriptor, std::uint8_t const* bytes, std::size_t size) {
    while (size > 0) {
        ssize_t const written = write(descriptor, bytes, size);
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            return written == 0 ? EIO : errno;
        }
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
    return 0;
}

bool MayFollow(struct stat const& link, struct stat const& folder) {
    constexpr mode_t kShared = S_ISVTX | S_IWOTH;
    return (folder.st_mode & kShared) != kShared || link.st_uid == geteuid() ||
           link.st_uid == folder.st_uid;
}

// Puts what the link names in the path's place. EINVAL for what is no link. The kernel has the same
// rule, but where it is switched off a neighbour's link in /tmp would lead to any file of the user.
std::int32_t FollowLink(std::string& path) {
    FileDescriptor const opened(open(path.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
    struct stat link {};
    struct stat folder {};
    std::string const folderPath = FolderOf(path);
    if (!opened.IsOpen() || fstat(opened.Get(), &link) != 0 ||
        stat(folderPath.c_str(), &folder) != 0) {
        return errno;
    }
    if (!S_ISLNK(link.st_mode)) {
        return EINVAL;
    }
    if (!MayFollow(link, folder)) {
        return linkRefusedErr;
    }
    char target[PATH_MAX];
    ssize_t const length = readlinkat(opened.Get(), "", target, sizeof target);
    if (length < 0) {
        return errno;
    }
    std::string const text(target, static_cast<std::size_t>(length));
    path = text.starts_with('/') ? text : PathIn(folderPath, text);
    return 0;
}

// A descriptor, or -1 with the reason in `error`.
int OpenToRead(std::string path, std::int32_t& error) {
    // Opening a pipe would wait for its other end.
    constexpr int kFlags = O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY;
    for (int count = 0; count < kMaximumLinks; ++count) {
        // What a link of /proc names need not be a path.
        bool const isPath = !path.starts_with("/proc/");
        int const descriptor = open(path.c_str(), isPath ? kFlags | O_NOFOLLOW : kFlags);
        error = descriptor < 0 ? errno : 0;
        if (error != ELOOP || !isPath) {
            return descriptor;
        }
        error = FollowLink(path);
        if (error != 0) {
            return -1;
        }
    }
    error = ELOOP;
    return -1;
}

// A new file under a name of its own in `folder`; removed again unless it takes the target's place.
class ReplacementFile {
  public:
    ReplacementFile() = default;
    ReplacementFile(ReplacementFile const&) = delete;
    ReplacementFile& operator=(ReplacementFile const&) = delete;
    ~ReplacementFile() {
        if (!mPath.empty()) {
            unlink(mPath.c_str());
        }
    }

    // `old`, if given, tells the mode and the owner to keep; `newMode` is that of a file without.
    std::int32_t Create(std::string const& folder, struct stat const* old, mode_t newMode);
    void Report(std::string const& target) const { ReportNewFile(mPath.c_str(), target.c_str()); }
    std::int32_t Fill(std::uint8_t const* bytes, std::size_t size);
    std::int32_t Replace(std::string const& target);

  private:
    std::string mPath;  // empty when there is nothing to remove
    int mDescriptor = -1;
};

std::int32_t ReplacementFile::Create(std::string const& folder, struct stat const* old,
                                     mode_t newMode) {
    for (int attempt = 0; attempt < kMaximumNameAttempts; ++attempt) {
        std::uint64_t number = 0;
        if (getentropy(&number, sizeof number) != 0) {
            return errno;
        }
        char name[40];
        std::snprintf(name, sizeof name, "/.new-%016llx", static_cast<unsigned long long>(number));
        std::string path = folder + name;
        int const flags = O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC;
        mDescriptor = open(path.c_str(), flags, old == nullptr ? newMode : kPrivateMode);
        if (mDescriptor >= 0) {
            mPath = std::move(path);
            break;
        }
        if (errno != EEXIST) {
            return errno;
        }
    }
    if (mDescriptor < 0) {
        return EEXIST;
    }
    if (old == nullptr) {
        return 0;
    }
    // New bytes don't get the rights of the program that stood there.
    mode_t mode = old->st_mode & 0777;
    // Another's file stays theirs where we may give it away. Else its group's rights aren't for
    // ours.
    if (fchown(mDescriptor, old->st_uid, old->st_gid) != 0 &&
        fchown(mDescriptor, static_cast<uid_t>(-1), old->st_gid) != 0) {
        mode &= ~static_cast<mode_t>(S_IRWXG);
    }
    return fchmod(mDescriptor, mode) == 0 ? 0 : errno;
}

std::int32_t ReplacementFile::Fill(std::uint8_t const* bytes, std::size_t size) {
    FileDescriptor file(std::exchange(mDescriptor, -1));
    std::int32_t error = WriteAll(file.Get(), bytes, size);
    if (error == 0 && fsync(file.Get()) != 0) {
        error = errno;
    }
    std::int32_t const closeError = file.Close();
    return error != 0 ? error : closeError;
}

std::int32_t ReplacementFile::Replace(std::string const& target) {
    if (rename(mPath.c_str(), target.c_str()) != 0) {
        return errno;
    }
    mPath.clear();
    // The rename itself shall last; a folder that can't be synchronised is no failure of the write.
    FileDescriptor const folder(open(FolderOf(target).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder.IsOpen() && fsync(folder.Get()) != 0) {
        errno = 0;
    }
    return 0;
}

std::int32_t WriteToDevice(std::string const& path, std::uint8_t const* bytes, std::size_t size) {
    FileDescriptor file(open(path.c_str(), O_WRONLY | O_CLOEXEC | O_NOCTTY | O_NOFOLLOW));
    if (!file.IsOpen()) {
        return errno;
    }
    std::int32_t const error = WriteAll(file.Get(), bytes, size);
    std::int32_t const closeError = file.Close();
    return error != 0 ? error : closeError;
}

std::int32_t WriteWholeFile(std::string path, std::uint8_t const* bytes, std::size_t size,
                            mode_t newMode) {
    if (std::int32_t const error = ResolveLinks(path); error != 0) {
        return error;
    }
    struct stat old {};
    bool const exists = lstat(path.c_str(), &old) == 0;
    if (!exists && errno != ENOENT) {
        return errno;
    }
    if (exists) {
        if (S_ISCHR(old.st_mode)) {
            return WriteToDevice(path, bytes, size);
        }
        if (!S_ISREG(old.st_mode)) {
            return S_ISDIR(old.st_mode) ? EISDIR : EINVAL;
        }
        // A file that the user protected isn't replaced, though its folder would let us.
        if (access(path.c_str(), W_OK) != 0) {
            return errno;
        }
    }
    ReplacementFile replacement;
    std::int32_t error = replacement.Create(FolderOf(path), exists ? &old : nullptr, newMode);
    if (error == 0) {
        replacement.Report(path);
        error = replacement.Fill(bytes, size);
    }
    return error != 0 ? error : replacement.Replace(path);
}

}  // namespace

std::int32_t ResolveLinks(std::string& path) {
    for (int count = 0; count < kMaximumLinks; ++count) {
        if (std::int32_t const error = FollowLink(path); error != 0) {
            // Whether there is a file at all shows later.
            return error == linkRefusedErr ? error : 0;
        }
    }
    return ELOOP;
}

std::int32_t ReadBeginning(std::string const& path, std::size_t size, std::string& bytes) {
    bytes.clear();
    std::int32_t error = 0;
    FileDescriptor const file(OpenToRead(path, error));
    if (!file.IsOpen()) {
        return error;
    }
    bytes.resize(size);
    ssize_t const count = pread(file.Get(), bytes.data(), size, 0);
    error = count < 0 ? errno : 0;
    bytes.resize(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    return error;
}

std::int32_t ReadWholeFile(std::string const& path, std::string& bytes) {
    bytes.clear();
    std::int32_t error = 0;
    FileDescriptor const file(OpenToRead(path, error));
    struct stat status {};
    if (!file.IsOpen() || fstat(file.Get(), &status) != 0) {
        return file.IsOpen() ? errno : error;
    }
    if (!S_ISREG(status.st_mode)) {
        return S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    }
    std::size_t used = 0;
    // A file of /proc tells no size.
    bytes.resize(std::max(static_cast<std::size_t>(status.st_size) + 1, kSmallestBuffer));
    for (;;) {
        if (used == bytes.size()) {
            bytes.resize(2 * used);
        }
        ssize_t const count = read(file.Get(), bytes.data() + used, bytes.size() - used);
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            bytes.resize(used);
            return count == 0 ? 0 : errno;
        }
        used += static_cast<std::size_t>(count);
    }
}

}  // namespace platform

namespace {

void Report(std::int32_t value, std::int32_t* error) {
    if (error != nullptr) {
        *error = value;
    }
}

bool Write(CFURLRef url, CFDataRef data, mode_t newMode, std::int32_t* error) {
    std::int32_t const result = platform::WithoutExceptions<std::int32_t>(memFullErr, [&] {
        std::string path = platform::AbsolutePath(url);
        if (path.empty() || data == nullptr) {
            return paramErr;
        }
        return platform::WriteWholeFile(std::move(path), CFDataGetBytePtr(data),
                                        static_cast<std::size_t>(CFDataGetLength(data)), newMode);
    });
    Report(result, error);
    return result == noErr;
}

}  // namespace

bool CFURLCreateDataAndPropertiesFromResource(CFAllocatorRef allocator, CFURLRef url,
                                              CFDataRef* data, std::int32_t* error) {
    CFRef<CFDataRef> contents;
    std::int32_t const result = platform::WithoutExceptions<std::int32_t>(memFullErr, [&] {
        std::string const path = platform::AbsolutePath(url);
        std::string bytes;
        std::int32_t const readError =
            path.empty() ? paramErr : platform::ReadWholeFile(path, bytes);
        if (readError != 0) {
            return readError;
        }
        contents = CFRef<CFDataRef>(
            CFDataCreate(allocator, reinterpret_cast<std::uint8_t const*>(bytes.data()),
                         static_cast<CFIndex>(bytes.size())));
        return contents ? noErr : memFullErr;
    });
    Report(result, error);
    if (data != nullptr) {
        *data = contents.Release();
    }
    return result == noErr;
}

bool CFURLWriteDataAndPropertiesToResource(CFURLRef url, CFDataRef data, std::int32_t* error) {
    return Write(url, data, platform::kSharedMode, error);
}

bool WritePrivateDataToResource(CFURLRef url, CFDataRef data, std::int32_t* error) {
    return Write(url, data, platform::kPrivateMode, error);
}
