// SPDX-License-Identifier: Apache-2.0
#include "constraints/KVCache.h"

#include <algorithm>

void KVCache::clear() {
    mPairs.clear();
    mKeys.Clear();
    mPopped = 0;
}

void KVCache::add(std::pair<long, long> pair) {
    KeyPlaces::Place& place = mKeys.Of(pair.first);
    mPairs.push_back(pair);
    if (place.count++ == 0) {
        place.first = static_cast<std::uint32_t>(mPairs.size() - 1);
    }
}

void KVCache::Insert(long key, long item) {
    if (key < 0) {
        return;
    }
    if (KeyPlaces::Place const* const place = mKeys.Find(key)) {
        mPairs[place->first].second = item;
    } else {
        add({key, item});
    }
}

std::pair<long, long> KVCache::GetKV(long position) const {
    return Pairs()[static_cast<std::size_t>(position)];
}

long KVCache::GetItem(long key) const {
    KeyPlaces::Place const* const place = mKeys.Find(key);
    return place == nullptr ? -1 : mPairs[place->first].second;
}

long KVCache::Lookup(std::pair<long, long> pair) const {
    KeyPlaces::Place const* const place = mKeys.Find(pair.first);
    if (place == nullptr) {
        return -1;
    }
    std::int32_t left = place->count;
    for (std::size_t position = place->first; left > 0; ++position) {
        if (mPairs[position] == pair) {
            return static_cast<long>(position - mPopped);
        }
        left -= mPairs[position].first == pair.first ? 1 : 0;
    }
    return -1;
}

std::pair<long, long> KVCache::pop_front() {
    if (size() == 0) {
        return {0, 0};
    }
    Pair const pair = mPairs[mPopped++];
    ForgetFirst(pair.first);
    // Rarely enough that a pair's share of it is small.
    if (2 * mPopped > mPairs.size() && mPopped >= mKeys.Size()) {
        DropPopped();
    }
    return pair;
}

std::pair<long, long> KVCache::pop_back() {
    if (size() == 0) {
        return {0, 0};
    }
    Pair const pair = mPairs.back();
    mPairs.pop_back();
    --mKeys.Find(pair.first)->count;
    return pair;
}

// The key's next pair, if it has one, becomes its first.
void KVCache::ForgetFirst(long key) {
    KeyPlaces::Place& place = *mKeys.Find(key);
    if (--place.count == 0) {
        return;
    }
    do {
        ++place.first;
    } while (mPairs[place.first].first != key);
}

void KVCache::DropPopped() {
    mPairs.erase(mPairs.begin(), mPairs.begin() + static_cast<std::ptrdiff_t>(mPopped));
    mKeys.MoveDown(static_cast<std::uint32_t>(mPopped));
    mPopped = 0;
}

void KVCache::merge(KVCache const& other) {
    for (auto const& [key, item] : other.Pairs()) {
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
        if (Pair const pair = other.GetKV(position); pair.first >= 0) {
            add(pair);
        }
    }
    return *this;
}

bool KVCache::operator==(KVCache const& other) const {
    if (size() != other.size()) {
        return false;
    }
    if (std::ranges::equal(Pairs(), other.Pairs())) {
        return true;
    }
    // Sorting copies is dear; mostly some pair is missing and that settles it.
    if (std::ranges::any_of(Pairs(),
                            [&other](Pair const& pair) { return other.Lookup(pair) < 0; })) {
        return false;
    }
    std::vector<Pair> left(Pairs().begin(), Pairs().end());
    std::vector<Pair> right(other.Pairs().begin(), other.Pairs().end());
    std::sort(left.begin(), left.end(), KeyOptionGreater);
    std::sort(right.begin(), right.end(), KeyOptionGreater);
    return left == right;
}

bool KeyOptionGreater(std::pair<long, long> left, std::pair<long, long> right) {
    return left > right;
}
