// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "host/Options.h"
#include "host/Outcome.h"
#include "host/TicketFile.h"
#include "platform/CFRef.h"
#include "platform/Graphics.h"
#include "platform/PrintManager.h"

// A print session as an operating system hands it to a dialog: its current printer and its three
// tickets. Everything is given back on destruction.
class PrintSession {
  public:
    PrintSession() = default;
    PrintSession(PrintSession const&) = delete;
    PrintSession& operator=(PrintSession const&) = delete;
    ~PrintSession();

    // Called once. The tickets start with what `kept` has. `makeAndModel` is what is known of the
    // printer, the kept tickets' where nothing is. A choice of *InputSlot drops a kept paper feed.
    Outcome Open(PrintOptions const& options, std::optional<std::string> const& makeAndModel,
                 TicketFile const& kept);
    // Keeps the tickets as they are now.
    Outcome Keep(TicketFile& file) const;

    PMPrintSession Get() const { return mSession; }
    // Forgets in the print settings whether the watermark that was selected is for one page.
    void DropFirstPageFlag();
    // The text under a key of the print settings; empty when there is none.
    std::string PrintSettingsText(CFStringRef key) const;

    // ---- What the operating system's own panes put into the tickets of an open session ----

    void SetPaper(std::string const& name, std::optional<FloatSize> const& points) const;
    void SetPaperFeed(std::string const& keyword) const;
    void SetCopies(std::int32_t copies) const;
    void SetOrientation(std::int32_t orientation) const;

  private:
    OSStatus OpenPrinter(PrintOptions const& options);
    OSStatus MakeTickets(TicketFile const& kept);
    OSStatus FillPrintSettings(PrintOptions const& options);
    OSStatus FillPrinterInfo(PrintOptions const& options,
                             std::optional<std::string> const& makeAndModel);
    OSStatus FillPageFormat(PrintOptions const& options);
    CFRef<CFMutableDictionaryRef> Paper(std::string const& name,
                                        std::optional<FloatSize> const& points) const;

    PMPrintSession mSession = nullptr;  // owned, as the tickets
    PMTicketRef mPrintSettings = 0;
    PMTicketRef mPrinterInfo = 0;
    PMTicketRef mPageFormat = 0;
};
