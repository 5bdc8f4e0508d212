// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/Job/LayoutComments.h"

#include <optional>
#include <string>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/PrinterAccess.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"

namespace {

constexpr std::int32_t kPortrait = 1;
constexpr std::int32_t kReversePortrait = 3;

constexpr char kNUpText[] = "%%MacCoreNUp: true\n";
constexpr char kPortraitText[] = "%%Orientation: Portrait\n";
constexpr char kLandscapeText[] = "%%Orientation: Landscape\n";

bool IsPortrait(std::int32_t orientation) {
    return orientation == kPortrait || orientation == kReversePortrait;
}

// The number of pages on a sheet; none where rows or columns aren't told.
std::optional<std::int64_t> PagesOnSheet(PMTicketRef settings) {
    std::int32_t rows = 0;
    std::int32_t columns = 0;
    bool const isTold =
        PMTicketGetSInt32(settings, 0, 0, TicketKey(kLayoutRowsKey), &rows) == noErr &&
        PMTicketGetSInt32(settings, 0, 0, TicketKey(kLayoutColumnsKey), &columns) == noErr;
    return isTold ? std::optional(std::int64_t{rows} * columns) : std::nullopt;
}

std::string NUpComment(ZUBPPD* ppd, std::int64_t pages) {
    char const* const version = ppd == nullptr ? nullptr : ppd->ZUVersion();
    bool const countsPages = version != nullptr && *version == '2';
    return countsPages ? "%%Mac Core N-Up: " + std::to_string(pages) + "\n" : kNUpText;
}

}  // namespace

OSStatus AddLayoutComments(ZUBJobTicket& ticket, PMPrintSession session, ZUBPPD* ppd,
                           std::int32_t& orientation) {
    PMTicketRef pageFormat = 0;
    OSStatus status = MyGetTicket(session, TicketKey(kPageFormatTicket), &pageFormat);
    if (status != noErr || pageFormat == 0) {
        return status;
    }
    status = PMTicketGetSInt32(pageFormat, 0, 0, TicketKey(kOrientationKey), &orientation);
    if (status != noErr) {
        return status == kPMKeyNotFound ? noErr : status;
    }
    // Two or six pages lie across the sheet.
    bool isPortrait = IsPortrait(orientation);
    PMTicketRef settings = 0;
    status = MyGetTicket(session, TicketKey(kPrintSettingsTicket), &settings);
    auto const pages = status == noErr ? PagesOnSheet(settings) : std::nullopt;
    if (pages) {
        isPortrait = pages == 2 || pages == 6 ? !isPortrait : isPortrait;
        ticket.AddText(kLayoutCommentSite, NUpComment(ppd, *pages).c_str());
    }
    ticket.AddText(kLayoutCommentSite, isPortrait ? kPortraitText : kLandscapeText);
    return status;
}
