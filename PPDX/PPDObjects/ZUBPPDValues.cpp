// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDText.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "constraints/UIConstraints.h"
#include "platform/CFRef.h"

// Values of controls by key, and what they rule out.

namespace {

constexpr CFIndex kKeySize = 41;  // with its terminator

constexpr char kPrintSize[] = "*ZUPrintSize";
constexpr char kPageSize[] = "*PageSize";
constexpr char kSameAsPageSize[] = "SameAsPageSize";

// Gives a popup another value until the end of the scope.
class ValueScope {
  public:
    ValueScope(PPDXPopupControl& popup, CFStringRef value, CFStringRef former)
        : mPopup(popup), mFormer(former) {
        mPopup.SetCurrentControlWithCFString(value);
    }
    ValueScope(ValueScope const&) = delete;
    ValueScope& operator=(ValueScope const&) = delete;
    ~ValueScope() { mPopup.SetCurrentControlWithCFString(mFormer); }

  private:
    PPDXPopupControl& mPopup;
    CFStringRef mFormer;
};

// One value is kept for a popup and a note of one keyword: the popup's, which is plain.
bool HasPopupBeside(PPDXControls* controls, PPDXControl& control) {
    PPDXPopupControl* const popup = control.Type() == kJobNoteType && control.Keyword() != nullptr
                                        ? GetFindPopup(controls, control.Keyword(), true)
                                        : nullptr;
    return popup != nullptr && CFRef<CFStringRef>(popup->CopyPresetValueString());
}

CFStringRef TextIn(CFDictionaryRef values, CFStringRef key) {
    CFTypeRef const value = key != nullptr ? CFDictionaryGetValue(values, key) : nullptr;
    return value != nullptr && CFGetTypeID(value) == CFStringGetTypeID()
               ? static_cast<CFStringRef>(value)
               : nullptr;
}

}  // namespace

PPDXControl* ZUBPPD::GetPPDXControlForKey(CFStringRef key) const {
    char keyword[kKeySize];
    return key != nullptr &&
                   CFStringGetCString(key, keyword, sizeof keyword, kCFStringEncodingASCII)
               ? FindControl(keyword)
               : nullptr;
}

void ZUBPPD::SetValueForKey(CFStringRef key, CFStringRef value) {
    PPDXControl* const control = GetPPDXControlForKey(key);
    if (control != nullptr && value != nullptr) {
        control->SetPresetValueString(value);
    }
}

CFStringRef ZUBPPD::CopyValueForKey(CFStringRef key) const {
    PPDXControl* const control = GetPPDXControlForKey(key);
    return control != nullptr ? control->CopyPresetValueString() : nullptr;
}

CFDictionaryRef ZUBPPD::CopyAllValues() {
    CFMutableDictionaryRef const values = CFDictionaryCreateMutable(nullptr, 0);
    CNTL_TYPE type = kControlType;
    for (auto* control = GetFirst(mControls, type); control != nullptr && values != nullptr;
         control = GetNext(mControls, type)) {
        CFRef<CFStringRef> const key(CopyPPDText(control->Keyword()));
        CFRef<CFStringRef> const value(control->CopyPresetValueString());
        if (key && value && CFDictionaryGetValue(values, key) == nullptr &&
            !HasPopupBeside(mControls, *control)) {
            CFDictionarySetValue(values, key, value);
        }
    }
    return values;
}

void ZUBPPD::SetAllValues(CFDictionaryRef values) {
    CNTL_TYPE type = kControlType;
    for (auto* control = GetFirst(mControls, type); control != nullptr && values != nullptr;
         control = GetNext(mControls, type)) {
        CFRef<CFStringRef> const key(CopyPPDText(control->Keyword()));
        CFStringRef const value = TextIn(values, key);
        if (value != nullptr && !control->IsInstallableOption()) {
            control->SetPresetValueString(value);
        }
    }
}

bool ZUBPPD::IsKVConstrained(long key, long option) {
    return mConstraints != nullptr && mConstraints->IsKVConstrained(key, option);
}

bool ZUBPPD::IsKVConstrained(char const* key, char const* option) {
    if (mConstraints == nullptr || key == nullptr || option == nullptr) {
        return false;
    }
    auto* const printSize = dynamic_cast<PPDXPopupControl*>(FindControl(kPrintSize));
    CFRef<CFStringRef> const size(
        printSize != nullptr && printSize->IsKeywordSelected(kSameAsPageSize) ? CopyRealPrintSize()
                                                                              : nullptr);
    if (!size) {
        return mConstraints->IsKVConstrained(key, option);
    }
    ValueScope const real(*printSize, size, CFStringConstant(kSameAsPageSize));
    return mConstraints->IsKVConstrained(key, option);
}

CFStringRef ZUBPPD::CopyRealPrintSize() {
    if (mCustomPaper) {
        return CFStringCreateCopy(nullptr, CFSTR("CustomPrintSize"));
    }
    PPDXControl* const pageSize = FindControl(kPageSize);
    return pageSize != nullptr ? pageSize->CopyCurrentControlValueString() : nullptr;
}
