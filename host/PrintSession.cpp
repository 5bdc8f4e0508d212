// SPDX-License-Identifier: Apache-2.0
#include "host/PrintSession.h"

#include <algorithm>
#include <utility>

#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "host/HostFiles.h"
#include "host/JsonText.h"
#include "platform/CFRef.h"

namespace {

constexpr int kPortrait = 1;
constexpr int kOneCopy = 1;

// Sets the items of one ticket until one is refused.
class TicketWriter {
  public:
    explicit TicketWriter(PMTicketRef ticket) : mTicket(ticket) {}

    void Text(char const* key, std::string const& text) { Set(key, JsonText::FromUTF8(text)); }
    void Number(char const* key, std::int32_t number) {
        Set(key, CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberSInt32Type, &number)));
    }
    void Set(char const* key, CFTypeRef value) {
        if (mStatus == noErr) {
            mStatus = PMTicketSetItem(mTicket, TicketFile::Client(), TicketKey(key), value, false);
        }
    }
    void Remove(char const* key) {
        if (Has(key) && mStatus == noErr) {
            mStatus = PMTicketReleaseItem(mTicket, TicketKey(key));
        }
    }
    bool Has(char const* key) const {
        return PMTicketGetItem(mTicket, TicketKey(key), 0, 0, nullptr) == noErr;
    }
    // What the user told, else what is there already, else the default.
    void Text(char const* key, std::optional<std::string> const& told, char const* otherwise) {
        if (told || !Has(key)) {
            Text(key, told.value_or(otherwise));
        }
    }
    void Number(char const* key, std::optional<int> told, int otherwise) {
        if (told || !Has(key)) {
            Number(key, told.value_or(otherwise));
        }
    }
    OSStatus Status() const { return mStatus; }

  private:
    PMTicketRef mTicket;
    OSStatus mStatus = noErr;
};

// The name for people, which nobody reads, and the keyword.
CFRef<CFMutableArrayRef> PaperFeed(std::string const& keyword) {
    CFRef<CFMutableArrayRef> feed(CFArrayCreateMutable(nullptr, 0));
    CFArrayAppendValue(feed, JsonText::FromUTF8(keyword));
    CFArrayAppendValue(feed, JsonText::FromUTF8(keyword));
    return feed;
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

Outcome PrintSession::Open(PrintOptions const& options,
                           std::optional<std::string> const& makeAndModel, TicketFile const& kept) {
    OSStatus status = PMCreateSession(&mSession);
    if (status == noErr) {
        status = OpenPrinter(options);
    }
    if (status == noErr) {
        status = MakeTickets(kept);
    }
    if (status == noErr) {
        status = FillPrintSettings(options);
    }
    if (status == noErr) {
        status = FillPrinterInfo(options, makeAndModel);
    }
    if (status == noErr) {
        status = FillPageFormat(options);
    }
    return status == noErr ? Outcome::Done()
                           : Outcome::Failed("can't make a print session for " + options.ppd +
                                             ": error " + std::to_string(status));
}

Outcome PrintSession::Keep(TicketFile& file) const {
    for (auto const& [name, ticket] :
         {std::pair(kPrintSettingsTicket, mPrintSettings),
          std::pair(kPrinterInfoTicket, mPrinterInfo), std::pair(kPageFormatTicket, mPageFormat)}) {
        if (OSStatus const status = file.Take(TicketKey(name), ticket); status != noErr) {
            return Outcome::Failed(std::string("can't keep the ticket ") + name + ": error " +
                                   std::to_string(status));
        }
    }
    return Outcome::Done();
}

std::string PrintSession::PrintSettingsText(CFStringRef key) const {
    CFStringRef text = nullptr;
    OSStatus const status = PMTicketGetCFString(mPrintSettings, 0, 0, key, &text);
    return status == noErr ? JsonText::ToUTF8(text) : std::string();
}

void PrintSession::DropFirstPageFlag() {
    TicketWriter(mPrintSettings).Remove(kFirstPageOnlyKey);
}

OSStatus PrintSession::OpenPrinter(PrintOptions const& options) {
    CFRef<CFURLRef> const uri(
        CFURLCreateWithString(nullptr, JsonText::FromUTF8(options.deviceURI), nullptr));
    return PMSessionSetCurrentPrinter(mSession, JsonText::FromUTF8(options.printer),
                                      HostFiles::URL(options.ppd, false), uri);
}

OSStatus PrintSession::MakeTickets(TicketFile const& kept) {
    struct Row {
        char const* name;
        char const* kind;
        PMTicketRef& ticket;
    };
    for (Row const& row :
         {Row{kPrintSettingsTicket, kPrintSettingsTicketName, mPrintSettings},
          Row{kPrinterInfoTicket, "com.apple.print.PrinterInfoTicket", mPrinterInfo},
          Row{kPageFormatTicket, "com.apple.print.PageFormatTicket", mPageFormat}}) {
        OSStatus status = PMTicketCreate(TicketKey(row.kind), &row.ticket);
        if (status == noErr) {
            status = PMSessionSetTicket(mSession, TicketKey(row.name), row.ticket);
        }
        if (status == noErr) {
            status = kept.Fill(TicketKey(row.name), row.ticket);
        }
        if (status != noErr) {
            return status;
        }
    }
    return noErr;
}

OSStatus PrintSession::FillPrintSettings(PrintOptions const& options) {
    TicketWriter settings(mPrintSettings);
    settings.Number(kCopiesKey, options.copies, kOneCopy);
    settings.Text(kJobNameKey, options.jobName, "Untitled");
    if (options.layout) {
        settings.Number(kLayoutRowsKey, options.layout->rows);
        settings.Number(kLayoutColumnsKey, options.layout->columns);
    }
    if (options.paperFeed) {
        settings.Set(kPrimaryPaperFeedKey, PaperFeed(*options.paperFeed).Get());
    } else if (std::ranges::any_of(options.settings, [](ControlSetting const& setting) {
                   return setting.keyword == "*InputSlot" || setting.keyword == "InputSlot";
               })) {
        settings.Remove(kPrimaryPaperFeedKey);
    }
    // It belongs to the records before.
    if (!options.watermarks.empty()) {
        settings.Remove(kFirstPageOnlyKey);
    }
    return settings.Status();
}

OSStatus PrintSession::FillPrinterInfo(PrintOptions const& options,
                                       std::optional<std::string> const& makeAndModel) {
    TicketWriter info(mPrinterInfo);
    if (!options.compiledPPD) {
        info.Remove(kCompiledPPDKey);
    } else if (!info.Has(kCompiledPPDKey)) {
        // That the item is there tells of a PPD printer; nobody reads what it holds.
        info.Text(kCompiledPPDKey, "");
    }
    info.Text(kMakeAndModelNameKey, makeAndModel, "Demo");
    return info.Status();
}

OSStatus PrintSession::FillPageFormat(PrintOptions const& options) {
    TicketWriter format(mPageFormat);
    format.Number(kOrientationKey, options.orientation, kPortrait);
    if (options.paper) {
        format.Set(kPaperInfoTicket, Paper(*options.paper, std::nullopt).Get());
    }
    return format.Status();
}

// What is kept of the paper, with another name and maybe another size.
CFRef<CFMutableDictionaryRef> PrintSession::Paper(std::string const& name,
                                                  std::optional<FloatSize> const& points) const {
    CFDictionaryRef kept = nullptr;
    PMTicketGetCFDictionary(mPageFormat, 0, 0, TicketKey(kPaperInfoTicket), &kept);
    CFRef<CFMutableDictionaryRef> paper(kept != nullptr
                                            ? CFDictionaryCreateMutableCopy(nullptr, 0, kept)
                                            : CFDictionaryCreateMutable(nullptr, 0));
    CFDictionarySetValue(paper, TicketKey(kPaperNameKey), JsonText::FromUTF8(name));
    if (points) {
        CFRef<CFMutableArrayRef> const edges(CFArrayCreateMutable(nullptr, 0));
        for (double const edge : {0.0, 0.0, points->height, points->width}) {
            CFArrayAppendValue(
                edges, CFRef<CFNumberRef>(CFNumberCreate(nullptr, kCFNumberFloat64Type, &edge)));
        }
        CFDictionarySetValue(paper, TicketKey(kPaperRectKey), edges);
    }
    return paper;
}

void PrintSession::SetPaper(std::string const& name, std::optional<FloatSize> const& points) const {
    TicketWriter(mPageFormat).Set(kPaperInfoTicket, Paper(name, points).Get());
}

void PrintSession::SetPaperFeed(std::string const& keyword) const {
    TicketWriter(mPrintSettings).Set(kPrimaryPaperFeedKey, PaperFeed(keyword).Get());
}

void PrintSession::SetCopies(std::int32_t copies) const {
    TicketWriter(mPrintSettings).Number(kCopiesKey, copies);
}

void PrintSession::SetOrientation(std::int32_t orientation) const {
    TicketWriter(mPageFormat).Number(kOrientationKey, orientation);
}
