// SPDX-License-Identifier: Apache-2.0
// What the session data knows of the printer and of the operating system's print settings.
#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/PPDXElement.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/PrinterAccess.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "panel/PPDTree.h"
#include "platform/CFRef.h"
#include "platform/TextEncodingConverter.h"

namespace {

constexpr std::int32_t kQuickAccessBlock = 0;
constexpr std::string_view kInstallableGroup = "ZUPPInstallableOptions";

constexpr std::string_view kNotInBasicPanel[] = {
    "*ZUMMInUse",
    "*ZUMMInsType",
    "*ZUMMCover",
    "*ZUImageUnit",
    "*ZUImageFlag",
    "*ZUImageAlign",
    "*ZURIPBooklet",
    "*ZUBookCoverEnabled",
    "*ZUBookCoverTray",
    "*ZUBookFrCover",
    "*ZUBookBkCover",
    "*ZUBookCoverInType",
    "*ZUBookletCreep",
    "*ZUBookletReduce",
    "*ZUBookAutoSpine",
    "*ZUBookNumSheetPerSubset",
    "*ZUBookCentering",
    "*ZUNUpOption",
    "*ZUBPrintTime",
    "*ZUNUpBoundingBox",
    "*ZUClearCoat",
    "*ZUTextClearCoat",
    "*ZUGraphicClearCoat",
    "*ZUImageClearCoat",
    "*ZUSpotColorClearCoat",
    "*ZUImageWiseRange",
    "*ZUImageWise_RangeType",
    "*ZUImageWise_RangeValue",
    "*ZUMMTabShift",
    "*ZUSubsetFinishingInUse",
};

void DeleteShortcuts(PPDTree& tree) {
    for (std::int32_t i = 0; i < tree.mShortcutCount; ++i) {
        CFRelease(tree.mShortcuts[i]->mName);
        delete tree.mShortcuts[i];
        tree.mShortcuts[i] = nullptr;
    }
    tree.mShortcutCount = 0;
}

std::string_view KeywordOf(PPDXElement* element) {
    char const* const keyword = element == nullptr ? nullptr : element->Keyword();
    return keyword == nullptr ? std::string_view() : std::string_view(keyword);
}

}  // namespace

// ---- The operating system's values ----

std::int32_t PDEData::GetPageOrientationFromOS() const {
    PMTicketRef pageFormat = 0;
    std::int32_t orientation = 0;
    if (MyGetTicket(mSession, TicketKey(kPageFormatTicket), &pageFormat) == noErr) {
        PMTicketGetSInt32(pageFormat, 0, 0, TicketKey(kOrientationKey), &orientation);
    }
    return orientation;
}

OSStatus PDEData::GetPrimaryPaperFeedFromOS() {
    constexpr CFIndex kKeywordElement = 1;
    PMTicketRef settings = 0;
    CFArrayRef feed = nullptr;
    OSStatus status = MyGetTicket(mSession, TicketKey(kPrintSettingsTicket), &settings);
    if (status == noErr) {
        status = PMTicketGetCFArray(settings, 0, 0, TicketKey(kPrimaryPaperFeedKey), &feed);
    }
    if (status != noErr) {
        return status == kPMKeyNotFound ? noErr : status;
    }
    if (CFArrayGetCount(feed) > kKeywordElement) {
        CFTypeRef const keyword = CFArrayGetValueAtIndex(feed, kKeywordElement);
        bool const fits = CFGetTypeID(keyword) == CFStringGetTypeID() &&
                          CFStringGetCString(static_cast<CFStringRef>(keyword), mPaperFeed,
                                             sizeof(mPaperFeed), kCFStringEncodingUTF8);
        mPaperFeed[0] = fits ? mPaperFeed[0] : '\0';
    }
    return noErr;
}

long PDEData::GetNumCopiesFromOS() const {
    CFRef<CFStringRef> const dataKey(CreatePostscriptDataFileKey());
    PrintSettingsTicket settings(mSession);
    return ZUBJobTicket(&settings, dataKey).GetCopies();
}

void PDEData::Set1CopiesToOS() const {
    CFRef<CFStringRef> const dataKey(CreatePostscriptDataFileKey());
    PrintSettingsTicket settings(mSession);
    ZUBJobTicket(&settings, dataKey).EnforceCopiesLimit(GetBundleID(), 1);
}

// ---- The printer's record ----

bool PDEData::ResetTolvanePrinterList() {
    mPrinterAddress = nullptr;
    mPrinterList.reset(new (std::nothrow) ZUBTolvanePrinterPList);
    return mPrinterList != nullptr && mPrinterList->RecordsReady();
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
    return SetTolvanePrinterAddress(name, text.Get(), enabled);
}

bool PDEData::SetTolvanePrinterAddress(CFStringRef name, CFStringRef address, bool enabled) {
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

// ---- The quick-access list ----

bool PDEData::IsValidBasicPanelControl(PPDXControl* control) {
    if (control == nullptr) {
        return false;
    }
    char const* const keyword = control->Keyword();
    return KeywordOf(control->GetParent()) != kInstallableGroup && !isBidiKeyword(keyword) &&
           !isExpertChromvaleControl(keyword) && !control->IsNoVelonDriverUI() &&
           std::ranges::find(kNotInBasicPanel, KeywordOf(control)) ==
               std::ranges::end(kNotInBasicPanel);
}

bool PDEData::GetPPDShortcuts(PPDTree& tree) {
    if (mPrinterName == nullptr) {
        return false;
    }
    CFRef<CFMutableArrayRef> const keywords(CFArrayCreateMutable(nullptr, 0));
    if (mPrinterList != nullptr && keywords) {
        mPrinterList->GetDataBlob(mPrinterName, kQuickAccessBlock, keywords);
    }
    if (CFArrayGetCount(keywords) == 0) {
        return true;
    }
    DeleteShortcuts(tree);
    for (CFIndex i = 0; i < CFArrayGetCount(keywords); ++i) {
        AddShortcut(tree, static_cast<CFStringRef>(CFArrayGetValueAtIndex(keywords, i)));
    }
    return true;
}

void PDEData::AddShortcut(PPDTree& tree, CFStringRef keyword) {
    auto shortcut = std::make_unique<PPDTreeShortcut>();
    bool const fits =
        tree.mShortcutCount < static_cast<std::int32_t>(kTreeShortcuts) &&
        CFStringGetCString(keyword, shortcut->mKeyword, kTreeKeywordSize, kCFStringEncodingASCII);
    if (fits && IsValidBasicPanelControl(FindControl(shortcut->mKeyword))) {
        tree.mShortcuts[tree.mShortcutCount++] = shortcut.release();
    }
}

bool PDEData::SetPPDShortcuts(PPDTree tree) {
    if (mPrinterName == nullptr || mPrinterList == nullptr) {
        return false;
    }
    using DataItem = ZUBTolvanePrinterPList::DataItem;
    std::unique_ptr<DataItem[]> const keywords(new (std::nothrow) DataItem[kTreeShortcuts]);
    if (keywords == nullptr) {
        return false;
    }
    auto const count = static_cast<std::size_t>(
        std::clamp(tree.mShortcutCount, 0, static_cast<std::int32_t>(kTreeShortcuts)));
    for (std::size_t i = 0; i < count; ++i) {
        std::strcpy(keywords[i], tree.mShortcuts[i]->mKeyword);
    }
    return mPrinterList->AddDataBlob(mPrinterName, static_cast<std::int32_t>(count),
                                     kQuickAccessBlock, keywords.get()) &&
           mPrinterList->Save();
}
