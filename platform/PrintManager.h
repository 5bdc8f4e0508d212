// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"

// Print sessions, printers and tickets.
//
// A session keeps named data and one current printer. A ticket is a store of values by key, known
// by a 32-bit number, which a session's data holds under the ticket's name. Values that a ticket
// gives out are borrowed: they live until their key is set or released.

struct OpaquePMPrintSession;
using PMPrintSession = OpaquePMPrintSession*;
struct OpaquePMPrinter;
using PMPrinter = OpaquePMPrinter*;
using PMTicketRef = std::int32_t;  // 0 is no ticket

constexpr OSStatus kPMInvalidTicket = -30892;
constexpr OSStatus kPMKeyNotFound = -9589;
constexpr OSStatus kPMItemIsLocked = -9588;
constexpr OSStatus kPMDataFormatError = -9591;
constexpr OSStatus kPMInvalidPrintSession = -30879;
constexpr OSStatus kPMNoSuchPrinter = -30880;

// ---- What the plug-in asks ----

// A borrowed object, null and kPMKeyNotFound when there is none.
OSStatus PMSessionGetDataFromSession(PMPrintSession session, CFStringRef key, CFTypeRef* data);
OSStatus PMSessionGetCurrentPrinter(PMPrintSession session, PMPrinter* printer);  // borrowed
// Type "PMPPDDescriptionType"; the caller releases the URL.
OSStatus PMPrinterCopyDescriptionURL(PMPrinter printer, CFStringRef type, CFURLRef* url);
OSStatus PMPrinterCopyDeviceURI(PMPrinter printer, CFURLRef* uri);
CFStringRef PMPrinterGetName(PMPrinter printer);  // borrowed

OSStatus PMTicketCreate(CFStringRef name, PMTicketRef* ticket);  // the caller releases it
OSStatus PMTicketReleaseAndClear(PMTicketRef* ticket);
// The two indexes name an inner ticket and a page and are 0 throughout. `item` may be null: the
// status tells whether the item exists. The typed forms give kPMDataFormatError for an item of
// another type. Out-parameters are cleared on failure.
OSStatus PMTicketGetItem(PMTicketRef ticket, CFStringRef key, std::uint32_t index1,
                         std::uint32_t index2, CFTypeRef* item);
OSStatus PMTicketGetCFNumber(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                             CFStringRef key, CFNumberRef* value);
OSStatus PMTicketGetCFArray(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                            CFStringRef key, CFArrayRef* value);
OSStatus PMTicketGetCFData(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                           CFStringRef key, CFDataRef* value);
OSStatus PMTicketGetCFString(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                             CFStringRef key, CFStringRef* value);
OSStatus PMTicketGetCFDictionary(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                                 CFStringRef key, CFDictionaryRef* value);
OSStatus PMTicketGetSInt32(PMTicketRef ticket, std::uint32_t index1, std::uint32_t index2,
                           CFStringRef key, std::int32_t* value);
// The ticket keeps a copy. A locked item can't be set or released again: kPMItemIsLocked.
OSStatus PMTicketSetCFArray(PMTicketRef ticket, CFStringRef client, CFStringRef key,
                            CFArrayRef value, bool locked);
OSStatus PMTicketSetCFData(PMTicketRef ticket, CFStringRef client, CFStringRef key, CFDataRef value,
                           bool locked);
OSStatus PMTicketSetCFString(PMTicketRef ticket, CFStringRef client, CFStringRef key,
                             CFStringRef value, bool locked);
OSStatus PMTicketSetCFDictionary(PMTicketRef ticket, CFStringRef client, CFStringRef key,
                                 CFDictionaryRef value, bool locked);
OSStatus PMTicketSetSInt32(PMTicketRef ticket, CFStringRef client, CFStringRef key,
                           std::int32_t value, bool locked);
OSStatus PMTicketReleaseItem(PMTicketRef ticket, CFStringRef key);

// ---- What a host sets up ----

OSStatus PMCreateSession(PMPrintSession* session);
void PMDisposeSession(PMPrintSession session);  // its printer too; the tickets stay
OSStatus PMSessionSetDataInSession(PMPrintSession session, CFStringRef key, CFTypeRef data);
// Puts the ticket's number into the session's data under the ticket's name.
OSStatus PMSessionSetTicket(PMPrintSession session, CFStringRef name, PMTicketRef ticket);
// `ppd` and `deviceURI` may be null: the printer then has none. A null name makes a session without
// a current printer.
OSStatus PMSessionSetCurrentPrinter(PMPrintSession session, CFStringRef name, CFURLRef ppd,
                                    CFURLRef deviceURI);
// Any property list value, for what has no typed form.
OSStatus PMTicketSetItem(PMTicketRef ticket, CFStringRef client, CFStringRef key,
                         CFPropertyListRef value, bool locked);
// All items as a dictionary that the caller releases.
OSStatus PMTicketCopyItems(PMTicketRef ticket, CFDictionaryRef* items);
