// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ZUBUtils/PPDUtils/WipedText.h"
#include "platform/MacTypes.h"

class ZUBJobNote;
class ZUBJobTicket;
class ZUBPPD;

// Writes the notes of one job, each as a comment and as feature code. A user's name and password
// meet here in one enciphered record, for which the name's note must come first.
class NoteOutput {
  public:
    // `ticket`, and `ppd` unless it is null, must outlive this object. With a status that isn't 0
    // the notes end at the first that has feature code.
    NoteOutput(ZUBJobTicket& ticket, ZUBPPD* ppd, OSStatus status);

    // Whether there may be a next note.
    bool Out(ZUBJobNote& note);
    OSStatus Status() const { return mStatus; }

  private:
    // What a special note gives its comment; without a line nothing is added.
    struct Comment {
        WipedText line;
        bool skipFeature = false;
    };

    bool OutNote(ZUBJobNote& note);
    Comment CommentOf(ZUBJobNote& note, short row);
    bool IsSent(short row) const;
    Comment UserName(ZUBJobNote& note, WipedText const& text);
    Comment Password(WipedText const& text, WipedText line);
    bool OutFeature(ZUBJobNote& note, short row);
    // Whether what a job carries of the note is a cipher.
    static bool IsEnciphered(ZUBJobNote const& note);
    bool CopiesFeature() const;

    ZUBJobTicket& mTicket;
    ZUBPPD* mPPD;
    OSStatus mStatus;
    WipedText mUserName;  // UTF-8
    bool mUserKnown = false;
};
