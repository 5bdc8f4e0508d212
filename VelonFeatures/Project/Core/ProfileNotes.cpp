// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/ProfileNotes.h"

#include <new>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/CString.h"

void KeepInProfileNote(ZUBPPD& ppd, char const* keyword, CFStringRef value) {
    constexpr long kLongestValue = 700;
    PPDXJobNote* note = ppd.GetControls()->FindJobNote(keyword, true);
    if (note == nullptr) {
        CString encoding("UTF-8");
        PointerList flags;
        note = new (std::nothrow)
            PPDXJobNote(keyword, CFSTR(""), flags, nullptr, 0, new (std::nothrow) CString(""),
                        &encoding, true, kLongestValue, kNoteNoFlags, 0);
        ppd.SetupControl(ppd.GetGroups()->Find(kJobNoteGroup, true), note, false);
    }
    if (note != nullptr) {
        note->SetUTF8Notes(value);
    }
}
