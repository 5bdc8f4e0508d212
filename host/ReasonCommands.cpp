// SPDX-License-Identifier: Apache-2.0
#include "host/ReasonCommands.h"

#include <algorithm>
#include <iterator>
#include <string>

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/ConstraintFix.h"
#include "PPDX/PPDObjects/ConstraintReasons.h"
#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/ControlNames.h"
#include "host/JsonText.h"
#include "host/PeopleText.h"

namespace {

using Reasons = ConstraintReasons::Reasons;

constexpr std::size_t kMostAlternatives = 20;

Json ReasonsAsJson(Reasons const& reasons, bool chain) {
    Json list = Json::array();
    for (ConstraintReason const& reason : reasons) {
        Json row = {{"pair", {JsonText::Bytes(reason.keyword), JsonText::Bytes(reason.option)}},
                    {"line", reason.line},
                    {"rule", JsonText::Bytes(reason.rule)}};
        if (chain) {
            row["forcedBy"] = ReasonsAsJson(reason.forcedBy, true);
            if (reason.isOnly) {
                row["only"] = true;
            }
            if (reason.isCut) {
                row["cut"] = true;
            }
        }
        list.push_back(std::move(row));
    }
    return list;
}

// Each reason with its rule, those that force it indented below.
class ReasonText {
  public:
    ReasonText(ZUBPPD& ppd, std::string const& file, std::ostream& out)
        : mPPD(ppd), mFile(PeopleText::Plain(std::string_view(file))), mOut(out) {}

    void Write(Reasons const& reasons, std::size_t depth = 1) {
        std::string const margin(2 * depth, ' ');
        for (ConstraintReason const& reason : reasons) {
            mOut << margin << PeopleText::Pair(mPPD, reason.keyword, reason.option) << '\n'
                 << margin << "  " << mFile << ':' << reason.line << ": "
                 << PeopleText::Bytes(reason.rule) << '\n';
            if (reason.isOnly) {
                mOut << margin << "  which is the only choice there is\n";
            } else if (reason.isCut) {
                mOut << margin << "  which may have reasons of its own: zubprint why says more\n";
            } else if (!reason.forcedBy.empty()) {
                mOut << margin << "  which is the only choice left there, because of\n";
                Write(reason.forcedBy, depth + 2);
            }
        }
    }

    // The rules that stand between a choice and each other choice for what is in its way.
    void WriteAlternatives(ConstraintReasons& reasons, Reasons const& blockers,
                           ConstraintReasons::Choice const& choice) {
        std::size_t told = 0;
        for (ConstraintReason const& blocker : blockers) {
            for (std::string const& other : reasons.OptionsOf(blocker.keyword)) {
                Reasons const beside = reasons.Beside({blocker.keyword, other}, choice);
                if (other == blocker.option || beside.empty() || ++told > kMostAlternatives) {
                    continue;
                }
                mOut << "  nor does " << PeopleText::Pair(mPPD, blocker.keyword, other)
                     << " help:\n    " << mFile << ':' << beside.front().line << ": "
                     << PeopleText::Bytes(beside.front().rule) << '\n';
            }
        }
    }

  private:
    ZUBPPD& mPPD;
    std::string mFile;
    std::ostream& mOut;
};

ConstraintReasons::Choice ChoiceIn(OptionChoice const& choice) {
    return {choice.keyword, choice.option.value_or("")};
}

std::string Name(ZUBPPD& ppd, OptionChoice const& choice) {
    return PeopleText::Pair(ppd, choice.keyword, choice.option.value_or(""));
}

std::string SetArgument(std::string const& keyword, std::string const& option) {
    return "--set " + PeopleText::ForShell(keyword + "=" + option);
}

// What was set for the question is needed for the answer too.
std::string GivenArguments(std::vector<ControlSetting> const& settings) {
    std::string arguments;
    for (ControlSetting const& setting : settings) {
        arguments +=
            setting.file.empty()
                ? SetArgument(setting.keyword, std::string(setting.value.View()))
                : "--set-from " + PeopleText::ForShell(setting.keyword + "=" + setting.file);
        arguments += ' ';
    }
    return arguments;
}

void WriteFix(ZUBPPD& ppd, OptionChoice const& choice, ConstraintFix::Fix const& fix,
              std::vector<ControlSetting> const& given, std::ostream& out) {
    std::string const name = Name(ppd, choice);
    std::string arguments = GivenArguments(given);
    if (fix.changes.empty()) {
        out << name << " needs no other change.\n";
    } else {
        out << name << " needs:\n";
    }
    for (ConstraintFix::Change const& change : fix.changes) {
        PPDXControl* const control = ControlNames::Find(ppd, change.keyword);
        out << "  " << PeopleText::Pair(ppd, change.keyword, change.to);
        if (!change.from.empty()) {
            out << " instead of "
                << (control == nullptr ? PeopleText::Bytes(change.from)
                                       : PeopleText::NameOf(ppd, *control, change.from));
        }
        bool const isHardware = control != nullptr && ControlNames::IsHardware(*control);
        out << (isHardware ? ", if the printer has it" : "") << '\n';
        arguments += SetArgument(change.keyword, change.to) + ' ';
    }
    out << arguments << SetArgument(choice.keyword, *choice.option) << '\n';
}

}  // namespace

Outcome WhyCommand::Answer(ZUBPPD& ppd, std::ostream& out) {
    OptionChoice choice = mOptions.choice;
    if (Outcome outcome = ControlNames::Resolve(ppd, mOptions.ppd, choice); !outcome.Ok()) {
        return outcome;
    }
    ConstraintReasons reasons(ppd);
    // A number takes no part in rules, whatever they say of it.
    bool const takesPart = !ControlNames::Choices(*ControlNames::Find(ppd, choice.keyword)).empty();
    Reasons const blockers = takesPart ? reasons.Against(ChoiceIn(choice), true) : Reasons();
    Reasons const greyed = takesPart ? reasons.Greyed(ChoiceIn(choice)) : Reasons();
    if (mOptions.json) {
        out << Json({{"constrained", !blockers.empty()},
                     {"blockers", ReasonsAsJson(blockers, true)},
                     {"rulesOut", ReasonsAsJson(greyed, false)}})
                   .dump(2)
            << '\n';
        return Outcome::Done();
    }
    ReasonText text(ppd, mOptions.ppd, out);
    if (blockers.empty()) {
        out << Name(ppd, choice) << " can be chosen.\n";
    } else {
        out << Name(ppd, choice) << " can't be chosen now. Against it stands:\n";
        text.Write(blockers);
        out << "zubprint fix looks for what to change.\n";
    }
    if (!greyed.empty()) {
        out << "If it is chosen, this can't stay as it is:\n";
        text.Write(greyed);
    }
    return Outcome::Done();
}

Outcome FixCommand::Answer(ZUBPPD& ppd, std::ostream& out) {
    OptionChoice choice = mOptions.choice;
    if (Outcome outcome = ControlNames::Resolve(ppd, mOptions.ppd, choice); !outcome.Ok()) {
        return outcome;
    }
    ConstraintFix::Fix const fix =
        ConstraintFix(ppd).Find(choice.keyword.c_str(), choice.option->c_str());
    if (mOptions.json) {
        Json changes = Json::array();
        for (ConstraintFix::Change const& change : fix.changes) {
            changes.push_back({JsonText::Bytes(change.keyword),
                               change.from.empty() ? Json() : JsonText::Bytes(change.from),
                               JsonText::Bytes(change.to)});
        }
        out << Json({{"possible", fix.possible}, {"changes", changes}}).dump(2) << '\n';
    } else if (fix.possible) {
        WriteFix(ppd, choice, fix, mOptions.settings, out);
    } else {
        ConstraintReasons reasons(ppd);
        out << Name(ppd, choice) << " can't be chosen: no change of other options was found that "
            << "allows it.\nAgainst it stands:\n";
        ReasonText text(ppd, mOptions.ppd, out);
        Reasons blockers = reasons.Against(ChoiceIn(choice), true);
        std::ranges::move(reasons.Greyed(ChoiceIn(choice)), std::back_inserter(blockers));
        text.Write(blockers);
        text.WriteAlternatives(reasons, blockers, ChoiceIn(choice));
    }
    return fix.possible ? Outcome::Done()
                        : Outcome::Failed(choice.keyword + "=" + *choice.option +
                                          " can't be chosen: no change of other options was found "
                                          "that allows it");
}
