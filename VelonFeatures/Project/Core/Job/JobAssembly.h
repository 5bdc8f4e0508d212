// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/MacTypes.h"

class OptionPair;
class PDEData;
class PPDXControl;
class PPDXJobNote;
class ZUBJobTicket;
class ZUBPPD;

// Puts one job together from what the session data knows. Lives for one commit; data and ticket
// must outlive it.
class JobAssembly {
  public:
    JobAssembly(PDEData& data, ZUBJobTicket& ticket);

    // Adds the whole job to the ticket's list, in the order in which it must stand there. 0, or
    // paramErr for a ticket that isn't usable. Leaves the process's display option at 1 when
    // there is a PPD.
    OSStatus Run();
    // Adds the keyword of every control but *PageSize.
    void SuppressApplePostscript();

  private:
    // The steps, in their order. What the PPD doesn't have is passed over.
    void TakePaperFeed();
    void AnnounceToWorkflow();
    // Adds what the control would emit now; nothing for null, and for a colour profile that isn't
    // fit to stand in the job.
    void OutControl(PPDXControl* control);
    void OutFirstControl();
    void OutSourceApplication();
    void OutRemainingControls();
    void OutRemainingControl(PPDXControl* control);
    void OutStoredPairs();
    void OutSpecialControls();
    void OutDynamicOption(PPDXControl* control, PPDXJobNote& note);
    void OutJobNotesAndWatermark();
    void OutScale();
    void OutPCPairs();
    bool OutPCPair(OptionPair const& pair);  // whether it went out
    void OutPCPrintSize();
    void OutCustomSize();
    void OutPrintSize();
    void OutFileDestination();
    void OutDriverMarker();
    void OutClosingMarkers();
    void OutUTF8Version();

    PDEData& mData;
    ZUBJobTicket& mTicket;
    ZUBPPD* mPPD;  // not owned; the data's, may be null
};
