// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "VelonFeatures/Project/Core/OptionPair.h"
#include "VelonFeatures/Project/Core/SystemValues.h"
#include "VelonFeatures/Project/Core/WatermarkList.h"
#include "platform/CFRef.h"
#include "platform/CoreFoundation.h"
#include "platform/PrintManager.h"
#include "twoway/ZUBTolvanePrinterPList.h"

class CString;
class PPDXControl;
class PrintSettingsTicket;
class ProjectPDE;
class ZUBJobTicket;
class ZUBPPD;
struct PPDTree;

// What a dialog knows beside the PPD, reached through gPDEData. Not valid for a session without a
// current printer. What it does with that lies elsewhere; its operations hand on.
class PDEData {
  public:
    static constexpr std::size_t kStoredPairs = 255;
    static constexpr std::size_t kPCPairs = 4;
    static constexpr std::size_t kTempPPDPathSize = 512;  // with the terminator

    // Copies the printer's PPD into /tmp, where the Job Properties application looks for it; the
    // copy goes with this object. `ppd` may be null, and so may the link later.
    PDEData(PMPrintSession session, ZUBPPD* ppd, ProjectPDE* project);
    PDEData(PDEData const&) = delete;
    PDEData& operator=(PDEData const&) = delete;
    ~PDEData();

    bool IsValid() const { return mValid; }
    ZUBPPD* GetPPD() const { return mPPD; }
    void SetPPD(ZUBPPD* ppd) { mPPD = ppd; }  // borrowed; the owner clears it before the PPD goes
    PMPrintSession Session() const { return mSession; }  // borrowed, as the next
    void SetSession(PMPrintSession session) { mSession = session; }
    CFStringRef PrinterName() const { return mPrinterName; }  // borrowed; null when not valid
    char const* TempPPDPath() const { return mTempPPDPath; }  // "" without a PPD
    // The pairs of the last commit as a list of number, data, number, data ...; borrowed until the
    // next one. Null without one, and for one whose file couldn't be written.
    CFArrayRef LastJob() const { return mLastJob; }
    void SetLastJob(CFArrayRef pairs) { mLastJob = CFRef<CFArrayRef>::Retained(pairs); }
    WatermarkList& Watermarks() { return mWatermarks; }
    std::array<OptionPair, kStoredPairs>& StoredPairs() { return mStoredPairs; }
    std::int32_t StoredPairCount() const { return mStoredPairCount; }
    // Kept within 0 and kStoredPairs.
    void SetStoredPairCount(std::int32_t count) {
        mStoredPairCount = std::clamp(count, 0, static_cast<std::int32_t>(kStoredPairs));
    }
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
    // The notes of a job are being written.
    bool IsInNoteOutput() const { return mInNoteOutput; }
    void SetInNoteOutput(bool writing) { mInNoteOutput = writing; }

    // ---- The operating system's values ----

    std::int32_t GetPageOrientationFromOS() const;
    // Puts the paper source into PaperFeed(). 0 also when the settings have none, and PaperFeed()
    // then stays as it was; otherwise the print manager's error.
    OSStatus GetPrimaryPaperFeedFromOS();
    // A keyword, "" for none; its first byte is 255 once the job has taken it.
    char const* PaperFeed() const { return mPaperFeed; }
    // What the job takes, once for this object: the keyword, asked for if it wasn't yet. Empty when
    // there is none, and from the second time on.
    std::string TakePaperFeed();
    long GetNumCopiesFromOS() const;  // 0 when the settings don't tell
    void Set1CopiesToOS() const;

    // ---- The printer's record. Names are printers' names. ----

    // Reads the records anew; false when there was no memory.
    bool ResetTolvanePrinterList();
    // The address of the printer's server, empty for an unknown printer and null without records;
    // borrowed until the records change or are saved. `enabled`, which may be null, tells whether
    // two-way communication is on.
    CFStringRef GetTolvanePrinterAddress(CFStringRef name);
    CFStringRef GetTolvanePrinterAddress(CFStringRef name, bool* enabled);
    // Writes the record at once, of this printer for a null name. False when it couldn't be
    // written, and for a null address. A text is taken in the application's encoding.
    bool SetTolvanePrinterAddress(CFStringRef name, CString* address, bool enabled);
    bool SetTolvanePrinterCFAddress(CFStringRef name, CFStringRef address, bool enabled);
    // Whether two-way communication is on for this printer.
    bool GetIPAddressEnabled() const;
    void SetIPAddressEnabled(bool enabled);
    bool SaveTolvanePrinterList();
    ZUBTolvanePrinterPList* PrinterList() const { return mPrinterList.get(); }  // borrowed

    // ---- The quick-access list ----

    // Whether the pane may offer the control in a row; false for null.
    static bool IsValidBasicPanelControl(PPDXControl* control);
    // Replaces the tree's shortcuts by those of the printer's record that the PPD still has and
    // the pane may offer; a record without any leaves them as they are. False without a printer.
    bool GetPPDShortcuts(PPDTree& tree);
    bool SetPPDShortcuts(PPDTree tree);  // into the record; false when it couldn't be written

    // ---- The watermarks of the printer's record ----

    static constexpr std::int32_t kWatermarkBlock = 1;  // in which their records stand, one an item
    // Replaces the list by the record's watermarks, as many as it has room for, all of them on the
    // first page only if the settings say so; a record without any leaves it as it is. False
    // without a printer, and without memory, with the list as it was.
    bool GetWatermarksFromPreferences();
    // Writes the list into the record at once; what the record has beyond a full list stays. False
    // when it couldn't be written and for an empty list; without a printer, false, and for one
    // without a record true, it writes none. One that a record can't hold is cut at a character's
    // border or leaves an empty record in its place, so that the selection stays: it warns of that.
    bool SaveWatermarksToPreferences();
    // Why the list doesn't have the watermark of that number, counted from 0; for people.
    std::string WhyNoWatermark(std::int32_t number) const;

    // ---- Beside PostScript: watermark selection, PC pairs, stored pairs ----

    // The status of the last entry, -1 for a ticket or client that isn't there.
    OSStatus SaveNonPSSettings(PrintSettingsTicket* ticket, CFStringRef client) const;
    // 0, or -1 for a ticket that isn't there. What it lacks stays, but for the watermark
    // selection and the number of stored pairs, which go back to none.
    OSStatus RestoreNonPSSettings(PrintSettingsTicket* ticket);

    // Gives each of the three special colour options its present value as an item of its own and
    // selects it. Stops at the first that the PPD doesn't have.
    void MakeJobNotesForSpecialControls();
    // The next line of the summary: false, as here always, when there is none.
    bool GetSummaryLine(CFMutableStringRef title, CFMutableStringRef summary, bool& more) const;
    // Whether the keyword holds one of the three special keywords of colour management.
    static bool isSpecialChromvaleControl(char const* keyword);

    // ---- The job. Defined where the job is put together, above the session data. ----

    // Adds the choices to the ticket's list, in the order in which the job must have them. 0, or
    // paramErr for a ticket that isn't usable. Leaves the process's display option at 1 when
    // there is a PPD.
    OSStatus OutPostscriptData(ZUBJobTicket& ticket);
    // Adds the keyword of every control but *PageSize, so that the operating system doesn't emit
    // their code itself.
    void SuppressApplePostscript(ZUBJobTicket& ticket);
    // Opens a session with the printer's workflow server and, for kUploadNewJob, makes a job there
    // whose identifier two options then have as their value. Nothing happens without the server's
    // library, and when one of the options that name server and workflow is missing.
    static constexpr int kUploadNewJob = 2;
    void UploadSarnokeXMLFiles(int mode);

  private:
    void CopyPPD();
    bool MakePCPairs();
    void TakePageOrientation();
    void RestoreWatermarkSelection(PrintSettingsTicket& ticket);

    std::array<OptionPair, kStoredPairs> mStoredPairs;
    std::int32_t mStoredPairCount = 0;
    std::array<OptionPair, kPCPairs> mPCPairs;
    WatermarkList mWatermarks;
    CFStringRef mPrinterName = nullptr;      // mPrinterNameCopy, which outlives the printer
    CFStringRef mPrinterNameCopy = nullptr;  // owned
    CFStringRef mPrinterAddress = nullptr;   // in mPrinterList; the one last found
    std::unique_ptr<ZUBTolvanePrinterPList> mPrinterList;
    char mTempPPDPath[kTempPPDPathSize] = {};
    CFRef<CFArrayRef> mLastJob;
    bool mHasTempPPD = false;  // the copy was made here, and is removed
    ZUBPPD* mPPD;              // not owned
    PMPrintSession mSession;   // not owned
    bool mValid = false;
    bool mRebuilt = false;
    bool mRestored = false;
    std::int32_t mPageOrientation = 0;
    // The paper source of the operating system, a keyword; its first byte is 255 after use.
    char mPaperFeed[kPaperFeedSize] = {};
    bool mJPEnded = false;
    bool mInNoteOutput = false;
    ProjectPDE* mProject;  // not owned, may be gone; never used through this pointer here
};
