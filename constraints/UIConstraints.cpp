// SPDX-License-Identifier: Apache-2.0
#include "constraints/UIConstraints.h"

#include <algorithm>
#include <iterator>

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

void UIConstraints::KVSInsert(char const* key, char const* option) {
    long const keyId = mStrings.Insert(key);
    KVSInsert(keyId, mStrings.Insert(option));
}

void UIConstraints::KVSInsert(long key, long option) {
    mKeyForest.insert(key, option);
}

void UIConstraints::Add(char const* key1, char const* option1, char const* key2,
                        char const* option2, bool requirement) {
    long const keyId1 = mStrings.Insert(key1);
    long const optionId1 = mStrings.Insert(option1);
    long const keyId2 = mStrings.Insert(key2);
    long const optionId2 = mStrings.Insert(option2);
    if (*option1 == '\0' || *option2 == '\0') {
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
    for (SpecialConstraint const& rule : mDeferred) {
        Expand(rule);
    }
    mDeferred.clear();
}

void UIConstraints::Expand(SpecialConstraint const& rule) {
    ConstraintForest& forest = ForestOf(rule.requirement);
    std::vector<long> const options1 = OptionsMeant(rule.key1, rule.option1);
    std::vector<long> const options2 = OptionsMeant(rule.key2, rule.option2);
    for (long option1 : options1) {
        for (long option2 : options2) {
            forest.insert(rule.key1, option1, {rule.key2, option2});
        }
    }
}

std::vector<long> UIConstraints::OptionsMeant(long key, long option) const {
    if (option != mStrings.Find(kBlank)) {
        return {option};
    }
    std::vector<long> options;
    if (std::vector<long> const* items = mKeyForest.GetItems(key)) {
        long const none = mStrings.Find(kNone);
        long const off = mStrings.Find(kFalse);
        std::copy_if(items->begin(), items->end(), std::back_inserter(options),
                     [none, off](long item) { return item != none && item != off; });
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
