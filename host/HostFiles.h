// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "host/Outcome.h"
#include "platform/CFRef.h"

// Files and folders that the command is told by name.
class HostFiles {
  public:
    // An absolute file URL; a relative path is taken from the working directory.
    static CFRef<CFURLRef> URL(std::string const& path, bool isDirectory);
    // Fails for a file that can't be opened for reading, a folder too, with the system's reason.
    static Outcome CheckReadable(std::string const& path);
    // What an error of a file operation means: the system's text for its number.
    static std::string Reason(std::int32_t error);
    // Writes the whole file anew; a failure leaves the former one and tells the reason.
    static Outcome Write(std::string const& path, std::string_view bytes);
    // The bundle that was built with this program, in the folder above the program's: ZUB.plugin,
    // or ZUBCommon.plugin for printers that share one set of choices.
    static std::string BuiltBundle(bool shared);
};
