// SPDX-License-Identifier: Apache-2.0
#include <optional>

#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/PlacedPPD.h"
#include "host/ControlNames.h"
#include "host/PeopleText.h"
#include "host/lint/LintChecks.h"
#include "host/lint/PostScriptScanner.h"

namespace {

using Severity = LintFinding::Severity;

// Where a piece of code stands.
struct CodePlace {
    PPDXControl const* control;
    std::string option;  // empty for a number's
};

// The code of all choices, as it would go into a job.
class CodeOfPPD {
  public:
    explicit CodeOfPPD(PlacedPPD& ppd) {
        for (PPDXControl* const control : ControlNames::All(ppd)) {
            if (auto* const popup = dynamic_cast<PPDXPopupControl*>(control)) {
                AddItems(*popup);
            } else if (auto* const boolean = dynamic_cast<PPDXBooleanControl*>(control)) {
                AddStates(*boolean);
            } else {
                Add(*control, "");
            }
        }
    }

    std::vector<CodePlace> places;
    std::vector<std::string> texts;

  private:
    void AddItems(PPDXPopupControl& popup) {
        for (_PopupItem* item = popup.FirstItem(); item != nullptr; item = popup.NextItem()) {
            if (item->mPSCode != nullptr && item->mPSLength > 0) {
                places.push_back({&popup, item->Keyword() == nullptr ? "" : item->Keyword()});
                texts.emplace_back(reinterpret_cast<char const*>(item->mPSCode),
                                   static_cast<std::size_t>(item->mPSLength));
            }
        }
    }
    void AddStates(PPDXBooleanControl& boolean) {
        bool const former = boolean.IsTrue();
        for (bool const state : {true, false}) {
            boolean.SetValue(state);
            Add(boolean, state ? "True" : "False");
        }
        boolean.SetValue(former);
    }
    void Add(PPDXControl& control, std::string const& option) {
        long const length = control.PostScript(nullptr);
        if (length > 0) {
            std::string text(static_cast<std::size_t>(length), '\0');
            control.PostScript(reinterpret_cast<unsigned char*>(text.data()));
            places.push_back({&control, option});
            texts.push_back(std::move(text));
        }
    }
};

}  // namespace

void LintChecks::Code(PlacedPPD& ppd, LintFindings& findings) {
    CodeOfPPD const code(ppd);
    if (code.texts.empty()) {
        return;
    }
    std::string const program = PostScriptScanner::Program();
    auto const rejected =
        program.empty() ? std::nullopt : PostScriptScanner::Rejected(program, code.texts);
    if (!rejected) {
        findings.push_back({1, Severity::kNote, std::nullopt, "",
                            std::string("The PostScript wasn't looked at: Ghostscript ") +
                                (program.empty() ? "isn't installed." : "gave no answer."),
                            program.empty() ? "Install it and run lint again." : ""});
        return;
    }
    for (std::size_t const index : *rejected) {
        if (index < code.places.size()) {
            CodePlace const& place = code.places[index];
            std::string const keyword =
                place.control->Keyword() == nullptr ? "" : place.control->Keyword();
            findings.push_back(
                {LineOfChoice(ppd, *place.control, place.option), Severity::kWarning, std::nullopt,
                 keyword,
                 (place.option.empty() ? std::string("The code")
                                       : "The code of " + PeopleText::Bytes(place.option)) +
                     " isn't well-formed PostScript.",
                 "Look for a bracket, a brace or a parenthesis without its partner."});
        }
    }
}
