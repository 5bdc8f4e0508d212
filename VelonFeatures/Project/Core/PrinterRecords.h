// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/CoreFoundation.h"
#include "twoway/ZUBTolvanePrinterPList.h"

// The printers' records as the session data uses them. These throw std::bad_alloc.

// Replaces a block of the printer's record by these texts in UTF-8. One that the record can't hold
// is cut or leaves an empty item in its place, so that the numbers of the others stay; `whole`
// tells whether there was none. False without memory for the records. An unknown printer is no
// failure and changes nothing.
bool PutBlock(ZUBTolvanePrinterPList& records, CFStringRef printer, std::int32_t block,
              std::vector<std::string> const& texts, bool& whole);
// Saves them, and warns where a file that was no list had to be kept aside.
bool SaveRecords(ZUBTolvanePrinterPList& records);
