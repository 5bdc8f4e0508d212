// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "VelonFeatures/Project/Core/JobTicket.h"

class CString;

// What the session tells about the printer; valid only if the session has that ticket.
//
// An accessor gives null, 0 or false without a ticket, for a missing item and for one of another
// type; InfoStatus() tells what the lookup met. Objects are borrowed from the ticket.
class PrinterInfoTicket : public JobTicket {
  public:
    explicit PrinterInfoTicket(PMPrintSession session);

    OSStatus InfoStatus() const { return mInfoStatus; }

    bool HasCompiledPPD();  // the printer is a PPD printer
    CFStringRef GetMakeAndModelName();
    bool GetMakeAndModelName(CString& name);
    CFStringRef GetFullPrinterTypeName();
    bool GetFullPrinterTypeName(CString& name);
    CFStringRef GetPrinterAddress();
    bool GetPrinterAddress(CString& address);
    bool SupportColor();
    bool SupportCopies();
    bool SupportCopiesAndCollate();
    bool SupportReversePrintingOrder();
    CFArrayRef InputFileList();
    CFArrayRef OutputTypeList();
    // Each argument may be null. A number that doesn't convert is -1. True if any item arrived;
    // what didn't arrive stays as it was.
    bool PostscriptVersion(long* level, CFStringRef* version, long* revision);
    std::int32_t TrueTypeFontRasterizer();
    std::int32_t MemoryInstalled();
    CFStringRef PPDFile();
    bool PPDFile(CString& file);  // the string is empty on failure
    CFStringRef GetColorDeviceUUID();
    bool GetColorDeviceUUID(CString& uuid);  // the string is empty on failure

  private:
    CFTypeRef Item(char const* key);
    CFTypeRef Item(char const* key, CFTypeID type);
    CFStringRef StringItem(char const* key);
    CFArrayRef ArrayItem(char const* key);
    bool TrueItem(char const* key);
    std::int32_t NumberItem(char const* key);
    bool NumberItem(char const* key, long* number);

    OSStatus mInfoStatus = noErr;
};
