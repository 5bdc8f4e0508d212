// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "ZUBUtils/PPDUtils/PointerList.h"

class PPDXErrorObj;

// A list of errors, which it doesn't own. One walk at a time.
class PPDXErrors {
  public:
    PPDXErrors() = default;
    PPDXErrors(PPDXErrors const&) = delete;
    PPDXErrors& operator=(PPDXErrors const&) = delete;
    virtual ~PPDXErrors() = default;

    bool Add(PPDXErrorObj* error);  // false, and nothing added, for null and without memory
    PPDXErrorObj* First();
    PPDXErrorObj* Next();
    std::int32_t Count() const;
    bool Empty() const { return mList.Empty(); }

  private:
    PointerList mList;
    PointerListItr mCursor;
};

extern "C" {
PPDXErrorObj* FirstError(PPDXErrors* errors);
PPDXErrorObj* NextError(PPDXErrors* errors);
std::int32_t ErrorCount(PPDXErrors* errors);
bool ErrorListIsEmpty(PPDXErrors* errors);  // false for a null handle
}
