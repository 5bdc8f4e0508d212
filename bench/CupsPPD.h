// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <set>
#include <string>
#include <vector>

#include <cups/ppd.h>

// The same PPD as libcups sees it, with its defaults marked. Menus are named by keyword.
class CupsPPD {
  public:
    // Opens the file, marks the defaults, tests for conflicts once (which builds the table of
    // rules) and closes it.
    static void Parse(std::string const& path);

    // Exits the program with a message when the file isn't read, or when its defaults conflict.
    explicit CupsPPD(std::string const& path);
    CupsPPD(CupsPPD const&) = delete;
    CupsPPD& operator=(CupsPPD const&) = delete;
    ~CupsPPD();

    // With or without an asterisk; exits the program for an unknown one. Lives as long as this.
    ppd_option_t& Menu(std::string const& keyword);
    // Asks cupsGetConflicts about each choice; the number of those that would conflict. Tells each
    // in `byItem` when that isn't null.
    long GreyMenu(ppd_option_t const& menu, std::vector<bool>* byItem = nullptr);
    // Marks each choice, lets ppdConflicts test everything, and marks the former choice again.
    long GreyMenuByMarking(ppd_option_t const& menu, std::vector<bool>* byItem = nullptr);
    // Makes the code of everything that is marked, with one call for each section that the file's
    // options are in, which in the generated files is one; its bytes.
    long EmitAll();

  private:
    bool Conflicts(ppd_option_t const& menu, ppd_choice_t const& choice);
    bool ConflictsWhenMarked(ppd_option_t const& menu, ppd_choice_t const& choice);

    ppd_file_t* mPPD;  // owned
    std::set<ppd_section_t> mSections;
};
