// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "PPDX/PPDObjects/PlacedPPD.h"
#include "constraints/KVCache.h"

// A selected pair that a rule sets against a choice. Texts are bytes as they stand in the PPD.
struct ConstraintReason {
    std::string keyword;
    std::string option;
    long line = 0;     // of the rule
    std::string rule;  // the line itself
    // The same against every other option of the keyword, when none of them can be chosen now.
    // Empty when one can, when there is no other, and where the question comes back to a keyword
    // that it is about.
    std::vector<ConstraintReason> forcedBy;
    bool isOnly = false;  // the keyword has no other option
    bool isCut = false;   // forcedBy wasn't looked for: the chain is too long
};

// Says why a choice can't be made now, by the lines of the PPD's file. Rules don't keep their
// lines: the file is read again when the first question comes. When it has changed since, the
// answers are about what it has become.
//
// Asks with the present selection, as it is at each question. Throws std::bad_alloc.
class ConstraintReasons {
  public:
    using Choice = std::pair<std::string, std::string>;  // keyword and option
    using Reasons = std::vector<ConstraintReason>;

    // Borrowed, must outlive the object. One that was made without a file has no reasons.
    explicit ConstraintReasons(ZUBPPD& ppd) : mPPD(ppd) {}

    // What stands against the choice, one for each rule and pair, in the order of the file: none
    // exactly when the choice isn't greyed. `chain` fills in forcedBy, some steps deep.
    Reasons Against(Choice const& choice, bool chain);
    // The selected pairs that would have a rule against this choice if it were made, as far as the
    // choice has none against them: what it would grey.
    Reasons Greyed(Choice const& choice);
    // What stands against the choice, in either direction, if `made` were chosen too.
    Reasons Beside(Choice const& choice, Choice const& made);
    // What the keyword can be, as the rules know it.
    std::vector<std::string> OptionsOf(std::string const& keyword) const;

  private:
    using Keywords = std::set<std::string>;

    PlacedPPD const* Placed();
    bool Means(std::string const& key, std::string const& blankOrOption,
               std::string const& option) const;
    Reasons Find(Choice const& choice, KVCache const& selection);
    void Force(ConstraintReason& reason, KVCache const& selection, Keywords& chain);
    Reasons WhyForced(std::string const& keyword, std::string const& option,
                      KVCache const& selection, Keywords& chain);
    ConstraintReason ReasonOf(PlacedPPD::Rule const& rule, std::string const& keyword,
                              std::string const& option) const;
    std::string Selected(KVCache const& selection, std::string const& keyword) const;

    ZUBPPD& mPPD;
    std::unique_ptr<PlacedPPD> mPlaced;
    long mRoom = 0;  // rules that the chains of this question may still look at
    std::multimap<std::string, PlacedPPD::Rule const*> mRules;  // by the first key, in file order
};
