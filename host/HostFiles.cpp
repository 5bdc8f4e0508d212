// SPDX-License-Identifier: Apache-2.0
#include "host/HostFiles.h"

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>

#include "platform/MacTypes.h"

namespace fs = std::filesystem;

CFRef<CFURLRef> HostFiles::URL(std::string const& path, bool isDirectory) {
    std::error_code error;
    fs::path const absolute = fs::absolute(path, error);
    std::string const& text = error ? path : absolute.native();
    return CFRef<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<std::uint8_t const*>(text.data()),
        static_cast<CFIndex>(text.size()), isDirectory));
}

Outcome HostFiles::CheckReadable(std::string const& path) {
    std::error_code ignored;
    int reason = 0;
    // A pipe would be empty at the second reading.
    if (fs::is_fifo(path, ignored) || fs::is_socket(path, ignored)) {
        return Outcome::Failed("can't open " + path + ": not a regular file");
    }
    if (fs::is_directory(path, ignored)) {
        reason = EISDIR;
    } else {
        errno = 0;
        if (!std::ifstream(path)) {
            reason = errno;
        }
    }
    if (reason == 0) {
        return Outcome::Done();
    }
    return Outcome::Failed("can't open " + path + ": " + Reason(reason));
}

std::string HostFiles::Reason(std::int32_t error) {
    if (error == linkRefusedErr) {
        return "another user's link in a folder that all may write isn't followed";
    }
    return error > 0 ? std::strerror(error) : "error " + std::to_string(error);
}

Outcome HostFiles::Write(std::string const& path, std::string_view bytes) {
    CFRef<CFDataRef> const data(CFDataCreate(nullptr,
                                             reinterpret_cast<std::uint8_t const*>(bytes.data()),
                                             static_cast<CFIndex>(bytes.size())));
    std::int32_t error = 0;
    if (CFURLWriteDataAndPropertiesToResource(URL(path, false), data, &error)) {
        return Outcome::Done();
    }
    return Outcome::Failed("can't write " + path + ": " + Reason(error));
}

std::string HostFiles::BuiltBundle(bool shared) {
    std::error_code error;
    fs::path const program = fs::read_symlink("/proc/self/exe", error);
    return (program.parent_path().parent_path() / (shared ? "ZUBCommon.plugin" : "ZUB.plugin"))
        .string();
}
