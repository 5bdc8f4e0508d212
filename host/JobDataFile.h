// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "host/Outcome.h"
#include "platform/CoreFoundation.h"

// A job data file: pairs of injection site and bytes, in the order in which they go into the job.
class JobDataFile {
  public:
    struct Pair {
        std::int32_t site;
        std::string text;  // bytes
    };

    // Fails for a file that can't be read or holds anything but such pairs.
    Outcome Read(std::string const& path);

    std::vector<Pair> const& Pairs() const { return mPairs; }
    // An array of {"site", "text"} as a JSON document, with a line end.
    std::string JSON() const;

  private:
    bool Take(CFTypeRef list);

    std::vector<Pair> mPairs;
};
