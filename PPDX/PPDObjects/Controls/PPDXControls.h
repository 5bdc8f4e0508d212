// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "PPDX/PPDObjects/Controls/CountArray.h"
#include "PPDX/PPDObjects/Controls/KeywordIndex.h"
#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "ZUBUtils/PPDUtils/Arena.h"
#include "ZUBUtils/PPDUtils/PointerList.h"

class Arena;
class PPDXBooleanControl;
class PPDXFloatRangeControl;
class PPDXJobNote;
class PPDXPopupControl;
class PPDXRangeControl;
class PPDXSpecialOption;
class Settings;
class UIConstraints;

// A list of controls, which it doesn't own, in the order of Add: one for the whole PPD and one for
// each roll-down. The controls must outlive its use, not the list itself.
//
// First, Next and Find see only what the process's display option lets through; walks and lookups
// of one kind see every control of that kind. Each kind has one walk, and so has the whole list.
// Looking up leaves all walks where they are.
class PPDXControls {
  public:
    PPDXControls() = default;
    // Makes the controls of an archive, which the caller then owns. A record of no known kind is
    // left out; the records behind it keep their places.
    // See PPDXPopupControl for the arena.
    PPDXControls(Settings& settings, UIConstraints* constraints, Arena* arena = nullptr);
    PPDXControls(PPDXControls const&) = delete;
    PPDXControls& operator=(PPDXControls const&) = delete;
    virtual ~PPDXControls() = default;

    // Null is ignored, a duplicate isn't. Counts the control by its state at this moment: its
    // parent must be set before.
    bool Add(PPDXControl* control);  // false, and nothing added, for null and without memory

    // Null at the end; `type` then stays as it was.
    PPDXControl* First(CNTL_TYPE& type);
    PPDXControl* Next(CNTL_TYPE& type);
    PPDXPopupControl* FirstPopupControl();
    PPDXPopupControl* NextPopupControl();
    PPDXBooleanControl* FirstBooleanControl();
    PPDXBooleanControl* NextBooleanControl();
    PPDXRangeControl* FirstRangeControl();
    PPDXRangeControl* NextRangeControl();
    PPDXFloatRangeControl* FirstFloatRangeControl();
    PPDXFloatRangeControl* NextFloatRangeControl();
    PPDXJobNote* FirstJobNote();
    PPDXJobNote* NextJobNote();
    // Leaves the process's display option at 1: what walks next sees orphans. So does a
    // FindSpecialOption that searches.
    PPDXSpecialOption* FirstSpecialOption();
    PPDXSpecialOption* NextSpecialOption();

    // The first control of this keyword, or whose keyword contains the text when `exact` is false.
    // Null, with `type` as it was, when there is none and for a null keyword. An exact lookup
    // doesn't depend on the length of the list.
    PPDXControl* Find(char const* keyword, CNTL_TYPE& type, bool const& exact);
    PPDXPopupControl* FindPopup(char const* keyword, bool const& exact);
    PPDXBooleanControl* FindBoolean(char const* keyword, bool const& exact);
    PPDXRangeControl* FindRangeControl(char const* keyword, bool const& exact);
    PPDXFloatRangeControl* FindFloatRangeControl(char const* keyword, bool const& exact);
    PPDXJobNote* FindJobNote(char const* keyword, bool const& exact);
    PPDXSpecialOption* FindSpecialOption(char const* keyword, bool const& exact);

    // Controls of a kind that the display option lets through; 0 for an option that isn't one.
    std::int32_t PopupCount() const { return Count(mKinds[kPopups].mCounts); }
    std::int32_t BooleanCount() const { return Count(mKinds[kBooleans].mCounts); }
    std::int32_t RangeCount() const { return Count(mKinds[kRanges].mCounts); }
    std::int32_t FloatRangeCount() const { return Count(mKinds[kFloatRanges].mCounts); }
    std::int32_t CustomPageSizeCount() const { return Count(mKinds[kCustomPageSizes].mCounts); }
    std::int32_t JobNoteCount() const;         // the visible ones, whatever the display option
    std::int32_t SpecialOptionsCount() const;  // all of them, whatever the display option
    std::int32_t ControlCount() const;         // all kinds but special options
    bool NoPopups() const { return PopupCount() == 0; }
    bool NoBooleanControls() const { return BooleanCount() == 0; }
    bool NoRangeControls() const { return RangeCount() == 0; }
    bool NoFloatRangeControls() const { return FloatRangeCount() == 0; }
    bool NoJobNotes() const { return JobNoteCount() == 0; }
    bool NoSpecialOptions() const { return SpecialOptionsCount() == 0; }
    // Whether ControlCount() is 0 without the custom page sizes.
    bool Empty() const;
    static std::int32_t Count(CountArray const& counts);
    static void Increment(PPDXControl* control, CountArray& counts);

    // Write and read back the controls that a walk yields, in its order, with record ids that
    // count up; reading back needs the same controls under the same display option. The first
    // error ends it and is the result, 0 for none.
    short Save(Settings& settings);
    short Restore(Settings& settings);

  private:
    enum Kind : std::size_t {
        kPopups,
        kBooleans,
        kRanges,
        kFloatRanges,
        kJobNotes,
        kSpecialOptions,
        kCustomPageSizes,
        kKindCount
    };
    struct KindList {
        PointerList mList;
        PointerListItr mCursor;
        CountArray mCounts;
    };

    static Kind KindOf(PPDXControl* control);  // kKindCount for none of them
    PPDXControl* Displayed(CNTL_TYPE& type);   // from the cursor on
    PPDXControl* FirstOf(Kind kind);
    PPDXControl* NextOf(Kind kind);
    PPDXControl* FindOf(Kind kind, char const* keyword, bool exact);
    template <typename Accepts>
    PPDXControl* FirstMatch(PointerList& list, char const* keyword, bool exact, Accepts accepts);

    Arena mNodes;  // of all lists
    PointerList mAll;
    PointerListItr mCursor;
    std::array<KindList, kKindCount> mKinds;
    KeywordIndex mIndex;  // of mAll
};

// The same for callers that hold an opaque handle; a null handle gives null or 0, and true for
// GetNo... and GetEmpty.
extern "C" {
PPDXControl* Find(PPDXControls* controls, char const* keyword, CNTL_TYPE& type, bool const& exact);
PPDXControl* GetFirst(PPDXControls* controls, CNTL_TYPE& type);
PPDXControl* GetNext(PPDXControls* controls, CNTL_TYPE& type);
PPDXPopupControl* GetFirstPopupControl(PPDXControls* controls);
PPDXPopupControl* GetNextPopupControl(PPDXControls* controls);
PPDXPopupControl* GetFindPopup(PPDXControls* controls, char const* keyword, bool const& exact);
PPDXBooleanControl* GetFirstBooleanControl(PPDXControls* controls);
PPDXBooleanControl* GetNextBooleanControl(PPDXControls* controls);
PPDXBooleanControl* GetFindBoolean(PPDXControls* controls, char const* keyword, bool const& exact);
PPDXRangeControl* GetFirstRangeControl(PPDXControls* controls);
PPDXRangeControl* GetNextRangeControl(PPDXControls* controls);
PPDXRangeControl* GetFindRangeControl(PPDXControls* controls, char const* keyword,
                                      bool const& exact);
PPDXFloatRangeControl* GetFirstFloatRangeControl(PPDXControls* controls);
PPDXFloatRangeControl* GetNextFloatRangeControl(PPDXControls* controls);
PPDXFloatRangeControl* GetFindFloatRangeControl(PPDXControls* controls, char const* keyword,
                                                bool const& exact);
PPDXJobNote* GetFirstJobNote(PPDXControls* controls);
PPDXJobNote* GetNextJobNote(PPDXControls* controls);
PPDXJobNote* GetFindJobNote(PPDXControls* controls, char const* keyword, bool const& exact);
std::int32_t GetPopupCount(PPDXControls* controls);
std::int32_t GetBooleanCount(PPDXControls* controls);
std::int32_t GetRangeCount(PPDXControls* controls);
std::int32_t GetFloatRangeCount(PPDXControls* controls);
std::int32_t GetJobnoteCount(PPDXControls* controls);
std::int32_t GetControlCount(PPDXControls* controls);
bool GetNoPopups(PPDXControls* controls);
bool GetNoBooleanControls(PPDXControls* controls);
bool GetNoRangeControls(PPDXControls* controls);
bool GetNoFloatRangeControls(PPDXControls* controls);
bool GetNoJobNotes(PPDXControls* controls);
bool GetEmpty(PPDXControls* controls);
}
