// SPDX-License-Identifier: Apache-2.0
#include "host/TicketFile.h"

#include <filesystem>
#include <system_error>
#include <vector>

#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "host/HostFiles.h"
#include "twoway/PropertyListFile.h"

namespace {

bool IsDictionary(CFTypeRef value) {
    return value != nullptr && CFGetTypeID(value) == CFDictionaryGetTypeID();
}

}  // namespace

Outcome TicketFile::Read(std::string const& path) {
    std::error_code error;
    if (!std::filesystem::exists(path, error) && !error) {
        return Outcome::Done();
    }
    if (Outcome outcome = HostFiles::CheckReadable(path); !outcome.Ok()) {
        return outcome;
    }
    PropertyListFile const file(HostFiles::URL(path, false), kCFPropertyListImmutable);
    if (!IsDictionary(file.PropertyList())) {
        return Outcome::Failed("the tickets file " + path + " holds no dictionary of tickets");
    }
    auto const tickets = static_cast<CFDictionaryRef>(file.PropertyList());
    for (char const* name : {kPrintSettingsTicket, kPrinterInfoTicket, kPageFormatTicket}) {
        CFTypeRef const ticket = CFDictionaryGetValue(tickets, TicketKey(name));
        if (ticket != nullptr && !IsDictionary(ticket)) {
            return Outcome::Failed("the tickets file " + path + " holds no dictionary " + name);
        }
    }
    mTickets = CFRef<CFMutableDictionaryRef>(CFDictionaryCreateMutableCopy(nullptr, 0, tickets));
    return Outcome::Done();
}

Outcome TicketFile::Write(std::string const& path) const {
    PropertyListFile file(HostFiles::URL(path, false), kCFPropertyListImmutable);
    return file.Save(mTickets) ? Outcome::Done()
                               : Outcome::Failed("can't write the tickets file " + path + ": " +
                                                 HostFiles::Reason(file.FileError()));
}

OSStatus TicketFile::Fill(CFStringRef name, PMTicketRef ticket) const {
    auto const items = static_cast<CFDictionaryRef>(CFDictionaryGetValue(mTickets, name));
    if (items == nullptr) {
        return noErr;
    }
    auto const count = static_cast<std::size_t>(CFDictionaryGetCount(items));
    std::vector<CFTypeRef> keys(count);
    std::vector<CFTypeRef> values(count);
    CFDictionaryGetKeysAndValues(items, keys.data(), values.data());
    OSStatus status = noErr;
    for (std::size_t i = 0; i < count && status == noErr; ++i) {
        status =
            PMTicketSetItem(ticket, Client(), static_cast<CFStringRef>(keys[i]), values[i], false);
    }
    return status;
}

OSStatus TicketFile::Take(CFStringRef name, PMTicketRef ticket) {
    CFRef<CFDictionaryRef> items;
    OSStatus const status = PMTicketCopyItems(ticket, items.Receive());
    if (status == noErr) {
        CFDictionarySetValue(mTickets, name, items);
    }
    return status;
}
