// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/WatermarkDoubts.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <cstdint>
#include <system_error>

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
constexpr std::string_view kDelimiters = "()<>[]{}/%";
constexpr std::string_view kFirstPageValues[] = {"", "0", "1", "-"};

// Reads what stands at the front as the job does, which takes blanks and a plus ahead of it.
std::from_chars_result Read(std::string_view field, std::int32_t& value) {
    field.remove_prefix(std::min(field.find_first_not_of(' '), field.size()));
    field.remove_prefix(field.starts_with('+') && !field.starts_with("+-") ? 1 : 0);
    return std::from_chars(field.data(), field.data() + field.size(), value);
}

bool IsIn(NumberField const& number, std::string_view field) {
    std::int32_t value = 0;
    auto const read = Read(field, value);
    return read.ec == std::errc() && read.ptr == field.data() + field.size() &&
           value >= number.least && value <= number.most;
}

bool IsNone(std::string_view field) {
    std::int32_t value = 0;
    return Read(field, value).ec == std::errc::invalid_argument;
}

std::string Named(NumberField const& number, std::string_view field) {
    return "field " + std::to_string(number.place) + ", " + number.name +
           ", isn't a whole number from " + std::to_string(number.least) + " to " +
           std::to_string(number.most) + ": '" + std::string(field) + "'";
}

std::string DoubtOfFields(WatermarkFields const& parts) {
    auto const missing = std::ranges::count(parts.fields, std::string_view());
    std::string const most = std::to_string(WatermarkFields::kCount);
    return missing == 0
               ? ""
               : "it has " +
                     std::to_string(WatermarkFields::kCount - static_cast<std::size_t>(missing)) +
                     " of the " + most + " fields ahead of its text; empty ones don't count";
}

std::string DoubtOfFirstPage(WatermarkFields const& parts) {
    std::string_view const field = parts.fields[WatermarkFields::kFirstPage];
    bool const isKnown = std::ranges::find(kFirstPageValues, field) != std::end(kFirstPageValues);
    return isKnown ? ""
                   : "field " + std::to_string(WatermarkFields::kFirstPage) +
                         ", the first page alone, isn't 0, 1 or -: '" + std::string(field) + "'";
}

std::string DoubtOfFont(WatermarkFields const& parts) {
    std::string_view const font = parts.fields[WatermarkFields::kFontName];
    return font.empty() || IsFontName(font) ? ""
                                            : "its font isn't a PostScript name of 1 to " +
                                                  std::to_string(ZUBWatermark::kMostFontBytes) +
                                                  " characters: '" + std::string(font) + "'";
}

std::string DoubtOfText(WatermarkFields const& parts) {
    if (parts.text.find_first_not_of(' ') == parts.text.npos) {
        return parts.text.empty() ? "it has no text" : "its text is nothing but blanks";
    }
    return parts.text.size() <= ZUBWatermark::kMostTextBytes
               ? ""
               : "its text is cut: it takes " + std::to_string(ZUBWatermark::kMostTextBytes) +
                     " bytes";
}

}  // namespace

bool IsFontName(std::string_view name) {
    return !name.empty() && name.size() <= ZUBWatermark::kMostFontBytes &&
           std::ranges::all_of(name, [](char c) {
               return c > ' ' && c <= '~' && kDelimiters.find(c) == kDelimiters.npos;
           });
}

std::string NumberThatIsNone(WatermarkFields const& parts) {
    for (NumberField const& number : kNumbers) {
        std::string_view const field = parts.fields[number.place];
        if (!field.empty() && IsNone(field)) {
            return Named(number, field);
        }
    }
    return {};
}

std::string WatermarkDoubts(WatermarkFields const& parts) {
    std::string doubts;
    auto const add = [&doubts](std::string const& doubt) {
        doubts += (doubts.empty() || doubt.empty() ? "" : "; ") + doubt;
    };
    add(DoubtOfFields(parts));
    for (NumberField const& number : kNumbers) {
        std::string_view const field = parts.fields[number.place];
        add(field.empty() || IsIn(number, field) ? "" : Named(number, field));
    }
    for (auto const doubt : {DoubtOfFirstPage, DoubtOfFont, DoubtOfText}) {
        add(doubt(parts));
    }
    return doubts;
}
