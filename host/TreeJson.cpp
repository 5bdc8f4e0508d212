// SPDX-License-Identifier: Apache-2.0
#include "host/TreeJson.h"

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXErrors.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/ControlJson.h"
#include "host/ElementJson.h"

namespace {

// What `describe` makes of each member of a list; nothing for a list that wasn't made.
template <typename List, typename Describe>
Json Members(List* list, Describe describe) {
    Json members = Json::array();
    if (list != nullptr) {
        for (auto* member = list->First(); member != nullptr; member = list->Next()) {
            members.push_back(describe(*member));
        }
    }
    return members;
}

template <typename Describe>
Json Members(PPDXControls* list, Describe describe) {
    Json members = Json::array();
    CNTL_TYPE type = kControlType;
    for (PPDXControl* control = GetFirst(list, type); control != nullptr;
         control = GetNext(list, type)) {
        members.push_back(describe(*control));
    }
    return members;
}

Json Keyword(PPDXElement& element) {
    return JsonText::Bytes(element.Keyword());
}

Json Header(ZUBPPD const& ppd) {
    return {{"PCFileName", JsonText::Bytes(ppd.PCFileName())},
            {"FormatVersion", JsonText::Bytes(ppd.FormatVersion())},
            {"FileVersion", JsonText::Bytes(ppd.FileVersion())},
            {"LanguageVersion", JsonText::Bytes(ppd.LanguageVersion())},
            {"LanguageEncoding", JsonText::Bytes(ppd.LanguageEncoding())},
            {"ModelName", JsonText::Bytes(ppd.ModelName())},
            {"APDialogExtension", JsonText::Bytes(ppd.PathToPDE())},
            {"ZUFileVersion", JsonText::Bytes(ppd.ZUFileVersion())},
            {"ZUVersion", JsonText::Bytes(ppd.ZUVersion())}};
}

Json Error(PPDXErrorObj& error) {
    return {{"code", error.Code()},
            {"fatal", error.IsFatal()},
            {"keyword", JsonText::Bytes(error.Keyword())}};
}

Json Property(PPDXProperty& property) {
    PPDXScrollPane* const pane = property.GetScrollDown();
    Json object = ElementJson::Names(property);
    object["visible"] = property.IsVisible();
    object["showInPrintProperties"] = property.ShowInPrintProp();
    object["showInApplication"] = property.ShowInApp();
    object["scrollPane"] = pane == nullptr ? Json() : Keyword(*pane);
    return object;
}

Json Group(PPDXGroup& group) {
    auto* const rollDown = dynamic_cast<PPDXRollDown*>(&group);
    auto* const pane = dynamic_cast<PPDXScrollPane*>(&group);
    Json object = ElementJson::Names(group);
    object["kind"] = rollDown != nullptr ? "rollDown" : pane != nullptr ? "scrollPane" : "group";
    object["visible"] = group.IsVisible();
    object["parent"] = ElementJson::Parent(group);
    if (rollDown != nullptr) {
        object["controls"] = Members(rollDown->Controls(), Keyword);
    }
    if (pane != nullptr) {
        object["rollDowns"] = Members(pane->RollDowns(), Keyword);
    }
    return object;
}

Json Shortcuts(PPDXShortcuts* shortcuts) {
    Json keywords = Json::array();
    for (PPDXControl* control = FirstShortcut(shortcuts); control != nullptr;
         control = NextShortcut(shortcuts)) {
        keywords.push_back(JsonText::Bytes(control->Keyword()));
    }
    return keywords;
}

}  // namespace

Json TreeJson::Describe(ZUBPPD& ppd) {
    DisplayOptionsScope const all(kDisplayAll);
    return {{"validPrinterName", ppd.IsValidPrinterName()},
            {"valid", ppd.IsValidPPD()},
            {"header", Header(ppd)},
            {"errors", Members(ppd.GetErrors(), Error)},
            {"properties", Members(ppd.GetProperties(), Property)},
            {"groups", Members(ppd.GetGroups(), Group)},
            {"controls", Members(ppd.GetControls(), ControlJson::Describe)},
            {"shortcuts", Shortcuts(ppd.GetShortcuts())},
            {"shortcutCount", GetShortcutCount(ppd.GetShortcuts())}};
}
