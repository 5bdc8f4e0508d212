// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/ZUBJobNoteList.h"

#include <new>
#include <string>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "VelonFeatures/Project/Core/ControlLookup.h"
#include "VelonFeatures/Project/Core/Job/LayoutComments.h"
#include "VelonFeatures/Project/Core/Job/NoteOutput.h"
#include "VelonFeatures/Project/Core/Job/ZUBJobNote.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"

namespace {

// Every element of the list is a note.
ZUBJobNote* NoteAt(LinkElementDualIterator position) {
    return static_cast<ZUBJobNote*>(*position);
}

}  // namespace

ZUBJobNoteList::ZUBJobNoteList(ZUBPPD* ppd, bool flag) : mMemError(noErr), mPPD(ppd) {
    PPDXControls* const controls = ControlsOf(ppd);
    for (PPDXJobNote* control = GetFirstJobNote(controls); control != nullptr && mMemError == noErr;
         control = GetNextJobNote(controls)) {
        auto* const note = new (std::nothrow) ZUBJobNote(control, flag, ppd);
        mMemError = add(note) ? noErr : memFullErr;
    }
    mListValid = mMemError == noErr;
}

ZUBJobNote* ZUBJobNoteList::find(char const* keyword) const {
    std::string_view const wanted(keyword == nullptr ? "" : keyword);
    for (LinkElementDualIterator at = Begin(); *at != nullptr; ++at) {
        char const* const found = NoteAt(at)->Control()->Keyword();
        if (keyword != nullptr && found != nullptr && wanted == found) {
            return NoteAt(at);
        }
    }
    return nullptr;
}

std::size_t ZUBJobNoteList::countProtectedFields() const {
    std::size_t count = 0;
    for (LinkElementDualIterator at = Begin(); *at != nullptr; ++at) {
        count += NoteAt(at)->Control()->IsPassword() != 0 ? 1 : 0;
    }
    return count;
}

OSStatus ZUBJobNoteList::outInjectionData(ZUBJobTicket* ticket, PMPrintSession session) {
    OSStatus status = paramErr;
    if (ticket != nullptr && ticket->IsJobValid()) {
        status = AddLayoutComments(*ticket, session, mPPD, mOrientation);
        NoteOutput output(*ticket, mPPD, status);
        LinkElementDualIterator at = Begin();
        while (*at != nullptr && output.Out(*NoteAt(at))) {
            ++at;
        }
        status = output.Status();
    }
    if (gPDEData != nullptr) {
        gPDEData->SetInNoteOutput(false);
    }
    return status;
}
