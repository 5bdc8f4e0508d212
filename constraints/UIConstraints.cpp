// SPDX-License-Identifier: Apache-2.0
#include "constraints/UIConstraints.h"

#include "constraints/ConstraintsEngine.h"

namespace {

constexpr char const* kBlank = "";

// What stands for "not in use" takes no part in a rule over all options.
constexpr char const* kNone = "None";
constexpr char const* kFalse = "False";

}  // namespace

UIConstraints::UIConstraints() = default;

UIConstraints::~UIConstraints() {
    delete mEngine;
}

bool UIConstraints::IsOff(std::string_view option) {
    return option == kNone || option == kFalse;
}

void UIConstraints::KVSInsert(char const* key, char const* option) {
    long const keyId = mStrings.Insert(key);
    KVSInsert(keyId, mStrings.Insert(option));
}

void UIConstraints::KVSInsert(long key, long option) {
    mKeyForest.insert(key, option);
}

void UIConstraints::KVSInsert(long key, std::vector<long> options) {
    mKeyForest.insert(key, std::move(options));
}

void UIConstraints::Add(std::string_view key1, std::string_view option1, std::string_view key2,
                        std::string_view option2, bool requirement) {
    long const keyId1 = mStrings.Insert(key1);
    long const optionId1 = mStrings.Insert(option1);
    long const keyId2 = mStrings.Insert(key2);
    long const optionId2 = mStrings.Insert(option2);
    if (option1.empty() || option2.empty()) {
        mDeferred.push_back({keyId1, optionId1, keyId2, optionId2, requirement});
    } else {
        ForestOf(requirement).insert(keyId1, optionId1, {keyId2, optionId2});
    }
}

void UIConstraints::Resolve() {
    if (mStrings.Find(kBlank) == -1) {
        return;
    }
    mStrings.Insert(kNone);
    mStrings.Insert(kFalse);
    ListsByKey lists;
    for (auto const& [key1, option1, key2, option2, requirement] : mDeferred) {
        long const item1 = ItemMeant(requirement, key1, option1, lists);
        long const item2 = ItemMeant(requirement, key2, option2, lists);
        if (item1 != -1 && item2 != -1) {
            ForestOf(requirement).insert(key1, item1, {key2, item2});
        }
    }
    mDeferred.clear();
}

long UIConstraints::ItemMeant(bool requirement, long key, long option, ListsByKey& lists) {
    if (option != mStrings.Find(kBlank)) {
        return option;
    }
    auto const [known, isNew] = lists.try_emplace({requirement, key}, -1);
    if (isNew) {
        std::vector<std::int32_t> options = OptionsMeant(key);
        if (!options.empty()) {
            known->second = ForestOf(requirement).AddOptionList(std::move(options));
        }
    }
    return known->second;
}

std::vector<std::int32_t> UIConstraints::OptionsMeant(long key) const {
    std::vector<std::int32_t> options;
    if (std::vector<long> const* items = mKeyForest.GetItems(key)) {
        long const none = mStrings.Find(kNone);
        long const off = mStrings.Find(kFalse);
        for (long const item : *items) {
            if (item != none && item != off) {
                options.push_back(static_cast<std::int32_t>(item));
            }
        }
    }
    return options;
}

void UIConstraints::UpdateKVCache(char const* key, char const* option) {
    long const keyId = mStrings.Insert(key);
    UpdateKVCache(keyId, mStrings.Insert(option));
}

void UIConstraints::UpdateKVCache(long key, long option) {
    mSelection.Insert(key, option);
}

ConstraintsEngine& UIConstraints::Engine() {
    if (mEngine == nullptr) {
        mEngine = new ConstraintsEngine(&mSelection, &mConstraintForest, &mKeyForest, nullptr);
    }
    return *mEngine;
}

bool UIConstraints::ValidateDelta(KVCache const& delta) {
    return Engine().Test(&delta).conflicts.size() == 0;
}

bool UIConstraints::IsKVConstrained(long key, long option) {
    return Engine().HasConflict({key, option});
}

bool UIConstraints::IsKVConstrained(char const* key, char const* option) {
    return IsKVConstrained(mStrings.Find(key), mStrings.Find(option));
}

ConstraintForest& UIConstraints::ForestOf(bool requirement) {
    return requirement ? mRequiresForest : mConstraintForest;
}
