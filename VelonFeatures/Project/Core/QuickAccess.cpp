// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/QuickAccess.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <new>
#include <string_view>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/Controls/PPDXElement.h"
#include "VelonFeatures/Project/Core/ControlLookup.h"
#include "VelonFeatures/Project/Core/JobKeywords.h"
#include "VelonFeatures/Project/Core/PPDTree.h"
#include "platform/CFRef.h"
#include "twoway/ZUBTolvanePrinterPList.h"

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

void AddShortcut(PPDTree& tree, CFStringRef keyword, ZUBPPD* ppd) {
    auto shortcut = std::make_unique<PPDTreeShortcut>();
    bool const fits =
        tree.mShortcutCount < static_cast<std::int32_t>(kTreeShortcuts) &&
        CFStringGetCString(keyword, shortcut->mKeyword, kTreeKeywordSize, kCFStringEncodingASCII);
    if (fits && MayStandInARow(FindAnyControl(ppd, shortcut->mKeyword))) {
        tree.mShortcuts[tree.mShortcutCount++] = shortcut.release();
    }
}

}  // namespace

bool MayStandInARow(PPDXControl* control) {
    if (control == nullptr) {
        return false;
    }
    char const* const keyword = control->Keyword();
    return KeywordOf(control->GetParent()) != kInstallableGroup && !isBidiKeyword(keyword) &&
           !isExpertChromvaleControl(keyword) && !control->IsNoVelonDriverUI() &&
           std::ranges::find(kNotInBasicPanel, KeywordOf(control)) ==
               std::ranges::end(kNotInBasicPanel);
}

void ReadShortcuts(ZUBTolvanePrinterPList* records, CFStringRef printer, ZUBPPD* ppd,
                   PPDTree& tree) {
    CFRef<CFMutableArrayRef> const keywords(CFArrayCreateMutable(nullptr, 0));
    if (records != nullptr && keywords) {
        records->GetDataBlob(printer, kQuickAccessBlock, keywords);
    }
    if (CFArrayGetCount(keywords) == 0) {
        return;
    }
    DeleteShortcuts(tree);
    for (CFIndex i = 0; i < CFArrayGetCount(keywords); ++i) {
        AddShortcut(tree, static_cast<CFStringRef>(CFArrayGetValueAtIndex(keywords, i)), ppd);
    }
}

bool WriteShortcuts(ZUBTolvanePrinterPList& records, CFStringRef printer, PPDTree const& tree) {
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
    return records.AddDataBlob(printer, static_cast<std::int32_t>(count), kQuickAccessBlock,
                               keywords.get()) &&
           records.Save();
}
