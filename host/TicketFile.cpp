// SPDX-License-Identifier: Apache-2.0
#include "host/TicketFile.h"

#include <filesystem>
#include <system_error>
#include <vector>

#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "host/HostFiles.h"
#include "platform/FileLock.h"
#include "twoway/PropertyListFile.h"

namespace {

bool IsDictionary(CFTypeRef value) {
    return value != nullptr && CFGetTypeID(value) == CFDictionaryGetTypeID();
}

constexpr char const* kTickets[] = {kPrintSettingsTicket, kPrinterInfoTicket, kPageFormatTicket};

bool IsSame(CFTypeRef one, CFTypeRef other) {
    return one != nullptr && other != nullptr ? CFEqual(one, other) : one == other;
}

CFDictionaryRef DictionaryIn(CFDictionaryRef tickets, CFStringRef name) {
    return tickets == nullptr ? nullptr
                              : static_cast<CFDictionaryRef>(CFDictionaryGetValue(tickets, name));
}

std::vector<CFStringRef> KeysOf(CFDictionaryRef items) {
    std::vector<CFTypeRef> keys(
        items == nullptr ? 0 : static_cast<std::size_t>(CFDictionaryGetCount(items)));
    std::vector<CFTypeRef> values(keys.size());
    if (!keys.empty()) {
        CFDictionaryGetKeysAndValues(items, keys.data(), values.data());
    }
    std::vector<CFStringRef> texts;
    texts.reserve(keys.size());
    for (CFTypeRef const key : keys) {
        texts.push_back(static_cast<CFStringRef>(key));
    }
    return texts;
}

CFTypeRef ValueIn(CFDictionaryRef dictionary, CFStringRef key) {
    return dictionary == nullptr ? nullptr : CFDictionaryGetValue(dictionary, key);
}

CFDictionaryRef AsDictionary(CFTypeRef value) {
    bool const isOne = value != nullptr && CFGetTypeID(value) == CFDictionaryGetTypeID();
    return isOne ? static_cast<CFDictionaryRef>(value) : nullptr;
}

// What this run changed wins; all else is as it is there. A printer's choices are a dictionary too,
// and so merged one by one.
CFRef<CFDictionaryRef> MergedItems(CFDictionaryRef before, CFDictionaryRef own,
                                   CFDictionaryRef there) {
    CFRef<CFMutableDictionaryRef> items(there != nullptr
                                            ? CFDictionaryCreateMutableCopy(nullptr, 0, there)
                                            : CFDictionaryCreateMutable(nullptr, 0));
    for (CFStringRef const key : KeysOf(own)) {
        CFTypeRef const value = ValueIn(own, key);
        CFTypeRef const former = ValueIn(before, key);
        CFDictionaryRef const inside = AsDictionary(ValueIn(there, key));
        if (IsSame(value, former)) {
            continue;
        }
        if (AsDictionary(value) != nullptr && AsDictionary(former) != nullptr &&
            inside != nullptr) {
            CFDictionarySetValue(
                items, key, MergedItems(AsDictionary(former), AsDictionary(value), inside).Get());
        } else {
            CFDictionarySetValue(items, key, value);
        }
    }
    for (CFStringRef const key : KeysOf(before)) {
        if (ValueIn(own, key) == nullptr) {
            CFDictionaryRemoveValue(items, key);
        }
    }
    return CFRef<CFDictionaryRef>(items.Release());
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
    if (!file.WasRead()) {
        return Outcome::Failed("can't read the tickets file " + path + ": " +
                               HostFiles::Reason(file.FileError()));
    }
    if (!IsDictionary(file.PropertyList())) {
        return Outcome::Failed("the tickets file " + path + " holds no dictionary of tickets");
    }
    auto const tickets = static_cast<CFDictionaryRef>(file.PropertyList());
    for (char const* name : kTickets) {
        CFTypeRef const ticket = CFDictionaryGetValue(tickets, TicketKey(name));
        if (ticket != nullptr && !IsDictionary(ticket)) {
            return Outcome::Failed("the tickets file " + path + " holds no dictionary " + name);
        }
    }
    mTickets = CFRef<CFMutableDictionaryRef>(CFDictionaryCreateMutableCopy(nullptr, 0, tickets));
    mAsRead = CFRef<CFDictionaryRef>::Retained(tickets);
    mFound = true;
    return Outcome::Done();
}

Outcome TicketFile::Write(std::string const& path) const {
    CFRef<CFURLRef> const url = HostFiles::URL(path, false);
    FileLock lock;
    if (std::int32_t const error = lock.Take(url); error != noErr) {
        return Outcome::Failed("can't lock the tickets file " + path + ": " +
                               HostFiles::Reason(error));
    }
    TicketFile now;
    if (Outcome outcome = now.Read(path); !outcome.Ok()) {
        return outcome;
    }
    for (char const* const name : kTickets) {
        if (CFRef<CFDictionaryRef> const items =
                now.mFound ? Merged(TicketKey(name), now.Items(TicketKey(name)))
                           : CFRef<CFDictionaryRef>::Retained(Items(TicketKey(name)))) {
            CFDictionarySetValue(now.mTickets, TicketKey(name), items);
        }
    }
    PropertyListFile file(url, kCFPropertyListImmutable);
    return file.Save(now.mTickets) ? Outcome::Done()
                                   : Outcome::Failed("can't write the tickets file " + path + ": " +
                                                     HostFiles::Reason(file.FileError()));
}

CFDictionaryRef TicketFile::Items(CFStringRef name) const {
    return DictionaryIn(mTickets, name);
}

CFRef<CFDictionaryRef> TicketFile::Merged(CFStringRef name, CFDictionaryRef there) const {
    return MergedItems(DictionaryIn(mAsRead, name), Items(name), there);
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
