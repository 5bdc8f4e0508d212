// SPDX-License-Identifier: Apache-2.0
#include "platform/PrintManager.h"

#include <memory>
#include <unordered_map>
#include <unordered_set>

#include "platform/internal/CFObjects.h"

struct OpaquePMPrinter {
    CFRef<CFStringRef> name;
    CFRef<CFURLRef> description;  // may be null
    CFRef<CFURLRef> device;       // may be null
};

struct OpaquePMPrintSession {
    explicit OpaquePMPrintSession(CFMutableDictionaryRef dictionary) : data(dictionary) {}
    ~OpaquePMPrintSession() { platform::DeleteObject(printer); }
    OpaquePMPrintSession(OpaquePMPrintSession const&) = delete;
    OpaquePMPrintSession& operator=(OpaquePMPrintSession const&) = delete;

    CFRef<CFMutableDictionaryRef> data;
    PMPrinter printer = nullptr;  // owned
};

namespace platform {
namespace {

struct Ticket {
    explicit Ticket(CFMutableDictionaryRef dictionary) : items(dictionary) {}

    CFRef<CFMutableDictionaryRef> items;
    std::unordered_set<std::u16string> lockedKeys;
};

using TicketTable = std::unordered_map<PMTicketRef, Ticket*>;

TicketTable& Tickets() {
    static auto& sTickets = *new TicketTable;
    return sTickets;
}

Ticket* TicketOf(PMTicketRef reference) {
    auto const found = Tickets().find(reference);
    return found == Tickets().end() ? nullptr : found->second;
}

PMTicketRef UnusedReference() {
    static std::uint32_t sLast = 0;
    PMTicketRef reference = 0;
    do {
        reference = static_cast<PMTicketRef>(++sLast & 0x7FFFFFFFU);
    } while (reference == 0 || TicketOf(reference) != nullptr);
    return reference;
}

OSStatus FindItem(PMTicketRef ticket, CFStringRef key, std::uint32_t index1, std::uint32_t index2,
                  CFTypeRef& item) {
    item = nullptr;
    auto const* found = TicketOf(ticket);
    if (found == nullptr) {
        return kPMInvalidTicket;
    }
    if (index1 == 0 && index2 == 0) {
        item = CFDictionaryGetValue(found->items, key);
    }
    return item == nullptr ? kPMKeyNotFound : noErr;
}

// An item of one type into `value`.
template <typename Object>
OSStatus GetItem(PMTicketRef ticket, CFStringRef key, std::uint32_t index1, std::uint32_t index2,
                 CFTypeID type, Object const** value) {
    if (value == nullptr) {
        return paramErr;
    }
    *value = nullptr;
    CFTypeRef item = nullptr;
    if (OSStatus const status = FindItem(ticket, key, index1, index2, item); status != noErr) {
        return status;
    }
    *value = ObjectOfType<Object>(item, type);
    return *value == nullptr ? kPMDataFormatError : noErr;
}

OSStatus SetItem(PMTicketRef reference, CFStringRef key, CFTypeRef value, bool locked) {
    auto* ticket = TicketOf(reference);
    if (ticket == nullptr) {
        return kPMInvalidTicket;
    }
    if (key == nullptr || value == nullptr) {
        return paramErr;
    }
    return WithoutExceptions<OSStatus>(memFullErr, [&]() -> OSStatus {
        std::u16string const keyText(TextOf(key));
        if (ticket->lockedKeys.contains(keyText)) {
            return kPMItemIsLocked;
        }
        CFRef<CFTypeRef> const copy(CreateDeepCopy(value));
        if (!copy) {
            return memFullErr;
        }
        CFDictionarySetValue(ticket->items, key, copy);
        if (CFDictionaryGetValue(ticket->items, key) != copy.Get()) {
            return memFullErr;
        }
        if (locked) {
            ticket->lockedKeys.insert(keyText);
        }
        return noErr;
    });
}

OSStatus CopyURL(CFURLRef url, CFURLRef* copy) {
    *copy = static_cast<CFURLRef>(CFRetain(url));
    return url == nullptr ? kPMKeyNotFound : noErr;
}

}  // namespace
}  // namespace platform

using platform::GetItem;
using platform::SetItem;

// ---- Sessions and printers ----

OSStatus PMCreateSession(PMPrintSession* session) {
    if (session == nullptr) {
        return paramErr;
    }
    *session = nullptr;
    CFRef<CFMutableDictionaryRef> data(CFDictionaryCreateMutable(nullptr, 0));
    if (!data) {
        return memFullErr;
    }
    *session = platform::NewObject<OpaquePMPrintSession>(data.Get());
    if (*session == nullptr) {
        return memFullErr;
    }
    (void)data.Release();  // the session has it
    return noErr;
}

void PMDisposeSession(PMPrintSession session) {
    platform::DeleteObject(session);
}

OSStatus PMSessionGetDataFromSession(PMPrintSession session, CFStringRef key, CFTypeRef* data) {
    if (data == nullptr) {
        return paramErr;
    }
    *data = nullptr;
    if (session == nullptr) {
        return kPMInvalidPrintSession;
    }
    *data = CFDictionaryGetValue(session->data, key);
    return *data == nullptr ? kPMKeyNotFound : noErr;
}

OSStatus PMSessionSetDataInSession(PMPrintSession session, CFStringRef key, CFTypeRef data) {
    if (session == nullptr) {
        return kPMInvalidPrintSession;
    }
    if (key == nullptr) {
        return paramErr;
    }
    if (data == nullptr) {
        CFDictionaryRemoveValue(session->data, key);
        return noErr;
    }
    CFDictionarySetValue(session->data, key, data);
    return CFDictionaryGetValue(session->data, key) == data ? noErr : memFullErr;
}

OSStatus PMSessionSetTicket(PMPrintSession session, CFStringRef name, PMTicketRef ticket) {
    CFRef<CFNumberRef> const number(CFNumberCreate(nullptr, kCFNumberSInt32Type, &ticket));
    return number ? PMSessionSetDataInSession(session, name, number) : memFullErr;
}

OSStatus PMSessionSetCurrentPrinter(PMPrintSession session, CFStringRef name, CFURLRef ppd,
                                    CFURLRef deviceURI) {
    if (session == nullptr) {
        return kPMInvalidPrintSession;
    }
    PMPrinter printer = nullptr;
    if (name != nullptr) {
        CFRef<CFStringRef> const copy(CFStringCreateCopy(nullptr, name));
        printer =
            !copy
                ? nullptr
                : platform::NewObject<OpaquePMPrinter>(OpaquePMPrinter{
                      copy, CFRef<CFURLRef>::Retained(ppd), CFRef<CFURLRef>::Retained(deviceURI)});
        if (printer == nullptr) {
            return memFullErr;
        }
    }
    platform::DeleteObject(std::exchange(session->printer, printer));
    return noErr;
}

OSStatus PMSessionGetCurrentPrinter(PMPrintSession session, PMPrinter* printer) {
    if (printer == nullptr) {
        return paramErr;
    }
    *printer = session == nullptr ? nullptr : session->printer;
    if (session == nullptr) {
        return kPMInvalidPrintSession;
    }
    return *printer == nullptr ? kPMNoSuchPrinter : noErr;
}

OSStatus PMPrinterCopyDescriptionURL(PMPrinter printer, CFStringRef type, CFURLRef* url) {
    if (url == nullptr) {
        return paramErr;
    }
    *url = nullptr;
    if (printer == nullptr) {
        return kPMNoSuchPrinter;
    }
    return CFEqual(type, CFSTR("PMPPDDescriptionType"))
               ? platform::CopyURL(printer->description, url)
               : paramErr;
}

OSStatus PMPrinterCopyDeviceURI(PMPrinter printer, CFURLRef* uri) {
    if (uri == nullptr) {
        return paramErr;
    }
    *uri = nullptr;
    return printer == nullptr ? kPMNoSuchPrinter : platform::CopyURL(printer->device, uri);
}

CFStringRef PMPrinterGetName(PMPrinter printer) {
    return printer == nullptr ? nullptr : printer->name.Get();
}

// ---- Tickets ----

OSStatus PMTicketCreate(CFStringRef, PMTicketRef* ticket) {
    if (ticket == nullptr) {
        return paramErr;
    }
    *ticket = 0;
    CFRef<CFMutableDictionaryRef> items(CFDictionaryCreateMutable(nullptr, 0));
    auto* created = items ? platform::NewObject<platform::Ticket>(items.Get()) : nullptr;
    if (created == nullptr) {
        return memFullErr;
    }
    (void)items.Release();  // the ticket has it
    bool const isEntered = platform::WithoutExceptions(false, [&] {
        auto const reference = platform::UnusedReference();
        platform::Tickets().emplace(reference, created);
        *ticket = reference;
        return true;
    });
    if (!isEntered) {
        platform::DeleteObject(created);
    }
    return isEntered ? noErr : memFullErr;
}

OSStatus PMTicketReleaseAndClear(PMTicketRef* ticket) {
    if (ticket == nullptr) {
        return paramErr;
    }
    auto const found = platform::Tickets().find(std::exchange(*ticket, 0));
    if (found == platform::Tickets().end()) {
        return kPMInvalidTicket;
    }
    auto* const released = found->second;
    platform::Tickets().erase(found);
    platform::DeleteObject(released);
    return noErr;
}

OSStatus PMTicketGetItem(PMTicketRef ticket, CFStringRef key, std::uint32_t index1,
                         std::uint32_t index2, CFTypeRef* item) {
    CFTypeRef found = nullptr;
    OSStatus const status = platform::FindItem(ticket, key, index1, index2, found);
    if (item != nullptr) {
        *item = found;
    }
    return status;
}

OSStatus PMTicketGetCFNumber(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                             CFStringRef key, CFNumberRef* value) {
    return GetItem(ticket, key, index1, index2, platform::kNumberTypeID, value);
}

OSStatus PMTicketGetCFArray(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                            CFStringRef key, CFArrayRef* value) {
    return GetItem(ticket, key, index1, index2, platform::kArrayTypeID, value);
}

OSStatus PMTicketGetCFData(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                           CFStringRef key, CFDataRef* value) {
    return GetItem(ticket, key, index1, index2, platform::kDataTypeID, value);
}

OSStatus PMTicketGetCFString(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                             CFStringRef key, CFStringRef* value) {
    return GetItem(ticket, key, index1, index2, platform::kStringTypeID, value);
}

OSStatus PMTicketGetCFDictionary(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                                 CFStringRef key, CFDictionaryRef* value) {
    return GetItem(ticket, key, index1, index2, platform::kDictionaryTypeID, value);
}

OSStatus PMTicketGetSInt32(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                           CFStringRef key, std::int32_t* value) {
    if (value == nullptr) {
        return paramErr;
    }
    *value = 0;
    CFNumberRef number = nullptr;
    OSStatus const status = PMTicketGetCFNumber(ticket, index1, index2, key, &number);
    if (status != noErr || CFNumberGetValue(number, kCFNumberSInt32Type, value)) {
        return status;
    }
    *value = 0;
    return kPMDataFormatError;
}

OSStatus PMTicketSetItem(PMTicketRef ticket, CFStringRef, CFStringRef key, CFPropertyListRef value,
                         bool locked) {
    return SetItem(ticket, key, value, locked);
}

OSStatus PMTicketSetCFArray(PMTicketRef ticket, CFStringRef, CFStringRef key, CFArrayRef value,
                            bool locked) {
    return SetItem(ticket, key, value, locked);
}

OSStatus PMTicketSetCFData(PMTicketRef ticket, CFStringRef, CFStringRef key, CFDataRef value,
                           bool locked) {
    return SetItem(ticket, key, value, locked);
}

OSStatus PMTicketSetCFString(PMTicketRef ticket, CFStringRef, CFStringRef key, CFStringRef value,
                             bool locked) {
    return SetItem(ticket, key, value, locked);
}

OSStatus PMTicketSetCFDictionary(PMTicketRef ticket, CFStringRef, CFStringRef key,
                                 CFDictionaryRef value, bool locked) {
    return SetItem(ticket, key, value, locked);
}

OSStatus PMTicketSetSInt32(PMTicketRef ticket, CFStringRef, CFStringRef key, std::int32_t value,
                           bool locked) {
    CFRef<CFNumberRef> const number(CFNumberCreate(nullptr, kCFNumberSInt32Type, &value));
    return number ? SetItem(ticket, key, number, locked) : memFullErr;
}

OSStatus PMTicketReleaseItem(PMTicketRef reference, CFStringRef key) {
    auto* ticket = platform::TicketOf(reference);
    if (ticket == nullptr) {
        return kPMInvalidTicket;
    }
    if (CFDictionaryGetValue(ticket->items, key) == nullptr) {
        return kPMKeyNotFound;
    }
    return platform::WithoutExceptions<OSStatus>(memFullErr, [&]() -> OSStatus {
        if (ticket->lockedKeys.contains(std::u16string(platform::TextOf(key)))) {
            return kPMItemIsLocked;
        }
        CFDictionaryRemoveValue(ticket->items, key);
        return noErr;
    });
}

OSStatus PMTicketCopyItems(PMTicketRef reference, CFDictionaryRef* items) {
    if (items == nullptr) {
        return paramErr;
    }
    *items = nullptr;
    auto const* ticket = platform::TicketOf(reference);
    if (ticket == nullptr) {
        return kPMInvalidTicket;
    }
    *items = CFDictionaryCreateMutableCopy(nullptr, 0, ticket->items);
    return *items == nullptr ? memFullErr : noErr;
}
