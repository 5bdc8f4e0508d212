// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/CupsPPD.h"
#include "bench/OwnPPD.h"

// One PPD of the benchmark, opened by both readers when it is first needed.
class InputFile {
  public:
    explicit InputFile(std::string path) : mPath(std::move(path)) {}

    std::string const& Path() const { return mPath; }
    std::string Name() const;  // of the file, without its extension

    OwnPPD& Own();
    CupsPPD& Cups();
    // The options of libcups that are our menus, in the same order.
    std::vector<ppd_option_t*> const& CupsMenus();
    // `count` menus, evenly spread over the file; all of them when there are fewer.
    std::vector<std::size_t> Sample(std::size_t count);
    void Close();

    // Exits the program with a message unless both readers see the same menus and items, grey the
    // same items in a sample of `menus` menus, at least one and not all, and emit something.
    // Prints what it saw.
    void Check(std::size_t menus);

  private:
    void CheckItems();

    std::string mPath;
    std::unique_ptr<OwnPPD> mOwn;
    std::unique_ptr<CupsPPD> mCups;
    std::vector<ppd_option_t*> mCupsMenus;  // in mCups
};
