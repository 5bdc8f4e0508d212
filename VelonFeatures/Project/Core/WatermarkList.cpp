// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/WatermarkList.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "VelonFeatures/Project/Core/Warning.h"
#include "VelonFeatures/Project/Core/WatermarkDoubts.h"

bool CanBePrinted(ZUBWatermark const& mark) {
    return IsFontName(mark.Font()) && !mark.IsFontCut() && mark.FontSize() != 0;
}

ZUBWatermark* WatermarkList::At(std::int32_t index) const {
    return index >= 0 && index < Count() ? mWatermarks[static_cast<std::size_t>(index)].get()
                                         : nullptr;
}

void WatermarkList::Replace(std::vector<std::string> const& records) {
    auto const count = std::min<std::size_t>(records.size(), kMaximumCount);
    Watermarks watermarks;
    for (std::size_t i = 0; i < count; ++i) {
        watermarks.push_back(std::make_unique<ZUBWatermark>(records[i].c_str()));
    }
    mWatermarks = std::move(watermarks);
}

void WatermarkList::TakeFirstPagesOfRecords() {
    mFirstPageOnly = 0;
    for (auto const& watermark : mWatermarks) {
        watermark->TakeFirstPageOfRecord();
    }
}

std::string WatermarkList::DoubtsOf(std::int32_t index) const {
    ZUBWatermark const* const mark = At(index);
    std::string const doubts =
        mark == nullptr ? "" : WatermarkDoubts(WatermarkFields(mark->Record()));
    return doubts.empty() ? ""
                          : "watermark " + std::to_string(index) +
                                (CanBePrinted(*mark) ? ": " : " is left out: ") + doubts;
}

void WatermarkList::WarnOnce(std::string const& text) {
    if (mTold.insert(text).second) {
        Warn(text);
    }
}
