// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

class PDEData;
class ZUBJobTicket;
class ZUBWatermark;

// A watermark as the PostScript that draws it: a resource that puts itself ahead of showpage. Where
// the server's dictionary is there it goes by the size of the original page, elsewhere by the clip
// path's.

// The greatest resource that the print server takes, with a terminator. No ZUBWatermark comes near
// it: with the longest font and text it is some 3000 bytes.
constexpr std::size_t kWatermarkResourceSize = 5120;

// The resource of a watermark whose font's name can stand in it. Orientation is the page format's:
// 2 and 4 are landscape, to either side. The language version is the PPD's, may be null; for
// "Japanese" and "Chinese" the font is used in its own encoding, elsewhere in ISO Latin 1 with a
// euro sign at 128.
std::string WatermarkResource(ZUBWatermark& mark, std::int32_t orientation,
                              char const* languageVersion);
// Adds it to the features. One that is too long is left out.
void AddWatermarkResource(ZUBJobTicket& ticket, std::string const& resource);
// Adds the selected watermark's to the features. One that isn't there or can't be printed is left
// out; of that, of what else is wrong in its record and of what of its text won't be seen it warns,
// the first time.
void AddSelectedWatermark(ZUBJobTicket& ticket, PDEData& data, std::int32_t orientation);
