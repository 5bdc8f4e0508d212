// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <optional>
#include <string>
#include <vector>

// What lint has found at one line of a PPD. Texts are UTF-8 but the keyword, which is bytes as in
// the PPD; they may hold what the PPD holds, so whoever prints them looks for control characters.
struct LintFinding {
    enum class Severity { kError, kWarning, kNote };

    long line = 1;
    Severity severity = Severity::kWarning;
    std::optional<short> code;  // the reader's
    std::string keyword;        // empty for none
    std::string message;
    std::string help;    // what to do; empty where there is nothing to be done
    bool fatal = false;  // the file can't be used
};

using LintFindings = std::vector<LintFinding>;
