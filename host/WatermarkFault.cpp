// SPDX-License-Identifier: Apache-2.0
#include "host/WatermarkFault.h"

#include <cstddef>

#include "VelonFeatures/Project/Core/WatermarkDoubts.h"
#include "host/JsonText.h"
#include "twoway/ZUBTolvanePrinterPList.h"

namespace {

// U+0080 to U+009F, which no encoding of a job shows. Two bytes in UTF-8.
bool HasC1Controls(std::string_view text) {
    for (std::size_t at = text.find('\xC2'); at != text.npos; at = text.find('\xC2', at + 1)) {
        if (at + 1 < text.size() && static_cast<unsigned char>(text[at + 1]) < 0xA0) {
            return true;
        }
    }
    return false;
}

}  // namespace

std::string WatermarkFault(std::string_view record) {
    if (!JsonText::FromUTF8(record)) {
        return "The record isn't UTF-8";
    }
    ZUBTolvanePrinterPList::DataItem item = "";
    if (record.size() >= sizeof item) {
        return "The record is longer than " + std::to_string(sizeof item - 1) + " bytes";
    }
    record.copy(item, record.size());
    if (!ZUBTolvanePrinterPList::CanHold(item) || HasC1Controls(record)) {
        return "The record has a control character or is nothing that a printer's record can hold";
    }
    std::string const wrong = NumberThatIsNone(WatermarkFields(record));
    return wrong.empty() ? "" : "The record's " + wrong;
}
