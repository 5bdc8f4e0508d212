// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Outcome.h"
#include "platform/CoreFoundation.h"
#include "platform/Wiping.h"

// Bytes of a job, which may hold a user's name in clear: none of them stays in the heap.
using JobText = std::basic_string<char, std::char_traits<char>, WipingAllocator<char>>;

// What a commit puts into a job: pairs of injection site and bytes, in the order in which they go
// there.
class JobDataFile {
  public:
    struct Pair {
        std::int32_t site;
        JobText text;
    };

    // Takes the pairs of a list: number, data, number, data ... Fails, with none, for null and for
    // a list that holds anything else.
    Outcome Take(CFTypeRef list);

    std::vector<Pair> const& Pairs() const { return mPairs; }
    // An array of {"site", "text"} as a JSON document, with a line end.
    std::string JSON() const;

  private:
    bool TakePairs(CFTypeRef list);

    std::vector<Pair> mPairs;
};
