// SPDX-License-Identifier: Apache-2.0
#include "bench/CupsPPD.h"

#include <cstdlib>
#include <cstring>

#include <cups/cups.h>

#include "bench/Failure.h"

namespace {

template <typename IsGreyed>
long CountGreyed(ppd_option_t const& menu, std::vector<bool>* byItem, IsGreyed isGreyed) {
    long count = 0;
    for (int i = 0; i < menu.num_choices; ++i) {
        bool const greyed = isGreyed(menu.choices[i]);
        count += greyed ? 1 : 0;
        if (byItem != nullptr) {
            byItem->push_back(greyed);
        }
    }
    return count;
}

}  // namespace

void CupsPPD::Parse(std::string const& path) {
    ppd_file_t* const ppd = ppdOpenFile(path.c_str());
    ppdMarkDefaults(ppd);
    ppdConflicts(ppd);
    ppdClose(ppd);
}

CupsPPD::CupsPPD(std::string const& path) : mPPD(ppdOpenFile(path.c_str())) {
    if (mPPD == nullptr) {
        int line = 0;
        ppd_status_t const status = ppdLastError(&line);
        Fail(path + ", line " + std::to_string(line) + ": libcups says " + ppdErrorString(status));
    }
    ppdMarkDefaults(mPPD);
    if (ppdConflicts(mPPD) != 0) {
        Fail(path + ": the defaults conflict");
    }
    for (auto* option = ppdFirstOption(mPPD); option != nullptr; option = ppdNextOption(mPPD)) {
        mSections.insert(option->section);
    }
}

CupsPPD::~CupsPPD() {
    ppdClose(mPPD);
}

ppd_option_t& CupsPPD::Menu(std::string const& keyword) {
    ppd_option_t* const option = ppdFindOption(mPPD, keyword.c_str() + (keyword[0] == '*'));
    if (option == nullptr) {
        Fail("libcups doesn't know " + keyword);
    }
    return *option;
}

bool CupsPPD::Conflicts(ppd_option_t const& menu, ppd_choice_t const& choice) {
    cups_option_t* conflicts = nullptr;
    int const count = cupsGetConflicts(mPPD, menu.keyword, choice.choice, &conflicts);
    cupsFreeOptions(count, conflicts);
    return count > 0;
}

bool CupsPPD::ConflictsWhenMarked(ppd_option_t const& menu, ppd_choice_t const& choice) {
    ppdMarkOption(mPPD, menu.keyword, choice.choice);
    ppdConflicts(mPPD);
    return menu.conflicted != 0;
}

long CupsPPD::GreyMenu(ppd_option_t const& menu, std::vector<bool>* byItem) {
    return CountGreyed(menu, byItem,
                       [&](ppd_choice_t const& choice) { return Conflicts(menu, choice); });
}

long CupsPPD::GreyMenuByMarking(ppd_option_t const& menu, std::vector<bool>* byItem) {
    ppd_choice_t const* const former = ppdFindMarkedChoice(mPPD, menu.keyword);
    long const greyed = CountGreyed(menu, byItem, [&](ppd_choice_t const& choice) {
        return ConflictsWhenMarked(menu, choice);
    });
    ppdMarkOption(mPPD, menu.keyword, former->choice);
    return greyed;
}

// A call for a section without options would only walk through everything that is marked.
long CupsPPD::EmitAll() {
    long size = 0;
    for (ppd_section_t const section : mSections) {
        char* const code = ppdEmitString(mPPD, section, 0.0F);
        size += code != nullptr ? static_cast<long>(std::strlen(code)) : 0;
        std::free(code);
    }
    return size;
}
