// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <string>
#include <utility>

// Exit statuses of the command.
enum class ExitStatus : int { kDone = 0, kFailed = 1, kUsage = 2, kNotOurs = 3 };

// How a step ended. What failed, and which file, is told in one line of text.
struct [[nodiscard]] Outcome {
    ExitStatus status = ExitStatus::kDone;
    std::string message;

    bool Ok() const { return status == ExitStatus::kDone; }

    // The one line of standard error that tells of a failure.
    static std::string Line(std::string text) {
        std::replace_if(
            text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
        return "zubprint: " + text + '\n';
    }

    static Outcome Done() { return {}; }
    static Outcome Failed(std::string text) { return {ExitStatus::kFailed, std::move(text)}; }
    static Outcome NotOurs(std::string text) { return {ExitStatus::kNotOurs, std::move(text)}; }
};
