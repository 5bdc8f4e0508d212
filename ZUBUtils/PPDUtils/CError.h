// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "ZUBUtils/PPDUtils/CString.h"

// An error as a value: a code, a text for people and whether it ends the work.
class CError {
  public:
    CError() = default;  // code 0, no description, not fatal
    CError(short const& code, CString const& description, bool const& fatal);
    CError(CError const&) = default;
    CError& operator=(CError const&) = default;

    // The code alone counts.
    bool operator==(short const& code) const { return mCode == code; }
    bool operator!=(short const& code) const { return mCode != code; }

    short Code() const { return mCode; }
    // Null when the description is empty; lives until it is replaced.
    char const* Description() const;
    void Description(char const* text);
    bool IsFatal() const { return mFatal; }

  private:
    std::int16_t mCode = 0;
    CString mDescription;
    bool mFatal = false;
};
