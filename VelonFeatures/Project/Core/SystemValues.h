// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/PrintManager.h"

// What the operating system's own panes have put into the session's tickets.

constexpr std::size_t kPaperFeedSize = 64;  // with the terminator

// 1 and 3 portrait, 2 and 4 landscape, 0 when the page format doesn't tell.
std::int32_t PageOrientationFromOS(PMPrintSession session);
// The keyword of the paper source, "" for one without room. 0 also when the settings have none,
// otherwise the print manager's error; `keyword` stays as it was in both cases.
OSStatus PrimaryPaperFeedFromOS(PMPrintSession session, char (&keyword)[kPaperFeedSize]);
long NumCopiesFromOS(PMPrintSession session);  // 0 when the settings don't tell
void Set1CopyToOS(PMPrintSession session);
