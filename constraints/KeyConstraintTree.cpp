// SPDX-License-Identifier: Apache-2.0
#include "constraints/KeyConstraintTree.h"

#include "constraints/ItemConstraintList.h"

namespace {

using Lists = std::map<long, ItemConstraintList*>;
using Pairs = std::set<std::pair<long, long>>;

ItemConstraintList& ListOf(Lists& lists, long item) {
    ItemConstraintList*& list = lists[item];
    if (list == nullptr) {
        list = new ItemConstraintList(item);
    }
    return *list;
}

void DeleteAll(Lists& lists) {
    for (auto const& [item, list] : lists) {
        delete list;
    }
}

// The lists of one option, or of all with -1.
std::pair<Lists::const_iterator, Lists::const_iterator> Chosen(Lists const& lists, long item) {
    return item == -1 ? std::pair(lists.begin(), lists.end()) : lists.equal_range(item);
}

bool Names(std::pair<long, long> rule, long key2, long item2) {
    return rule.first == key2 && (item2 == -1 || rule.second == item2);
}

}  // namespace

KeyConstraintTree::~KeyConstraintTree() {
    DeleteAll(mActive);
    DeleteAll(mDisabled);
}

void KeyConstraintTree::insert(long item, std::pair<long, long> rule) {
    ListOf(mActive, item).insert(rule);
}

ItemConstraintList* KeyConstraintTree::GetItemConstraintList(long item) const {
    auto* result = new ItemConstraintList(item);
    auto const [begin, end] = Chosen(mActive, item);
    for (auto at = begin; at != end; ++at) {
        *result += *at->second;
    }
    return result;
}

Pairs KeyConstraintTree::DisableConstraints(long item, long key2, long item2) {
    Pairs partners;
    auto [at, end] = Chosen(mActive, item);
    while (at != end) {
        ItemConstraintList& active = *(at++)->second;  // its entry may go
        if (key2 < 0) {
            DisableAll(active, partners);
        } else {
            DisableSome(active, key2, item2);
        }
    }
    return partners;
}

void KeyConstraintTree::DisableAll(ItemConstraintList& active, Pairs& partners) {
    partners.insert(active.Pairs().begin(), active.Pairs().end());
    ListOf(mDisabled, active.Item()) = active;
    mActive.erase(active.Item());
    delete &active;
}

void KeyConstraintTree::DisableSome(ItemConstraintList& active, long key2, long item2) {
    ItemConstraintList kept(active.Item());
    for (auto const& rule : active.Pairs()) {
        if (!Names(rule, key2, item2)) {
            kept.insert(rule);
        }
    }
    ListOf(mDisabled, active.Item()) = active;
    active = kept;
}

Pairs KeyConstraintTree::EnableConstraints(long item, long key2, long item2) {
    Pairs partners;
    auto const [begin, end] = Chosen(mDisabled, item);
    for (auto at = begin; at != end; ++at) {
        ItemConstraintList const& disabled = *at->second;
        if (key2 < 0) {
            ListOf(mActive, disabled.Item()) = disabled;
            partners.insert(disabled.Pairs().begin(), disabled.Pairs().end());
        } else {
            EnableSome(disabled, key2, item2);
        }
    }
    return partners;
}

void KeyConstraintTree::EnableSome(ItemConstraintList const& disabled, long key2, long item2) {
    ItemConstraintList& active = ListOf(mActive, disabled.Item());
    Pairs rules(active.Pairs().begin(), active.Pairs().end());
    for (auto const& rule : disabled.Pairs()) {
        if (Names(rule, key2, item2)) {
            rules.insert(rule);
        }
    }
    ItemConstraintList enabled(active.Item());
    for (auto const& rule : rules) {
        enabled.insert(rule);
    }
    active = enabled;
}
