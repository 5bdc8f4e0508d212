// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"

#include <cstring>
#include <memory>

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "ZUBUtils/PPDUtils/CString.h"

namespace {

constexpr ArchiveTags::List kRecords = ArchiveTags::kShortcuts;

bool IsPopup(PPDXControl* control) {
    return dynamic_cast<PPDXPopupControl*>(control) != nullptr;
}

bool HasRow(PPDXControl* control) {
    return IsPopup(control) || dynamic_cast<PPDXJobNote*>(control) != nullptr ||
           dynamic_cast<PPDXBooleanControl*>(control) != nullptr;
}

bool Matches(PPDXControl const& control, char const* keyword, bool exact) {
    if (control.Keyword() == nullptr) {
        return false;
    }
    return exact ? std::strcmp(control.Keyword(), keyword) == 0
                 : std::strstr(control.Keyword(), keyword) != nullptr;
}

}  // namespace

PPDXShortcuts::PPDXShortcuts(PointerList& controls) : mControls(controls) {}

PPDXShortcuts::PPDXShortcuts(Settings& settings, PPDXControls* registry) {
    if (registry == nullptr) {
        return;
    }
    std::int32_t count = 0;
    ControlRecord(settings, kRecords.countID).Read(kRecords.countTag, count);
    for (std::int32_t position = 0; position < count; ++position) {
        ControlRecord const record(settings, kRecords.firstID + position);
        std::unique_ptr<CString> const keyword(record.CopyText(kRecords.countTag));
        // The ids have no gaps: behind a missing one there is nothing.
        if (keyword == nullptr) {
            return;
        }
        CNTL_TYPE type = kControlType;
        mControls.PushBack(registry->Find(keyword->GetCharData(), type, true));
    }
}

PPDXControl* PPDXShortcuts::Walked(bool (*accepts)(PPDXControl*)) {
    for (; mCursor != mControls.End() && !mCursor.IsNull(); ++mCursor) {
        auto* const control = static_cast<PPDXControl*>(*mCursor);
        if (accepts(control)) {
            return control;
        }
    }
    return nullptr;
}

PPDXControl* PPDXShortcuts::First(bool) {
    mCursor = mControls.Begin();
    return Walked(IsPopup);
}

PPDXControl* PPDXShortcuts::Next() {
    ++mCursor;
    return Walked(HasRow);
}

PPDXControl* PPDXShortcuts::Find(char const* keyword, bool const& exact) {
    if (keyword == nullptr) {
        return nullptr;
    }
    PPDXControl* control = First(false);
    while (control != nullptr && !Matches(*control, keyword, exact)) {
        control = Next();
    }
    return control;
}

short PPDXShortcuts::Save(Settings& settings) {
    ControlRecord counts(settings, kRecords.countID);
    counts.AddNumber(kRecords.countTag, static_cast<std::int32_t>(mControls.Size()));
    short status = counts.Status();
    long id = kRecords.firstID;
    for (PPDXControl* control = First(false); control != nullptr; control = Next()) {
        ControlRecord record(settings, id++, status);
        CString const keyword(control->Keyword());
        record.AddText(kRecords.countTag, &keyword);
        status = record.Status();
    }
    return status;
}

PPDXControl* FindShortcut(PPDXShortcuts* shortcuts, char const* keyword, bool const& exact) {
    return shortcuts != nullptr ? shortcuts->Find(keyword, exact) : nullptr;
}

PPDXControl* FirstShortcut(PPDXShortcuts* shortcuts) {
    return shortcuts != nullptr ? shortcuts->First(false) : nullptr;
}

PPDXControl* NextShortcut(PPDXShortcuts* shortcuts) {
    return shortcuts != nullptr ? shortcuts->Next() : nullptr;
}

long GetShortcutCount(PPDXShortcuts* shortcuts) {
    return shortcuts != nullptr ? shortcuts->Count() : 0;
}

bool IsShortcutsListEmpty(PPDXShortcuts* shortcuts) {
    return shortcuts == nullptr || shortcuts->Empty();
}

PPDXControl* GetInputSlotShortcut(PPDXShortcuts* shortcuts) {
    return shortcuts != nullptr ? shortcuts->InputSlot() : nullptr;
}

PPDXControl* GetDuplexShortcut(PPDXShortcuts* shortcuts) {
    return shortcuts != nullptr ? shortcuts->Duplex() : nullptr;
}

PPDXControl* GetPageSizeShortcut(PPDXShortcuts* shortcuts) {
    return shortcuts != nullptr ? shortcuts->PageSize() : nullptr;
}

PPDXControl* GetMediaSourceShortcut(PPDXShortcuts* shortcuts) {
    return shortcuts != nullptr ? shortcuts->MediaSource() : nullptr;
}

PPDXControl* GetOrientationShortcut(PPDXShortcuts* shortcuts) {
    return shortcuts != nullptr ? shortcuts->Orientation() : nullptr;
}

PPDXControl* GetChromvaleShortcut(PPDXShortcuts* shortcuts) {
    return shortcuts != nullptr ? shortcuts->Chromvale() : nullptr;
}
