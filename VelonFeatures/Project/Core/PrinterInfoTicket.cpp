// SPDX-License-Identifier: Apache-2.0
#include "VelonFeatures/Project/Core/PrinterInfoTicket.h"

#include "VelonFeatures/Project/Core/TicketKeys.h"
#include "ZUBUtils/PPDUtils/CString.h"

namespace {

bool Fill(CString& text, CFStringRef string) {
    if (string != nullptr) {
        text = string;
    }
    return string != nullptr;
}

}  // namespace

PrinterInfoTicket::PrinterInfoTicket(PMPrintSession session) : JobTicket(session) {
    TakeSessionTicket(TicketKey(kPrinterInfoTicket));
}

bool PrinterInfoTicket::HasCompiledPPD() {
    return Item(kCompiledPPDKey) != nullptr;
}

CFStringRef PrinterInfoTicket::GetMakeAndModelName() {
    return StringItem(kMakeAndModelNameKey);
}

bool PrinterInfoTicket::GetMakeAndModelName(CString& name) {
    return Fill(name, GetMakeAndModelName());
}

CFStringRef PrinterInfoTicket::GetFullPrinterTypeName() {
    return StringItem(kPrinterLongNameKey);
}

bool PrinterInfoTicket::GetFullPrinterTypeName(CString& name) {
    return Fill(name, GetFullPrinterTypeName());
}

CFStringRef PrinterInfoTicket::GetPrinterAddress() {
    return StringItem(kPrinterAddressKey);
}

bool PrinterInfoTicket::GetPrinterAddress(CString& address) {
    return Fill(address, GetPrinterAddress());
}

bool PrinterInfoTicket::SupportColor() {
    return TrueItem(kSupportsColorKey);
}

bool PrinterInfoTicket::SupportCopies() {
    return TrueItem(kDoesCopiesKey);
}

bool PrinterInfoTicket::SupportCopiesAndCollate() {
    return TrueItem(kDoesCopyCollateKey);
}

bool PrinterInfoTicket::SupportReversePrintingOrder() {
    return TrueItem(kDoesReverseOrderKey);
}

CFArrayRef PrinterInfoTicket::InputFileList() {
    return ArrayItem(kInputFileTypeListKey);
}

CFArrayRef PrinterInfoTicket::OutputTypeList() {
    return ArrayItem(kOutputTypeListKey);
}

bool PrinterInfoTicket::PostscriptVersion(long* level, CFStringRef* version, long* revision) {
    bool arrived = level != nullptr && NumberItem(kPostScriptLevelKey, level);
    if (version != nullptr) {
        if (CFStringRef const text = StringItem(kPSVersionKey); text != nullptr) {
            *version = text;
            arrived = true;
        }
    }
    if (revision != nullptr && NumberItem(kPSRevisionKey, revision)) {
        arrived = true;
    }
    return arrived;
}

std::int32_t PrinterInfoTicket::TrueTypeFontRasterizer() {
    return NumberItem(kTrueTypeRasterizerKey);
}

std::int32_t PrinterInfoTicket::MemoryInstalled() {
    return NumberItem(kTotalMemInstalledKey);
}

CFStringRef PrinterInfoTicket::PPDFile() {
    return StringItem(kDescriptionFileKey);
}

bool PrinterInfoTicket::PPDFile(CString& file) {
    file = "";
    return Fill(file, PPDFile());
}

CFStringRef PrinterInfoTicket::GetColorDeviceUUID() {
    return StringItem(kColorDeviceIDKey);
}

bool PrinterInfoTicket::GetColorDeviceUUID(CString& uuid) {
    uuid = "";
    return Fill(uuid, GetColorDeviceUUID());
}

CFTypeRef PrinterInfoTicket::Item(char const* key) {
    CFTypeRef item = nullptr;
    mInfoStatus =
        Ticket() == 0 ? kNoTicket : PMTicketGetItem(Ticket(), TicketKey(key), 0, 0, &item);
    return mInfoStatus == noErr ? item : nullptr;
}

CFTypeRef PrinterInfoTicket::Item(char const* key, CFTypeID type) {
    CFTypeRef const item = Item(key);
    return item != nullptr && CFGetTypeID(item) == type ? item : nullptr;
}

CFStringRef PrinterInfoTicket::StringItem(char const* key) {
    return static_cast<CFStringRef>(Item(key, CFStringGetTypeID()));
}

CFArrayRef PrinterInfoTicket::ArrayItem(char const* key) {
    return static_cast<CFArrayRef>(Item(key, CFArrayGetTypeID()));
}

bool PrinterInfoTicket::TrueItem(char const* key) {
    CFTypeRef const item = Item(key);
    return item != nullptr && CFEqual(item, kCFBooleanTrue);
}

std::int32_t PrinterInfoTicket::NumberItem(char const* key) {
    auto const number = static_cast<CFNumberRef>(Item(key, CFNumberGetTypeID()));
    std::int32_t value = 0;
    bool const isRead = number != nullptr && CFNumberGetValue(number, kCFNumberSInt32Type, &value);
    return isRead ? value : 0;
}

bool PrinterInfoTicket::NumberItem(char const* key, long* number) {
    CFTypeRef const item = Item(key);
    if (item == nullptr) {
        return false;
    }
    std::int32_t value = 0;
    bool const isRead =
        CFGetTypeID(item) == CFNumberGetTypeID() &&
        CFNumberGetValue(static_cast<CFNumberRef>(item), kCFNumberSInt32Type, &value);
    *number = isRead ? value : -1;
    return true;
}
