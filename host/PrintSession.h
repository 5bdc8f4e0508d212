// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string>

#include "host/Outcome.h"
#include "host/PrintOptions.h"
#include "platform/PrintManager.h"

// A print session as an operating system hands it to a dialog: its current printer and its three
// tickets. Everything is given back on destruction.
class PrintSession {
  public:
    PrintSession() = default;
    PrintSession(PrintSession const&) = delete;
    PrintSession& operator=(PrintSession const&) = delete;
    ~PrintSession();

    // Called once.
    Outcome Open(PrintOptions const& options, std::string const& makeAndModel);

    PMPrintSession Get() const { return mSession; }
    // The text under a key of the print settings; empty when there is none.
    std::string PrintSettingsText(CFStringRef key) const;

  private:
    OSStatus OpenPrinter(PrintOptions const& options);
    OSStatus MakeTicket(CFStringRef name, CFStringRef kind, PMTicketRef& ticket);
    OSStatus FillPrintSettings();
    OSStatus FillPrinterInfo(PrintOptions const& options, std::string const& makeAndModel);
    OSStatus FillPageFormat();

    PMPrintSession mSession = nullptr;  // owned, as the tickets
    PMTicketRef mPrintSettings = 0;
    PMTicketRef mPrinterInfo = 0;
    PMTicketRef mPageFormat = 0;
};
