// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

#include "ZUBUtils/PPDUtils/PointerList.h"
#include "ZUBUtils/PPDUtils/TextHash.h"

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

    bool Add(PPDXProperty* property);  // false, and nothing added, for null and without memory
    // The first page with this keyword, or whose keyword contains the text when `exact` is false.
    // Moves the cursor to it, or to the end. An exact lookup doesn't depend on the length of the
    // list; the pages must live then.
    PPDXProperty* Find(char const* keyword, bool const& exact);
    PPDXProperty* First();
    PPDXProperty* Next();
    std::int32_t Count() const;
    bool Empty() const { return mList.Empty(); }
    // Writes the count and the pages. The archive's first error, 0 for none.
    short Save(Settings& settings);

  private:
    PointerList mList;
    // Where the first page of each keyword stands; the keyword is the page's own.
    std::unordered_map<std::string_view, PointerListItr, TextHash> mByKeyword;
    PointerListItr mCursor;
};

extern "C" {
PPDXProperty* FirstProperty(PPDXProperties* properties);
PPDXProperty* NextProperty(PPDXProperties* properties);
PPDXProperty* FindProperty(PPDXProperties* properties, char const* keyword, bool const& exact);
std::int32_t PropertyCount(PPDXProperties* properties);
bool IsPropertyListEmpty(PPDXProperties* properties);  // false for a null handle
}
