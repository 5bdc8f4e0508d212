// SPDX-License-Identifier: Apache-2.0
#include "constraints/ConstraintsEngine.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>

#include "constraints/ConstraintForest.h"
#include "constraints/KeyForest.h"

namespace {

using Partners = std::vector<RulePartner>;

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

    // The option of the key, or -1.
    long ItemOf(long key) const {
        auto const changed = mChanged.find(key);
        return changed == mChanged.end() ? mSelection.GetItem(key) : changed->second;
    }

  private:
    KVCache const& mSelection;
    std::map<long, long> mChanged;  // option by key
};

// Whether an option of `key` is ruled out by these partners, which are sorted, each once.
bool IsBlocked(Partners const& partners, long key, long option) {
    auto const first =
        std::lower_bound(partners.begin(), partners.end(),
                         RulePartner{key, std::numeric_limits<long>::min(), nullptr});
    for (auto at = first; at != partners.end() && at->key == key && at->list != nullptr; ++at) {
        if (at->Names(option)) {
            return true;
        }
    }
    return std::binary_search(first, partners.end(), RulePartner{key, option, nullptr});
}

// What could stand in place of a conflict, from the last option back.
std::vector<long> AlternativesTo(std::pair<long, long> conflict, std::vector<long> const& options,
                                 Partners const& blocked) {
    std::vector<long> open;
    std::copy_if(options.rbegin(), options.rend(), std::back_inserter(open), [&](long option) {
        return option != conflict.second && !IsBlocked(blocked, conflict.first, option);
    });
    return open;
}

// Whether a pair of the cache is among those that the partner stands for.
bool NamesAnyOf(RulePartner const& partner, KVCache const& cache) {
    if (partner.list == nullptr) {
        return cache.Lookup({partner.key, partner.item}) >= 0;
    }
    for (long position = 0; position < cache.size(); ++position) {
        auto const [key, item] = cache.GetKV(position);
        if (key == partner.key && partner.Names(item)) {
            return true;
        }
    }
    return false;
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
        Partners const partners = mForest == nullptr ? Partners() : mForest->GetPartners(key, item);
        Partners blocked;  // a sorted copy of them, each once, made for the first conflict
        std::pair<long, long> former(-1, -1);
        std::vector<long> alternatives;  // to the former conflict; a rule may be written often
        for (auto partner = partners.rbegin(); partner != partners.rend(); ++partner) {
            std::pair<long, long> const selected(partner->key, merged.ItemOf(partner->key));
            long times = partner->Times(selected.second);
            if (times > 0 && blocked.empty()) {
                blocked = partners;
                std::sort(blocked.begin(), blocked.end());
                blocked.erase(std::unique(blocked.begin(), blocked.end()), blocked.end());
            }
            for (; times > 0; --times) {
                if (selected != former) {
                    alternatives = AlternativesTo(selected, OptionsOf(selected.first), blocked);
                    former = selected;
                }
                errors.conflicts.add(selected);
                for (long const option : alternatives) {
                    errors.alternatives.add({selected.first, option});
                }
            }
        }
    }
    return errors;
}

bool ConstraintsEngine::HasConflict(std::pair<long, long> pair) const {
    return mCurrent != nullptr &&
           AnyPartner(pair.first, pair.second, [this, pair](RulePartner const& partner) {
               return partner.Names(partner.key == pair.first ? pair.second
                                                              : mCurrent->GetItem(partner.key));
           });
}

template <typename Fits>
bool ConstraintsEngine::AnyPartner(long key, long item, Fits fits) const {
    return mForest != nullptr && mForest->AnyPartner(key, item, fits);
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
    if (mCurrent == nullptr) {
        return constrained;
    }
    for (long option : OptionsOf(key)) {
        if (AnyPartner(key, option, [this](auto const& p) { return NamesAnyOf(p, *mCurrent); })) {
            constrained.add({key, option});
        }
    }
    return constrained;
}

KVCache ConstraintsEngine::ListScreenedConstraints(KVCache const& screen, bool exact,
                                                   long key) const {
    KVCache constrained;
    for (long option : OptionsOf(key)) {
        if (AnyPartner(key, option, [&](auto const& p) { return NamesAnyOf(p, screen); }) &&
            (!exact || HasRulesAgainstAll(key, option, screen))) {
            constrained.Insert(key, option);
        }
    }
    return constrained;
}

bool ConstraintsEngine::HasRulesAgainstAll(long key, long item, KVCache const& screen) const {
    for (long position = 0; position < screen.size(); ++position) {
        auto const [key2, item2] = screen.GetKV(position);
        if (!AnyPartner(key, item, [key2 = key2, item2 = item2](RulePartner const& partner) {
                return partner.key == key2 && partner.Names(item2);
            })) {
            return false;
        }
    }
    return true;
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
        if (OptionsRuledOut(key2, option2, key1) == want) {
            blocking.add({key2, option2});
        }
    }
    return blocking;
}

std::set<long> ConstraintsEngine::OptionsRuledOut(long key, long item, long key2) const {
    std::set<long> options;
    AnyPartner(key, item, [&options, key2](RulePartner const& partner) {
        if (partner.key == key2 && partner.list == nullptr) {
            options.insert(partner.item);
        } else if (partner.key == key2) {
            options.insert(partner.list->Sorted().begin(), partner.list->Sorted().end());
        }
        return false;  // go on: all of them count
    });
    return options;
}
