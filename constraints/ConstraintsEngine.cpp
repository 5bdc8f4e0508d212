// SPDX-License-Identifier: Apache-2.0
#include "constraints/ConstraintsEngine.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <memory>
#include <set>

#include "constraints/ConstraintForest.h"
#include "constraints/KeyForest.h"

namespace {

using Pairs = std::vector<std::pair<long, long>>;
using Rules = std::unique_ptr<ItemConstraintList const>;

constexpr std::int32_t kMaxDepth = 128;
constexpr std::size_t kMaxQueue = 128;

// The selection with a change applied to it. The selection isn't copied: a question about one
// menu item would otherwise cost as much as the PPD has options.
class MergedSelection {
  public:
    MergedSelection(KVCache const& selection, KVCache const& delta) : mSelection(selection) {
        for (long position = 0; position < delta.size(); ++position) {
            auto const [key, item] = delta.GetKV(position);
            if (key >= 0) {
                mChanged[key] = item;
            }
        }
    }

    bool Holds(std::pair<long, long> pair) const {
        auto const changed = mChanged.find(pair.first);
        return changed == mChanged.end() ? mSelection.Lookup(pair) >= 0
                                         : changed->second == pair.second;
    }

  private:
    KVCache const& mSelection;
    std::map<long, long> mChanged;  // option by key
};

// `blocked` is sorted.
void AddAlternatives(std::pair<long, long> conflict, std::vector<long> const& options,
                     Pairs const& blocked, KVCache& alternatives) {
    std::for_each(options.rbegin(), options.rend(), [&](long option) {
        std::pair<long, long> const pair(conflict.first, option);
        if (pair != conflict && !std::binary_search(blocked.begin(), blocked.end(), pair)) {
            alternatives.add(pair);
        }
    });
}

bool AnyIn(KVCache const& cache, Pairs const& rules) {
    return std::any_of(rules.begin(), rules.end(),
                       [&cache](auto const& rule) { return cache.Lookup(rule) >= 0; });
}

bool AllIn(Pairs const& rules, KVCache const& cache) {
    for (long position = 0; position < cache.size(); ++position) {
        if (std::find(rules.begin(), rules.end(), cache.GetKV(position)) == rules.end()) {
            return false;
        }
    }
    return true;
}

}  // namespace

ConstraintsEngine::ConstraintsEngine(KVCache const* current, ConstraintForest const* forest,
                                     KeyForest const* keys, KVCache const* locked)
    : mCurrent(current), mForest(forest), mKeys(keys), mLocked(locked) {}

ConstraintsEngine::~ConstraintsEngine() {
    purge();
}

_KVErrorSet ConstraintsEngine::Test(KVCache const* delta) const {
    _KVErrorSet errors;
    if (delta == nullptr || mCurrent == nullptr) {
        return errors;
    }
    MergedSelection const merged(*mCurrent, *delta);
    for (long position = 0; position < delta->size(); ++position) {
        auto const [key, item] = delta->GetKV(position);
        Rules const rules(RulesOf(key, item));
        Pairs blocked;  // a sorted copy of the rules, made for the first conflict
        for (auto rule = rules->Pairs().rbegin(); rule != rules->Pairs().rend(); ++rule) {
            if (!merged.Holds(*rule)) {
                continue;
            }
            if (blocked.empty()) {
                blocked = rules->Pairs();
                std::sort(blocked.begin(), blocked.end());
            }
            errors.conflicts.add(*rule);
            AddAlternatives(*rule, OptionsOf(rule->first), blocked, errors.alternatives);
        }
    }
    return errors;
}

bool ConstraintsEngine::HasConflict(std::pair<long, long> pair) const {
    if (mForest == nullptr || mCurrent == nullptr) {
        return false;
    }
    return mForest->AnyRule(pair.first, pair.second, [this, pair](auto const& rule) {
        return rule.first == pair.first ? rule == pair : mCurrent->Lookup(rule) >= 0;
    });
}

// Never null; the caller deletes it.
ItemConstraintList* ConstraintsEngine::RulesOf(long key, long item) const {
    ItemConstraintList* rules =
        mForest == nullptr ? nullptr : mForest->GetConstraintList(key, item);
    return rules == nullptr ? new ItemConstraintList(item) : rules;
}

std::vector<long> const& ConstraintsEngine::OptionsOf(long key) const {
    static std::vector<long> const sNone;
    std::vector<long> const* options = mKeys == nullptr ? nullptr : mKeys->GetItems(key);
    return options == nullptr ? sNone : *options;
}

_KVErrorSet ConstraintsEngine::Solve(KVCache* delta, bool keepDelta) {
    purge();
    _KVErrorSet errors = RSolve(delta, keepDelta);
    purge();
    return errors;
}

_KVErrorSet ConstraintsEngine::RSolve(KVCache* delta, bool keepDelta) {
    ++mDepth;
    _KVErrorSet errors = Test(delta);
    if (errors.conflicts.size() == 0 || mDepth > kMaxDepth) {
        return errors;
    }
    KVCache const locked = TestLockedStatus(&errors.alternatives);
    if (mDepth == 1 && locked.size() > 0) {
        errors.conflicts = locked;
        errors.alternatives.clear();
        return errors;
    }
    if (TryAlternatives(*delta, errors.alternatives, keepDelta)) {
        return {};
    }
    if (mQueue.empty()) {
        return errors;
    }
    *delta = mQueue.front();
    mTried.push_back(*delta);
    mQueue.pop();
    return RSolve(delta, keepDelta);
}

// Uses the alternatives up, each on top of those before it, until `delta` has no conflict. False
// when none of them comes to that; what was made on the way waits in the queue.
bool ConstraintsEngine::TryAlternatives(KVCache& delta, KVCache& alternatives, bool keepDelta) {
    while (alternatives.size() > 0) {
        auto const [key, item] = alternatives.pop_front();
        if (keepDelta && delta.GetItem(key) >= 0) {
            continue;
        }
        delta.Insert(key, item);
        if (Test(&delta).conflicts.size() == 0) {
            return true;
        }
        Enqueue(delta);
    }
    return false;
}

void ConstraintsEngine::Enqueue(KVCache const& delta) {
    if (mOverflow || std::find(mTried.begin(), mTried.end(), delta) != mTried.end()) {
        return;
    }
    mQueue.push(delta);
    mOverflow = mQueue.size() > kMaxQueue;
}

KVCache ConstraintsEngine::TestLockedStatus(KVCache* alternatives) const {
    KVCache locked;
    if (mLocked == nullptr || mLocked->size() == 0) {
        return locked;
    }
    KVCache open;
    for (long position = 0; position < alternatives->size(); ++position) {
        std::pair<long, long> const pair = alternatives->GetKV(position);
        if (IsLocked(pair)) {
            locked.Insert(pair.first, mCurrent == nullptr ? -1 : mCurrent->GetItem(pair.first));
        } else {
            open.add(pair);
        }
    }
    *alternatives = open;
    return locked;
}

bool ConstraintsEngine::IsLocked(std::pair<long, long> pair) const {
    return mLocked->Lookup(pair) >= 0 || mLocked->Lookup({pair.first, -1}) >= 0;
}

void ConstraintsEngine::purge() {
    mQueue = {};
    mTried.clear();
    mOverflow = false;
    mDepth = 0;
}

KVCache ConstraintsEngine::ListCurrentConstraints(long key) const {
    KVCache constrained;
    for (long option : OptionsOf(key)) {
        Rules const rules(RulesOf(key, option));
        if (mCurrent != nullptr && AnyIn(*mCurrent, rules->Pairs())) {
            constrained.add({key, option});
        }
    }
    return constrained;
}

KVCache ConstraintsEngine::ListScreenedConstraints(KVCache const& screen, bool exact,
                                                   long key) const {
    KVCache constrained;
    for (long option : OptionsOf(key)) {
        Rules const rules(RulesOf(key, option));
        if (AnyIn(screen, rules->Pairs()) && (!exact || AllIn(rules->Pairs(), screen))) {
            constrained.Insert(key, option);
        }
    }
    return constrained;
}

KVCache ConstraintsEngine::ListBlockingConstraints(long key1, long item1, long key2) const {
    KVCache blocking;
    std::vector<long> const& options1 = OptionsOf(key1);
    if (item1 < 0 || options1.empty()) {
        return blocking;
    }
    std::set<long> want;
    std::copy_if(options1.begin(), options1.end(), std::inserter(want, want.end()),
                 [item1](long option) { return option >= 0 && option != item1; });
    for (long option2 : OptionsOf(key2)) {
        Rules const rules(RulesOf(key2, option2));
        std::set<long> have;
        for (auto const& [key, option] : rules->Pairs()) {
            if (key == key1) {
                have.insert(option);
            }
        }
        if (have == want) {
            blocking.add({key2, option2});
        }
    }
    return blocking;
}
