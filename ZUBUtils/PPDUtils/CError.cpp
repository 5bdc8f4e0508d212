// SPDX-License-Identifier: Apache-2.0
#include "ZUBUtils/PPDUtils/CError.h"

CError::CError(short const& code, CString const& description, bool const& fatal)
    : mCode(code), mDescription(description), mFatal(fatal) {}

char const* CError::Description() const {
    return mDescription.Empty() ? nullptr : mDescription.GetCharData();
}

void CError::Description(char const* text) {
    mDescription = text;
}
