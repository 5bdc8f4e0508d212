// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "PPDX/PPDObjects/FileMac.h"

// A PPD on disk.
class PPDFile : public FileMac {
  public:
    explicit PPDFile(FSSpec const& file) : FileMac(file) {}
    explicit PPDFile(CFURLRef url) : FileMac(url) {}
};
