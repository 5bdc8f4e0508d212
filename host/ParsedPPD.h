// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "platform/CFRef.h"

// A PPD that the command itself read, given up on destruction.
class ParsedPPD {
  public:
    // No accepted fragments accept every file. What stands in the way of a reading is in the
    // PPD's errors.
    ParsedPPD(std::string const& path, _PARSE_OPTIONS_ options,
              std::vector<std::string> const& accepted);

    // The fragments as the reader takes them; null for none.
    static CFRef<CFArrayRef> Names(std::vector<std::string> const& accepted);

    ZUBPPD& Get() const { return *mPPD; }
    ZUBPPD* operator->() const { return mPPD.get(); }

  private:
    struct Releaser {
        void operator()(ZUBPPD* ppd) const { ppd->Release(); }
    };
    std::unique_ptr<ZUBPPD, Releaser> mPPD;
};
