// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/Controls.h"
#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"
#include "platform/PrintManager.h"
#include "platform/ProcessManager.h"

class PrintSettingsTicket;
class ZUBJobTicket;
class ZUBPPD;

// One run of the print dialog: stands behind the host's table of functions and owns the PPD.
//
// Results are 0 or a status; kPrinterRefused says that the printer isn't the extension's.
class ProjectPDE {
  public:
    static constexpr std::uint32_t kPaneWidth = 525;  // pixels
    static constexpr std::uint32_t kPaneHeight = 200;
    static constexpr OSStatus kBadTicket = 1;
    static constexpr OSStatus kPrinterRefused = 3;

    // Not valid when the bundle or its nib can't be opened.
    ProjectPDE();
    ProjectPDE(ProjectPDE const&) = delete;
    ProjectPDE& operator=(ProjectPDE const&) = delete;
    virtual ~ProjectPDE();  // leaves gPDEData alive

    bool IsValid() const { return mValid; }
    bool IsInitialized() const { return mInitialized; }
    CFStringRef Title() const { return mTitle; }      // borrowed
    CFStringRef Version() const { return mVersion; }  // borrowed from the bundle
    ZUBPPD* GetPPD() const { return mPPD; }           // borrowed; null when none is open
    // Null when all printers share one set of stored settings.
    CFStringRef PrinterKey() const { return mPrinterKey; }

    void PaneSize(std::uint32_t& width, std::uint32_t& height) const;
    // Decides whether the session's printer is ours, and opens its PPD. The session must outlive
    // this object. `flags` is set to 0.
    OSStatus Initialize(std::uint32_t* flags, std::uint32_t pdeRef, ControlRef parentPane,
                        PMPrintSession session);
    // From here on the session is this one. With `reinitialize` sets everything up anew for what it
    // holds now, without it writes the choices out for the job. A failure leaves no PPD open,
    // unless the session itself is the fault.
    OSStatus Sync(PMPrintSession session, bool reinitialize);
    // There is no summary: both arrays are null.
    OSStatus GetSummaryText(CFArrayRef* titles, CFArrayRef* summaries);
    // Moves a window that is no sheet up, towards the top of the screen.
    OSStatus Open();
    // Ends the Job Properties application, unless the PPD's version begins with "2".
    OSStatus Close();

    // Opens the session's PPD afresh in place of the former one. Always true; GetPPD() is null
    // when there is no PPD. `restored` tells whether the ticket gave the PPD its choices.
    bool SetupPPD(ZUBJobTicket& ticket, bool& restored, CFStringRef printerKey);
    // Ends the Job Properties application and notes in gPDEData whether that was done.
    void KillJP();
    // The number of the Job Properties application found after `psn`, whose process `psn` then
    // holds; -1 when there is none.
    static std::int32_t ReportPSNofFDNtoJP(ProcessSerialNumber* psn);

  private:
    CFStringRef CreateSessionKey() const;  // the caller releases it
    void MakePrinterKey(CFStringRef makeAndModel);
    bool SetUpSession();
    bool IsAcceptedPrinter(CFStringRef sessionKey) const;
    bool ReplaceData();
    OSStatus Rebuild(ZUBJobTicket& ticket, PrintSettingsTicket& settings);
    OSStatus Commit(ZUBJobTicket& ticket, PrintSettingsTicket& settings);
    void DestroyPPD();
    void RaiseWindow();

    ZUBPPD* mPPD = nullptr;             // owned
    PMPrintSession mSession = nullptr;  // not owned
    std::uint32_t mPDERef = 0;
    ControlRef mParentPane = nullptr;  // not owned
    CFBundleRef mBundle = nullptr;     // not owned
    IBNibRef mNibRef = nullptr;        // owned
    bool mValid = false;
    bool mInitialized = false;
    OSStatus mNibStatus = noErr;
    CFStringRef mTitle = nullptr;              // owned
    CFStringRef mVersion = nullptr;            // not owned
    CFMutableStringRef mPrinterKey = nullptr;  // owned
};
