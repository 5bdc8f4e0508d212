// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <map>
#include <set>
#include <tuple>

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
using Options = std::vector<std::string>;

bool IsOffWord(std::string const& option) {
    return option == "None" || option == "False";
}

// The checks of one PPD's rules, by the options that its lists and switches have.
class RuleChecks {
  public:
    RuleChecks(PlacedPPD& ppd, LintFindings& findings) : mPPD(ppd), mFindings(findings) {
        for (PPDXControl* const control : ControlNames::All(ppd)) {
            if (control->Keyword() != nullptr) {
                mKeywords.emplace_back(control->Keyword());
                mControls[control->Keyword()] = control;
                mOptions[control->Keyword()] = ControlNames::Choices(*control);
            }
        }
    }

    void Run() {
        for (Rule const& rule : mPPD.Rules()) {
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
        CheckDeadChoices();
    }

  private:
    using Form = std::tuple<std::string, std::string, std::string, std::string>;

    static Form FormOf(Rule const& rule) {
        return {rule.key1, rule.option1, rule.key2, rule.option2};
    }

    void Add(Rule const& rule, Severity severity, std::string message, std::string help) {
        mFindings.push_back(
            {rule.line, severity, std::nullopt, rule.key1, std::move(message), std::move(help)});
    }

    // The options that an option of a rule stands for.
    Options Meant(std::string const& key, std::string const& option) const {
        if (!option.empty()) {
            return {option};
        }
        Options meant;
        std::ranges::copy_if(mOptions.at(key), std::back_inserter(meant),
                             [](std::string const& each) { return !IsOffWord(each); });
        return meant;
    }

    std::string WhyIdle(Rule const& rule) const {
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

    std::string WhyIdle(std::string const& key, std::string const& option) const {
        std::string const name = PeopleText::Bytes(key);
        auto const found = mOptions.find(key);
        if (found == mOptions.end()) {
            return "there is no option " + name + Suggestions::Ask(key, mKeywords) + ".";
        }
        if (found->second.empty()) {
            return name + " has no choices, and numbers take no part in rules.";
        }
        if (option.empty()) {
            return Meant(key, option).empty() ? name + " has no choice but None and False." : "";
        }
        return std::ranges::count(found->second, option) > 0
                   ? ""
                   : name + " has no choice " + PeopleText::Bytes(option) +
                         Suggestions::Ask(option, found->second) + ".";
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
        (rule.requirement ? mNeeds : mBans).emplace(FormOf(rule), rule.line);
        if (rule.requirement) {
            return;
        }
        CheckDefaults(rule);
        for (std::string const& option : Meant(rule.key1, rule.option1)) {
            auto& banned = mBannedBy[{rule.key1, option}][rule.key2];
            for (std::string const& other : Meant(rule.key2, rule.option2)) {
                banned.insert(other);
            }
        }
    }

    std::string Default(std::string const& keyword) {
        PPDXControl* const control = mControls[keyword];
        if (auto* const boolean = dynamic_cast<PPDXBooleanControl*>(control)) {
            return boolean->DefaultState() ? "True" : "False";
        }
        auto* const popup = dynamic_cast<PPDXPopupControl*>(control);
        char const* const option = popup == nullptr ? nullptr : popup->GetDefaultKeyword();
        return option == nullptr ? "" : option;
    }

    void CheckDefaults(Rule const& rule) {
        Options const first = Meant(rule.key1, rule.option1);
        Options const second = Meant(rule.key2, rule.option2);
        if (rule.key1 != rule.key2 && std::ranges::count(first, Default(rule.key1)) > 0 &&
            std::ranges::count(second, Default(rule.key2)) > 0) {
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
                std::to_string(count) +
                    " rules hold in one direction only, this the first: the second choice isn't "
                    "greyed by the first.",
                "Write the rule the other way round too, unless that is meant.");
        }
    }

    static bool HoldsAll(std::set<std::string> const& banned, Options const& options) {
        return std::ranges::all_of(
            options, [&banned](std::string const& each) { return banned.count(each) > 0; });
    }

    // A choice that has a rule against every choice of another option.
    void CheckDeadChoices() {
        for (auto const& [choice, bans] : mBannedBy) {
            auto const& [keyword, option] = choice;
            for (auto const& [key, banned] : bans) {
                Options const own = {option};
                if (HoldsAll(banned, key == keyword ? own : mOptions[key])) {
                    mFindings.push_back(
                        {LintChecks::LineOfChoice(mPPD, *mControls[keyword], option),
                         Severity::kWarning, std::nullopt, keyword,
                         PeopleText::Bytes(option) +
                             " can never be chosen: rules stand against "
                             "it whatever " +
                             PeopleText::Bytes(key) + " is.",
                         "Take the choice out, or one of the rules."});
                    break;
                }
            }
        }
    }

    PlacedPPD& mPPD;
    LintFindings& mFindings;
    Options mKeywords;
    std::map<std::string, PPDXControl*> mControls;  // by keyword; the PPD's
    std::map<std::string, Options> mOptions;
    std::map<Form, long> mBans;  // lines
    std::map<Form, long> mNeeds;
    // By choice, and by the other keyword.
    std::map<std::pair<std::string, std::string>, std::map<std::string, std::set<std::string>>>
        mBannedBy;
};

}  // namespace

void LintChecks::Rules(PlacedPPD& ppd, LintFindings& findings) {
    RuleChecks(ppd, findings).Run();
}
