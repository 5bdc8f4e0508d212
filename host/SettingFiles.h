// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "ZUBUtils/PPDUtils/WipedText.h"
#include "host/Options.h"
#include "host/Outcome.h"

// Texts that are kept out of the command line, where every user of the machine can read them.
class SettingFiles {
  public:
    static constexpr std::size_t kLongestText = 65536;  // bytes

    // Gives each setting that names a file its value. Fails for a file that can't be read, is too
    // long or isn't UTF-8, and where standard input would be read twice; `inputIsTaken` if
    // something else reads it.
    static Outcome Read(std::vector<ControlSetting>& settings, bool inputIsTaken);
    // Whether the name is that of standard input: "-", or as a file.
    static bool IsStandardInput(std::string_view file);
    // The file's text without a line end at its end, and without a byte order mark. Errors call the
    // file by `name`: what was meant for a file may be the secret itself.
    static Outcome ReadText(std::string const& file, std::string const& name, WipedText& text);
};
