// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

constexpr CFIndex kRandomFileNameSize = 256;  // terminator included

// `prefix`, UTF-8 and possibly null, and a new UUID behind it. The caller releases the name; null
// without memory. `out`, if given, has room for kRandomFileNameSize bytes and receives the name in
// UTF-8, or the empty text when it doesn't fit.
CFStringRef CreateRandomFileName(char const* prefix, char* out);
