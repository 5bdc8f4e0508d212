// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <utility>
#include <vector>

#include "constraints/KVCache.h"

// Caches as plain lists of pairs, in their order.

using Pair = std::pair<long, long>;
using Pairs = std::vector<Pair>;

inline KVCache CacheOf(Pairs const& pairs) {
    KVCache cache;
    for (Pair const& pair : pairs) {
        cache.add(pair);
    }
    return cache;
}

inline Pairs PairsOf(KVCache const& cache) {
    Pairs pairs;
    for (long position = 0; position < cache.size(); ++position) {
        pairs.push_back(cache.GetKV(position));
    }
    return pairs;
}
