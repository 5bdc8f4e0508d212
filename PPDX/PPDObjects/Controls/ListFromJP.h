// SPDX-License-Identifier: Apache-2.0
#pragma once

// Takes note of a control's new value for the exchange with the Job Properties application. Option
// classes call it at every change and don't look at the result. Neither text is kept; a null value
// counts as the empty one.
bool CheckForChangeInListFromJP(char const* keyword, char const* value);
