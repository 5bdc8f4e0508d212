// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PrinterAccess.h"

#include <new>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "platform/CFRef.h"
#include "twoway/PrinterListFile.h"

namespace {

bool IsPrinterConnection(PMPrintSession session, CFStringRef wanted) {
    CFRef<CFStringRef> const scheme(CopyPrinterConnectionType(session));
    return scheme && CFEqual(scheme, wanted);
}

}  // namespace

OSStatus GetPPDFile(PMPrintSession session, CFURLRef& url, FSRef& fileRef) {
    url = nullptr;
    PMPrinter printer = nullptr;
    OSStatus status = PMSessionGetCurrentPrinter(session, &printer);
    if (status == noErr) {
        status = PMPrinterCopyDescriptionURL(printer, CFSTR("PMPPDDescriptionType"), &url);
    }
    if (status == noErr && !CFURLGetFSRef(url, &fileRef)) {
        CFRelease(url);
        url = nullptr;
        status = fnfErr;
    }
    return status;
}

ZUBPPD* SetupPPD(PMPrintSession session, CFStringRef bundleID, CFStringRef printerKey) {
    CFRef<CFURLRef> url;
    FSRef file;
    if (GetPPDFile(session, *url.Receive(), file) != noErr) {
        return nullptr;
    }
    CFRef<CFURLRef> const contents(
        CreatePDEContentsURL(printerKey == nullptr ? bundleID : printerKey));
    if (!contents) {
        return nullptr;
    }
    PrinterListFile const printers(contents, kCFPropertyListImmutable);
    if (!printers.IsFileValid()) {
        return nullptr;
    }
    return new (std::nothrow) ZUBPPD(url, kParseAll, printers.PCFileNames());
}

CFStringRef GetCurrentPrinterName(PMPrintSession session) {
    PMPrinter printer = nullptr;
    bool const isFound = PMSessionGetCurrentPrinter(session, &printer) == noErr;
    return isFound ? PMPrinterGetName(printer) : nullptr;
}

CFStringRef CopyPrinterConnectionType(PMPrintSession session) {
    PMPrinter printer = nullptr;
    CFRef<CFURLRef> uri;
    if (PMSessionGetCurrentPrinter(session, &printer) != noErr ||
        PMPrinterCopyDeviceURI(printer, uri.Receive()) != noErr) {
        return nullptr;
    }
    return CFURLCopyScheme(uri);
}

bool isUSBPrinterConnection(PMPrintSession session) {
    return IsPrinterConnection(session, CFSTR("usb"));
}

bool isAppleTalkPrinterConnection(PMPrintSession session) {
    return IsPrinterConnection(session, CFSTR("pap"));
}

bool isBonjourPrinterConnection(PMPrintSession session) {
    return IsPrinterConnection(session, CFSTR("mdns"));
}

bool isIPPrinterConnection(PMPrintSession session) {
    return IsPrinterConnection(session, CFSTR("ipp"));
}

OSStatus MyGetTicket(PMPrintSession session, CFStringRef name, PMTicketRef* ticket) {
    *ticket = 0;
    CFTypeRef data = nullptr;
    if (OSStatus const status = PMSessionGetDataFromSession(session, name, &data);
        status != noErr) {
        return status;
    }
    bool const isRead =
        CFGetTypeID(data) == CFNumberGetTypeID() &&
        CFNumberGetValue(static_cast<CFNumberRef>(data), kCFNumberSInt32Type, ticket);
    if (!isRead) {
        *ticket = 0;
        return kPMTicketNumberUnreadable;
    }
    return noErr;
}
