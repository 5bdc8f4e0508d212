// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ZUBUtils/PPDUtils/CError.h"
#include "ZUBUtils/PPDUtils/CString.h"

// A problem that the reader met: its code, its text for people, whether it ends the parse, and the
// keyword at fault.
class PPDXErrorObj : public CError {
  public:
    PPDXErrorObj() = default;
    // The description is the code's text; empty for a code without one.
    PPDXErrorObj(short const& code, CString const& keyword, bool const& fatal);
    PPDXErrorObj(short const& code, bool const& fatal);

    char const* Keyword() const;  // null when empty

    // How many bytes of the file had been read when the line at fault had been, its end included;
    // -1 for an error that is none of a line.
    long Place() const { return mPlace; }
    void SetPlace(long place) { mPlace = place; }

  private:
    CString mKeyword;
    long mPlace = -1;
};

extern "C" {
char const* GetErrorKeyword(PPDXErrorObj* error);
char const* GetErrorDescription(PPDXErrorObj* error);
bool IsErrorFatal(PPDXErrorObj* error);
}
