// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/PlacedPPD.h"
#include "host/ControlNames.h"
#include "host/PeopleText.h"
#include "host/Suggestions.h"
#include "host/lint/LintChecks.h"

namespace {

using Severity = LintFinding::Severity;

// The word behind the colon of a line, up to its text for people.
std::string ValueOf(std::string_view line) {
    line.remove_prefix(std::min(line.find(':'), line.size()));
    line.remove_prefix(std::min(line.find_first_not_of(": \t"), line.size()));
    return std::string(line.substr(0, line.find_first_of("/ \t")));
}

// The option of a choice's line behind its keyword.
std::string OptionIn(std::string_view rest) {
    rest.remove_prefix(std::min(rest.find_first_not_of(" \t"), rest.size()));
    return std::string(rest.substr(0, rest.find_first_of("/: \t")));
}

// Goes through the blocks of the options that are used, line by line.
class BlockChecks {
  public:
    BlockChecks(PlacedPPD& ppd, LintFindings& findings) : mPPD(ppd), mFindings(findings) {
        for (PPDXControl* const control : ControlNames::All(ppd)) {
            if (control->Keyword() != nullptr) {
                mControls[control->Keyword()] = control;
            }
        }
    }

    void Run() {
        FileLines const& lines = mPPD.Lines();
        std::string open;
        for (long number = 1; number <= lines.Count(); ++number) {
            std::string_view const line = lines.Text(number);
            if (std::string const keyword = LintChecks::OpenedIn(line); !keyword.empty()) {
                open = mControls.count(keyword) > 0 ? keyword : "";
                mSeen.clear();
            } else if (!open.empty() && line.starts_with("*Default") &&
                       !line.starts_with("*Default:")) {
                CheckDefault(number, open, ValueOf(line));
            } else if (!open.empty() && line.starts_with(open + " ")) {
                CheckChoice(number, open, OptionIn(line.substr(open.size())));
            } else if (line.starts_with("*CloseUI") || line.starts_with("*ZUCloseUI") ||
                       line.starts_with("*EndUI")) {
                CheckEnd(number, open, ValueOf(line));
                open.clear();
            }
        }
    }

  private:
    void CheckChoice(long line, std::string const& open, std::string const& option) {
        if (!mSeen.insert(option).second) {
            mFindings.push_back({line, Severity::kWarning, std::nullopt, open,
                                 PeopleText::Bytes(option) +
                                     " stands twice in the list: only the first can be chosen.",
                                 "Give one of them another keyword, or take it out."});
        }
    }

    void CheckDefault(long line, std::string const& open, std::string const& option) {
        std::vector<std::string> const choices = ControlNames::Choices(*mControls[open]);
        if (!mSeen.empty() && dynamic_cast<PPDXPopupControl*>(mControls[open]) != nullptr) {
            mFindings.push_back({line, Severity::kWarning, std::nullopt, open,
                                 "The default stands behind choices, where it doesn't count.",
                                 "Put the line ahead of the choices."});
            return;
        }
        if (choices.empty() || option.empty() ||
            std::ranges::find(choices, option) != choices.end()) {
            return;
        }
        mFindings.push_back(
            {line, Severity::kWarning, std::nullopt, open,
             LintChecks::Sentence("The default " + PeopleText::Bytes(option) +
                                  " is none of the choices" + Suggestions::Ask(option, choices)),
             "Name one of the choices."});
    }

    void CheckEnd(long line, std::string const& open, std::string const& keyword) {
        if (!open.empty() && !keyword.empty() && keyword != open) {
            mFindings.push_back({line, Severity::kWarning, std::nullopt, open,
                                 "The block's end names " + PeopleText::Bytes(keyword) + ".",
                                 "Write *CloseUI: " + PeopleText::Bytes(open)});
        }
    }

    PlacedPPD& mPPD;
    LintFindings& mFindings;
    std::map<std::string, PPDXControl*> mControls;  // by keyword; the PPD's
    std::set<std::string> mSeen;                    // choices of the open block
};

}  // namespace

void LintChecks::Blocks(PlacedPPD& ppd, LintFindings& findings) {
    BlockChecks(ppd, findings).Run();
}
