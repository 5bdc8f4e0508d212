// SPDX-License-Identifier: Apache-2.0
#include "host/PrintSession.h"

#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "host/HostFiles.h"
#include "host/JsonText.h"
#include "platform/CFRef.h"

namespace {

constexpr std::int32_t kPortrait = 1;

CFStringRef Client() {
    return CFSTR("com.zub.zubprint");
}

CFRef<CFStringRef> String(std::string const& text) {
    return CFRef<CFStringRef>(
        CFStringCreateWithCString(nullptr, text.c_str(), kCFStringEncodingUTF8));
}

OSStatus SetText(PMTicketRef ticket, CFStringRef key, std::string const& text) {
    return PMTicketSetCFString(ticket, Client(), key, String(text), false);
}

OSStatus SetNumber(PMTicketRef ticket, CFStringRef key, std::int32_t number) {
    return PMTicketSetSInt32(ticket, Client(), key, number, false);
}

}  // namespace

PrintSession::~PrintSession() {
    PMDisposeSession(mSession);
    for (PMTicketRef* ticket : {&mPrintSettings, &mPrinterInfo, &mPageFormat}) {
        if (*ticket != 0) {
            PMTicketReleaseAndClear(ticket);
        }
    }
}

Outcome PrintSession::Open(PrintOptions const& options, std::string const& makeAndModel) {
    OSStatus status = PMCreateSession(&mSession);
    if (status == noErr) {
        status = OpenPrinter(options);
    }
    if (status == noErr) {
        status = FillPrintSettings();
    }
    if (status == noErr) {
        status = FillPrinterInfo(options, makeAndModel);
    }
    if (status == noErr) {
        status = FillPageFormat();
    }
    return status == noErr ? Outcome::Done()
                           : Outcome::Failed("can't make a print session for " + options.ppd +
                                             ": error " + std::to_string(status));
}

std::string PrintSession::PrintSettingsText(CFStringRef key) const {
    CFStringRef text = nullptr;
    OSStatus const status = PMTicketGetCFString(mPrintSettings, 0, 0, key, &text);
    return status == noErr ? JsonText::ToUTF8(text) : std::string();
}

OSStatus PrintSession::OpenPrinter(PrintOptions const& options) {
    CFRef<CFURLRef> const uri(CFURLCreateWithString(nullptr, String(options.deviceURI), nullptr));
    return PMSessionSetCurrentPrinter(mSession, String(options.printer),
                                      HostFiles::URL(options.ppd, false), uri);
}

OSStatus PrintSession::MakeTicket(CFStringRef name, CFStringRef kind, PMTicketRef& ticket) {
    OSStatus const status = PMTicketCreate(kind, &ticket);
    return status == noErr ? PMSessionSetTicket(mSession, name, ticket) : status;
}

OSStatus PrintSession::FillPrintSettings() {
    OSStatus status = MakeTicket(TicketKey(kPrintSettingsTicket),
                                 TicketKey(kPrintSettingsTicketName), mPrintSettings);
    if (status == noErr) {
        status = SetNumber(mPrintSettings, TicketKey(kCopiesKey), 1);
    }
    if (status == noErr) {
        status = SetText(mPrintSettings, CFSTR("com.apple.print.JobInfo.PMJobName"), "Untitled");
    }
    return status;
}

OSStatus PrintSession::FillPrinterInfo(PrintOptions const& options,
                                       std::string const& makeAndModel) {
    OSStatus status = MakeTicket(TicketKey(kPrinterInfoTicket),
                                 CFSTR("com.apple.print.PrinterInfoTicket"), mPrinterInfo);
    if (status == noErr && options.compiledPPD) {
        // That the item is there tells of a PPD printer; nobody reads what it holds.
        status = SetText(mPrinterInfo, TicketKey(kCompiledPPDKey), "");
    }
    if (status == noErr) {
        status = SetText(mPrinterInfo, TicketKey(kMakeAndModelNameKey), makeAndModel);
    }
    return status;
}

OSStatus PrintSession::FillPageFormat() {
    OSStatus status = MakeTicket(TicketKey(kPageFormatTicket),
                                 CFSTR("com.apple.print.PageFormatTicket"), mPageFormat);
    if (status == noErr) {
        status = SetNumber(mPageFormat, TicketKey(kOrientationKey), kPortrait);
    }
    return status;
}
