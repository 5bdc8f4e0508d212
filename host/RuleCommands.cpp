// SPDX-License-Identifier: Apache-2.0
#include "host/RuleCommands.h"

#include <string>
#include <utility>
#include <vector>

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "constraints/ConstraintsEngine.h"
#include "constraints/UIConstraints.h"
#include "host/ControlNames.h"
#include "host/PeopleText.h"
#include "host/Suggestions.h"

namespace {

constexpr long kAllOptions = -1;

// Turns texts into ids; remembers the first one that the PPD doesn't have.
class Texts {
  public:
    explicit Texts(CStringSoup const& table) : mTable(table) {}

    // A keyword's; its star may have been left off.
    long KeyID(std::string const& keyword) {
        std::string const starred = '*' + keyword;
        bool const lacksStar =
            mTable.Find(keyword.c_str()) < 0 && mTable.Find(starred.c_str()) >= 0;
        return lacksStar ? mTable.Find(starred.c_str()) : ID(keyword);
    }
    long ID(std::string const& text) {
        long const id = mTable.Find(text.c_str());
        if (id < 0 && mUnknown == nullptr) {
            mUnknown = &text;
        }
        return id;
    }
    std::pair<long, long> IDs(OptionChoice const& choice) {
        long const key = KeyID(choice.keyword);
        return {key, choice.option ? ID(*choice.option) : kAllOptions};
    }
    std::vector<std::string> Known() const {
        std::vector<std::string> known;
        for (long id = 0; id < mTable.size(); ++id) {
            known.push_back(PeopleText::Bytes(mTable.Find(id)));
        }
        return known;
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
        for (std::string const& choice : ControlNames::Choices(*control)) {
            if (ppd.IsKVConstrained(control->Keyword(), choice.c_str())) {
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
        return Outcome::Failed(mOptions.ppd + " doesn't know '" + *texts.Unknown() + "'" +
                               Suggestions::Ask(*texts.Unknown(), texts.Known()));
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
