// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/ConstraintReasons.h"

#include <algorithm>
#include <iterator>

#include "PPDX/PPDObjects/Controls/DisplayOptions.h"
#include "PPDX/PPDObjects/RuledSelection.h"
#include "constraints/UIConstraints.h"

namespace {

// Chains branch and may be as deep as a PPD has options: bounds for the rules that are looked at
// for all of them, and for the keywords of one. What lies beyond is told without its own reasons.
constexpr long kMostForced = 500000;
constexpr std::size_t kDeepest = 12;

bool ComesFirst(ConstraintReason const& left, ConstraintReason const& right) {
    return left.line < right.line;
}

}  // namespace

PlacedPPD const* ConstraintReasons::Placed() {
    FSSpec file = {};
    if (mPlaced == nullptr && mPPD.GetUIConstraints() != nullptr && mPPD.GetFileSpec(file)) {
        DisplayOptionsScope const same(DisplayOptions::Options());  // a reading sets it anew
        mPlaced = std::make_unique<PlacedPPD>(file);
        for (PlacedPPD::Rule const& rule : mPlaced->Rules()) {
            if (!rule.requirement) {
                mRules.emplace(rule.key1, &rule);
            }
        }
    }
    return mPlaced.get();
}

std::vector<std::string> ConstraintReasons::OptionsOf(std::string const& keyword) const {
    UIConstraints& constraints = *mPPD.GetUIConstraints();
    CStringSoup const& texts = constraints.GetConstraintStrings();
    auto const* const items = constraints.GetKeyForest().GetItems(texts.Find(keyword.c_str()));
    std::vector<std::string> options;
    if (items != nullptr) {
        std::ranges::transform(*items, std::back_inserter(options),
                               [&](long item) { return texts.Find(item); });
    }
    return options;
}

std::string ConstraintReasons::Selected(KVCache const& selection,
                                        std::string const& keyword) const {
    CStringSoup const& texts = mPPD.GetUIConstraints()->GetConstraintStrings();
    long const option = selection.GetItem(texts.Find(keyword.c_str()));
    return option < 0 ? std::string() : texts.Find(option);
}

// Whether what a rule has for an option stands for this one.
bool ConstraintReasons::Means(std::string const& key, std::string const& blankOrOption,
                              std::string const& option) const {
    if (!blankOrOption.empty()) {
        return blankOrOption == option;
    }
    UIConstraints& constraints = *mPPD.GetUIConstraints();
    CStringSoup const& texts = constraints.GetConstraintStrings();
    auto const* const items = constraints.GetKeyForest().GetItems(texts.Find(key.c_str()));
    return !UIConstraints::IsOff(option) && items != nullptr &&
           std::ranges::find(*items, texts.Find(option.c_str())) != items->end();
}

ConstraintReason ConstraintReasons::ReasonOf(PlacedPPD::Rule const& rule,
                                             std::string const& keyword,
                                             std::string const& option) const {
    ConstraintReason reason;
    reason.keyword = keyword;
    reason.option = option;
    reason.line = rule.line;
    reason.rule = mPlaced->Lines().Text(rule.line);
    return reason;
}

ConstraintReasons::Reasons ConstraintReasons::Find(Choice const& choice, KVCache const& selection) {
    Reasons reasons;
    if (Placed() == nullptr) {
        return reasons;
    }
    auto const [first, last] = mRules.equal_range(choice.first);
    for (auto at = first; at != last; ++at) {
        PlacedPPD::Rule const& rule = *at->second;
        --mRoom;
        std::string const other =
            rule.key2 == choice.first ? choice.second : Selected(selection, rule.key2);
        if (!other.empty() && Means(rule.key1, rule.option1, choice.second) &&
            Means(rule.key2, rule.option2, other)) {
            reasons.push_back(ReasonOf(rule, rule.key2, other));
        }
    }
    return reasons;
}

ConstraintReasons::Reasons ConstraintReasons::Against(Choice const& choice, bool chain) {
    if (Placed() == nullptr) {
        return {};
    }
    KVCache const selection = RuledSelection(mPPD);
    Reasons reasons = Find(choice, selection);
    mRoom = kMostForced;
    for (ConstraintReason& reason : reasons) {
        Keywords seen = {choice.first};
        if (chain && reason.keyword != choice.first) {
            Force(reason, selection, seen);
        }
    }
    return reasons;
}

// A keyword that the chain has come by already isn't asked again, so that it ends.
void ConstraintReasons::Force(ConstraintReason& reason, KVCache const& selection, Keywords& chain) {
    if (chain.count(reason.keyword) != 0) {
        return;
    }
    reason.isOnly = OptionsOf(reason.keyword).size() == 1;
    reason.isCut = mRoom <= 0 || chain.size() > kDeepest;
    if (!reason.isCut) {
        chain.insert(reason.keyword);
        reason.forcedBy = WhyForced(reason.keyword, reason.option, selection, chain);
        chain.erase(reason.keyword);
    }
}

ConstraintReasons::Reasons ConstraintReasons::WhyForced(std::string const& keyword,
                                                        std::string const& option,
                                                        KVCache const& selection, Keywords& chain) {
    Reasons all;
    for (std::string const& other : OptionsOf(keyword)) {
        if (other == option) {
            continue;
        }
        Reasons const reasons = Find({keyword, other}, selection);
        if (reasons.empty()) {
            return {};
        }
        all.insert(all.end(), reasons.begin(), reasons.end());
    }
    std::ranges::stable_sort(all, ComesFirst);
    auto const isSame = [](auto const& left, auto const& right) {
        return left.line == right.line && left.keyword == right.keyword;
    };
    all.erase(std::unique(all.begin(), all.end(), isSame), all.end());
    for (ConstraintReason& reason : all) {
        Force(reason, selection, chain);
    }
    return all;
}

ConstraintReasons::Reasons ConstraintReasons::Greyed(Choice const& choice) {
    Reasons greyed;
    if (Placed() == nullptr) {
        return greyed;
    }
    KVCache const selection = RuledSelection(mPPD);
    Reasons const own = Find(choice, selection);
    for (PlacedPPD::Rule const& rule : mPlaced->Rules()) {
        std::string const selected = Selected(selection, rule.key1);
        bool const bites = !rule.requirement && rule.key2 == choice.first &&
                           rule.key1 != choice.first && !selected.empty() &&
                           Means(rule.key1, rule.option1, selected) &&
                           Means(rule.key2, rule.option2, choice.second);
        bool const isKnown = std::ranges::any_of(
            own, [&](ConstraintReason const& reason) { return reason.keyword == rule.key1; });
        if (bites && !isKnown) {
            greyed.push_back(ReasonOf(rule, rule.key1, selected));
        }
    }
    return greyed;
}

ConstraintReasons::Reasons ConstraintReasons::Beside(Choice const& choice, Choice const& made) {
    Reasons reasons;
    if (Placed() == nullptr) {
        return reasons;
    }
    CStringSoup const& texts = mPPD.GetUIConstraints()->GetConstraintStrings();
    for (auto const& [asked, other] : {std::pair(choice, made), std::pair(made, choice)}) {
        long const option = texts.Find(other.second.c_str());
        if (option < 0) {
            continue;  // no rule speaks of it
        }
        KVCache changes;
        changes.Insert(texts.Find(other.first.c_str()), option);
        for (ConstraintReason& reason : Find(asked, RuledSelection(mPPD, changes))) {
            if (reason.keyword == other.first) {
                reasons.push_back(std::move(reason));
            }
        }
    }
    return reasons;
}
