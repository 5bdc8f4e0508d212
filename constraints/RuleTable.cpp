// SPDX-License-Identifier: Apache-2.0
#include "constraints/RuleTable.h"

#include <iterator>
#include <numeric>
#include <tuple>
#include <utility>

long RuleTable::AddList(std::vector<std::int32_t> options) {
    mLists.emplace_back(std::move(options));
    return -1 - static_cast<long>(mLists.size());
}

void RuleTable::Add(long key1, long item1, long key2, long item2) {
    mRules.push_back({static_cast<std::int32_t>(key1), static_cast<std::int32_t>(item1),
                      static_cast<std::int32_t>(key2), static_cast<std::int32_t>(item2),
                      static_cast<std::uint32_t>(mRules.size())});
    mSorted = false;
}

void RuleTable::clear() {
    mLists.clear();
    mRules.clear();
    mSorted = false;
}

std::vector<long> RuleTable::Keys() const {
    std::vector<long> keys;
    for (Rule const& rule : mRules) {
        keys.push_back(rule.key1);
    }
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    return keys;
}

std::vector<long> RuleTable::Items(long key) const {
    std::vector<long> items;
    long former = -1;
    for (Rule const& rule : RulesOf(key)) {
        if (rule.item1 == former) {
            continue;
        }
        former = rule.item1;
        if (IsList(former)) {
            std::ranges::copy(ListOf(former).Sorted(), std::back_inserter(items));
        } else {
            items.push_back(former);
        }
    }
    std::sort(items.begin(), items.end());
    items.erase(std::unique(items.begin(), items.end()), items.end());
    return items;
}

std::vector<RulePartner> RuleTable::Partners(long key, long item) const {
    std::span<Rule const> const rules = RulesOf(key);
    std::vector<RulePartner> partners;
    if (item != -1) {
        AddPartners(rules, item, partners);
        return partners;
    }
    for (long const each : Items(key)) {
        AddPartners(rules, each, partners);
    }
    return partners;
}

void RuleTable::AddPartners(std::span<Rule const> rulesOfKey, long item,
                            std::vector<RulePartner>& partners) const {
    std::vector<std::pair<Rule const*, long>> found;  // with how often it names the item
    for (Rule const& rule : RulesOf(rulesOfKey, item)) {
        found.emplace_back(&rule, 1);
    }
    std::int32_t list = -1;
    long times = 0;
    for (Rule const& rule : rulesOfKey) {
        if (!IsList(rule.item1)) {
            break;
        }
        if (rule.item1 != list) {
            list = rule.item1;
            times = ListOf(list).Times(item);
        }
        found.emplace_back(&rule, times);
    }
    std::ranges::sort(found, {}, [](auto const& entry) { return entry.first->place; });
    for (auto const& [rule, count] : found) {
        partners.insert(partners.end(), static_cast<std::size_t>(count), PartnerOf(*rule));
    }
}

std::vector<std::int32_t> RuleTable::Options(long item) const {
    return IsList(item) ? ListOf(item).Options()
                        : std::vector<std::int32_t>{static_cast<std::int32_t>(item)};
}

void RuleTable::Sort() const {
    SortByKey();
    for (std::size_t key = 0; key + 1 < mStarts.size(); ++key) {
        std::sort(mRules.begin() + mStarts[key], mRules.begin() + mStarts[key + 1],
                  [](Rule const& left, Rule const& right) {
                      return std::pair(left.item1, left.place) <
                             std::pair(right.item1, right.place);
                  });
    }
    FindDistinct();
    mSorted = true;
}

// By counting: keys are small numbers, and a file may have rules by the hundred thousand.
void RuleTable::SortByKey() const {
    std::int32_t last = -1;
    for (Rule const& rule : mRules) {
        last = std::max(last, rule.key1);
    }
    mStarts.assign(static_cast<std::size_t>(last + 1L) + 1, 0);
    for (Rule const& rule : mRules) {
        ++mStarts[static_cast<std::size_t>(rule.key1) + 1];
    }
    std::partial_sum(mStarts.begin(), mStarts.end(), mStarts.begin());
    std::vector<std::uint32_t> next(mStarts);
    std::vector<Rule> sorted(mRules.size());
    for (Rule const& rule : mRules) {
        sorted[next[static_cast<std::size_t>(rule.key1)]++] = rule;
    }
    mRules = std::move(sorted);
}

void RuleTable::FindDistinct() const {
    auto const sides = [](Rule const& rule) {
        return std::tuple(rule.key1, rule.item1, rule.key2, rule.item2);
    };
    mDistinct.clear();
    std::ranges::copy_if(mRules, std::back_inserter(mDistinct),
                         [](Rule const& rule) { return IsList(rule.item1); });
    std::ranges::sort(mDistinct, {}, sides);
    auto const isSame = [&](Rule const& one, Rule const& other) {
        return sides(one) == sides(other);
    };
    mDistinct.erase(std::unique(mDistinct.begin(), mDistinct.end(), isSame), mDistinct.end());
}
