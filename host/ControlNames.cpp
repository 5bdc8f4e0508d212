// SPDX-License-Identifier: Apache-2.0
#include "host/ControlNames.h"

#include <algorithm>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/JsonText.h"
#include "host/PeopleText.h"
#include "host/Suggestions.h"
#include "host/TakenChoice.h"
#include "platform/CFRef.h"

namespace {

constexpr std::size_t kFewChoices = 6;

PPDXControl* FindExact(ZUBPPD& ppd, std::string const& keyword) {
    DisplayOptionsScope const all(kDisplayAll);
    CNTL_TYPE type = kControlType;
    PPDXControls* const controls = ppd.GetControls();
    return controls == nullptr ? nullptr : controls->Find(keyword.c_str(), type, true);
}

std::string Text(char const* bytes) {
    return bytes == nullptr ? std::string() : bytes;
}

// Whether the control takes the value, which is written as the PPD has it then. One that offers no
// list is asked by a trial.
bool Takes(PPDXControl& control, std::string& option) {
    std::vector<std::string> const choices = ControlNames::Choices(control);
    if (control.Type() == kBooleanType) {
        auto const same =
            std::ranges::find(choices, Suggestions::Lower(option), Suggestions::Lower);
        option = same == choices.end() ? option : *same;
    }
    if (!choices.empty()) {
        return std::ranges::count(choices, option) > 0;
    }
    CFRef<CFStringRef> const before(control.CopyCurrentControlValueString());
    control.SetCurrentControlWithCFString(JsonText::FromUTF8(option));
    bool const stands = StandsAt(control, option);
    control.SetCurrentControlWithCFString(before);
    return stands;
}

}  // namespace

PPDXControl* ControlNames::Find(ZUBPPD& ppd, std::string const& keyword) {
    PPDXControl* const control = FindExact(ppd, keyword);
    return control != nullptr || keyword.starts_with('*') ? control : FindExact(ppd, '*' + keyword);
}

std::vector<PPDXControl*> ControlNames::All(ZUBPPD& ppd) {
    DisplayOptionsScope const all(kDisplayAll);
    std::vector<PPDXControl*> controls;
    CNTL_TYPE type = kControlType;
    for (PPDXControl* control = GetFirst(ppd.GetControls(), type); control != nullptr;
         control = GetNext(ppd.GetControls(), type)) {
        controls.push_back(control);
    }
    return controls;
}

std::string ControlNames::Unknown(ZUBPPD& ppd, std::string const& file,
                                  std::string const& keyword) {
    std::string const text = file + " has no control " + keyword;
    if (All(ppd).empty()) {
        return text + ", nor any other; zubprint adopt makes them of an ordinary PPD's options";
    }
    std::string const ask = Ask(ppd, keyword);
    return text + (ask.empty() ? "; zubprint list shows those that it has" : ask);
}

std::string ControlNames::Ask(ZUBPPD& ppd, std::string const& text) {
    std::vector<std::string> keywords;
    std::vector<std::string> named;
    for (PPDXControl* const control : All(ppd)) {
        keywords.push_back(PeopleText::Bytes(Text(control->Keyword())));
        if (!Suggestions::Nearest(text, {PeopleText::NameOf(*control)}).empty()) {
            named.push_back(keywords.back());
        }
    }
    std::vector<std::string> const nearest = Suggestions::Nearest(text, keywords);
    return Suggestions::Ask(nearest.empty() ? named : nearest);
}

bool ControlNames::IsHardware(PPDXControl& control) {
    std::string const group =
        control.GetParent() == nullptr ? "" : Text(control.GetParent()->Keyword());
    return control.IsInstallableOption() || group == "ZUPPInstallableOptions" ||
           group == "InstallableOptions";
}

std::vector<std::string> ControlNames::Choices(PPDXControl& control) {
    if (control.Type() == kBooleanType) {
        return {"True", "False"};
    }
    std::vector<std::string> choices;
    if (auto* const popup = dynamic_cast<PPDXPopupControl*>(&control)) {
        for (_PopupItem* item = popup->FirstItem(); item != nullptr; item = popup->NextItem()) {
            choices.push_back(Text(item->Keyword()));
        }
    }
    return choices;
}

std::string ControlNames::AskChoice(ZUBPPD const& ppd, PPDXControl& control,
                                    std::string const& option) {
    auto* const popup = dynamic_cast<PPDXPopupControl*>(&control);
    if (popup != nullptr && popup->TakesUnknownValues()) {
        return {};
    }
    if (std::string const limits = PeopleText::Limits(control); !limits.empty()) {
        return "; it takes " + limits;
    }
    if (control.Type() == kCustomPageSizeType) {
        return "; it takes width and height with a blank between them";
    }
    std::vector<std::string> choices;
    for (std::string const& choice : Choices(control)) {
        choices.push_back(PeopleText::Bytes(choice));
    }
    if (control.Type() == kBooleanType) {
        return "; it takes " + Suggestions::List(choices, "or");
    }
    std::vector<std::string> nearest = Suggestions::Nearest(option, choices);
    std::vector<std::string> const names = PeopleText::NamesOfChoices(ppd, control);
    for (std::size_t index = 0; index < choices.size() && nearest.empty(); ++index) {
        if (!Suggestions::Nearest(option, {names[index]}).empty()) {
            nearest.push_back(choices[index]);
        }
    }
    if (nearest.empty() && !choices.empty() && choices.size() <= kFewChoices) {
        return "; it takes " + Suggestions::List(choices, "or");
    }
    return Suggestions::Ask(nearest);
}

Outcome ControlNames::ResolveKeyword(ZUBPPD& ppd, std::string const& file, std::string& keyword) {
    PPDXControl const* const control = Find(ppd, keyword);
    if (control == nullptr) {
        return Outcome::Failed(Unknown(ppd, file, keyword));
    }
    keyword = Text(control->Keyword());
    return Outcome::Done();
}

Outcome ControlNames::Resolve(ZUBPPD& ppd, std::string const& file, OptionChoice& choice) {
    if (Outcome outcome = ResolveKeyword(ppd, file, choice.keyword); !outcome.Ok()) {
        return outcome;
    }
    PPDXControl& control = *Find(ppd, choice.keyword);
    if (!choice.option || Takes(control, *choice.option)) {
        return Outcome::Done();
    }
    std::string const ask = AskChoice(ppd, control, *choice.option);
    return Outcome::Failed(
        file + ": " + choice.keyword + " has no choice " +
        (choice.option->empty() ? "without a name" : *choice.option) +
        (ask.empty() ? "; zubprint list FILE " + choice.keyword + " shows those that it has"
                     : ask));
}
