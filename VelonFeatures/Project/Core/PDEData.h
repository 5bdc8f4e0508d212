// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "VelonFeatures/Project/Core/OptionPair.h"
#include "VelonFeatures/Project/Core/WatermarkList.h"
#include "platform/CoreFoundation.h"
#include "platform/PrintManager.h"

class PPDXControl;
class PPDXControls;
class ProjectPDE;
class ZUBJobTicket;
class ZUBPPD;

// What a dialog knows beside the PPD, reached through gPDEData. Not valid for a session without a
// current printer.
class PDEData {
  public:
    static constexpr std::size_t kStoredPairs = 255;
    static constexpr std::size_t kPCPairs = 4;
    static constexpr std::size_t kTempPPDPathSize = 512;  // with the terminator
    static constexpr std::size_t kPaperFeedSize = 64;     // with the terminator

    // Copies the printer's PPD into /tmp, where the Job Properties application looks for it; the
    // copy goes with this object. `ppd` may be null, and so may the link later.
    PDEData(PMPrintSession session, ZUBPPD* ppd, ProjectPDE* project);
    PDEData(PDEData const&) = delete;
    PDEData& operator=(PDEData const&) = delete;
    ~PDEData();

    bool IsValid() const { return mValid; }
    ZUBPPD* GetPPD() const { return mPPD; }
    void SetPPD(ZUBPPD* ppd) { mPPD = ppd; }  // borrowed; the owner clears it before the PPD goes
    CFStringRef PrinterName() const { return mPrinterName; }  // borrowed; null when not valid
    char const* TempPPDPath() const { return mTempPPDPath; }  // "" without a PPD
    WatermarkList& Watermarks() { return mWatermarks; }
    std::array<OptionPair, kStoredPairs>& StoredPairs() { return mStoredPairs; }
    std::int32_t StoredPairCount() const { return mStoredPairCount; }
    void SetStoredPairCount(std::int32_t count) { mStoredPairCount = count; }
    std::array<OptionPair, kPCPairs>& PCPairs() { return mPCPairs; }
    // 1 and 3 portrait, 2 and 4 landscape, 0 when the page format doesn't tell.
    std::int32_t PageOrientation() const { return mPageOrientation; }
    // The object was made by a rebuild inside the dialog.
    bool IsRebuilt() const { return mRebuilt; }
    void SetRebuilt(bool rebuilt) { mRebuilt = rebuilt; }
    // The ticket gave the PPD its choices.
    bool IsRestored() const { return mRestored; }
    void SetRestored(bool restored) { mRestored = restored; }
    // The extension itself ended the Job Properties application.
    bool HasJPEnded() const { return mJPEnded; }
    void SetJPEnded(bool ended) { mJPEnded = ended; }

    std::int32_t GetPageOrientationFromOS() const;
    // Whether two-way communication is on for the printer.
    bool GetIPAddressEnabled() const;
    // The next line of the summary: false, as here always, when there is none.
    bool GetSummaryLine(CFMutableStringRef title, CFMutableStringRef summary, bool& more) const;

    // Adds the choices to the ticket's list, in the order in which the job must have them. 0, or
    // paramErr for a ticket that isn't usable. Leaves the process's display option at 1 when
    // there is a PPD.
    OSStatus OutPostscriptData(ZUBJobTicket& ticket);
    // Adds the keyword of every control but *PageSize, so that the operating system doesn't emit
    // their code itself.
    void SuppressApplePostscript(ZUBJobTicket& ticket);
    // Whether the keyword holds one of the three special keywords of colour management.
    static bool isSpecialChromvaleControl(char const* keyword);

  private:
    void CopyPPD();
    bool MakePCPairs();
    void TakePageOrientation();
    PPDXControls* Controls() const;  // null without a PPD

    void AdmitOrphans();
    void OutFirstControl(ZUBJobTicket& ticket);
    void OutSourceApplication(ZUBJobTicket& ticket);
    void OutRemainingControls(ZUBJobTicket& ticket);
    void OutRemainingControl(ZUBJobTicket& ticket, PPDXControl* control);
    void OutDriverMarker(ZUBJobTicket& ticket);
    void OutClosingMarkers(ZUBJobTicket& ticket);

    std::array<OptionPair, kStoredPairs> mStoredPairs;
    std::int32_t mStoredPairCount = 0;
    std::array<OptionPair, kPCPairs> mPCPairs;
    WatermarkList mWatermarks;
    CFStringRef mPrinterName = nullptr;      // mPrinterNameCopy, which outlives the printer
    CFStringRef mPrinterNameCopy = nullptr;  // owned
    char mTempPPDPath[kTempPPDPathSize] = {};
    bool mHasTempPPD = false;  // the copy was made here, and is removed
    ZUBPPD* mPPD;              // not owned
    PMPrintSession mSession;   // not owned
    bool mValid = false;
    bool mRebuilt = false;
    bool mRestored = false;
    std::int32_t mPageOrientation = 0;
    // The paper source of the operating system, a keyword.
    char mPaperFeed[kPaperFeedSize] = {};
    bool mJPEnded = false;
    ProjectPDE* mProject;  // not owned, may be gone; never used through this pointer here
};
