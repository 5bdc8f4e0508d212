// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "VelonFeatures/Project/Core/ZUBWatermark.h"

// Whether a job can have it: its font has a name that can stand in PostScript, and a size.
bool CanBePrinted(ZUBWatermark const& mark);

// The watermarks of a printer, which the list owns, and what the job chooses among them.
class WatermarkList {
  public:
    static constexpr std::int32_t kMaximumCount = 99;

    std::int32_t Count() const { return static_cast<std::int32_t>(mWatermarks.size()); }
    ZUBWatermark* At(std::int32_t index) const;  // borrowed; null where there is none
    // Makes as many as there is room for in the place of what is there; the choice stays. Throws
    // std::bad_alloc, with the list as it was.
    void Replace(std::vector<std::string> const& records);

    // What is selected, whether or not the list has one of that number; -1 for none.
    std::int32_t SelectedIndex() const { return mSelected; }
    void Select(std::int32_t index) { mSelected = index; }
    // Null when none is selected, and for a selection beyond the list.
    ZUBWatermark* Selected() const { return At(mSelected); }
    // As the settings had it: all that are loaded are for the first page only, unless it is 0.
    std::int32_t FirstPageOnly() const { return mFirstPageOnly; }
    void SetFirstPageOnly(std::int32_t flag) { mFirstPageOnly = flag; }
    // Each on the pages that its record tells, and the flag goes.
    void TakeFirstPagesOfRecords();
    // What a job won't have of that one as its record has it, with its number; for people. Empty
    // for nothing, and for one that isn't there.
    std::string DoubtsOf(std::int32_t index) const;

    // Warns, unless this list has warned so before: each commit finds the same faults.
    void WarnOnce(std::string const& text);

  private:
    using Watermarks = std::vector<std::unique_ptr<ZUBWatermark>>;

    Watermarks mWatermarks;
    std::int32_t mSelected = -1;
    std::int32_t mFirstPageOnly = 0;
    std::set<std::string> mTold;
};
