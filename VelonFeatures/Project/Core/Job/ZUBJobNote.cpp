// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/ZUBJobNote.h"

#include <algorithm>
#include <cstring>

#include "PPDX/PPDObjects/Controls/PPDXJobNote.h"
#include "VelonFeatures/Project/Core/ControlLookup.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/SessionGlobals.h"
#include "ZUBUtils/PPDUtils/StringUtils.h"

namespace {

constexpr long kDigitsOfRangeValue = 2;

std::size_t TakeText(char const* text, char* out) {
    std::string_view const view(text == nullptr ? "" : text);
    if (out != nullptr) {
        std::copy_n(view.data(), view.size(), out);
        out[view.size()] = '\0';
    }
    return view.empty() ? 0 : view.size() + 1;
}

}  // namespace

NoteCipherChoice CipherChoiceOf(ZUBPPD* ppd, bool hasAESFlag) {
    return {
        .specialAlgorithm = SpecialOptionText(ppd, "*UseSpecialAlgorithm"),
        .specialKey = SpecialOptionText(ppd, "*UseSpecialKey"),
        .hasAESFlag = hasAESFlag,
    };
}

ZUBJobNote::ZUBJobNote(PPDXJobNote* control, bool flag, ZUBPPD* ppd)
    : mControl(control), mNotesOn(flag || control->GetNotesOnValue()), mPPD(ppd) {
    if (gPDEData != nullptr) {
        gPDEData->SetInNoteOutput(!flag);
    }
    control->SetNotesOnValue(mNotesOn);
}

bool ZUBJobNote::specialKeyword(short* row) const {
    char const* const keyword = mControl->Keyword();
    std::string_view const text(keyword == nullptr ? "" : keyword);
    auto const found =
        std::find_if(gKeywordMap.begin(), gKeywordMap.end(),
                     [text](NoteKeyword const& entry) { return text == entry.keyword; });
    bool const isSpecial = found != gKeywordMap.end();
    *row = isSpecial ? static_cast<short>(found - gKeywordMap.begin()) : kNoKeywordRow;
    return isSpecial;
}

std::size_t ZUBJobNote::getUserData(char* out) const {
    return TakeText(mControl->GetNotes(), out);
}

std::size_t ZUBJobNote::getTitle(char* out) const {
    return TakeText(mControl->UserName(), out);
}

bool ZUBJobNote::checkRangeValues(char const* text) const {
    return mControl->IsTwoCharFields() == 0 || validateRangeValues(text, kDigitsOfRangeValue);
}

bool ZUBJobNote::encryptNote(char const* in, WipedText& out) const {
    out.Clear();
    if (mPPD == nullptr) {
        return false;
    }
    char digits[kNoteDigitsSize];
    if (!EncipherNote(in, CipherChoiceOf(mPPD, mControl->IsAESEncrypt() != 0), digits)) {
        return false;
    }
    out.Append(NoteDigits(digits));
    return true;
}
