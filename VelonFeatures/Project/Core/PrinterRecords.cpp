// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PrinterRecords.h"

#include <cstddef>
#include <memory>
#include <string_view>

#include "VelonFeatures/Project/Core/Warning.h"
#include "ZUBUtils/PPDUtils/PlainText.h"

bool PutBlock(ZUBTolvanePrinterPList& records, CFStringRef printer, std::int32_t block,
              std::vector<std::string> const& texts, bool& whole) {
    using DataItem = ZUBTolvanePrinterPList::DataItem;
    auto const items = std::make_unique<DataItem[]>(texts.size());
    whole = true;
    for (std::size_t i = 0; i < texts.size(); ++i) {
        std::string_view const fitting = CutText(texts[i], sizeof items[i] - 1);
        fitting.copy(items[i], fitting.size());
        bool const isStorable = ZUBTolvanePrinterPList::CanHold(items[i]);
        whole = whole && isStorable && fitting.size() == texts[i].size();
        if (!isStorable) {
            *items[i] = '\0';
        }
    }
    return records.AddDataBlob(printer, static_cast<std::int32_t>(texts.size()), block,
                               items.get());
}

bool SaveRecords(ZUBTolvanePrinterPList& records) {
    bool const isSaved = records.Save();
    if (!records.KeptAside().empty()) {
        Warn("what stood in the place of the printers' records is kept as " + records.KeptAside());
    }
    return isSaved;
}
