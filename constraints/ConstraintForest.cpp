// SPDX-License-Identifier: Apache-2.0
#include "constraints/ConstraintForest.h"

namespace {

void WriteOut(RulePartner const& partner, ItemConstraintList& list) {
    if (partner.list == nullptr) {
        list.insert({partner.key, partner.item});
        return;
    }
    for (long const option : partner.list->Options()) {
        list.insert({partner.key, option});
    }
}

}  // namespace

long ConstraintForest::AddOptionList(std::vector<std::int32_t> options) {
    return mTable.AddList(std::move(options));
}

void ConstraintForest::insert(long key, long item, long key2, long item2, ConstraintType) {
    insert(key, item, {key2, item2});
}

void ConstraintForest::insert(long key, long item, std::pair<long, long> rule) {
    if (key < 0) {
        return;
    }
    mTable.Add(key, item, rule.first, rule.second);
    if (KeyConstraintTree* const tree = TreeOf(key)) {
        for (long const option : mTable.Options(item)) {
            for (long const option2 : mTable.Options(rule.second)) {
                tree->insert(option, {rule.first, option2});
            }
        }
    }
}

ItemConstraintList* ConstraintForest::GetConstraintList(long key, long item) const {
    if (KeyConstraintTree const* const tree = TreeOf(key)) {
        return tree->GetItemConstraintList(item);
    }
    if (!mTable.Knows(key)) {
        return nullptr;
    }
    auto list = std::make_unique<ItemConstraintList>(item);
    for (RulePartner const& partner : GetPartners(key, item)) {
        WriteOut(partner, *list);
    }
    return list.release();
}

std::vector<RulePartner> ConstraintForest::GetPartners(long key, long item) const {
    std::vector<RulePartner> partners;
    if (KeyConstraintTree const* const tree = TreeOf(key)) {
        std::unique_ptr<ItemConstraintList const> const list(tree->GetItemConstraintList(item));
        for (auto const& [key2, item2] : list->Pairs()) {
            partners.push_back({key2, item2, nullptr});
        }
    } else if (item >= -1) {
        partners = mTable.Partners(key, item);
    }
    return partners;
}

bool ConstraintForest::DisableConstraints(long key, long item, long key2, long item2) {
    if (key == -1) {
        MakeAllTrees();
        for (auto const& [each, tree] : mTrees) {
            tree->DisableConstraints(item, key2, item2);
        }
        return true;
    }
    KeyConstraintTree* const tree = MakeTree(key);
    if (tree == nullptr) {
        return false;
    }
    for (auto const& [partnerKey, partnerItem] : tree->DisableConstraints(item, key2, item2)) {
        DisableConstraints(partnerKey, partnerItem, key, item);
    }
    return true;
}

bool ConstraintForest::EnableConstraints(long key, long item, long key2, long item2) {
    if (key == -1) {
        MakeAllTrees();
        for (auto const& [each, tree] : mTrees) {
            tree->EnableConstraints(-1, key2, item2);
        }
        return true;
    }
    KeyConstraintTree* const tree = MakeTree(key);
    if (tree == nullptr) {
        return false;
    }
    for (auto const& [partnerKey, partnerItem] : tree->EnableConstraints(item, key2, item2)) {
        EnableConstraints(partnerKey, partnerItem, key, item);
    }
    return true;
}

KeyConstraintTree* ConstraintForest::TreeOf(long key) const {
    auto const found = mTrees.find(key);
    return found == mTrees.end() ? nullptr : found->second.get();
}

KeyConstraintTree* ConstraintForest::MakeTree(long key) {
    KeyConstraintTree* const existing = TreeOf(key);
    if (existing != nullptr || !mTable.Knows(key)) {
        return existing;
    }
    auto tree = std::make_unique<KeyConstraintTree>(key);
    for (long const item : mTable.Items(key)) {
        std::unique_ptr<ItemConstraintList const> const list(GetConstraintList(key, item));
        for (auto const& rule : list->Pairs()) {
            tree->insert(item, rule);
        }
    }
    return (mTrees[key] = std::move(tree)).get();
}

void ConstraintForest::MakeAllTrees() {
    for (long const key : mTable.Keys()) {
        MakeTree(key);
    }
}

void ConstraintForest::clear() {
    mTable.clear();
    mTrees.clear();
}
