// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "ZUBUtils/PPDUtils/PtrLinkList.h"
#include "platform/PrintManager.h"

class ZUBJobNote;
class ZUBJobTicket;
class ZUBPPD;

// The notes of a PPD on their way into one job, in the order of its controls. Made for one commit.
class ZUBJobNoteList : public PtrLinkList {
  public:
    // `ppd`, borrowed, may be null; it must outlive the list. `flag` as ZUBJobNote has it.
    ZUBJobNoteList(ZUBPPD* ppd, bool flag);

    // False when there was no memory for all notes; the list has those ahead of the lack.
    bool IsListValid() const { return mListValid; }
    ZUBJobNote* find(char const* keyword) const;  // the first; null for none
    std::size_t countProtectedFields() const;     // how many are passwords

    // Adds the comments about orientation and layout, and each note's comment and feature code.
    // 0, the print manager's status of the page format or of the print settings, memFullErr, or
    // paramErr with nothing added for a ticket that is null or not usable. A status of the print
    // manager lets the comments of the notes through up to the first that has feature code.
    // Notes change: one that is to be UTF-8 has its text converted, the user's name gets its slash.
    OSStatus outInjectionData(ZUBJobTicket* ticket, PMPrintSession session);

    // That of the page format, 0 before outInjectionData and when the page format has none.
    std::int32_t Orientation() const { return mOrientation; }

  private:
    std::int32_t mOrientation = 0;
    OSErr mMemError;
    ZUBPPD* mPPD;
    bool mListValid;
};
