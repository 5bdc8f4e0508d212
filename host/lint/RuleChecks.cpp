// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <map>
#include <set>
#include <tuple>
#include <unordered_set>
#include <utility>
#include <vector>

#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/PlacedPPD.h"
#include "constraints/UIConstraints.h"
#include "host/ControlNames.h"
#include "host/PeopleText.h"
#include "host/Suggestions.h"
#include "host/lint/LintChecks.h"

namespace {

using Severity = LintFinding::Severity;
using Rule = PlacedPPD::Rule;

constexpr int kMostAsked = 40;  // near misses that are looked for, as each goes through all names

// The checks of one PPD's rules, by the options that its lists and switches have.
class RuleChecks {
  public:
    RuleChecks(PlacedPPD& ppd, LintFindings& findings) : mPPD(ppd), mFindings(findings) {
        for (PPDXControl* const control : ControlNames::All(ppd)) {
            if (control->Keyword() != nullptr) {
                mKeywords.emplace_back(control->Keyword());
                Choices& choices = mChoices[control->Keyword()];
                choices.control = control;
                choices.all = ControlNames::Choices(*control);
                choices.known = {choices.all.begin(), choices.all.end()};
                choices.byDefault = Default(*control);
            }
        }
        FileLines const& lines = ppd.Lines();
        for (long number = 1; number <= lines.Count(); ++number) {
            mOpened.emplace(LintChecks::OpenedIn(lines.Text(number)), number);
        }
    }

    void Run() {
        for (Rule const& rule : mPPD.Rules()) {
            if (NamesUnused(rule)) {
                continue;
            }
            std::string const reason = WhyIdle(rule);
            if (!reason.empty()) {
                Add(rule, Severity::kWarning, "This rule does nothing: " + reason,
                    "Correct the line, or take it out.");
            } else {
                CheckAgainstOthers(rule);
                Note(rule);
            }
        }
        CheckDirections();
        CheckNeeds();
        CheckDeadChoices();
    }

  private:
    using Form = std::tuple<std::string, std::string, std::string, std::string>;
    struct Choices {
        PPDXControl* control = nullptr;  // the PPD's
        std::vector<std::string> all;
        std::unordered_set<std::string> known;  // the same
        std::string byDefault;
    };
    // What rules forbid of one keyword's choices.
    struct Banned {
        bool allButOff = false;
        std::unordered_set<std::string> choices;

        bool Has(std::string const& choice) const {
            return (allButOff && !UIConstraints::IsOff(choice)) || choices.count(choice) > 0;
        }
        void Take(std::string const& option) {
            if (option.empty()) {
                allButOff = true;
            } else {
                choices.insert(option);
            }
        }
    };
    using Bans = std::map<std::string, Banned>;  // by the other keyword

    static Form FormOf(Rule const& rule) {
        return {rule.key1, rule.option1, rule.key2, rule.option2};
    }

    void Add(Rule const& rule, Severity severity, std::string message, std::string help) {
        mFindings.push_back(
            {rule.line, severity, std::nullopt, rule.key1, std::move(message), std::move(help)});
    }

    // Whether what a rule has for an option stands for this choice.
    static bool Means(std::string const& option, std::string const& choice) {
        return option.empty() ? !choice.empty() && !UIConstraints::IsOff(choice) : option == choice;
    }

    // An option that stands in the file but isn't used is told once for all rules that name it.
    bool NamesUnused(Rule const& rule) {
        for (std::string const& key : {rule.key1, rule.key2}) {
            auto const opened = mOpened.find(key);
            if (mChoices.count(key) > 0 || key.empty() || opened == mOpened.end()) {
                continue;
            }
            if (mToldUnused.insert(key).second) {
                Add(rule, Severity::kWarning,
                    "Rules that name " + PeopleText::Bytes(key) +
                        " do nothing: it stands in line " + std::to_string(opened->second) +
                        " but isn't used.",
                    "See what is said of that line, and put a *%ZUBFlags line ahead of it.");
            }
            return true;
        }
        return false;
    }

    std::string WhyIdle(Rule const& rule) {
        for (auto const& [key, option] :
             {std::pair(rule.key1, rule.option1), std::pair(rule.key2, rule.option2)}) {
            if (std::string reason = WhyIdle(key, option); !reason.empty()) {
                return reason;
            }
        }
        bool const isOneKey = rule.key1 == rule.key2;
        return isOneKey && !rule.option1.empty() && !rule.option2.empty() &&
                       rule.option1 != rule.option2
                   ? PeopleText::Bytes(rule.key1) + " never has both choices at once."
                   : std::string();
    }

    // Near misses, looked for once for each name and not without end.
    std::string Ask(std::string const& text, std::vector<std::string> const& known,
                    std::string const& of) {
        auto const [row, isNew] = mAsked.emplace(std::pair(of, text), "");
        if (isNew && mAsked.size() <= kMostAsked) {
            row->second = Suggestions::Ask(text, known);
        }
        return row->second;
    }

    std::string WhyIdle(std::string const& key, std::string const& option) {
        std::string const name = PeopleText::Bytes(key);
        auto const found = mChoices.find(key);
        if (found == mChoices.end()) {
            return LintChecks::Sentence("there is no option " + name + Ask(key, mKeywords, ""));
        }
        Choices const& choices = found->second;
        if (choices.all.empty()) {
            return name + " has no choices, and numbers take no part in rules.";
        }
        if (option.empty()) {
            return std::ranges::all_of(choices.all, UIConstraints::IsOff)
                       ? name + " has no choice but None and False."
                       : "";
        }
        return choices.known.count(option) > 0
                   ? ""
                   : LintChecks::Sentence(name + " has no choice " + PeopleText::Bytes(option) +
                                          Ask(option, choices.all, key));
    }

    void CheckAgainstOthers(Rule const& rule) {
        auto const& own = rule.requirement ? mNeeds : mBans;
        auto const& other = rule.requirement ? mBans : mNeeds;
        if (auto const same = own.find(FormOf(rule)); same != own.end()) {
            Add(rule, Severity::kNote,
                "This rule says again what line " + std::to_string(same->second) + " says.",
                "One of the two is enough.");
        }
        if (auto const against = other.find(FormOf(rule)); against != other.end()) {
            Add(rule, Severity::kWarning,
                "This rule fights line " + std::to_string(against->second) +
                    ": one needs what the other forbids.",
                "Take one of them out.");
        }
    }

    void Note(Rule const& rule) {
        bool const isNew =
            (rule.requirement ? mNeeds : mBans).emplace(FormOf(rule), rule.line).second;
        if (rule.requirement || !isNew) {
            return;
        }
        CheckDefaults(rule);
        Bans& bans =
            rule.option1.empty() ? mBannedByAny[rule.key1] : mBannedBy[{rule.key1, rule.option1}];
        bans[rule.key2].Take(rule.option2);
    }

    static std::string Default(PPDXControl& control) {
        if (auto const* const boolean = dynamic_cast<PPDXBooleanControl*>(&control)) {
            return boolean->DefaultState() ? "True" : "False";
        }
        auto* const popup = dynamic_cast<PPDXPopupControl*>(&control);
        char const* const option = popup == nullptr ? nullptr : popup->GetDefaultKeyword();
        return option == nullptr ? "" : option;
    }

    void CheckDefaults(Rule const& rule) {
        if (rule.key1 != rule.key2 && Means(rule.option1, mChoices[rule.key1].byDefault) &&
            Means(rule.option2, mChoices[rule.key2].byDefault)) {
            Add(rule, Severity::kWarning,
                "The defaults of " + PeopleText::Bytes(rule.key1) + " and " +
                    PeopleText::Bytes(rule.key2) + " stand against each other.",
                "Give one of the two another default.");
        }
    }

    // One note for all, as a file mostly has all its rules in one way or the other.
    void CheckDirections() {
        long count = 0;
        Rule const* example = nullptr;
        for (Rule const& rule : mPPD.Rules()) {
            if (!rule.requirement && mBans.count(FormOf(rule)) > 0 &&
                mBans.count({rule.key2, rule.option2, rule.key1, rule.option1}) == 0) {
                example = count++ == 0 ? &rule : example;
            }
        }
        if (example != nullptr) {
            Add(*example, Severity::kNote,
                (count == 1 ? std::string("1 rule holds in one direction only, this one")
                            : std::to_string(count) +
                                  " rules hold in one direction only, this the first") +
                    ": the second choice isn't greyed by the first.",
                "Write the rule the other way round too, unless that is meant.");
        }
    }

    void CheckNeeds() {
        auto const first = std::ranges::find_if(mPPD.Rules(), &Rule::requirement);
        if (first != mPPD.Rules().end()) {
            Add(*first, Severity::kNote,
                "Requirements are read, but grey nothing and change nothing: no rule of this kind, "
                "from this line on, does more.",
                "Write what can't stand together as *%ZUBUIConstraints.");
        }
    }

    // Which choices of the other keyword are left by the rules against every choice of this one.
    std::vector<std::string> const& LeftByAny(std::string const& keyword, std::string const& key) {
        auto const [row, isNew] = mLeftByAny.try_emplace(std::pair(keyword, key));
        if (isNew) {
            Banned const& banned = mBannedByAny[keyword][key];
            std::ranges::copy_if(mChoices[key].all, std::back_inserter(row->second),
                                 [&banned](auto const& choice) { return !banned.Has(choice); });
        }
        return row->second;
    }

    // Whether rules stand against the choice whatever the other keyword is.
    bool IsDead(std::string const& keyword, std::string const& choice, std::string const& key,
                Banned const& own) {
        if (key == keyword) {
            return own.Has(choice) ||
                   (!UIConstraints::IsOff(choice) && mBannedByAny[keyword][key].Has(choice));
        }
        return std::ranges::all_of(
            UIConstraints::IsOff(choice) ? mChoices[key].all : LeftByAny(keyword, key),
            [&own](std::string const& other) { return own.Has(other); });
    }

    // The other keyword that leaves no way to the choice; empty for none.
    std::string DeadBy(std::string const& keyword, std::string const& choice) {
        static Bans const kNone;
        auto const found = mBannedBy.find({keyword, choice});
        Bans const& own = found == mBannedBy.end() ? kNone : found->second;
        for (auto const& [key, banned] : own) {
            if (IsDead(keyword, choice, key, banned)) {
                return key;
            }
        }
        if (auto const any = mBannedByAny.find(keyword);
            any != mBannedByAny.end() && !UIConstraints::IsOff(choice)) {
            for (auto const& [key, banned] : Bans(any->second)) {
                if (own.count(key) == 0 && IsDead(keyword, choice, key, {})) {
                    return key;
                }
            }
        }
        return {};
    }

    void CheckDeadChoices() {
        for (std::string const& keyword : mKeywords) {
            Choices const& choices = mChoices[keyword];
            for (std::string const& choice : choices.all) {
                std::string const key = DeadBy(keyword, choice);
                if (!key.empty()) {
                    mFindings.push_back(
                        {LintChecks::LineOfChoice(mPPD, *choices.control, choice),
                         Severity::kWarning, std::nullopt, keyword,
                         PeopleText::Bytes(choice) +
                             " can never be chosen: rules stand against it whatever " +
                             PeopleText::Bytes(key) + " is.",
                         "Take the choice out, or one of the rules."});
                }
            }
        }
    }

    PlacedPPD& mPPD;
    LintFindings& mFindings;
    std::vector<std::string> mKeywords;
    std::map<std::string, Choices> mChoices;  // by keyword
    std::map<std::string, long> mOpened;      // lines of the blocks in the file
    std::set<std::string> mToldUnused;
    std::map<std::pair<std::string, std::string>, std::string> mAsked;
    std::map<Form, long> mBans;  // lines
    std::map<Form, long> mNeeds;
    std::map<std::pair<std::string, std::string>, Bans> mBannedBy;  // by choice
    std::map<std::string, Bans> mBannedByAny;  // by a blank option, which is all but off
    std::map<std::pair<std::string, std::string>, std::vector<std::string>> mLeftByAny;
};

}  // namespace

void LintChecks::Rules(PlacedPPD& ppd, LintFindings& findings) {
    RuleChecks(ppd, findings).Run();
}
