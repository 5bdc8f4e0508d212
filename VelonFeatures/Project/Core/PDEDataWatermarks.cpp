// SPDX-License-Identifier: Apache-2.0
// The watermarks of the printer's record, and which of them the settings have selected.
#include <algorithm>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include "VelonFeatures/Project/Core/PDEData.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/Warning.h"
#include "ZUBUtils/PPDUtils/PlainText.h"
#include "platform/CFRef.h"

namespace {

using DataItem = ZUBTolvanePrinterPList::DataItem;

// The stored records, strings. Empty without a block of them.
CFRef<CFMutableArrayRef> StoredRecords(ZUBTolvanePrinterPList const* list, CFStringRef printer) {
    CFRef<CFMutableArrayRef> records(CFArrayCreateMutable(nullptr, 0));
    if (list != nullptr && records) {
        list->GetDataBlob(printer, PDEData::kWatermarkBlock, records);
    }
    return records;
}

// One of them in UTF-8, as many whole characters as an item of a block has room for.
std::string RecordAt(CFArrayRef records, CFIndex index) {
    auto const record = static_cast<CFStringRef>(CFArrayGetValueAtIndex(records, index));
    DataItem item;
    CFIndex used = 0;
    CFStringGetBytes(record, {0, CFStringGetLength(record)}, kCFStringEncodingUTF8, '?', false,
                     reinterpret_cast<std::uint8_t*>(item), sizeof item - 1, &used);
    return {item, static_cast<std::size_t>(used)};
}

void PutItem(DataItem& item, std::string_view record) {
    std::string_view const fitting = CutText(record, sizeof item - 1);
    item[fitting.copy(item, fitting.size())] = '\0';
}

}  // namespace

bool PDEData::GetWatermarksFromPreferences() {
    if (mPrinterName == nullptr) {
        return false;
    }
    auto const records = StoredRecords(mPrinterList.get(), mPrinterName);
    if (CFArrayGetCount(records) == 0) {
        return true;
    }
    try {
        WatermarkList::Watermarks watermarks;
        CFIndex const count =
            std::min<CFIndex>(CFArrayGetCount(records), WatermarkList::kMaximumCount);
        for (CFIndex i = 0; i < count; ++i) {
            watermarks.push_back(std::make_unique<ZUBWatermark>(RecordAt(records, i).c_str()));
            if (mWatermarks.FirstPageOnly() != 0) {
                watermarks.back()->RestrictToFirstPage();
            }
        }
        mWatermarks.Replace(std::move(watermarks));
    } catch (std::bad_alloc const&) {
        return false;
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
        auto const stored = StoredRecords(mPrinterList.get(), mPrinterName);
        bool const isFull = own == WatermarkList::kMaximumCount;
        auto const count = std::max<CFIndex>(own, isFull ? CFArrayGetCount(stored) : 0);
        auto const items = std::make_unique<DataItem[]>(static_cast<std::size_t>(count));
        for (CFIndex i = 0; i < count; ++i) {
            PutItem(items[static_cast<std::size_t>(i)],
                    i < own ? mWatermarks.At(static_cast<std::int32_t>(i))->Record()
                            : RecordAt(stored, i));
        }
        if (!mPrinterList->AddDataBlob(mPrinterName, static_cast<std::int32_t>(count),
                                       kWatermarkBlock, items.get())) {
            return false;
        }
        bool isThere = false;
        mPrinterList->Exists(mPrinterName, isThere);
        auto const put = StoredRecords(mPrinterList.get(), mPrinterName);
        if (isThere && CFArrayGetCount(put) < count) {
            Warn("a watermark that can't stand in the printer's record isn't kept there");
        }
        return SaveTolvanePrinterList();
    } catch (std::bad_alloc const&) {
        return false;
    }
}

std::string PDEData::WhyNoWatermark(std::int32_t number) const {
    std::string const none = "no watermark " + std::to_string(number);
    if (mWatermarks.Count() == 0 && mPrinterList != nullptr && mPrinterList->IsUnread()) {
        return "the file of the printers' records can't be read, so there is " + none;
    }
    if (mWatermarks.Count() == WatermarkList::kMaximumCount) {
        return "a dialog takes the first 99 watermarks of a printer, so there is " + none;
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
