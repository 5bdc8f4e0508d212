// SPDX-License-Identifier: Apache-2.0
// What the session data knows of the printer: its record, and the options of the record's list.
#include <new>

#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PPDTree.h"
#include "VelonFeatures/Project/Core/QuickAccess.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "platform/CFRef.h"
#include "platform/TextEncodingConverter.h"

bool PDEData::ResetTolvanePrinterList() {
    mPrinterAddress = nullptr;
    mPrinterList.reset(new (std::nothrow) ZUBTolvanePrinterPList);
    return mPrinterList != nullptr && mPrinterList->RecordsReady();
}

CFStringRef PDEData::GetTolvanePrinterAddress(CFStringRef name) {
    return GetTolvanePrinterAddress(name, nullptr);
}

CFStringRef PDEData::GetTolvanePrinterAddress(CFStringRef name, bool* enabled) {
    if (mPrinterList == nullptr) {
        return nullptr;
    }
    mPrinterAddress = mPrinterList->Find(name);
    if (mPrinterAddress != nullptr && enabled != nullptr) {
        *enabled = mPrinterList->getIPEnabled(name);
    }
    return mPrinterAddress;
}

bool PDEData::SetTolvanePrinterAddress(CFStringRef name, CString* address, bool enabled) {
    CFRef<CFStringRef> const text(address != nullptr && address->GetCharData() != nullptr
                                      ? CFStringCreateWithCString(nullptr, address->GetCharData(),
                                                                  GetApplicationTextEncoding())
                                      : nullptr);
    return SetTolvanePrinterCFAddress(name, text.Get(), enabled);
}

bool PDEData::SetTolvanePrinterCFAddress(CFStringRef name, CFStringRef address, bool enabled) {
    CFStringRef const printer = name != nullptr ? name : mPrinterName;
    if (mPrinterList == nullptr || !mPrinterList->Add(printer, address, enabled)) {
        return false;
    }
    // The former address went with its place in the record.
    GetTolvanePrinterAddress(mPrinterName);
    return mPrinterList->Save();
}

bool PDEData::GetIPAddressEnabled() const {
    return mPrinterList != nullptr && mPrinterName != nullptr &&
           mPrinterList->getIPEnabled(mPrinterName);
}

void PDEData::SetIPAddressEnabled(bool enabled) {
    if (mPrinterList != nullptr && mPrinterName != nullptr &&
        mPrinterList->setIPEnabled(mPrinterName, enabled)) {
        mPrinterList->Save();
    }
}

bool PDEData::SaveTolvanePrinterList() {
    return mPrinterList != nullptr && mPrinterList->Save();
}

bool PDEData::IsValidBasicPanelControl(PPDXControl* control) {
    return MayStandInARow(control);
}

bool PDEData::GetPPDShortcuts(PPDTree& tree) {
    if (mPrinterName == nullptr) {
        return false;
    }
    ReadShortcuts(mPrinterList.get(), mPrinterName, mPPD, tree);
    return true;
}

bool PDEData::SetPPDShortcuts(PPDTree tree) {
    return mPrinterName != nullptr && mPrinterList != nullptr &&
           WriteShortcuts(*mPrinterList, mPrinterName, tree);
}
