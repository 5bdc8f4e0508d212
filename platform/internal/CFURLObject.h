// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>

#include "platform/internal/CFObjects.h"

struct __CFURL : platform::CFObject {
    __CFURL(std::string&& filePath, bool directory, CFStringRef string)
        : CFObject(&platform::kURLClass),
          path(std::move(filePath)),
          isFile(true),
          isDirectory(directory),
          text(string) {}
    explicit __CFURL(CFStringRef string)
        : CFObject(&platform::kURLClass),
          isFile(false),
          isDirectory(false),
          text(CFRef<CFStringRef>::Retained(string)) {}

    std::string path;  // a file's, in bytes, without a slash at its end; may be relative
    bool isFile;
    bool isDirectory;
    CFRef<CFStringRef> text;
};

namespace platform {

// The absolute path of a file URL; empty for others and where there is no working directory.
std::string AbsolutePath(CFURLRef url);
// What is before and behind the last slash; "/" is its own folder.
std::string FolderOf(std::string const& path);
std::string NameOf(std::string const& path);
// `name` in `folder`, with one slash between them.
std::string PathIn(std::string folder, std::string_view name);

// Follows links at the end of the path, also one that leads to a file not there yet. In a sticky
// folder that all may write only those of the caller and of the folder's owner are followed:
// linkRefusedErr for another's, ELOOP for too many.
std::int32_t ResolveLinks(std::string& path);

// The whole file into `bytes`; 0 or a POSIX error.
std::int32_t ReadWholeFile(std::string const& path, std::string& bytes);
// At most its first `size` bytes, likewise; not from a pipe or the like.
std::int32_t ReadBeginning(std::string const& path, std::size_t size, std::string& bytes);

}  // namespace platform
