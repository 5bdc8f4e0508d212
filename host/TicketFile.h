// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "host/Outcome.h"
#include "platform/CFRef.h"
#include "platform/PrintManager.h"

// Tickets in a file, which an operating system would keep in memory between dialogs: an XML
// property list with a dictionary for each, plain values under their keys.
class TicketFile {
  public:
    // Whose items they are.
    static CFStringRef Client() { return CFSTR("com.zub.zubprint"); }

    // A file that isn't there is an empty one; one that can't be read, or is no such property list,
    // is a failure.
    Outcome Read(std::string const& path);
    // Puts the items that differ from what was read into what the file holds by now, which other
    // runs may have changed. The file is locked meanwhile. The whole file anew, or the former one
    // stays: also where it can't be read any more.
    Outcome Write(std::string const& path) const;

    // Puts the values kept under `name` into the ticket.
    OSStatus Fill(CFStringRef name, PMTicketRef ticket) const;
    // Keeps the ticket's values under `name`.
    OSStatus Take(CFStringRef name, PMTicketRef ticket);

  private:
    CFRef<CFDictionaryRef> Merged(CFStringRef name, CFDictionaryRef there) const;
    CFDictionaryRef Items(CFStringRef name) const;

    bool mFound = false;             // there was a file
    CFRef<CFDictionaryRef> mAsRead;  // null without
    CFRef<CFMutableDictionaryRef> mTickets{CFDictionaryCreateMutable(nullptr, 0)};
};
