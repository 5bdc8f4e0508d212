// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDXErrors.h"

#include "PPDX/PPDObjects/PPDXErrorObj.h"

bool PPDXErrors::Add(PPDXErrorObj* error) {
    return error != nullptr && mList.PushBack(error);
}

PPDXErrorObj* PPDXErrors::First() {
    mCursor = mList.Begin();
    return static_cast<PPDXErrorObj*>(*mCursor);
}

PPDXErrorObj* PPDXErrors::Next() {
    return static_cast<PPDXErrorObj*>(*++mCursor);
}

std::int32_t PPDXErrors::Count() const {
    return static_cast<std::int32_t>(mList.Size());
}

PPDXErrorObj* FirstError(PPDXErrors* errors) {
    return errors == nullptr ? nullptr : errors->First();
}

PPDXErrorObj* NextError(PPDXErrors* errors) {
    return errors == nullptr ? nullptr : errors->Next();
}

std::int32_t ErrorCount(PPDXErrors* errors) {
    return errors == nullptr ? 0 : errors->Count();
}

bool ErrorListIsEmpty(PPDXErrors* errors) {
    return errors != nullptr && errors->Empty();
}
