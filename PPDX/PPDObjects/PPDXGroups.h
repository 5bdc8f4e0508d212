// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "ZUBUtils/PPDUtils/PointerList.h"
#include "ZUBUtils/PPDUtils/TextHash.h"

class PPDXGroup;
class Settings;

// A list of groups, which it doesn't own. One walk at a time: there is one cursor.
class PPDXGroups {
  public:
    PPDXGroups() = default;
    // Makes the groups of an archive, which the caller then owns. An unreadable record is left
    // out.
    explicit PPDXGroups(Settings& settings);
    PPDXGroups(PPDXGroups const&) = delete;
    PPDXGroups& operator=(PPDXGroups const&) = delete;
    virtual ~PPDXGroups() = default;

    // Counts the group by its state at this moment: its parent must be set before.
    bool Add(PPDXGroup* group);  // false, and nothing added, for null and without memory
    // The first group with this keyword, or whose keyword contains the text when `exact` is false.
    // Sees every group, and leaves the cursor alone. An exact lookup doesn't depend on the length
    // of the list; the groups must live then.
    PPDXGroup* Find(char const* keyword, bool const& exact) const;
    // Walk the groups that the display option lets through; null at the end.
    PPDXGroup* First();
    PPDXGroup* Next();
    // All added ones, plus the orphans and plus the hidden ones again if the display option admits
    // them.
    std::int32_t Count() const;
    bool Empty() const { return Count() == 0; }
    // Writes the count and the groups that a walk yields. The archive's first error, 0 for none.
    short Save(Settings& settings);

  private:
    PPDXGroup* Displayed();  // from the cursor on

    PointerList mList;
    // The first group of each keyword, which is the group's own.
    std::unordered_map<std::string_view, PPDXGroup*, TextHash> mByKeyword;
    PointerListItr mCursor;
    std::int32_t mCount = 0;
    std::int32_t mOrphans = 0;
    std::int32_t mHidden = 0;
};

extern "C" {
PPDXGroup* FirstGroup(PPDXGroups* groups);
PPDXGroup* NextGroup(PPDXGroups* groups);
PPDXGroup* FindGroup(PPDXGroups* groups, char const* keyword, bool const& exact);
std::int32_t GroupCount(PPDXGroups* groups);
bool IsGrouPointerListEmpty(PPDXGroups* groups);  // false for a null handle
}
