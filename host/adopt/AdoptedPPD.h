// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "host/adopt/AdoptedOption.h"
#include "host/adopt/PlainPPD.h"

// An ordinary PPD in the extension grammar: a page with a pane and a roll-down for each of its
// groups, its options in them in the order in which their code goes into a job, shortcuts for what
// people use most, its constraints, and all else that it holds.
//
// Every option's code goes into a job here. So *PageRegion, which would take back what *PageSize
// does, and options for the printer's job language, which can't stand in PostScript, come without
// code into a hidden group: rules may name them, but nobody chooses them.
class AdoptedPPD {
  public:
    // Both must outlive the object.
    AdoptedPPD(PlainPPD const& ppd, AdoptedOption::Tell const& tell);

    void Write(std::ostream& out);

  private:
    using Pair = std::pair<std::string, std::string>;

    bool IsHidden(PlainPPD::Option const& option) const;
    std::string GroupOf(PlainPPD::Option const& option) const;
    void WriteHeader(std::ostream& out);
    void WriteLayout(std::ostream& out);
    void WriteOptions(std::ostream& out);
    void WriteShortcuts(std::ostream& out);
    void WriteOthers(std::ostream& out);
    void WriteRules(std::ostream& out);
    bool Knows(Pair const& pair) const;
    void WriteRule(std::ostream& out, Pair const& first, Pair const& second) const;
    std::string PCFileName() const;
    std::string Header(char const* keyword, char const* otherwise) const;

    PlainPPD const& mPPD;
    AdoptedOption::Tell const& mTell;
    std::vector<PlainPPD::Option const*> mOptions;  // those with choices, in order
    std::map<std::string, PlainPPD::Option const*> mByKeyword;
    std::set<Pair> mChoices;  // of those options
};
