// SPDX-License-Identifier: Apache-2.0
#include "host/RuleCommands.h"

#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "constraints/ConstraintsEngine.h"
#include "constraints/UIConstraints.h"

namespace {

constexpr long kAllOptions = -1;

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

// Turns texts into ids; remembers the first one that the PPD doesn't have.
class Texts {
  public:
    explicit Texts(CStringSoup const& table) : mTable(table) {}

    long ID(std::string const& text) {
        long const id = mTable.Find(text.c_str());
        if (id < 0 && mUnknown == nullptr) {
            mUnknown = &text;
        }
        return id;
    }
    std::pair<long, long> IDs(OptionChoice const& choice) {
        long const key = ID(choice.keyword);
        return {key, choice.option ? ID(*choice.option) : kAllOptions};
    }
    std::string const* Unknown() const { return mUnknown; }  // null when all were known

  private:
    CStringSoup const& mTable;
    std::string const* mUnknown = nullptr;  // in the caller's choices
};

// An option that isn't there stands as -1.
Json Pairs(KVCache const& pairs, CStringSoup const& texts) {
    Json list = Json::array();
    for (long position = 0; position < pairs.size(); ++position) {
        auto const [key, option] = pairs.GetKV(position);
        list.push_back({JsonText::Bytes(texts.Find(key)),
                        option < 0 ? Json(option) : JsonText::Bytes(texts.Find(option))});
    }
    return list;
}

}  // namespace

Outcome ConstraintsCommand::Answer(ZUBPPD& ppd, std::ostream& out) {
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
    out << Json({{"constrained", std::move(constrained)}}).dump(2) << '\n';
    return Outcome::Done();
}

Outcome SolveCommand::Answer(ZUBPPD& ppd, std::ostream& out) {
    UIConstraints& constraints = *ppd.GetUIConstraints();
    CStringSoup const& table = constraints.GetConstraintStrings();
    Texts texts(table);
    KVCache delta;
    KVCache locked;
    for (OptionChoice const& choice : mOptions.change) {
        auto const [key, option] = texts.IDs(choice);
        delta.Insert(key, option);
    }
    for (OptionChoice const& choice : mOptions.locked) {
        locked.add(texts.IDs(choice));
    }
    if (texts.Unknown() != nullptr) {
        return Outcome::Failed(mOptions.ppd + " doesn't know '" + *texts.Unknown() + "'");
    }
    ConstraintsEngine engine(&constraints.GetSelection(), &constraints.GetConstraintForest(),
                             &constraints.GetKeyForest(), &locked);
    _KVErrorSet const errors =
        mOptions.test ? engine.Test(&delta) : engine.Solve(&delta, mOptions.keepDelta);
    Json const answer = {{"solved", errors.conflicts.size() == 0},
                         {"delta", Pairs(delta, table)},
                         {"conflicts", Pairs(errors.conflicts, table)},
                         {"alternatives", Pairs(errors.alternatives, table)}};
    out << answer.dump(2) << '\n';
    return Outcome::Done();
}
