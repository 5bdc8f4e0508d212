// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ZUBUtils/PPDUtils/PointerList.h"

class PPDXControl;
class PPDXControls;
class Settings;

// The PPD's short list of controls for quick access, in the order of the file. Owns none of them;
// they must outlive its use.
//
// The walk begins at the first popup, then passes popups, job notes and booleans: what stands
// ahead of the first popup takes no part in it, nor in what builds on it.
class PPDXShortcuts {
  public:
    explicit PPDXShortcuts(PointerList& controls);  // copies the list
    // Looks the archive's keywords up, exactly and under the present display option. One that
    // `registry` doesn't have leaves a null entry. Empty when `registry` is null.
    PPDXShortcuts(Settings& settings, PPDXControls* registry);
    PPDXShortcuts(PPDXShortcuts const&) = delete;
    PPDXShortcuts& operator=(PPDXShortcuts const&) = delete;
    virtual ~PPDXShortcuts() = default;

    long Count() const { return static_cast<long>(mControls.Size()); }  // null entries counted
    bool Empty() const { return mControls.Empty(); }
    PPDXControl* First(bool unused);  // null at the end
    PPDXControl* Next();
    // The first member of the walk with this keyword, or whose keyword contains the text when
    // `exact` is false. Moves the walk. Null for a null keyword.
    PPDXControl* Find(char const* keyword, bool const& exact);
    // Writes the count and the keywords of the walk. The archive's first error, 0 for none.
    short Save(Settings& settings);

    PPDXControl* PageSize() { return Find("*PageSize", true); }
    PPDXControl* InputSlot() { return Find("*InputSlot", true); }
    PPDXControl* Duplex() { return Find("*ZUDuplex", true); }
    PPDXControl* Orientation() { return Find("*ZU_PAPER_ORIENTATION", true); }
    // No PPD has a shortcut of these two.
    PPDXControl* MediaSource() { return nullptr; }
    PPDXControl* Chromvale() { return nullptr; }

  private:
    PPDXControl* Walked(bool (*accepts)(PPDXControl*));  // from the cursor on

    PointerList mControls;  // PPDXControl*, not owned, may be null
    PointerListItr mCursor;
};

// The same for callers that hold an opaque handle; a null handle gives null, 0 or true.
extern "C" {
PPDXControl* FindShortcut(PPDXShortcuts* shortcuts, char const* keyword, bool const& exact);
PPDXControl* FirstShortcut(PPDXShortcuts* shortcuts);
PPDXControl* NextShortcut(PPDXShortcuts* shortcuts);
long GetShortcutCount(PPDXShortcuts* shortcuts);
bool IsShortcutsListEmpty(PPDXShortcuts* shortcuts);
PPDXControl* GetInputSlotShortcut(PPDXShortcuts* shortcuts);
PPDXControl* GetDuplexShortcut(PPDXShortcuts* shortcuts);
PPDXControl* GetPageSizeShortcut(PPDXShortcuts* shortcuts);
PPDXControl* GetMediaSourceShortcut(PPDXShortcuts* shortcuts);
PPDXControl* GetOrientationShortcut(PPDXShortcuts* shortcuts);
PPDXControl* GetChromvaleShortcut(PPDXShortcuts* shortcuts);
}
