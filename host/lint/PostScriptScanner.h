// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

// Has Ghostscript's scanner read PostScript, token by token, without running any of it.
class PostScriptScanner {
  public:
    // The path of the program in PATH; empty when there is none.
    static std::string Program();

    // The positions of the texts that aren't well-formed. None when the program can't be run,
    // takes more than ten seconds or ends ahead of the last text. It runs with -dSAFER, without a
    // shell, and without the user's environment.
    static std::optional<std::vector<std::size_t>> Rejected(std::string const& program,
                                                            std::vector<std::string> const& texts);
};
