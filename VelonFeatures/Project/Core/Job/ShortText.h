// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>

#include "VelonFeatures/Project/Core/PostScriptInjectionSite.h"

class ZUBJobTicket;

// Texts of the job that are made from a format, in the print server's limits: one that doesn't fit
// is left out whole.

constexpr std::size_t kShortTextSize = 256;  // with the terminator, as the one below
constexpr std::size_t kLongTextSize = 2048;

// Whatever its length.
[[gnu::format(printf, 1, 2)]] std::string FormattedText(char const* format, ...);
// Empty when it doesn't fit a short text.
[[gnu::format(printf, 1, 2)]] std::string ShortText(char const* format, ...);
[[gnu::format(printf, 3, 4)]] void AddShortText(ZUBJobTicket& ticket, PostScriptInjectionSite site,
                                                char const* format, ...);
[[gnu::format(printf, 3, 4)]] void AddText(ZUBJobTicket& ticket, PostScriptInjectionSite site,
                                           char const* format, ...);
