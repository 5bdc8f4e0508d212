// SPDX-License-Identifier: Apache-2.0
#pragma once

// The exchange of the option state with the Job Properties application.
//
// Answers the two calls that come from below: CheckForChangeInListFromJP and
// ServerPresetKeywordShouldBeDiscarded.

// Whether the application has given a list of options back in this session. Without one no list
// can change, and no server preset can be outdated.
bool HasListFromJP();
