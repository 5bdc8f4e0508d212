// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXSpecialOption.h"

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "PPDX/PPDObjects/Controls/PPDText.h"
#include "ZUBUtils/PPDUtils/CString.h"

PPDXSpecialOption::PPDXSpecialOption() : mValue(new CString("")) {
    SetType(kSpecialOptionType);
}

PPDXSpecialOption::PPDXSpecialOption(char const* keyword, CFStringRef localName, PointerList& flags,
                                     char* value, unsigned char* code, long codeSize, bool visible)
    : PPDXControl(keyword, localName, flags, code, codeSize, visible, nullptr),
      mValue(new CString(value)) {
    SetType(kSpecialOptionType);
}

PPDXSpecialOption::PPDXSpecialOption(Settings& settings, long id)
    : PPDXControl(settings, id, nullptr),
      mValue(ControlRecord(settings, id).CopyText(ArchiveTags::kSpecialOptionValue)) {
    SetType(kSpecialOptionType);
}

PPDXSpecialOption::~PPDXSpecialOption() {
    delete mValue;
}

void PPDXSpecialOption::ReplaceValue(CString* value) {
    delete mValue;
    mValue = value;
}

short PPDXSpecialOption::Save(Settings& settings, long const& id) {
    ControlRecord record(settings, id, PPDXControl::Save(settings, id));
    record.AddMark(ArchiveTags::kSpecialOption);
    record.AddText(ArchiveTags::kSpecialOptionValue, mValue);
    return record.Status();
}

short PPDXSpecialOption::Restore(Settings& settings, long id) {
    ReplaceValue(ControlRecord(settings, id).CopyText(ArchiveTags::kSpecialOptionValue));
    return 0;
}

void PPDXSpecialOption::ResetToDefaultValue() {
    ReplaceValue(new CString(""));
}

CFStringRef PPDXSpecialOption::CopyCurrentControlValueString() {
    bool const empty = mValue == nullptr || mValue->Empty();
    return CopyPPDText(empty ? "" : mValue->GetCharData());
}
