// SPDX-License-Identifier: Apache-2.0
#include "constraints/KVCache.h"

#include <algorithm>

void KVCache::clear() {
    mPairs.clear();
    mKeys.clear();
    mPopped = 0;
}

void KVCache::add(std::pair<long, long> pair) {
    auto const [found, isNew] = mKeys.try_emplace(pair.first, Occurrences{mPopped + size(), 0});
    ++found->second.count;
    mPairs.push_back(pair);
}

void KVCache::Insert(long key, long item) {
    if (key < 0) {
        return;
    }
    if (auto const found = mKeys.find(key); found != mKeys.end()) {
        At(PositionOf(found->second)).second = item;
    } else {
        add({key, item});
    }
}

std::pair<long, long> KVCache::GetKV(long position) const {
    return At(position);
}

long KVCache::GetItem(long key) const {
    auto const found = mKeys.find(key);
    return found == mKeys.end() ? -1 : At(PositionOf(found->second)).second;
}

long KVCache::Lookup(std::pair<long, long> pair) const {
    auto const found = mKeys.find(pair.first);
    if (found == mKeys.end()) {
        return -1;
    }
    long left = found->second.count;
    for (long position = PositionOf(found->second); left > 0; ++position) {
        if (At(position) == pair) {
            return position;
        }
        left -= At(position).first == pair.first ? 1 : 0;
    }
    return -1;
}

std::pair<long, long> KVCache::pop_front() {
    if (mPairs.empty()) {
        return {0, 0};
    }
    std::pair<long, long> const pair = mPairs.front();
    mPairs.pop_front();
    ++mPopped;
    ForgetFirst(pair.first);
    return pair;
}

std::pair<long, long> KVCache::pop_back() {
    if (mPairs.empty()) {
        return {0, 0};
    }
    std::pair<long, long> const pair = mPairs.back();
    mPairs.pop_back();
    if (auto const found = mKeys.find(pair.first); --found->second.count == 0) {
        mKeys.erase(found);
    }
    return pair;
}

// The key's next pair, if it has one, becomes its first.
void KVCache::ForgetFirst(long key) {
    auto const found = mKeys.find(key);
    if (--found->second.count == 0) {
        mKeys.erase(found);
        return;
    }
    auto const next = std::find_if(mPairs.begin() + (PositionOf(found->second) + 1), mPairs.end(),
                                   [key](auto const& pair) { return pair.first == key; });
    found->second.first = mPopped + (next - mPairs.begin());
}

void KVCache::merge(KVCache const& other) {
    for (auto const& [key, item] : other.mPairs) {
        Insert(key, item);
    }
}

KVCache KVCache::operator+(KVCache const& other) const {
    KVCache sum(*this);
    sum += other;
    return sum;
}

KVCache& KVCache::operator+=(KVCache const& other) {
    // The other cache may be this one: its pairs are counted before the first is added.
    long const count = other.size();
    for (long position = 0; position < count; ++position) {
        if (other.At(position).first >= 0) {
            add(other.At(position));
        }
    }
    return *this;
}

bool KVCache::operator==(KVCache const& other) const {
    if (size() != other.size()) {
        return false;
    }
    if (mPairs == other.mPairs) {
        return true;
    }
    // Sorting copies is dear; mostly some pair is missing and that settles it.
    if (std::any_of(mPairs.begin(), mPairs.end(),
                    [&other](auto const& pair) { return other.Lookup(pair) < 0; })) {
        return false;
    }
    auto left = mPairs;
    auto right = other.mPairs;
    std::sort(left.begin(), left.end(), KeyOptionGreater);
    std::sort(right.begin(), right.end(), KeyOptionGreater);
    return left == right;
}

bool KeyOptionGreater(std::pair<long, long> left, std::pair<long, long> right) {
    return left > right;
}
