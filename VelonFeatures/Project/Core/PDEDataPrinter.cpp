// SPDX-License-Identifier: Apache-2.0
// What the session data knows of the printer: its record, and the options of the record's list.
#include <new>

#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PPDTree.h"
#include "VelonFeatures/Project/Core/PrinterRecords.h"
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
    return SaveTolvanePrinterList();
}

bool PDEData::GetIPAddressEnabled() const {
    return mPrinterList != nullptr && mPrinterName != nullptr &&
           mPrinterList->getIPEnabled(mPrinterName);
}

void PDEData::SetIPAddressEnabled(bool enabled) {
    if (mPrinterList != nullptr && mPrinterName != nullptr &&
        mPrinterList->setIPEnabled(mPrinterName, enabled)) {
        SaveTolvanePrinterList();
    }
}

bool PDEData::SaveTolvanePrinterList() {
    bool const isSaved = mPrinterList != nullptr && SaveRecords(*mPrinterList);
    // The former address went with its record.
    GetTolvanePrinterAddress(mPrinterName);
    return isSaved;
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
    bool const isSaved = mPrinterName != nullptr && mPrinterList != nullptr &&
                         WriteShortcuts(*mPrinterList, mPrinterName, tree);
    GetTolvanePrinterAddress(mPrinterName);
    return isSaved;
}
