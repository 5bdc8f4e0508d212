// SPDX-License-Identifier: Apache-2.0
#include "host/adopt/AdoptedPPD.h"

#include <algorithm>
#include <cctype>
#include <string_view>

#include "host/PeopleText.h"

namespace {

constexpr std::string_view kInstallable = "InstallableOptions";
constexpr char kInstallableGroup[] = "ZUPPInstallableOptions";
constexpr char kHiddenGroup[] = "Kept";
constexpr char kGeneral[] = "General";
constexpr std::size_t kMostOfFileName = 5;  // behind ZUB, for names of eight characters

// What people look for first.
constexpr char const* kOften[] = {"*PageSize",   "*InputSlot",  "*MediaType",     "*Duplex",
                                  "*ColorModel", "*Resolution", "*OutputBin",     "*Collate",
                                  "*OutputMode", "*Quality",    "*StapleLocation"};

// Written anew, or of no use any more.
constexpr std::string_view kReplaced[] = {"*PPD-Adobe", "*FormatVersion", "*PCFileName",
                                          "*LanguageVersion", "*LanguageEncoding"};

}  // namespace

AdoptedPPD::AdoptedPPD(PlainPPD const& ppd, AdoptedOption::Tell const& tell)
    : mPPD(ppd), mTell(tell) {
    for (PlainPPD::Option const& option : ppd.options) {
        if (option.choices.empty()) {
            mTell(option.line, PeopleText::Bytes(option.keyword) + " has no choices: left out");
            continue;
        }
        mOptions.push_back(&option);
        mByKeyword[option.keyword] = &option;
        for (PlainPPD::Choice const& choice : option.choices) {
            mChoices.emplace(option.keyword, choice.keyword);
        }
    }
    std::ranges::stable_sort(mOptions, {}, [](auto const* option) { return option->order; });
}

bool AdoptedPPD::IsHidden(PlainPPD::Option const& option) const {
    return option.isJobLanguage ||
           (option.keyword == "*PageRegion" && mByKeyword.count("*PageSize") > 0);
}

std::string AdoptedPPD::GroupOf(PlainPPD::Option const& option) const {
    if (IsHidden(option)) {
        return kHiddenGroup;
    }
    return mPPD.groups[option.group].keyword == kInstallable
               ? kInstallableGroup
               : "Group" + std::to_string(option.group + 1);
}

void AdoptedPPD::Write(std::ostream& out) {
    WriteHeader(out);
    WriteLayout(out);
    WriteOptions(out);
    WriteShortcuts(out);
    WriteOthers(out);
    WriteRules(out);
}

std::string AdoptedPPD::Header(char const* keyword, char const* otherwise) const {
    auto const found = mPPD.headers.find(keyword);
    return found == mPPD.headers.end() || found->second.empty() ? otherwise : found->second;
}

std::string AdoptedPPD::PCFileName() const {
    std::string const former = Header("*PCFileName", "");
    std::string name;
    for (char const byte : former.substr(0, former.find('.'))) {
        if (std::isalnum(static_cast<unsigned char>(byte)) != 0 && name.size() < kMostOfFileName) {
            name += static_cast<char>(std::toupper(static_cast<unsigned char>(byte)));
        }
    }
    return "ZUB" + name + ".PPD";
}

void AdoptedPPD::WriteHeader(std::ostream& out) {
    std::string const version = Header("*PPD-Adobe", "");
    if (version != "4.3") {
        mTell(1, "the file's format version " + PeopleText::Bytes(version) + " becomes 4.3");
    }
    mTell(1, "*PCFileName becomes " + PCFileName() + ", one that the plug-in takes");
    out << "*PPD-Adobe: \"4.3\"\n"
        << "*FormatVersion: \"4.3\"\n"
        << "*PCFileName: \"" << PCFileName() << "\"\n"
        << "*LanguageVersion: " << Header("*LanguageVersion", "English") << '\n'
        << "*LanguageEncoding: " << Header("*LanguageEncoding", "ISOLatin1") << '\n'
        << "*%ZUVersion: 4.4\n";
}

void AdoptedPPD::WriteLayout(std::ostream& out) {
    std::map<std::size_t, PlainPPD::Option const*> shown;  // one for each group that has any
    for (PlainPPD::Option const* const option : mOptions) {
        if (!IsHidden(*option)) {
            shown[option->group] = option;
        }
    }
    for (auto const& [index, option] : shown) {
        std::string const number = std::to_string(index + 1);
        std::string const page = "Page" + number;
        std::string const pane = "Pane" + number;
        std::string const group = GroupOf(*option);
        std::string const text = index == 0 ? kGeneral : mPPD.groups[index].text;
        auto const named = [&text](std::string const& keyword) {
            return AdoptedOption::Named(keyword, text);
        };
        out << "*%ZUBPropPage " << named(page) << ": True\n"
            << "*%ZUBGroupName " << named(pane) << ": True\n"
            << "*%ZUBGroupName " << named(group) << ": True\n"
            << "*%ZUBParent " << pane << '/' << page << ": True|Scrollpane\n"
            << "*%ZUBParent " << group << '/' << pane << ": True|Rolldown\n";
    }
    auto const hidden = [this](PlainPPD::Option const* option) { return IsHidden(*option); };
    if (std::ranges::any_of(mOptions, hidden)) {
        out << "*%ZUBPropPage HiddenPage/Not offered: False\n"
            << "*%ZUBGroupName HiddenPane/Not offered: False\n"
            << "*%ZUBGroupName " << kHiddenGroup << "/Not offered: False\n"
            << "*%ZUBParent HiddenPane/HiddenPage: False|Scrollpane\n"
            << "*%ZUBParent " << kHiddenGroup << "/HiddenPane: False|Rolldown\n";
    }
}

void AdoptedPPD::WriteOptions(std::ostream& out) {
    for (PlainPPD::Option const* const option : mOptions) {
        if (option->isJobLanguage) {
            mTell(option->line,
                  PeopleText::Bytes(option->keyword) +
                      " is for the printer's job language, which a PostScript job can't carry: "
                      "its choices stay, hidden and without code");
        }
        std::string const keyword = GroupOf(*option);
        std::string const group = AdoptedOption::Named(keyword, keyword);
        out << AdoptedOption(mPPD, *option, !IsHidden(*option), mTell).Block(group);
    }
}

void AdoptedPPD::WriteShortcuts(std::ostream& out) {
    for (char const* const keyword : kOften) {
        auto const found = mByKeyword.find(keyword);
        if (found != mByKeyword.end() && !IsHidden(*found->second)) {
            out << "*%ZUShortcut " << keyword << '\n';
        }
    }
}

void AdoptedPPD::WriteOthers(std::ostream& out) {
    for (PlainPPD::Statement const& statement : mPPD.others) {
        bool const isDefault = statement.keyword.starts_with("*Default") &&
                               mByKeyword.count("*" + statement.keyword.substr(8)) > 0;
        bool const isReplaced =
            isDefault || std::ranges::find(kReplaced, statement.keyword) != std::end(kReplaced) ||
            statement.text.starts_with("*%ZU") || !statement.text.starts_with('*');
        if (statement.keyword == "*CustomPageSize") {
            mTell(statement.line, "page sizes of one's own can't be carried");
        }
        if (statement.keyword == "*Include") {
            mTell(statement.line, "what *Include brings in is left out");
        }
        if (isReplaced) {
            continue;
        }
        if (!AdoptedOption::Fits(statement.text)) {
            mTell(statement.line, PeopleText::Bytes(statement.keyword) +
                                      " has a line that is too long or a byte FF: left out");
            continue;
        }
        out << statement.text << '\n';
        if (statement.text.find('\n') != std::string::npos) {
            out << "*End\n";
        }
    }
    if (!mPPD.translations.empty()) {
        mTell(mPPD.translations.front(),
              std::to_string(mPPD.translations.size()) + " lines in further languages aren't used");
    }
}

bool AdoptedPPD::Knows(Pair const& pair) const {
    return pair.second.empty() ? mByKeyword.count(pair.first) > 0 : mChoices.count(pair) > 0;
}

void AdoptedPPD::WriteRule(std::ostream& out, Pair const& first, Pair const& second) const {
    out << "*UIConstraints: " << first.first << (first.second.empty() ? "" : " ") << first.second
        << ' ' << second.first << (second.second.empty() ? "" : " ") << second.second << '\n';
}

void AdoptedPPD::WriteRules(std::ostream& out) {
    for (PlainPPD::Rule const& rule : mPPD.rules) {
        auto const knows = [this](Pair const& pair) { return Knows(pair); };
        if (rule.pairs.size() != 2) {
            mTell(rule.line, "a constraint of " + std::to_string(rule.pairs.size()) +
                                 " options can't be carried: two are possible");
        } else if (!std::ranges::all_of(rule.pairs, knows)) {
            auto const at = std::ranges::find_if_not(rule.pairs, knows);
            mTell(rule.line, "a constraint is left out: there is no " +
                                 PeopleText::Bytes(at->first) + (at->second.empty() ? "" : "=") +
                                 PeopleText::Bytes(at->second));
        } else {
            WriteRule(out, rule.pairs[0], rule.pairs[1]);
            if (rule.bothWays) {
                WriteRule(out, rule.pairs[1], rule.pairs[0]);
            }
        }
    }
}
