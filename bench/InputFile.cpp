// SPDX-License-Identifier: Apache-2.0
#include "bench/InputFile.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>

#include "bench/Failure.h"

std::string InputFile::Name() const {
    return std::filesystem::path(mPath).stem().string();
}

OwnPPD& InputFile::Own() {
    if (mOwn == nullptr) {
        mOwn = std::make_unique<OwnPPD>(mPath);
    }
    return *mOwn;
}

CupsPPD& InputFile::Cups() {
    if (mCups == nullptr) {
        mCups = std::make_unique<CupsPPD>(mPath);
    }
    return *mCups;
}

std::vector<ppd_option_t*> const& InputFile::CupsMenus() {
    if (mCupsMenus.empty()) {
        for (std::size_t menu = 0; menu < Own().MenuCount(); ++menu) {
            mCupsMenus.push_back(&Cups().Menu(Own().Keyword(menu)));
        }
    }
    return mCupsMenus;
}

std::vector<std::size_t> InputFile::Sample(std::size_t count) {
    std::size_t const all = Own().MenuCount();
    std::size_t const chosen = std::min(count, all);
    std::vector<std::size_t> menus;
    for (std::size_t i = 0; i < chosen; ++i) {
        menus.push_back(i * all / chosen);
    }
    return menus;
}

void InputFile::Close() {
    mOwn.reset();
    mCupsMenus.clear();
    mCups.reset();
}

void InputFile::CheckItems() {
    for (std::size_t menu = 0; menu < Own().MenuCount(); ++menu) {
        ppd_option_t const& option = *CupsMenus()[menu];
        std::vector<std::string> const items = Own().Items(menu);
        bool const same = std::equal(items.begin(), items.end(), option.choices,
                                     option.choices + option.num_choices,
                                     [](std::string const& item, ppd_choice_t const& choice) {
                                         return item == choice.choice;
                                     });
        if (items.empty() || !same) {
            Fail(mPath + ": the readers differ in the items of " + Own().Keyword(menu));
        }
    }
}

void InputFile::Check(std::size_t menus) {
    CheckItems();
    long items = 0;
    long greyed = 0;
    for (std::size_t const menu : Sample(menus)) {
        ppd_option_t const& option = *CupsMenus()[menu];
        std::vector<bool> own;
        std::vector<bool> cups;
        std::vector<bool> cupsMarking;
        greyed += Own().GreyMenu(menu, &own);
        Cups().GreyMenu(option, &cups);
        Cups().GreyMenuByMarking(option, &cupsMarking);
        if (own != cups || own != cupsMarking) {
            Fail(mPath + ": the readers grey different items of " + Own().Keyword(menu));
        }
        items += static_cast<long>(own.size());
    }
    if (greyed == 0 || greyed == items) {
        Fail(mPath + ": no item or every item is greyed");
    }
    long const ownBytes = Own().EmitAll();
    long const cupsBytes = Cups().EmitAll();
    if (ownBytes <= 0 || cupsBytes <= 0) {
        Fail(mPath + ": nothing was emitted");
    }
    std::fprintf(stderr,
                 "%s: %zu menus; of %ld items compared both readers grey the same %ld; "
                 "%ld bytes of code, by libcups %ld\n",
                 Name().c_str(), Own().MenuCount(), items, greyed, ownBytes, cupsBytes);
    Close();
}
