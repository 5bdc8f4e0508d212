// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"

#include <algorithm>
#include <cstdlib>

#include "PPDX/PPDObjects/Controls/ControlRecord.h"
#include "PPDX/PPDObjects/Controls/Numbers.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/ClampTo32Bits.h"

namespace {

std::int32_t CodeLength(unsigned char const* code, long length) {
    return code != nullptr ? std::max(ClampTo32Bits(length), 0) : 0;
}

char const* TextOf(CString const* text) {
    return text != nullptr ? text->GetCharData() : nullptr;
}

}  // namespace

PPDXBooleanControl::PPDXBooleanControl() {
    SetType(kBooleanType);
}

PPDXBooleanControl::PPDXBooleanControl(char const* keyword, CFStringRef localName,
                                       PointerList& flags, bool visible, CString* trueText,
                                       unsigned char* trueCode, long trueLength, CString* falseText,
                                       unsigned char* falseCode, long falseLength,
                                       bool defaultValue, UIConstraints* constraints)
    : PPDXControl(keyword, localName, flags, nullptr, 0, visible, constraints),
      mDefault(defaultValue),
      mTrueText(trueText),
      mFalseText(falseText),
      mTrueCode(trueCode),
      mTrueLength(CodeLength(trueCode, trueLength)),
      mFalseCode(falseCode),
      mFalseLength(CodeLength(falseCode, falseLength)) {
    SetType(kBooleanType);
    SetValue(defaultValue);
}

PPDXBooleanControl::PPDXBooleanControl(Settings& settings, long id, UIConstraints* constraints)
    : PPDXControl(settings, id, constraints) {
    SetType(kBooleanType);
    SetValue(false);
    ControlRecord const record(settings, id);
    mTrueText = record.CopyText(ArchiveTags::kTrueText);
    mFalseText = record.CopyText(ArchiveTags::kFalseText);
    record.Read(ArchiveTags::kBooleanValue, mValue);
    record.Read(ArchiveTags::kBooleanDefault, mDefault);
    mTrueCode = record.CopyBytes(ArchiveTags::kTrueCode, mTrueLength);
    mFalseCode = record.CopyBytes(ArchiveTags::kFalseCode, mFalseLength);
}

PPDXBooleanControl::~PPDXBooleanControl() {
    delete mTrueText;
    delete mFalseText;
    std::free(mTrueCode);
    std::free(mFalseCode);
}

short PPDXBooleanControl::Save(Settings& settings, long const& id) {
    ControlRecord record(settings, id, PPDXControl::Save(settings, id));
    record.AddMark(ArchiveTags::kBoolean);
    record.AddNumber(ArchiveTags::kBooleanValue, mValue);
    record.AddNumber(ArchiveTags::kBooleanDefault, mDefault);
    record.AddText(ArchiveTags::kTrueText, mTrueText);
    record.AddText(ArchiveTags::kFalseText, mFalseText);
    record.AddBytes(ArchiveTags::kTrueCode, mTrueCode, mTrueLength);
    record.AddBytes(ArchiveTags::kFalseCode, mFalseCode, mFalseLength);
    return record.Status();
}

short PPDXBooleanControl::Restore(Settings& settings, long id) {
    return ControlRecord(settings, id).Restore(ArchiveTags::kBooleanValue, mValue);
}

void PPDXBooleanControl::ResetToDefaultValue() {
    SetValue(DefaultState());
}

void PPDXBooleanControl::SetValue(bool value) {
    mValue = value;
    UpdateKVCache(Keyword(), ValueText());
    ReportChange(ValueText());
}

char const* PPDXBooleanControl::ValueText() const {
    return IsTrue() ? "True" : "False";
}

char const* PPDXBooleanControl::TrueDisplayText() const {
    return TextOf(mTrueText);
}

char const* PPDXBooleanControl::FalseDisplayText() const {
    return TextOf(mFalseText);
}

long PPDXBooleanControl::PostScript(unsigned char* out) {
    return IsTrue() ? GeneratePSOutputData(out, mTrueCode, mTrueLength, ValueText(), true)
                    : GeneratePSOutputData(out, mFalseCode, mFalseLength, ValueText(), true);
}

CFStringRef PPDXBooleanControl::CopyCurrentControlValueString() {
    return CFStringCreateWithCString(nullptr, ValueText(), kCFStringEncodingASCII);
}

void PPDXBooleanControl::SetCurrentControlWithCFString(CFStringRef value) {
    CFStringRef const trueText = CFSTR("True");
    SetValue(CFStringCompareWithOptions(value, trueText,
                                        CFRangeMake(0, CFStringGetLength(trueText)),
                                        kCFCompareCaseInsensitive) == kCFCompareEqualTo);
}

bool IsTrue(PPDXBooleanControl* boolean) {
    return boolean != nullptr && boolean->IsTrue();
}

bool DefaultState(PPDXBooleanControl* boolean) {
    return boolean != nullptr && boolean->DefaultState();
}

char const* TrueDisplayText(PPDXBooleanControl* boolean) {
    return boolean != nullptr ? boolean->TrueDisplayText() : nullptr;
}

char const* FalseDisplayText(PPDXBooleanControl* boolean) {
    return boolean != nullptr ? boolean->FalseDisplayText() : nullptr;
}

void SetValue(PPDXBooleanControl* boolean, bool value) {
    if (boolean != nullptr) {
        boolean->SetValue(value);
    }
}

long BooleanPostScript(PPDXBooleanControl* boolean, unsigned char* out) {
    return boolean != nullptr ? boolean->PostScript(out) : 0;
}
