// SPDX-License-Identifier: Apache-2.0
// How the choices of a PPD come into the print settings and out of them.
#include <memory>
#include <new>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "VelonFeatures/Project/Core/BundleIdentity.h"
#include "VelonFeatures/Project/Core/PrintSettingsTicket.h"
#include "VelonFeatures/Project/Core/ZUBJobTicket.h"
#include "ZUBUtils/PPDUtils/CFDataStream.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "platform/CFRef.h"
#include "twoway/PrinterListFile.h"

namespace {

struct ReleasePPD {
    void operator()(ZUBPPD* ppd) const { ppd->Release(); }
};

CFStringRef StringAt(CFArrayRef array, CFIndex index) {
    CFTypeRef const value = CFArrayGetValueAtIndex(array, index);
    return value != nullptr && CFGetTypeID(value) == CFStringGetTypeID()
               ? static_cast<CFStringRef>(value)
               : nullptr;
}

}  // namespace

bool ZUBJobTicket::ReadChoices(CFStringRef key, CFDictionaryRef& choices) {
    choices = nullptr;
    mLastStatus = mSettings == nullptr ? kNoTicket : mSettings->Get(key, choices);
    return mLastStatus == noErr && choices != nullptr;
}

bool ZUBJobTicket::WriteChoices(CFStringRef key, CFDictionaryRef choices) {
    if (choices == nullptr) {
        mLastStatus = memFullErr;
    } else {
        mLastStatus = mSettings == nullptr ? kNoTicket : mSettings->Set(key, key, choices, false);
    }
    return mLastStatus == noErr;
}

bool ZUBJobTicket::RestorePPDForAllKeys(ZUBPPD* ppd, CFStringRef bundleID, CFStringRef printerKey) {
    CFDictionaryRef choices = nullptr;
    if (ppd == nullptr || !ReadChoices(printerKey != nullptr ? printerKey : bundleID, choices)) {
        return false;
    }
    ppd->SetAllValues(choices);
    return true;
}

bool ZUBJobTicket::SavePPDForAllKeys(ZUBPPD* ppd, CFStringRef key) {
    if (ppd == nullptr) {
        return false;
    }
    CFRef<CFDictionaryRef> const choices(ppd->CopyAllValues());
    return WriteChoices(key, choices);
}

bool ZUBJobTicket::SavePPDForKeys(ZUBPPD* ppd, CFStringRef key, CFArrayRef keywords) {
    if (ppd == nullptr || keywords == nullptr) {
        return false;
    }
    CFRef<CFMutableDictionaryRef> const choices(CFDictionaryCreateMutable(nullptr, 0));
    for (CFIndex i = 0; choices && i < CFArrayGetCount(keywords); ++i) {
        CFStringRef const keyword = StringAt(keywords, i);
        CFRef<CFStringRef> const value(keyword != nullptr ? ppd->CopyValueForKey(keyword)
                                                          : nullptr);
        if (value) {
            CFDictionarySetValue(choices, keyword, value);
        }
    }
    return WriteChoices(key, choices);
}

bool ZUBJobTicket::RestorePPDForKeys(ZUBPPD* ppd, CFStringRef key, CFArrayRef keywords) {
    CFDictionaryRef choices = nullptr;
    if (ppd == nullptr || keywords == nullptr || !ReadChoices(key, choices)) {
        return false;
    }
    for (CFIndex i = 0; i < CFArrayGetCount(keywords); ++i) {
        CFStringRef const keyword = StringAt(keywords, i);
        CFTypeRef const value =
            keyword != nullptr ? CFDictionaryGetValue(choices, keyword) : nullptr;
        if (value != nullptr && CFGetTypeID(value) == CFStringGetTypeID()) {
            ppd->SetValueForKey(keyword, static_cast<CFStringRef>(value));
        }
    }
    return true;
}

bool ZUBJobTicket::SavePPD(ZUBPPD* ppd, CFStringRef key, CFURLRef /*url*/) {
    if (ppd == nullptr) {
        return false;
    }
    Settings settings;
    CFDataStream stream;
    bool const isPacked = stream.valid() && ppd->Save(settings) && settings.Save(&stream) == noErr;
    CFRef<CFDataRef> const xml(isPacked ? CFPropertyListCreateXMLData(nullptr, stream.Data())
                                        : nullptr);
    if (mSettings == nullptr) {
        mLastStatus = kNoTicket;
    } else {
        mLastStatus = xml ? mSettings->Set(key, key, xml, false) : memFullErr;
    }
    return mLastStatus == noErr;
}

ZUBPPD* ZUBJobTicket::RestorePPD(CFStringRef key, CFURLRef url) {
    CFRef<CFURLRef> const contents(CreatePDEContentsURL(key));
    CFDataRef xml = nullptr;
    mLastStatus = mSettings == nullptr ? kNoTicket : mSettings->Get(key, xml);
    if (mLastStatus != noErr || !contents) {
        return nullptr;
    }
    PrinterListFile const printers(contents, kCFPropertyListImmutable);
    CFRef<CFPropertyListRef> const archive(
        CFPropertyListCreateFromXMLData(nullptr, xml, kCFPropertyListImmutable, nullptr));
    if (!printers.IsFileValid() || !archive || CFGetTypeID(archive) != CFDataGetTypeID()) {
        return nullptr;
    }
    CFDataStream stream(static_cast<CFDataRef>(archive.Get()));
    Settings settings;
    if (!stream.valid() || settings.Read(&stream, stream.dataSize()) != noErr) {
        return nullptr;
    }
    std::unique_ptr<ZUBPPD, ReleasePPD> ppd(new (std::nothrow)
                                                ZUBPPD(settings, url, printers.PCFileNames()));
    bool const isAccepted = ppd != nullptr && ppd->IsValidPrinterName() && ppd->IsValidPPD();
    return isAccepted ? ppd.release() : nullptr;
}
