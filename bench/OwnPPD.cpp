// SPDX-License-Identifier: Apache-2.0
#include "bench/OwnPPD.h"

#include <cstdint>
#include <filesystem>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/PPDXErrors.h"
#include "ZUBUtils/PPDUtils/CFDataStream.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "bench/Failure.h"

CFRef<CFURLRef> OwnPPD::URL(std::string const& path) {
    std::string const text = std::filesystem::absolute(path).string();
    return CFRef<CFURLRef>(CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<std::uint8_t const*>(text.data()),
        static_cast<CFIndex>(text.size()), false));
}

void OwnPPD::Parse(CFURLRef url) {
    auto* const ppd = new ZUBPPD(url, kParseAll, nullptr);
    if (auto* const popup = ppd->GetControls()->FirstPopupControl()) {
        ppd->IsKVConstrained(popup->Keyword(), popup->CurrentKeyword());
    }
    ppd->Release();
}

bool OwnPPD::Rebuild(CFDataRef archive, CFURLRef url) {
    CFDataStream stream(archive);
    Settings settings;
    if (settings.Read(&stream, 0) != noErr) {
        return false;
    }
    auto* const ppd = new ZUBPPD(settings, url, nullptr);
    bool const isValid = ppd->IsValidPPD();
    ppd->Release();
    return isValid;
}

OwnPPD::OwnPPD(std::string const& path) : mPPD(new ZUBPPD(URL(path), kParseAll, nullptr)) {
    if (!mPPD->IsValidPPD() || mPPD->GetErrors()->Count() != 0) {
        Fail(path + ": our reader reports errors");
    }
    DisplayOptionsScope const all(kDisplayAll);
    for (auto* popup = mPPD->GetControls()->FirstPopupControl(); popup != nullptr;
         popup = mPPD->GetControls()->NextPopupControl()) {
        mMenus.push_back(popup);
    }
    if (mMenus.empty()) {
        Fail(path + ": no menu");
    }
}

OwnPPD::~OwnPPD() {
    mPPD->Release();
}

std::string OwnPPD::Keyword(std::size_t menu) const {
    return mMenus[menu]->Keyword();
}

std::vector<std::string> OwnPPD::Items(std::size_t menu) {
    std::vector<std::string> items;
    for (auto* item = mMenus[menu]->FirstItem(); item != nullptr; item = mMenus[menu]->NextItem()) {
        items.emplace_back(item->Keyword());
    }
    return items;
}

long OwnPPD::GreyMenu(std::size_t menu, std::vector<bool>* byItem) {
    PPDXPopupControl& popup = *mMenus[menu];
    long count = 0;
    for (auto* item = popup.FirstItem(); item != nullptr; item = popup.NextItem()) {
        bool const greyed = mPPD->IsKVConstrained(popup.Keyword(), item->Keyword());
        count += greyed ? 1 : 0;
        if (byItem != nullptr) {
            byItem->push_back(greyed);
        }
    }
    return count;
}

CFRef<CFDataRef> OwnPPD::Archive() {
    Settings settings;
    CFDataStream stream;
    bool const isSaved = mPPD->Save(settings) && settings.Save(&stream) == noErr;
    return isSaved ? CFRef<CFDataRef>::Retained(stream.Data()) : CFRef<CFDataRef>();
}

long OwnPPD::EmitAll() {
    mOutput.clear();
    DisplayOptionsScope const all(kDisplayAll);
    CNTL_TYPE type = kControlType;
    for (auto* control = mPPD->GetControls()->First(type); control != nullptr;
         control = mPPD->GetControls()->Next(type)) {
        std::size_t const former = mOutput.size();
        mOutput.resize(former + static_cast<std::size_t>(control->PostScript(nullptr)));
        control->PostScript(reinterpret_cast<unsigned char*>(mOutput.data() + former));
    }
    return static_cast<long>(mOutput.size());
}
