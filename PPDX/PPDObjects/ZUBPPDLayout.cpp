// SPDX-License-Identifier: Apache-2.0
#include <cstring>
#include <new>
#include <string_view>
#include <unordered_set>

#include "PPDX/PPDObjects/GroupName.h"
#include "PPDX/PPDObjects/PPDDelimiters.h"
#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDXErrorCode.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "constraints/UIConstraints.h"
#include "platform/CFRef.h"

// Pages, group names, parents and rules: the lines that lay out the tree.

PPDXErrorObj* ZUBPPD::ParsePropertyPage(PPDStream& line) {
    char name[kTextSize];
    char translation[kTextSize];
    if (!NextToken(line, name, kNameDelimiters, true)) {
        return new PPDXErrorObj(kPageWithoutName, false);
    }
    if (mProperties->Find(name, true) != nullptr) {
        return new PPDXErrorObj(kAlreadyExists, false);
    }
    if (!NextToken(line, translation, kTranslationDelimiters, false)) {
        return nullptr;
    }
    bool visible = false;
    bool showInPrintProperties = true;
    bool showInApplication = true;
    for (char word[kTextSize]; NextToken(line, word, kWordDelimiters, true);) {
        std::string_view const text = word;
        visible |= text == "True";
        showInPrintProperties &= text != "App";
        showInApplication &= text != "Prop";
    }
    if (!visible && !ParseHidden()) {
        return nullptr;
    }
    CFRef<CFStringRef> const localName(CopyTranslation(translation));
    if (!localName) {
        return new PPDXErrorObj(kPageWithoutName, false);
    }
    mProperties->Add(new (std::nothrow) PPDXProperty(name, localName, visible,
                                                     showInPrintProperties, showInApplication));
    return nullptr;
}

PPDXErrorObj* ZUBPPD::ParseGroupName(PPDStream& line) {
    char name[kTextSize];
    char translation[kTextSize];
    if (!NextToken(line, name, kNameDelimiters, true)) {
        return new PPDXErrorObj(kGroupWithoutName, name, false);
    }
    if (mGroups->Find(name, true) != nullptr) {
        return new PPDXErrorObj(kAlreadyExists, name, false);
    }
    if (!NextToken(line, translation, kTranslationDelimiters, false)) {
        return nullptr;
    }
    bool visible = false;
    for (char word[kTextSize]; NextToken(line, word, kWordDelimiters, true);) {
        visible |= std::strcmp(word, "True") == 0;
    }
    if (!visible && !ParseHidden()) {
        return nullptr;
    }
    CFRef<CFStringRef> const localName(CopyTranslation(translation));
    if (!localName) {
        return new PPDXErrorObj(kGroupWithoutName, name, false);
    }
    AddGroupNameToList(name, localName, visible);
    return nullptr;
}

PPDXErrorObj* ZUBPPD::ParseParent(PPDStream& line) {
    using AddKind = PPDXErrorObj* (ZUBPPD::*)(GroupName const&, char const*, bool);
    char name[kTextSize];
    char parent[kTextSize];
    if (!NextToken(line, name, kNameDelimiters, true)) {
        return new PPDXErrorObj(kParentLineLacksField, false);
    }
    if (!NextToken(line, parent, kNameDelimiters, true)) {
        return new PPDXErrorObj(kParentLineLacksField, name, false);
    }
    bool visible = false;
    AddKind add = nullptr;
    for (char word[kTextSize]; NextToken(line, word, kWordDelimiters, true);) {
        std::string_view const text = word;
        visible |= text == "True";
        add = text == "Scrollpane" ? &ZUBPPD::AddScrollPane
              : text == "Rolldown" ? &ZUBPPD::AddRollDown
                                   : add;
    }
    GroupName const* const groupName = FindGroupNameFromList(name);
    bool const dropped = (!visible && !ParseHidden()) || groupName == nullptr || add == nullptr;
    return dropped ? nullptr : (this->*add)(*groupName, parent, visible);
}

PPDXErrorObj* ZUBPPD::AddScrollPane(GroupName const& name, char const* parent, bool visible) {
    PPDXProperty* const page = mProperties->Find(parent, true);
    if (page == nullptr) {
        return new PPDXErrorObj(kUnknownParent, parent, false);
    }
    auto* const pane =
        new (std::nothrow) PPDXScrollPane(name.Keyword(), name.Translation(), visible);
    if (pane != nullptr) {
        pane->SetParent(page);
        page->SetScrollDown(pane);
        mGroups->Add(pane);
    }
    return nullptr;
}

PPDXErrorObj* ZUBPPD::AddRollDown(GroupName const& name, char const* parent, bool visible) {
    auto* const pane = dynamic_cast<PPDXScrollPane*>(mGroups->Find(parent, true));
    if (pane == nullptr) {
        return new PPDXErrorObj(kUnknownParent, parent, false);
    }
    auto* const rollDown =
        new (std::nothrow) PPDXRollDown(name.Keyword(), name.Translation(), visible);
    if (rollDown != nullptr) {
        rollDown->SetParent(pane);
        pane->RollDowns()->Add(rollDown);
        mGroups->Add(rollDown);
    }
    return nullptr;
}

// ---- The pool of group names ----

void ZUBPPD::AddGroupNameToList(char const* keyword, CFStringRef translation, bool visible) {
    if (mGroups->Find(keyword, true) == nullptr) {
        mGroupNames.PushBack(new GroupName(keyword, translation, visible));
    }
}

GroupName const* ZUBPPD::FindGroupNameFromList(char const* keyword) const {
    for (auto at = mGroupNames.Begin(); at != mGroupNames.End(); ++at) {
        auto* const name = static_cast<GroupName const*>(*at);
        if (name->IsNamed(keyword)) {
            return name;
        }
    }
    return nullptr;
}

void ZUBPPD::ClearGroupNameList() {
    for (; !mGroupNames.Empty(); mGroupNames.PopBack()) {
        delete static_cast<GroupName*>(mGroupNames.Back());
    }
}

PPDXGroup* ZUBPPD::FindAndCreateParent(char const* name) {
    GroupName const* const groupName = FindGroupNameFromList(name);
    if (groupName == nullptr) {
        return nullptr;
    }
    PPDXGroup* const existing = mGroups->Find(name, true);
    return existing != nullptr ? existing : AddPlainGroup(*groupName);
}

PPDXGroup* ZUBPPD::AddPlainGroup(GroupName const& name) {
    auto* const group =
        new (std::nothrow) PPDXGroup(name.Keyword(), name.Translation(), name.IsVisible());
    if (group != nullptr) {
        mGroups->Add(group);
    }
    return group;
}

void ZUBPPD::CollectOrphanGroups() {
    if (!ParseOrphans()) {
        return;
    }
    // A file can declare names by the ten thousand: a walk of the groups for each would show.
    std::unordered_set<std::string_view> known;
    DisplayOptionsScope const all(kDisplayAll);
    for (auto* group = mGroups->First(); group != nullptr; group = mGroups->Next()) {
        if (group->Keyword() != nullptr) {
            known.insert(group->Keyword());
        }
    }
    for (auto at = mGroupNames.Begin(); at != mGroupNames.End(); ++at) {
        auto const& name = *static_cast<GroupName const*>(*at);
        bool const nameless = name.Keyword() == nullptr || *name.Keyword() == '\0';
        if (nameless || known.insert(name.Keyword()).second) {
            AddPlainGroup(name);
        }
    }
}

// ---- Rules ----

PPDXErrorObj* ZUBPPD::ParseUIConstraint(PPDStream& line, bool requirement) {
    auto const nextField = [&](char* field) {
        line.SkipWhiteSpace();
        NextToken(line, field, kBlankDelimiters, true);
    };
    char key1[kTextSize];
    char option1[kTextSize];
    char key2[kTextSize];
    char option2[kTextSize];
    nextField(key1);
    nextField(option1);
    if (option1[0] == '*') {
        std::strcpy(key2, option1);
        option1[0] = '\0';
    } else {
        nextField(key2);
    }
    if (key2[0] == '\0') {
        return new PPDXErrorObj(kRuleWithoutSecondKey, false);
    }
    nextField(option2);
    mConstraints->Add(key1, option1, key2, option2, requirement);
    return nullptr;
}
