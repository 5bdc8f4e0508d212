// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/ConstraintFix.h"

#include <algorithm>
#include <bit>
#include <cstdint>

#include "PPDX/PPDObjects/RuledSelection.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "constraints/ConstraintsEngine.h"
#include "constraints/UIConstraints.h"

namespace {

constexpr int kMostSearches = 400;
constexpr std::size_t kMostNearKeys = 12;
constexpr std::size_t kMostForSubsets = 12;  // changes of which every subset is tried
constexpr std::size_t kMostBeyond = 3;       // changes more than there are conflicts

// Calls `visit` with each subset of so many of the members, as bits, until it returns true.
template <typename Visit>
bool AnySubset(std::size_t members, std::size_t size, Visit visit) {
    for (std::uint32_t bits = 0; bits < (1U << members); ++bits) {
        if (static_cast<std::size_t>(std::popcount(bits)) == size && visit(bits)) {
            return true;
        }
    }
    return false;
}

template <typename T>
std::vector<T> Members(std::vector<T> const& all, std::uint32_t bits) {
    std::vector<T> chosen;
    for (std::size_t index = 0; index < all.size(); ++index) {
        if ((bits >> index & 1) != 0) {
            chosen.push_back(all[index]);
        }
    }
    return chosen;
}

bool Holds(std::vector<long> const& keys, long key) {
    return std::ranges::find(keys, key) != keys.end();
}

}  // namespace

ConstraintFix::ConstraintFix(ZUBPPD& ppd) : mPPD(ppd) {
    MirrorRules();
}

void ConstraintFix::MirrorRules() {
    KVCache* all = nullptr;
    mPPD.GetUIConstraints()->GetKeyForest().GetKeys(&all);
    std::unique_ptr<KVCache> const owned(all);
    for (long position = 0; position < all->size(); ++position) {
        AddMirrored(all->GetKV(position));
    }
}

void ConstraintFix::AddMirrored(Pair pair) {
    std::unique_ptr<ItemConstraintList> const list(
        mPPD.GetUIConstraints()->GetConstraintForest().GetConstraintList(pair.first, pair.second));
    if (list == nullptr) {
        return;
    }
    for (Pair const& partner : list->Pairs()) {
        if (mKnown.emplace(pair, partner).second) {
            mRules.insert(pair.first, pair.second, partner);
        }
        if (mKnown.emplace(partner, pair).second) {
            mRules.insert(partner.first, partner.second, pair);
        }
    }
}

ConstraintFix::Fix ConstraintFix::Find(char const* keyword, char const* option,
                                       std::vector<std::string> const& kept) {
    CStringSoup const& texts = mPPD.GetUIConstraints()->GetConstraintStrings();
    mChoice = {texts.Find(keyword), texts.Find(option)};
    KVCache choice;
    choice.Insert(mChoice.first, mChoice.second);
    mSelection = RuledSelection(mPPD, choice);
    mKept = {mChoice.first};
    for (std::string const& key : kept) {
        mKept.push_back(texts.Find(key.c_str()));
    }
    Pairs changes;
    if (mChoice.first < 0 || mChoice.second < 0 || (Search(changes) && StaysFree(changes))) {
        return Told(changes);
    }
    // A change of the page size moves a print size that follows it.
    long const pageSize = texts.Find("*PageSize");
    if (pageSize >= 0 && !Holds(mKept, pageSize) && PrintSizeFollows(mPPD, choice)) {
        mKept.push_back(pageSize);
        if (Search(changes) && StaysFree(changes)) {
            return Told(changes);
        }
    }
    return {};
}

bool ConstraintFix::Search(Pairs& changes) {
    mSearches = kMostSearches;
    changes.clear();
    Keys const conflicting = ConflictingKeys();
    if (std::ranges::any_of(conflicting, [&](long key) { return Holds(mKept, key); })) {
        return false;
    }
    bool const found = ProposeWithout(mKept, changes);
    if (found) {
        changes = Smallest(changes);
    }
    // Each of the conflicting keys has to change.
    std::size_t const below = found ? changes.size() : conflicting.size() + kMostBeyond;
    Pairs smaller;
    if (!FindSmaller(conflicting, below, smaller)) {
        return found;
    }
    changes = smaller;
    return true;
}

_KVErrorSet ConstraintFix::Test(Pairs const& changes) const {
    KVCache delta;
    delta.add(mChoice);
    for (Pair const& change : changes) {
        delta.Insert(change.first, change.second);
    }
    return ConstraintsEngine(&mSelection, &mRules, &mPPD.GetUIConstraints()->GetKeyForest(),
                             nullptr)
        .Test(&delta);
}

// Whether the change has no conflict either when a print size that follows has followed.
bool ConstraintFix::StaysFree(Pairs const& changes) const {
    KVCache all;
    all.add(mChoice);
    for (Pair const& change : changes) {
        all.Insert(change.first, change.second);
    }
    KVCache const after = RuledSelection(mPPD, all);
    ConstraintsEngine const engine(&after, &mRules, &mPPD.GetUIConstraints()->GetKeyForest(),
                                   nullptr);
    for (long position = 0; position < after.size(); ++position) {
        Pair const pair = after.GetKV(position);
        if (pair != Pair(pair.first, mSelection.GetItem(pair.first)) && engine.HasConflict(pair)) {
            return false;
        }
    }
    return !engine.HasConflict(mChoice);
}

ConstraintFix::Keys ConstraintFix::ConflictingKeys() const {
    KVCache const conflicts = Test({}).conflicts;
    Keys keys;
    for (long position = 0; position < conflicts.size(); ++position) {
        if (long const key = conflicts.GetKV(position).first; !Holds(keys, key)) {
            keys.push_back(key);
        }
    }
    return keys;
}

// Keys that rules of these have to do with, and so on, nearest first, as many as are worth a trial.
ConstraintFix::Keys ConstraintFix::NearKeys(Keys const& from) const {
    KeyForest const& options = mPPD.GetUIConstraints()->GetKeyForest();
    Keys near = from;
    for (std::size_t at = 0; at < near.size() && near.size() < from.size() + kMostNearKeys; ++at) {
        for (RulePartner const& partner : mRules.GetPartners(near[at], -1)) {
            if (!Holds(mKept, partner.key) && !Holds(near, partner.key) &&
                options.GetItems(partner.key) != nullptr) {
                near.push_back(partner.key);
            }
        }
    }
    near.erase(near.begin(), near.begin() + static_cast<std::ptrdiff_t>(from.size()));
    near.resize(std::min(near.size(), kMostNearKeys));
    return near;
}

bool ConstraintFix::ProposeWithout(Keys const& kept, Pairs& changes) const {
    KVCache locked;
    for (long const key : kept) {
        locked.add({key, -1});
    }
    KVCache delta;
    delta.add(mChoice);
    ConstraintsEngine engine(&mSelection, &mRules, &mPPD.GetUIConstraints()->GetKeyForest(),
                             &locked);
    if (engine.Solve(&delta, false).conflicts.size() > 0) {
        return false;
    }
    for (long position = 0; position < delta.size(); ++position) {
        if (Pair const pair = delta.GetKV(position);
            pair.first != mChoice.first && mSelection.GetItem(pair.first) != pair.second) {
            changes.push_back(pair);
        }
    }
    return true;
}

// Only with keys of `free` to change.
bool ConstraintFix::Propose(std::set<long> const& free, Pairs& changes) const {
    Keys kept = mKept;
    for (long position = 0; position < mSelection.size(); ++position) {
        if (long const key = mSelection.GetKV(position).first; free.count(key) == 0) {
            kept.push_back(key);
        }
    }
    return ProposeWithout(kept, changes);
}

bool ConstraintFix::FindSmaller(Keys const& conflicting, std::size_t below, Pairs& changes) {
    Keys const near = NearKeys(conflicting);
    for (std::size_t size = conflicting.size(); size < below; ++size) {
        std::size_t const more = size - conflicting.size();
        if (more > near.size()) {
            return false;
        }
        bool const found = AnySubset(near.size(), more, [&](std::uint32_t bits) {
            Keys const chosen = Members(near, bits);
            std::set<long> free(conflicting.begin(), conflicting.end());
            free.insert(chosen.begin(), chosen.end());
            changes.clear();
            return mSearches-- > 0 && Propose(free, changes);
        });
        if (found) {
            changes = Smallest(changes);
            return true;
        }
    }
    return false;
}

// What is left of a proposal without the changes that it doesn't need.
ConstraintFix::Pairs ConstraintFix::Smallest(Pairs const& changes) const {
    Pairs needed = changes;
    if (changes.size() > kMostForSubsets) {
        for (std::size_t index = needed.size(); index-- > 0;) {
            Pairs fewer = needed;
            fewer.erase(fewer.begin() + static_cast<std::ptrdiff_t>(index));
            needed = IsFree(fewer) ? fewer : needed;
        }
        return needed;
    }
    for (std::size_t size = 0; size < changes.size(); ++size) {
        if (AnySubset(changes.size(), size, [&](std::uint32_t bits) {
                needed = Members(changes, bits);
                return IsFree(needed);
            })) {
            return needed;
        }
    }
    return changes;
}

ConstraintFix::Fix ConstraintFix::Told(Pairs const& changes) const {
    UIConstraints& constraints = *mPPD.GetUIConstraints();
    CStringSoup const& texts = constraints.GetConstraintStrings();
    Fix fix;
    fix.possible = true;
    for (auto const& [key, option] : changes) {
        long const from = constraints.GetSelection().GetItem(key);
        fix.changes.push_back(
            {texts.Find(key), from < 0 ? "" : texts.Find(from), texts.Find(option)});
    }
    return fix;
}
