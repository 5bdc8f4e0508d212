// SPDX-License-Identifier: Apache-2.0
#include "host/ListCommand.h"

#include <algorithm>
#include <string>

#include <nlohmann/json.hpp>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "host/ControlNames.h"
#include "host/JsonText.h"
#include "host/OptionPage.h"
#include "host/PeopleText.h"
#include "host/Suggestions.h"

namespace {

constexpr std::size_t kMostBlockersTold = 2;

Json ChoiceAsJson(OptionPage::Choice const& choice) {
    Json blockers = Json::array();
    for (auto const& [keyword, option] : choice.blockers) {
        blockers.push_back({JsonText::Bytes(keyword), JsonText::Bytes(option)});
    }
    return {{"keyword", JsonText::Bytes(choice.option)},
            {"name", choice.name},
            {"selected", choice.selected},
            {"constrained", choice.constrained},
            {"blockers", std::move(blockers)}};
}

Json PageAsJson(OptionPage const& page) {
    Json groups = Json::array();
    for (OptionPage::Group const& group : page.groups) {
        Json options = Json::array();
        for (OptionPage::Option const& option : group.options) {
            Json choices = Json::array();
            std::ranges::transform(option.choices, std::back_inserter(choices), ChoiceAsJson);
            options.push_back({{"keyword", JsonText::Bytes(option.keyword)},
                               {"name", option.name},
                               {"value", option.value},
                               {"limits", option.limits.empty() ? Json() : Json(option.limits)},
                               {"choices", std::move(choices)}});
        }
        groups.push_back({{"page", group.page.empty() ? Json() : Json(group.page)},
                          {"group", group.name},
                          {"options", std::move(options)}});
    }
    return {{"groups", std::move(groups)}};
}

class PageText {
  public:
    PageText(ZUBPPD& ppd, std::ostream& out) : mPPD(ppd), mOut(out), mStyle(out) {}

    void Write(OptionPage const& page) {
        std::string former = "\n";  // no page's name
        for (OptionPage::Group const& group : page.groups) {
            if (group.page != former) {
                mOut << '\n'
                     << mStyle.Heading(group.page.empty() ? group.name : group.page) << '\n';
            }
            if (!group.page.empty()) {
                mOut << "  " << mStyle.Heading(group.name) << '\n';
            }
            former = group.page;
            std::ranges::for_each(group.options, [this](auto const& option) { Write(option); });
        }
    }

  private:
    void Write(OptionPage::Option const& option) {
        mOut << "    " << option.name << "  " << mStyle.Aside(PeopleText::Bytes(option.keyword));
        if (option.choices.empty() && !option.value.empty()) {
            mOut << ": " << mStyle.Chosen(option.value);
        }
        mOut << (option.limits.empty() ? "" : " (" + option.limits + ")") << '\n';
        std::size_t width = 0;
        for (OptionPage::Choice const& choice : option.choices) {
            width = std::max(width, choice.option.size());
        }
        for (OptionPage::Choice const& choice : option.choices) {
            Write(choice, std::min<std::size_t>(width, 24));
        }
    }

    // The current choice is marked with a star, one that can't be made with a cross.
    void Write(OptionPage::Choice const& choice, std::size_t width) {
        std::string const option = PeopleText::Bytes(choice.option);
        std::string text =
            option +
            (choice.name == option
                 ? ""
                 : std::string(1 + width - std::min(width, option.size()), ' ') + choice.name);
        char const* const mark = choice.selected ? "*" : choice.constrained ? "x" : " ";
        text = std::string(mark) + " " + text;
        mOut << "      "
             << (choice.selected      ? mStyle.Chosen(text)
                 : choice.constrained ? mStyle.Blocked(text)
                                      : text);
        if (choice.constrained) {
            mOut << mStyle.Aside((choice.selected ? "  stands against " : "  not with ") +
                                 Blockers(choice));
        }
        mOut << '\n';
    }

    std::string Blockers(OptionPage::Choice const& choice) {
        std::vector<std::string> names;
        for (auto const& [keyword, option] : choice.blockers) {
            PPDXControl* const control = ControlNames::Find(mPPD, keyword);
            names.push_back(control == nullptr
                                ? PeopleText::Bytes(keyword) + "=" + PeopleText::Bytes(option)
                                : PeopleText::NameOf(*control) + ": " +
                                      PeopleText::NameOf(mPPD, *control, option));
        }
        std::size_t const more = names.size() - std::min(names.size(), kMostBlockersTold);
        if (more > 0) {
            names.resize(kMostBlockersTold);
            names.push_back(std::to_string(more) + " more");
        }
        return Suggestions::List(names, "and");
    }

    ZUBPPD& mPPD;
    std::ostream& mOut;
    TextStyle mStyle;
};

}  // namespace

Outcome ListCommand::Answer(ZUBPPD& ppd, std::ostream& out) {
    OptionPage const page = OptionPage::Of(ppd, mOptions);
    if (mOptions.json) {
        out << PageAsJson(page).dump(2) << '\n';
        return Outcome::Done();
    }
    std::string const file = PeopleText::Plain(std::string_view(mOptions.ppd));
    std::string const model = PeopleText::Plain(PeopleText::InEncodingOf(ppd, ppd.ModelName()));
    out << (model.empty() ? file : model + "  (" + file + ")") << '\n';
    PageText(ppd, out).Write(page);
    if (!page.groups.empty()) {
        out << "\n* chosen now, x can't be chosen now\n"
               "zubprint why says more, zubprint fix what to change\n";
    } else if (ControlNames::All(ppd).empty()) {
        out << "It has no options for this program.\n"
               "zubprint adopt makes them of an ordinary PPD's options.\n";
    } else {
        out << "Nothing to show"
            << (mOptions.word.empty()
                    ? ""
                    : " for " + PeopleText::Plain(std::string_view(mOptions.word)) +
                          ControlNames::Ask(ppd, mOptions.word))
            << (mOptions.all ? "" : "; --all shows hidden options too") << '\n';
    }
    return Outcome::Done();
}
