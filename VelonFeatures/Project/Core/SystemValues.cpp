// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/SystemValues.h"

#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/PrinterAccess.h"
#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "platform/CFRef.h"

std::int32_t PageOrientationFromOS(PMPrintSession session) {
    PMTicketRef pageFormat = 0;
    std::int32_t orientation = 0;
    if (MyGetTicket(session, TicketKey(kPageFormatTicket), &pageFormat) == noErr) {
        PMTicketGetSInt32(pageFormat, 0, 0, TicketKey(kOrientationKey), &orientation);
    }
    return orientation;
}

OSStatus PrimaryPaperFeedFromOS(PMPrintSession session, char (&keyword)[kPaperFeedSize]) {
    constexpr CFIndex kKeywordElement = 1;
    PMTicketRef settings = 0;
    CFArrayRef feed = nullptr;
    OSStatus status = MyGetTicket(session, TicketKey(kPrintSettingsTicket), &settings);
    if (status == noErr) {
        status = PMTicketGetCFArray(settings, 0, 0, TicketKey(kPrimaryPaperFeedKey), &feed);
    }
    if (status != noErr) {
        return status == kPMKeyNotFound ? noErr : status;
    }
    if (CFArrayGetCount(feed) > kKeywordElement) {
        CFTypeRef const element = CFArrayGetValueAtIndex(feed, kKeywordElement);
        bool const fits = CFGetTypeID(element) == CFStringGetTypeID() &&
                          CFStringGetCString(static_cast<CFStringRef>(element), keyword,
                                             sizeof(keyword), kCFStringEncodingUTF8);
        keyword[0] = fits ? keyword[0] : '\0';
    }
    return noErr;
}

long NumCopiesFromOS(PMPrintSession session) {
    CFRef<CFStringRef> const dataKey(CreatePostscriptDataFileKey());
    PrintSettingsTicket settings(session);
    return ZUBJobTicket(&settings, dataKey).GetCopies();
}

void Set1CopyToOS(PMPrintSession session) {
    CFRef<CFStringRef> const dataKey(CreatePostscriptDataFileKey());
    PrintSettingsTicket settings(session);
    ZUBJobTicket(&settings, dataKey).EnforceCopiesLimit(GetBundleID(), 1);
}
