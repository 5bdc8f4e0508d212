// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/WatermarkList.h"

#include <algorithm>
#include <utility>

#include "VelonFeatures/Project/Core/Warning.h"

ZUBWatermark* WatermarkList::At(std::int32_t index) const {
    return index >= 0 && index < Count() ? mWatermarks[static_cast<std::size_t>(index)].get()
                                         : nullptr;
}

void WatermarkList::Replace(Watermarks watermarks) {
    watermarks.resize(std::min<std::size_t>(watermarks.size(), kMaximumCount));
    mWatermarks = std::move(watermarks);
}

void WatermarkList::WarnOnce(std::string const& text) {
    if (mTold.insert(text).second) {
        Warn(text);
    }
}
