// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/CoreFoundation.h"
#include "platform/FileManager.h"
#include "platform/PrintManager.h"

class ZUBPPD;

constexpr OSStatus kPMTicketNumberUnreadable = -30889;

// What the session tells about its current printer.

// The PPD of the printer, whose `url` the caller releases. 0, or the print manager's error, or
// fnfErr for a file that isn't there; `url` is null then.
OSStatus GetPPDFile(PMPrintSession session, CFURLRef& url, FSRef& fileRef);
// Reads the printer's PPD anew, for the accepted printers of the bundle's list. The result, which
// the caller releases, may be not valid; it is null when no PPD or no printer list is found.
// `printerKey` names the bundle, `bundleID` does when it is null.
ZUBPPD* SetupPPD(PMPrintSession session, CFStringRef bundleID, CFStringRef printerKey);
CFStringRef GetCurrentPrinterName(PMPrintSession session);  // borrowed from the printer

// The scheme of the printer's device URI; the caller releases it, null without one.
CFStringRef CopyPrinterConnectionType(PMPrintSession session);
// Exact tests of that scheme; false for a printer without one.
bool isUSBPrinterConnection(PMPrintSession session);
bool isAppleTalkPrinterConnection(PMPrintSession session);
bool isBonjourPrinterConnection(PMPrintSession session);
bool isIPPrinterConnection(PMPrintSession session);

// The ticket that the session holds under `name`. 0, the print manager's error, or
// kPMTicketNumberUnreadable when what stands there is no ticket's number; `ticket` is 0 then.
OSStatus MyGetTicket(PMPrintSession session, CFStringRef name, PMTicketRef* ticket);
