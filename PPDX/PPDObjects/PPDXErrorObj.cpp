// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDXErrorObj.h"

#include "PPDX/PPDObjects/PPDXErrorTexts.h"

PPDXErrorObj::PPDXErrorObj(short const& code, CString const& keyword, bool const& fatal)
    : CError(code, ErrorTextOf(code), fatal), mKeyword(keyword) {}

PPDXErrorObj::PPDXErrorObj(short const& code, bool const& fatal)
    : CError(code, ErrorTextOf(code), fatal) {}

char const* PPDXErrorObj::Keyword() const {
    return mKeyword.Empty() ? nullptr : mKeyword.GetCharData();
}

char const* GetErrorKeyword(PPDXErrorObj* error) {
    return error == nullptr ? nullptr : error->Keyword();
}

char const* GetErrorDescription(PPDXErrorObj* error) {
    return error == nullptr ? nullptr : error->Description();
}

bool IsErrorFatal(PPDXErrorObj* error) {
    return error != nullptr && error->IsFatal();
}
