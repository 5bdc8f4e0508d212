// SPDX-License-Identifier: Apache-2.0
#include <memory>
#include <new>

#include "PPDX/PPDObjects/Controls/ArchiveTags.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/PPDXErrorCode.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "ZUBUtils/PPDUtils/Settings.h"
#include "constraints/UIConstraints.h"

// The compiled PPD: a tree put into an archive and made again from it.

namespace {

// A list that wasn't made leaves nothing.
template <typename List>
bool SaveList(List* list, Settings& settings) {
    return list == nullptr || list->Save(settings) == noErr;
}

// Takes the parent's name from an element and looks for the parent.
template <typename List>
auto TakeParent(PPDXElement& element, List& list) -> decltype(list.Find("", true)) {
    std::unique_ptr<CString> const name(element.TakeParentName());
    return name != nullptr ? list.Find(name->GetCharData(), true) : nullptr;
}

}  // namespace

bool ZUBPPD::Save(Settings& settings) {
    try {
        return PPDX::Save(settings) &&
               SaveText(settings, ArchiveTags::kVersions, ArchiveTags::kExtendedFileVersionID,
                        mDriverFileVersion) &&
               SaveText(settings, ArchiveTags::kVersions, ArchiveTags::kExtendedVersionID,
                        mExtensionVersion) &&
               SaveTree(settings);
    } catch (std::bad_alloc const&) {
        return false;
    }
}

bool ZUBPPD::SaveTree(Settings& settings) {
    DisplayOptionsScope const all(kDisplayAll);
    bool const hasShortcuts = mShortcuts != nullptr && !mShortcuts->Empty();
    return SaveList(mProperties, settings) && SaveList(mGroups, settings) &&
           SaveList(mControls, settings) && SaveList(hasShortcuts ? mShortcuts : nullptr, settings);
}

bool ZUBPPD::Restore(Settings& settings) {
    DisplayOptionsScope const all(kDisplayAll);
    return mControls != nullptr && mControls->Restore(settings) == noErr;
}

void ZUBPPD::BuildFromSettings(Settings& settings) {
    if (!IsValidPrinterName()) {
        return;
    }
    try {
        RebuildTree(settings);
        // The archive came from a file that passed.
        mHeaderAccepted = true;
    } catch (std::bad_alloc const&) {
        RefuseForLackOfMemory();
    }
}

void ZUBPPD::RebuildTree(Settings& settings) {
    mConstraints = new (std::nothrow) UIConstraints;
    mDriverFileVersion =
        GetSettingsString(settings, ArchiveTags::kVersions, ArchiveTags::kExtendedFileVersionID);
    mExtensionVersion =
        GetSettingsString(settings, ArchiveTags::kVersions, ArchiveTags::kExtendedVersionID);
    DisplayOptionsScope const all(kDisplayAll);
    mProperties = new (std::nothrow) PPDXProperties(settings);
    mGroups = new (std::nothrow) PPDXGroups(settings);
    mControls = new (std::nothrow) PPDXControls(settings, mConstraints, &mArena);
    mShortcuts = new (std::nothrow) PPDXShortcuts(settings, mControls);
    ResolveHeirarchy();
}

// ---- Links of a restored tree ----

void ZUBPPD::ResolveHeirarchy() {
    if (mGroups == nullptr) {
        return;
    }
    if (mProperties != nullptr) {
        for (auto* group = mGroups->First(); group != nullptr; group = mGroups->Next()) {
            LinkGroup(*group);
        }
    }
    if (mControls != nullptr) {
        CNTL_TYPE type = kControlType;
        for (auto* control = mControls->First(type); control != nullptr;
             control = mControls->Next(type)) {
            auto* const rollDown = dynamic_cast<PPDXRollDown*>(TakeParent(*control, *mGroups));
            if (rollDown != nullptr) {
                control->SetParent(rollDown);
                rollDown->Controls()->Add(control);
            }
        }
    }
}

void ZUBPPD::LinkGroup(PPDXGroup& group) {
    if (auto* const pane = dynamic_cast<PPDXScrollPane*>(&group)) {
        if (PPDXProperty* const page = TakeParent(group, *mProperties)) {
            pane->SetParent(page);
            page->SetScrollDown(pane);
        }
    } else if (auto* const rollDown = dynamic_cast<PPDXRollDown*>(&group)) {
        if (auto* const parent = dynamic_cast<PPDXScrollPane*>(TakeParent(group, *mGroups))) {
            rollDown->SetParent(parent);
            parent->RollDowns()->Add(rollDown);
        }
    }
}
