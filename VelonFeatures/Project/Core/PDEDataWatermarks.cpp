// SPDX-License-Identifier: Apache-2.0
// The watermarks of the printer's record, and which of them the settings have selected.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <new>
#include <string>
#include <vector>

#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/PrinterRecords.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/Warning.h"
#include "platform/CFRef.h"

namespace {

// The stored records, as many whole characters of each as an item of a block has room for. Empty
// without a block of them.
std::vector<std::string> StoredRecords(ZUBTolvanePrinterPList const* list, CFStringRef printer) {
    CFRef<CFMutableArrayRef> const items(CFArrayCreateMutable(nullptr, 0));
    if (list == nullptr || !items) {
        return {};
    }
    list->GetDataBlob(printer, PDEData::kWatermarkBlock, items);
    std::vector<std::string> records;
    for (CFIndex i = 0; i < CFArrayGetCount(items); ++i) {
        auto const text = static_cast<CFStringRef>(CFArrayGetValueAtIndex(items, i));
        ZUBTolvanePrinterPList::DataItem item;
        CFIndex used = 0;
        CFStringGetBytes(text, {0, CFStringGetLength(text)}, kCFStringEncodingUTF8, '?', false,
                         reinterpret_cast<std::uint8_t*>(item), sizeof item - 1, &used);
        records.emplace_back(item, static_cast<std::size_t>(used));
    }
    return records;
}

}  // namespace

bool PDEData::GetWatermarksFromPreferences() {
    if (mPrinterName == nullptr) {
        return false;
    }
    try {
        auto const records = StoredRecords(mPrinterList.get(), mPrinterName);
        if (records.empty()) {
            return true;
        }
        mWatermarks.Replace(records);
    } catch (std::bad_alloc const&) {
        return false;
    }
    for (std::int32_t i = 0; mWatermarks.FirstPageOnly() != 0 && i < mWatermarks.Count(); ++i) {
        mWatermarks.At(i)->RestrictToFirstPage();
    }
    return true;
}

// Records beyond what a list holds stay behind its own.
bool PDEData::SaveWatermarksToPreferences() {
    std::int32_t const own = mWatermarks.Count();
    if (mPrinterName == nullptr || mPrinterList == nullptr || own == 0) {
        return false;
    }
    try {
        auto records = StoredRecords(mPrinterList.get(), mPrinterName);
        bool const isFull = own == WatermarkList::kMaximumCount;
        auto const count = static_cast<std::size_t>(own);
        records.resize(isFull ? std::max(count, records.size()) : count);
        for (std::int32_t i = 0; i < own; ++i) {
            records[static_cast<std::size_t>(i)] = mWatermarks.At(i)->Record();
        }
        bool whole = true;
        if (!PutBlock(*mPrinterList, mPrinterName, kWatermarkBlock, records, whole)) {
            return false;
        }
        if (!whole) {
            Warn("a watermark that can't stand in the printer's record isn't kept whole there");
        }
        return SaveTolvanePrinterList();
    } catch (std::bad_alloc const&) {
        return false;
    }
}

std::string PDEData::WhyNoWatermark(std::int32_t number) const {
    std::string const none = "no watermark " + std::to_string(number);
    if (mPrinterList != nullptr && !mPrinterList->HasPlace()) {
        return "HOME is no absolute path, so there is " + none;
    }
    if (mWatermarks.Count() == 0 && mPrinterList != nullptr && mPrinterList->IsUnread()) {
        return "the file of the printers' records can't be read, so there is " + none;
    }
    if (number >= WatermarkList::kMaximumCount &&
        static_cast<std::size_t>(number) < StoredRecords(mPrinterList.get(), mPrinterName).size()) {
        return "a dialog takes the first " + std::to_string(WatermarkList::kMaximumCount) +
               " watermarks of a printer, so there is " + none;
    }
    return "the printer has " + none;
}

// A number that the record doesn't have is kept too: it may have it again.
void PDEData::RestoreWatermarkSelection(PrintSettingsTicket& ticket) {
    constexpr long kNone = -1;
    constexpr long kFirstPageValues = 2;
    long selected = kNone;
    bool const isKnown = ticket.GetInt(TicketKey(kSelectedWatermarkKey), selected) == noErr;
    mWatermarks.Select(static_cast<std::int32_t>(isKnown ? std::max(selected, kNone) : kNone));
    long firstPageOnly = 0;
    bool const isFlag = ticket.GetInt(TicketKey(kFirstPageOnlyKey), firstPageOnly) == noErr &&
                        firstPageOnly < kFirstPageValues;
    mWatermarks.SetFirstPageOnly(static_cast<std::int32_t>(isFlag ? firstPageOnly : 0));
}
