// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
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
// code into a hidden group: rules may name them, but nobody chooses them. Other readers take a
// keyword that begins with JCL for an option of the job language, so those get another.
class AdoptedPPD {
  public:
    struct Counts {
        std::size_t options = 0;
        std::size_t choices = 0;
        std::size_t rules = 0;  // of the original
    };

    // The PPD must outlive the object, which tells of the options here.
    AdoptedPPD(PlainPPD const& ppd, AdoptTell tell);

    // What Write carries.
    Counts const& Carried() const { return mCounts; }
    void Write(std::ostream& out);

  private:
    using Pair = std::pair<std::string, std::string>;
    using Rule = std::pair<Pair, Pair>;

    bool IsHidden(PlainPPD::Option const& option) const;
    std::string GroupOf(PlainPPD::Option const& option) const;
    void WriteHeader(std::ostream& out);
    void WriteLayout(std::ostream& out);
    void WriteOptions(std::ostream& out);
    void WriteShortcuts(std::ostream& out);
    void WriteOthers(std::ostream& out);
    void WriteRules(std::ostream& out);
    bool Knows(Pair const& pair) const;
    std::string WhyNot(PlainPPD::Rule const& rule) const;
    Pair Renamed(Pair const& pair) const;
    void CollectRules();
    std::string NewKeyword(PlainPPD::Option const& option) const;
    // Writes lines that the reader takes all; others are told and left out.
    void Put(std::ostream& out, long line, std::string const& text) const;
    std::string PCFileName() const;
    std::string Header(char const* keyword, char const* otherwise) const;

    PlainPPD const& mPPD;
    AdoptTell mTell;
    AdoptedNames mNames;
    std::vector<PlainPPD::Option const*> mOptions;  // those that are carried, in order
    std::map<std::string, PlainPPD::Option const*> mByKeyword;
    std::map<std::string, AdoptedOption> mBlocks;  // by keyword
    std::set<Pair> mChoices;                       // of those options
    std::vector<std::pair<long, Rule>> mRules;     // as they are written, with their lines
    Counts mCounts;
};
