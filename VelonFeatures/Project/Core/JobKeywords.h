// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <string_view>

// Keywords that the job treats in a way of its own. Comparisons are exact; null is none of them.

// Controls of colour management that share their keyword with a job note.
constexpr std::array<char const*, 3> kSpecialChromvaleKeywords = {
    "*ZUOutProfile",
    "*ZUSimulation",
    "*ZURGBOverride",
};

// Whether the keyword holds one of them.
bool HoldsSpecialChromvaleKeyword(std::string_view keyword);
bool isExpertChromvaleControl(char const* keyword);
// Longer than four characters, and the last four are "Bidi".
bool isBidiKeyword(char const* keyword);
