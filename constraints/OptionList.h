// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

// The options that a rule without an option means: ids in PPD order. One that the PPD lists twice
// stands twice, and then counts its rules twice.
class OptionList {
  public:
    explicit OptionList(std::vector<std::int32_t> options)
        : mOptions(std::move(options)), mSorted(mOptions) {
        std::sort(mSorted.begin(), mSorted.end());
    }

    std::vector<std::int32_t> const& Options() const { return mOptions; }
    std::vector<std::int32_t> const& Sorted() const { return mSorted; }
    // How often the option stands in it.
    long Times(long option) const {
        auto const [first, last] = std::equal_range(mSorted.begin(), mSorted.end(), option);
        return last - first;
    }

  private:
    std::vector<std::int32_t> mOptions;
    std::vector<std::int32_t> mSorted;
};
