// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "ZUBUtils/PPDUtils/PointerList.h"

class PPDXProperty;
class Settings;

// A list of property pages, which it doesn't own. One walk at a time; no display filter.
class PPDXProperties {
  public:
    PPDXProperties() = default;
    // Makes the pages of an archive, which the caller then owns.
    explicit PPDXProperties(Settings& settings);
    PPDXProperties(PPDXProperties const&) = delete;
    PPDXProperties& operator=(PPDXProperties const&) = delete;
    virtual ~PPDXProperties() = default;

    void Add(PPDXProperty* property);
    // The first page with this keyword, or whose keyword contains the text when `exact` is false.
    // Moves the cursor.
    PPDXProperty* Find(char const* keyword, bool const& exact);
    PPDXProperty* First();
    PPDXProperty* Next();
    std::int32_t Count() const;
    bool Empty() const { return mList.Empty(); }
    // Writes the count and the pages. The archive's first error, 0 for none.
    short Save(Settings& settings);

  private:
    PointerList mList;
    PointerListItr mCursor;
};

extern "C" {
PPDXProperty* FirstProperty(PPDXProperties* properties);
PPDXProperty* NextProperty(PPDXProperties* properties);
PPDXProperty* FindProperty(PPDXProperties* properties, char const* keyword, bool const& exact);
std::int32_t PropertyCount(PPDXProperties* properties);
bool IsPropertyListEmpty(PPDXProperties* properties);  // false for a null handle
}
