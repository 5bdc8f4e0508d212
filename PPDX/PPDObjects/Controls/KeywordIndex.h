// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "ZUBUtils/PPDUtils/TextHash.h"

class PPDXControl;

// Controls by keyword, so that a lookup doesn't walk the whole PPD. Keeps copies of the keywords:
// the controls may go before the index does.
class KeywordIndex {
  public:
    void Add(PPDXControl* control);  // one without a keyword is left out
    // The controls of exactly this keyword in the order of Add. Good until the next Add.
    std::vector<PPDXControl*> const& Find(char const* keyword) const;

  private:
    std::unordered_map<std::string, std::vector<PPDXControl*>, TextHash, std::equal_to<>> mControls;
};
