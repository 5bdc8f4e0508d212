// SPDX-License-Identifier: Apache-2.0
#pragma once

// Whether this entry of the job names a server preset that no longer tells the truth, because the
// user has changed an option since the preset was chosen. Such an entry is left out of the job.
// `length` counts the bytes of `text`, which has no terminator.
bool ServerPresetKeywordShouldBeDiscarded(unsigned char const* text, unsigned long length);
