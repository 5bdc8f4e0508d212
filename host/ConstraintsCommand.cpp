// SPDX-License-Identifier: Apache-2.0
#include "host/ConstraintsCommand.h"

#include <vector>

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"

namespace {

// What a control offers to choose from; empty for one that isn't a list or a switch.
std::vector<char const*> Choices(PPDXControl& control) {
    if (control.Type() == kBooleanType) {
        return {"True", "False"};
    }
    std::vector<char const*> choices;
    if (auto* const popup = dynamic_cast<PPDXPopupControl*>(&control)) {
        for (_PopupItem* item = popup->FirstItem(); item != nullptr; item = popup->NextItem()) {
            choices.push_back(item->Keyword());
        }
    }
    return choices;
}

}  // namespace

Outcome ConstraintsCommand::Answer(ZUBPPD& ppd, Json& answer) {
    ppd.SetCustomPaper(mOptions.customPaper);
    DisplayOptionsScope const all(kDisplayAll);
    Json constrained = Json::array();
    CNTL_TYPE type = kControlType;
    for (PPDXControl* control = GetFirst(ppd.GetControls(), type); control != nullptr;
         control = GetNext(ppd.GetControls(), type)) {
        for (char const* choice : Choices(*control)) {
            if (ppd.IsKVConstrained(control->Keyword(), choice)) {
                constrained.push_back(
                    {JsonText::Bytes(control->Keyword()), JsonText::Bytes(choice)});
            }
        }
    }
    answer["constrained"] = std::move(constrained);
    return Outcome::Done();
}
