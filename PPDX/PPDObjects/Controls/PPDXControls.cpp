// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXControls.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "PPDX/PPDObjects/Controls/DisplayOptions.h"
#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXSpecialOption.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "platform/CollectionManager.h"

namespace {

constexpr ArchiveTags::List kRecords = ArchiveTags::kControls;

struct ArchivedKind {
    unsigned long tag;
    PPDXControl* (*make)(Settings& settings, long id, UIConstraints* constraints, Arena* arena);
};

template <typename Class>
PPDXControl* Make(Settings& settings, long id, UIConstraints*, Arena*) {
    return new Class(settings, id);
}

template <typename Class>
PPDXControl* MakeConstrained(Settings& settings, long id, UIConstraints* constraints, Arena*) {
    return new Class(settings, id, constraints);
}

PPDXControl* MakeJobNote(Settings& settings, long id, UIConstraints*, Arena*) {
    std::unique_ptr<CString> const encoding(
        GetSettingsString(settings, ArchiveTags::kHeader, ArchiveTags::kLanguageEncodingID));
    return new PPDXJobNote(settings, id, encoding.get());
}

PPDXControl* MakePopup(Settings& settings, long id, UIConstraints* constraints, Arena* arena) {
    return new PPDXPopupControl(settings, id, constraints, arena);
}

constexpr ArchivedKind kArchivedKinds[] = {
    {ArchiveTags::kBoolean, MakeConstrained<PPDXBooleanControl>},
    {ArchiveTags::kJobNote, MakeJobNote},
    {ArchiveTags::kPopup, MakePopup},
    {ArchiveTags::kRange.kind, Make<PPDXRangeControl>},
    {ArchiveTags::kFloatRange.kind, Make<PPDXFloatRangeControl>},
    {ArchiveTags::kSpecialOption, Make<PPDXSpecialOption>},
};

// Null for a record of no kind, and for one whose kind can't be found out.
PPDXControl* ControlFromRecord(Settings& settings, long id, UIConstraints* constraints,
                               Arena* arena) {
    for (ArchivedKind const& kind : kArchivedKinds) {
        short const status = ControlRecord(settings, id).Look(kind.tag);
        if (status == 0) {
            return kind.make(settings, id, constraints, arena);
        }
        if (status != collectionItemNotFoundErr) {
            return nullptr;
        }
    }
    return nullptr;
}

template <typename Class>
bool Is(PPDXControl* control) {
    return dynamic_cast<Class*>(control) != nullptr;
}

PPDXControl* ControlAt(PointerListItr const& position) {
    return static_cast<PPDXControl*>(*position);
}

bool KeywordContains(PPDXControl const* control, char const* text) {
    return control->Keyword() != nullptr && std::strstr(control->Keyword(), text) != nullptr;
}

}  // namespace

PPDXControls::PPDXControls(Settings& settings, UIConstraints* constraints, Arena* arena) {
    std::int32_t count = 0;
    ControlRecord(settings, kRecords.countID).Read(kRecords.countTag, count);
    // A damaged count can't ask for more records than there are entries.
    long const end = kRecords.firstID + std::min<long>(count, settings.Count());
    for (long id = kRecords.firstID; id < end; ++id) {
        Add(ControlFromRecord(settings, id, constraints, arena));
    }
}

PPDXControls::Kind PPDXControls::KindOf(PPDXControl* control) {
    struct KindTest {
        CNTL_TYPE type;
        Kind kind;
        bool (*fits)(PPDXControl*);
    };
    constexpr KindTest kKindTests[] = {
        {kJobNoteType, kJobNotes, Is<PPDXJobNote>},
        {kBooleanType, kBooleans, Is<PPDXBooleanControl>},
        {kPopupType, kPopups, Is<PPDXPopupControl>},
        {kRangeType, kRanges, Is<PPDXRangeControl>},
        {kFloatRangeType, kFloatRanges, Is<PPDXFloatRangeControl>},
        {kCustomPageSizeType, kCustomPageSizes, Is<PPDXCustomPageSizeControl>},
        {kSpecialOptionType, kSpecialOptions, Is<PPDXSpecialOption>},
    };
    auto const* const test = std::ranges::find(kKindTests, control->Type(), &KindTest::type);
    return test != std::end(kKindTests) && test->fits(control) ? test->kind : kKindCount;
}

bool PPDXControls::Add(PPDXControl* control) {
    if (control == nullptr) {
        return false;
    }
    Kind const kind = KindOf(control);
    PointerList* const lists[] = {&mAll, kind != kKindCount ? &mKinds[kind].mList : nullptr};
    std::size_t added = 0;
    try {
        for (; added != std::size(lists) && lists[added] != nullptr; ++added) {
            lists[added]->PushBack(control, mNodes);
        }
        mIndex.Add(control);
    } catch (std::bad_alloc const&) {
        while (added != 0) {
            lists[--added]->PopBack();
        }
        return false;
    }
    if (kind != kKindCount) {
        Increment(control, mKinds[kind].mCounts);
    }
    return true;
}

void PPDXControls::Increment(PPDXControl* control, CountArray& counts) {
    bool const hidden = !control->IsVisible();
    counts.mTotal += 1;
    counts.mOrphans += control->IsOrphan();
    counts.mHidden += hidden;
    counts.mHiddenOrphans += control->IsOrphan() && hidden;
}

std::int32_t PPDXControls::Count(CountArray const& counts) {
    switch (DisplayOptions::Options()) {
        case kDisplayPlacedAndVisible:
            return counts.mTotal - counts.mOrphans - counts.mHidden + counts.mHiddenOrphans;
        case kDisplayOrphans:
            return counts.mTotal - counts.mHidden;
        case kDisplayHidden:
            return counts.mTotal - counts.mOrphans;
        case kDisplayAll:
            return counts.mTotal;
    }
    return 0;
}

std::int32_t PPDXControls::JobNoteCount() const {
    DisplayOptionsScope const orphans(kDisplayOrphans);
    return Count(mKinds[kJobNotes].mCounts);
}

std::int32_t PPDXControls::SpecialOptionsCount() const {
    DisplayOptionsScope const all(kDisplayAll);
    return Count(mKinds[kSpecialOptions].mCounts);
}

std::int32_t PPDXControls::ControlCount() const {
    return PopupCount() + BooleanCount() + RangeCount() + FloatRangeCount() + JobNoteCount() +
           CustomPageSizeCount();
}

bool PPDXControls::Empty() const {
    return NoPopups() && NoBooleanControls() && NoRangeControls() && NoFloatRangeControls() &&
           NoJobNotes();
}

PPDXControl* PPDXControls::Displayed(CNTL_TYPE& type) {
    for (; PPDXControl* const control = ControlAt(mCursor); ++mCursor) {
        if (!control->OkayToDisplay(DisplayOptions::Options())) {
            continue;
        }
        type = control->Type();
        return control;
    }
    return nullptr;
}

PPDXControl* PPDXControls::First(CNTL_TYPE& type) {
    mCursor = mAll.Begin();
    return Displayed(type);
}

PPDXControl* PPDXControls::Next(CNTL_TYPE& type) {
    ++mCursor;
    return Displayed(type);
}

PPDXControl* PPDXControls::FirstOf(Kind kind) {
    mKinds[kind].mCursor = mKinds[kind].mList.Begin();
    return ControlAt(mKinds[kind].mCursor);
}

PPDXControl* PPDXControls::NextOf(Kind kind) {
    return ControlAt(++mKinds[kind].mCursor);
}

PPDXPopupControl* PPDXControls::FirstPopupControl() {
    return static_cast<PPDXPopupControl*>(FirstOf(kPopups));
}

PPDXPopupControl* PPDXControls::NextPopupControl() {
    return static_cast<PPDXPopupControl*>(NextOf(kPopups));
}

PPDXBooleanControl* PPDXControls::FirstBooleanControl() {
    return static_cast<PPDXBooleanControl*>(FirstOf(kBooleans));
}

PPDXBooleanControl* PPDXControls::NextBooleanControl() {
    return static_cast<PPDXBooleanControl*>(NextOf(kBooleans));
}

PPDXRangeControl* PPDXControls::FirstRangeControl() {
    return static_cast<PPDXRangeControl*>(FirstOf(kRanges));
}

PPDXRangeControl* PPDXControls::NextRangeControl() {
    return static_cast<PPDXRangeControl*>(NextOf(kRanges));
}

PPDXFloatRangeControl* PPDXControls::FirstFloatRangeControl() {
    return static_cast<PPDXFloatRangeControl*>(FirstOf(kFloatRanges));
}

PPDXFloatRangeControl* PPDXControls::NextFloatRangeControl() {
    return static_cast<PPDXFloatRangeControl*>(NextOf(kFloatRanges));
}

PPDXJobNote* PPDXControls::FirstJobNote() {
    return static_cast<PPDXJobNote*>(FirstOf(kJobNotes));
}

PPDXJobNote* PPDXControls::NextJobNote() {
    return static_cast<PPDXJobNote*>(NextOf(kJobNotes));
}

PPDXSpecialOption* PPDXControls::FirstSpecialOption() {
    DisplayOptions::Options(kDisplayOrphans);
    return static_cast<PPDXSpecialOption*>(FirstOf(kSpecialOptions));
}

PPDXSpecialOption* PPDXControls::NextSpecialOption() {
    return static_cast<PPDXSpecialOption*>(NextOf(kSpecialOptions));
}

template <typename Accepts>
PPDXControl* PPDXControls::FirstMatch(PointerList& list, char const* keyword, bool exact,
                                      Accepts accepts) {
    if (exact) {
        return mIndex.First(keyword, accepts);
    }
    for (PointerListItr it = list.Begin(); PPDXControl* const control = ControlAt(it); ++it) {
        if (KeywordContains(control, keyword) && accepts(control)) {
            return control;
        }
    }
    return nullptr;
}

PPDXControl* PPDXControls::Find(char const* keyword, CNTL_TYPE& type, bool const& exact) {
    if (keyword == nullptr) {
        return nullptr;
    }
    PPDXControl* const control = FirstMatch(mAll, keyword, exact, [](PPDXControl* candidate) {
        return candidate->OkayToDisplay(DisplayOptions::Options());
    });
    if (control != nullptr) {
        type = control->Type();
    }
    return control;
}

PPDXControl* PPDXControls::FindOf(Kind kind, char const* keyword, bool exact) {
    if (keyword == nullptr) {
        return nullptr;
    }
    return FirstMatch(mKinds[kind].mList, keyword, exact,
                      [kind](PPDXControl* candidate) { return KindOf(candidate) == kind; });
}

PPDXPopupControl* PPDXControls::FindPopup(char const* keyword, bool const& exact) {
    return static_cast<PPDXPopupControl*>(FindOf(kPopups, keyword, exact));
}

PPDXBooleanControl* PPDXControls::FindBoolean(char const* keyword, bool const& exact) {
    return static_cast<PPDXBooleanControl*>(FindOf(kBooleans, keyword, exact));
}

PPDXRangeControl* PPDXControls::FindRangeControl(char const* keyword, bool const& exact) {
    return static_cast<PPDXRangeControl*>(FindOf(kRanges, keyword, exact));
}

PPDXFloatRangeControl* PPDXControls::FindFloatRangeControl(char const* keyword, bool const& exact) {
    return static_cast<PPDXFloatRangeControl*>(FindOf(kFloatRanges, keyword, exact));
}

PPDXJobNote* PPDXControls::FindJobNote(char const* keyword, bool const& exact) {
    return static_cast<PPDXJobNote*>(FindOf(kJobNotes, keyword, exact));
}

PPDXSpecialOption* PPDXControls::FindSpecialOption(char const* keyword, bool const& exact) {
    if (keyword == nullptr) {
        return nullptr;
    }
    DisplayOptions::Options(kDisplayOrphans);
    return static_cast<PPDXSpecialOption*>(FindOf(kSpecialOptions, keyword, exact));
}

short PPDXControls::Save(Settings& settings) {
    ControlRecord counts(settings, kRecords.countID);
    counts.AddNumber(kRecords.countTag, static_cast<std::int32_t>(mAll.Size()));
    short status = counts.Status();
    long id = kRecords.firstID;
    CNTL_TYPE type = kControlType;
    for (PPDXControl* control = First(type); control != nullptr && status == 0;
         control = Next(type))
        status = control->Save(settings, id++);
    return status;
}

short PPDXControls::Restore(Settings& settings) {
    short status = 0;
    long id = kRecords.firstID;
    CNTL_TYPE type = kControlType;
    for (PPDXControl* control = First(type); control != nullptr && status == 0;
         control = Next(type))
        status = control->Restore(settings, id++);
    return status;
}

PPDXControl* Find(PPDXControls* controls, char const* keyword, CNTL_TYPE& type, bool const& exact) {
    return controls != nullptr ? controls->Find(keyword, type, exact) : nullptr;
}

PPDXControl* GetFirst(PPDXControls* controls, CNTL_TYPE& type) {
    return controls != nullptr ? controls->First(type) : nullptr;
}

PPDXControl* GetNext(PPDXControls* controls, CNTL_TYPE& type) {
    return controls != nullptr ? controls->Next(type) : nullptr;
}

PPDXPopupControl* GetFirstPopupControl(PPDXControls* controls) {
    return controls != nullptr ? controls->FirstPopupControl() : nullptr;
}

PPDXPopupControl* GetNextPopupControl(PPDXControls* controls) {
    return controls != nullptr ? controls->NextPopupControl() : nullptr;
}

PPDXPopupControl* GetFindPopup(PPDXControls* controls, char const* keyword, bool const& exact) {
    return controls != nullptr ? controls->FindPopup(keyword, exact) : nullptr;
}

PPDXBooleanControl* GetFirstBooleanControl(PPDXControls* controls) {
    return controls != nullptr ? controls->FirstBooleanControl() : nullptr;
}

PPDXBooleanControl* GetNextBooleanControl(PPDXControls* controls) {
    return controls != nullptr ? controls->NextBooleanControl() : nullptr;
}

PPDXBooleanControl* GetFindBoolean(PPDXControls* controls, char const* keyword, bool const& exact) {
    return controls != nullptr ? controls->FindBoolean(keyword, exact) : nullptr;
}

PPDXRangeControl* GetFirstRangeControl(PPDXControls* controls) {
    return controls != nullptr ? controls->FirstRangeControl() : nullptr;
}

PPDXRangeControl* GetNextRangeControl(PPDXControls* controls) {
    return controls != nullptr ? controls->NextRangeControl() : nullptr;
}

PPDXRangeControl* GetFindRangeControl(PPDXControls* controls, char const* keyword,
                                      bool const& exact) {
    return controls != nullptr ? controls->FindRangeControl(keyword, exact) : nullptr;
}

PPDXFloatRangeControl* GetFirstFloatRangeControl(PPDXControls* controls) {
    return controls != nullptr ? controls->FirstFloatRangeControl() : nullptr;
}

PPDXFloatRangeControl* GetNextFloatRangeControl(PPDXControls* controls) {
    return controls != nullptr ? controls->NextFloatRangeControl() : nullptr;
}

PPDXFloatRangeControl* GetFindFloatRangeControl(PPDXControls* controls, char const* keyword,
                                                bool const& exact) {
    return controls != nullptr ? controls->FindFloatRangeControl(keyword, exact) : nullptr;
}

PPDXJobNote* GetFirstJobNote(PPDXControls* controls) {
    return controls != nullptr ? controls->FirstJobNote() : nullptr;
}

PPDXJobNote* GetNextJobNote(PPDXControls* controls) {
    return controls != nullptr ? controls->NextJobNote() : nullptr;
}

PPDXJobNote* GetFindJobNote(PPDXControls* controls, char const* keyword, bool const& exact) {
    return controls != nullptr ? controls->FindJobNote(keyword, exact) : nullptr;
}

std::int32_t GetPopupCount(PPDXControls* controls) {
    return controls != nullptr ? controls->PopupCount() : 0;
}

std::int32_t GetBooleanCount(PPDXControls* controls) {
    return controls != nullptr ? controls->BooleanCount() : 0;
}

std::int32_t GetRangeCount(PPDXControls* controls) {
    return controls != nullptr ? controls->RangeCount() : 0;
}

std::int32_t GetFloatRangeCount(PPDXControls* controls) {
    return controls != nullptr ? controls->FloatRangeCount() : 0;
}

std::int32_t GetJobnoteCount(PPDXControls* controls) {
    return controls != nullptr ? controls->JobNoteCount() : 0;
}

std::int32_t GetControlCount(PPDXControls* controls) {
    return controls != nullptr ? controls->ControlCount() : 0;
}

bool GetNoPopups(PPDXControls* controls) {
    return controls == nullptr || controls->NoPopups();
}

bool GetNoBooleanControls(PPDXControls* controls) {
    return controls == nullptr || controls->NoBooleanControls();
}

bool GetNoRangeControls(PPDXControls* controls) {
    return controls == nullptr || controls->NoRangeControls();
}

bool GetNoFloatRangeControls(PPDXControls* controls) {
    return controls == nullptr || controls->NoFloatRangeControls();
}

bool GetNoJobNotes(PPDXControls* controls) {
    return controls == nullptr || controls->NoJobNotes();
}

bool GetEmpty(PPDXControls* controls) {
    return controls == nullptr || controls->Empty();
}
