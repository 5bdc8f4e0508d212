// SPDX-License-Identifier: Apache-2.0
#include <cstring>
#include <memory>
#include <new>
#include <string_view>
#include <utility>

#include "PPDX/PPDObjects/Blanks.h"
#include "PPDX/PPDObjects/GroupName.h"
#include "PPDX/PPDObjects/OwnedBy.h"
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
    AddOwned(*mProperties, std::make_unique<PPDXProperty>(
                               name, localName, visible, showInPrintProperties, showInApplication));
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
    auto pane = std::make_unique<PPDXScrollPane>(name.Keyword(), name.Translation(), visible);
    pane->SetParent(page);
    page->SetScrollDown(AddOwned(*mGroups, std::move(pane)));
    return nullptr;
}

PPDXErrorObj* ZUBPPD::AddRollDown(GroupName const& name, char const* parent, bool visible) {
    auto* const pane = dynamic_cast<PPDXScrollPane*>(mGroups->Find(parent, true));
    if (pane == nullptr) {
        return new PPDXErrorObj(kUnknownParent, parent, false);
    }
    auto rollDown = std::make_unique<PPDXRollDown>(name.Keyword(), name.Translation(), visible);
    rollDown->SetParent(pane);
    if (!pane->RollDowns()->Add(AddOwned(*mGroups, std::move(rollDown)))) {
        throw std::bad_alloc();
    }
    return nullptr;
}

// ---- The pool of group names ----

void ZUBPPD::AddGroupNameToList(char const* keyword, CFStringRef translation, bool visible) {
    if (mGroups->Find(keyword, true) != nullptr) {
        return;
    }
    GroupName const* const added =
        PushOwned(mGroupNames, std::make_unique<GroupName>(keyword, translation, visible));
    if (added->Keyword() != nullptr) {
        mGroupNamesByKeyword.try_emplace(added->Keyword(), added);
    }
}

GroupName const* ZUBPPD::FindGroupNameFromList(char const* keyword) const {
    auto const found = mGroupNamesByKeyword.find(keyword);
    return found == mGroupNamesByKeyword.end() ? nullptr : found->second;
}

void ZUBPPD::ClearGroupNameList() {
    mGroupNamesByKeyword.clear();
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
    return AddOwned(*mGroups, std::make_unique<PPDXGroup>(name.Keyword(), name.Translation(),
                                                          name.IsVisible()));
}

void ZUBPPD::CollectOrphanGroups() {
    if (!ParseOrphans()) {
        return;
    }
    // Each name goes when its group is there: together they would take twice the memory.
    mGroupNamesByKeyword.clear();
    for (; !mGroupNames.Empty(); mGroupNames.PopFront()) {
        auto* const name = static_cast<GroupName*>(mGroupNames.Front());
        if (mGroups->Find(name->Keyword(), true) == nullptr) {
            AddPlainGroup(*name);
        }
        delete name;
    }
}

// ---- Rules ----

PPDXErrorObj* ZUBPPD::ParseUIConstraint(PPDStream& line, bool requirement) {
    auto nextField = [rest = line.Rest()]() mutable {
        rest = WithoutLeadingBlanks(rest);
        return TakeWord(rest);
    };
    std::string_view const key1 = nextField();
    std::string_view option1 = nextField();
    std::string_view const key2 =
        option1.starts_with('*') ? std::exchange(option1, "") : nextField();
    if (key2.empty()) {
        return new PPDXErrorObj(kRuleWithoutSecondKey, false);
    }
    std::string_view const option2 = nextField();
    TakeRule(key1, option1, key2, option2, requirement);
    return nullptr;
}

void ZUBPPD::TakeRule(std::string_view key1, std::string_view option1, std::string_view key2,
                      std::string_view option2, bool requirement) {
    mConstraints->Add(key1, option1, key2, option2, requirement);
}
