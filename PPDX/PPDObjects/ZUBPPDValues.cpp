// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "constraints/UIConstraints.h"
#include "platform/CFRef.h"

// Values of controls by key, and what they rule out.

namespace {

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

}  // namespace

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
    PPDXControl* const pageSize = FindControl(kPageSize);
    CFRef<CFStringRef> size(pageSize != nullptr ? pageSize->CopyCurrentControlValueString()
                                                : nullptr);
    return size && mCustomPaper ? CFStringCreateCopy(nullptr, CFSTR("CustomPrintSize"))
                                : size.Release();
}
