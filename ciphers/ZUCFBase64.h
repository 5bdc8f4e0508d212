// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"

// Base64 (RFC 4648, no line breaks) between data and strings. The caller releases what comes back;
// null only without memory.

// The empty string for empty or null data.
CFStringRef ZUCFBase64CreateEncodedString(CFDataRef data);
// Never refuses a text: a character outside the alphabet counts as "A", one digit too many at the
// end is left off, and a text of fewer than four characters, or null, gives empty data. What such a
// text leads to is for the reader of the data to notice.
CFDataRef ZUCFBase64CreateDecodedData(CFStringRef text);
