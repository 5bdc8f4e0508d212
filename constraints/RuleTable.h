// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <compare>
#include <cstdint>
#include <span>
#include <vector>

#include "constraints/OptionList.h"

// What a rule is against: an option of a key, or each one of a list. A value; the list is the
// table's and lives until that changes.
struct RulePartner {
    long key;
    long item;               // the number of the list when there is one
    OptionList const* list;  // null for one option

    // How many pairs of this option the rule would be if it were written out.
    long Times(long option) const {
        return list == nullptr ? (item == option ? 1 : 0) : list->Times(option);
    }
    bool Names(long option) const { return Times(option) > 0; }
    bool operator==(RulePartner const& other) const {
        return key == other.key && item == other.item;
    }
    std::strong_ordering operator<=>(RulePartner const& other) const {
        return key != other.key ? key <=> other.key : item <=> other.item;
    }
};

// Rules in one array, as the file wrote them: one over whole lists of options is one rule, however
// long the lists are. Sorted for questions when the first one comes.
//
// Ids have 32 bits and aren't negative. Where a rule takes an item, it takes the number of a list
// too, and then means each option of that list.
class RuleTable {
  public:
    // The number of a new list. An empty one isn't for use in a rule.
    long AddList(std::vector<std::int32_t> options);
    void Add(long key1, long item1, long key2, long item2);
    void clear();

    bool Knows(long key) const { return !RulesOf(key).empty(); }
    std::vector<long> Keys() const;  // with a rule, ascending
    // The options of the key that have a rule, ascending.
    std::vector<long> Items(long key) const;
    // What an option (-1: each option of the key in ascending order) has rules against, in the
    // order of the rules; as often as the rules name the option.
    std::vector<RulePartner> Partners(long key, long item) const;
    // The options that an item of a rule stands for: itself, or those of its list.
    std::vector<std::int32_t> Options(long item) const;

    // Whether `fits` holds for any of these partners, in no order. Costs no memory but at the first
    // question, and a rule over the whole key that is written again costs nothing.
    template <typename Fits>
    bool AnyPartner(long key, long item, Fits fits) const {
        std::span<Rule const> const rules = RulesOf(key);
        if (item == -1) {
            return std::ranges::any_of(rules, [&](auto const& r) { return fits(PartnerOf(r)); });
        }
        if (std::ranges::any_of(RulesOf(rules, item),
                                [&](auto const& r) { return fits(PartnerOf(r)); })) {
            return true;
        }
        return !rules.empty() && IsList(rules.front().item1) && AnyOfWholeKey(key, item, fits);
    }

  private:
    struct Rule {
        std::int32_t key1;
        std::int32_t item1;
        std::int32_t key2;
        std::int32_t item2;
        std::uint32_t place;  // in the file, among all rules
    };

    static bool IsList(long item) { return item < -1; }
    OptionList const& ListOf(long item) const {
        return mLists[static_cast<std::size_t>(-2 - item)];
    }
    RulePartner PartnerOf(Rule const& rule) const {
        return {rule.key2, rule.item2, IsList(rule.item2) ? &ListOf(rule.item2) : nullptr};
    }
    // Those of a key, lists first, then by option; those of one option or list in file order.
    std::span<Rule const> RulesOf(long key) const {
        if (!mSorted) {
            Sort();
        }
        auto const index = static_cast<std::size_t>(key);
        return key < 0 || index + 1 >= mStarts.size()
                   ? std::span<Rule const>()
                   : std::span<Rule const>(mRules).subspan(mStarts[index],
                                                           mStarts[index + 1] - mStarts[index]);
    }
    static std::span<Rule const> RulesOf(std::span<Rule const> rulesOfKey, long item) {
        return RulesWith(rulesOfKey, &Rule::item1, item);
    }
    // Those whose field has this value, of rules that are sorted by it.
    static std::span<Rule const> RulesWith(std::span<Rule const> rules, std::int32_t Rule::*field,
                                           long value) {
        auto const first = std::partition_point(
            rules.begin(), rules.end(), [=](Rule const& rule) { return rule.*field < value; });
        auto const last = std::partition_point(
            first, rules.end(), [=](Rule const& rule) { return rule.*field <= value; });
        return {first, last};
    }
    void Sort() const;
    void SortByKey() const;
    void FindDistinct() const;
    void AddPartners(std::span<Rule const> rulesOfKey, long item,
                     std::vector<RulePartner>& partners) const;

    template <typename Fits>
    bool AnyOfWholeKey(long key, long item, Fits fits) const {
        long list = -1;
        bool named = false;
        for (Rule const& rule : RulesWith(mDistinct, &Rule::key1, key)) {
            if (rule.item1 != list) {
                list = rule.item1;
                named = ListOf(list).Times(item) > 0;
            }
            if (named && fits(PartnerOf(rule))) {
                return true;
            }
        }
        return false;
    }

    std::vector<OptionList> mLists;
    // In order of Add until they are sorted; what follows is good only then.
    std::vector<Rule> mutable mRules;
    bool mutable mSorted = true;
    std::vector<std::uint32_t> mutable mStarts;  // by key: where in mRules its rules start
    std::vector<Rule> mutable mDistinct;         // of the rules over a whole key, each once, by key
};
