// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>
#include <utility>

// Exit statuses of the command.
enum class ExitStatus : int { kDone = 0, kFailed = 1, kUsage = 2, kNotOurs = 3, kNotPPD = 4 };

// How a step ended. What failed, and which file, is told in one line of text.
struct [[nodiscard]] Outcome {
    ExitStatus status = ExitStatus::kDone;
    std::string message;

    bool Ok() const { return status == ExitStatus::kDone; }

    // The one line of standard error that tells of a failure. Line ends in it become blanks, and
    // what else a terminal might obey question marks.
    static std::string Line(std::string text);
    static std::string Warning(std::string const& text) { return Line("warning: " + text); }

    static Outcome Done() { return {}; }
    static Outcome Failed(std::string text) { return {ExitStatus::kFailed, std::move(text)}; }
    static Outcome NotOurs(std::string text) { return {ExitStatus::kNotOurs, std::move(text)}; }
};
