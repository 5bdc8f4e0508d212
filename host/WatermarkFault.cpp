// SPDX-License-Identifier: Apache-2.0
#include "host/WatermarkFault.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

#include "VelonFeatures/Project/Core/ZUBWatermark.h"
#include "ZUBUtils/PPDUtils/PlainText.h"
#include "host/JsonText.h"
#include "twoway/ZUBTolvanePrinterPList.h"

namespace {

struct NumberField {
    WatermarkFields::Place place;
    char const* name;
    std::int32_t least;
    std::int32_t most;
};
constexpr NumberField kNumbers[] = {
    {WatermarkFields::kX, "the points to the right", INT32_MIN, INT32_MAX},
    {WatermarkFields::kY, "the points up", INT32_MIN, INT32_MAX},
    {WatermarkFields::kRed, "red", 0, 255},
    {WatermarkFields::kGreen, "green", 0, 255},
    {WatermarkFields::kBlue, "blue", 0, 255},
    {WatermarkFields::kAngle, "the angle", INT32_MIN, INT32_MAX},
    {WatermarkFields::kPoints, "the size of the font", 1, INT32_MAX},
};

bool IsIn(NumberField const& number, std::string_view field) {
    std::int32_t value = 0;
    char const* const end = field.data() + field.size();
    auto const read = std::from_chars(field.data(), end, value);
    return read.ec == std::errc() && read.ptr == end && value >= number.least &&
           value <= number.most;
}

std::string FaultOfNumber(NumberField const& number, std::string_view field) {
    return "Field " + std::to_string(number.place) + ", " + number.name +
           ", isn't a whole number from " + std::to_string(number.least) + " to " +
           std::to_string(number.most) + ": '" + std::string(field) + "'";
}

}  // namespace

std::string WatermarkFault(std::string_view record) {
    if (!JsonText::FromUTF8(record)) {
        return "The record isn't UTF-8";
    }
    if (record.size() >= ZUBTolvanePrinterPList::kDataItemSize) {
        return "The record is longer than 1023 bytes";
    }
    if (HasControlCharacters(record)) {
        return "The record has a tab, a line end or another control character";
    }
    WatermarkFields const parts(record);
    std::size_t const missing =
        static_cast<std::size_t>(std::ranges::count(parts.fields, std::string_view()));
    if (missing > 0) {
        return "The record has " + std::to_string(WatermarkFields::kCount - missing) +
               " of the 13 fields ahead of its text; empty ones don't count";
    }
    auto const* const wrong = std::ranges::find_if(kNumbers, [&](NumberField const& number) {
        return !IsIn(number, parts.fields[number.place]);
    });
    if (wrong != std::end(kNumbers)) {
        return FaultOfNumber(*wrong, parts.fields[wrong->place]);
    }
    return parts.text.empty() ? "The record has no text behind its 13 fields" : "";
}
