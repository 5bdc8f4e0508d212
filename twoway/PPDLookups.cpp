// SPDX-License-Identifier: Apache-2.0
#include "twoway/PPDLookups.h"

#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/ZUBPPD.h"

namespace {

_PopupItem* ItemAt(PPDXPopupControl* popup, long index) {
    if (index < 1) {
        return nullptr;
    }
    _PopupItem* item = FirstItem(popup);
    for (long passed = 1; item != nullptr && passed < index; ++passed) {
        item = NextItem(popup);
    }
    return item;
}

}  // namespace

bool GetPPDPopupItemDisplayNameAsCFString(PPDXPopupControl* popup, long index,
                                          CFMutableStringRef out) {
    _PopupItem* const item = ItemAt(popup, index);
    CFStringReplaceAll(out, item == nullptr ? nullptr : item->LocalName());
    return item != nullptr && out != nullptr;
}

bool GetScrollPane(ZUBPPD* ppd, char const* keyword, PPDXScrollPane*& out) {
    PPDXProperties* const pages = ppd == nullptr ? nullptr : ppd->GetProperties();
    out = GetPropertyScrollDown(FindProperty(pages, keyword, true));
    return out != nullptr;
}
