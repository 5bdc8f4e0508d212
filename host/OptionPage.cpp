// SPDX-License-Identifier: Apache-2.0
#include "host/OptionPage.h"

#include <algorithm>
#include <set>

#include "PPDX/PPDObjects/ConstraintReasons.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/PPDXGroups.h"
#include "PPDX/PPDObjects/PPDXProperties.h"
#include "PPDX/PPDObjects/PPDXProperty.h"
#include "PPDX/PPDObjects/PPDXRollDown.h"
#include "PPDX/PPDObjects/PPDXScrollPane.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/ControlNames.h"
#include "host/PeopleText.h"
#include "host/Suggestions.h"
#include "platform/CFRef.h"

namespace {

bool IsSelected(PPDXControl& control, std::string const& option, std::string const& value) {
    auto* const popup = dynamic_cast<PPDXPopupControl*>(&control);
    if (popup == nullptr) {
        return option == value;
    }
    char const* const current = popup->CurrentKeyword();
    return (current != nullptr && option == current) ||
           (popup->CanSelectMultipleItems() && popup->IsKeywordSelected(option.c_str()));
}

// Gathers the page, with one explanation of the rules for all of it.
class Gathering {
  public:
    Gathering(ZUBPPD& ppd, ListOptions const& options)
        : mPPD(ppd), mWord(Suggestions::Lower(options.word)), mReasons(ppd) {}

    OptionPage Page(bool all) {
        DisplayOptionsScope const walk(all ? kDisplayAll : kDisplayPlacedAndVisible);
        OptionPage page;
        PPDXProperties* const pages = mPPD.GetProperties();
        for (PPDXProperty* property = pages == nullptr ? nullptr : pages->First();
             property != nullptr; property = pages->Next()) {
            PPDXScrollPane* const pane = property->GetScrollDown();
            PPDXGroups* const groups = pane == nullptr ? nullptr : pane->RollDowns();
            for (PPDXGroup* group = FirstGroup(groups); group != nullptr;
                 group = NextGroup(groups)) {
                if (auto* const rollDown = dynamic_cast<PPDXRollDown*>(group)) {
                    AddGroup(page, *property, *rollDown);
                }
            }
        }
        if (all) {
            AddRest(page);
        }
        return page;
    }

  private:
    void AddGroup(OptionPage& page, PPDXProperty& property, PPDXRollDown& rollDown) {
        OptionPage::Group group{PeopleText::Plain(property.CFStringUserName()),
                                PeopleText::Plain(rollDown.CFStringUserName()),
                                {}};
        std::vector<PPDXControl*> controls;  // a control's names may need the walk
        CNTL_TYPE type = kControlType;
        for (PPDXControl* control = GetFirst(rollDown.Controls(), type); control != nullptr;
             control = GetNext(rollDown.Controls(), type)) {
            controls.push_back(control);
        }
        for (PPDXControl* const control : controls) {
            mShown.insert(control);
            Add(group, *control);
        }
        if (!group.options.empty()) {
            page.groups.push_back(std::move(group));
        }
    }

    void AddRest(OptionPage& page) {
        OptionPage::Group rest{"", "Outside of all pages", {}};
        for (PPDXControl* const control : ControlNames::All(mPPD)) {
            if (mShown.count(control) == 0) {
                Add(rest, *control);
            }
        }
        if (!rest.options.empty()) {
            page.groups.push_back(std::move(rest));
        }
    }

    void Add(OptionPage::Group& group, PPDXControl& control) {
        OptionPage::Option option;
        option.keyword = control.Keyword() == nullptr ? "" : control.Keyword();
        option.name = PeopleText::NameOf(control);
        CFRef<CFStringRef> const value(control.CopyCurrentControlValueString());
        option.value = PeopleText::Plain(value.Get());
        option.limits = PeopleText::Limits(control);
        std::vector<std::string> const keywords = ControlNames::Choices(control);
        std::vector<std::string> const names = PeopleText::NamesOfChoices(mPPD, control);
        for (std::size_t index = 0; index < keywords.size(); ++index) {
            option.choices.push_back({keywords[index], names[index], false, false, {}});
        }
        if (!IsWanted(option)) {
            return;
        }
        for (OptionPage::Choice& choice : option.choices) {
            choice.selected = IsSelected(control, choice.option, option.value);
            Explain(option, choice);
        }
        group.options.push_back(std::move(option));
    }

    void Explain(OptionPage::Option const& option, OptionPage::Choice& choice) {
        choice.constrained = mPPD.IsKVConstrained(option.keyword.c_str(), choice.option.c_str());
        if (!choice.constrained) {
            return;
        }
        for (ConstraintReason const& reason :
             mReasons.Against({option.keyword, choice.option}, false)) {
            std::pair const pair(reason.keyword, reason.option);
            if (std::ranges::find(choice.blockers, pair) == choice.blockers.end()) {
                choice.blockers.push_back(pair);
            }
        }
    }

    bool IsWanted(OptionPage::Option const& option) const {
        auto const has = [this](std::string const& text) {
            return Suggestions::Lower(text).find(mWord) != std::string::npos;
        };
        return mWord.empty() || has(option.keyword) || has(option.name) ||
               std::ranges::any_of(option.choices, [&](OptionPage::Choice const& choice) {
                   return has(choice.option) || has(choice.name);
               });
    }

    ZUBPPD& mPPD;
    std::string mWord;
    ConstraintReasons mReasons;
    std::set<PPDXControl const*> mShown;
};

}  // namespace

OptionPage OptionPage::Of(ZUBPPD& ppd, ListOptions const& options) {
    return Gathering(ppd, options).Page(options.all);
}
