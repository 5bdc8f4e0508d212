// SPDX-License-Identifier: Apache-2.0
#include "host/adopt/AdoptedPPD.h"

#include <algorithm>
#include <cctype>
#include <string_view>
#include <utility>

#include "host/JsonText.h"
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

// The encoding of a file that declares none: UTF-8 where its texts are.
char const* EncodingOf(PlainPPD const& ppd) {
    bool const areUTF8 = std::ranges::all_of(ppd.options, [](PlainPPD::Option const& option) {
        return JsonText::FromUTF8(option.text) != nullptr &&
               std::ranges::all_of(option.choices, [](PlainPPD::Choice const& choice) {
                   return JsonText::FromUTF8(choice.text) != nullptr;
               });
    });
    return areUTF8 ? "UTF-8" : "ISOLatin1";
}

// Written anew, or of no use any more.
constexpr std::string_view kReplaced[] = {"*PPD-Adobe", "*FormatVersion", "*PCFileName",
                                          "*LanguageVersion", "*LanguageEncoding"};

}  // namespace

AdoptedPPD::AdoptedPPD(PlainPPD const& ppd, AdoptTell tell)
    : mPPD(ppd),
      mTell(std::move(tell)),
      mNames(Header("*LanguageEncoding", EncodingOf(ppd)), mTell) {
    for (PlainPPD::Trouble const& trouble : ppd.troubles) {
        mTell(trouble.line, trouble.text);
    }
    for (PlainPPD::Option const& option : ppd.options) {
        mByKeyword[option.keyword] = &option;
    }
    for (PlainPPD::Option const& option : ppd.options) {
        AdoptedOption block(ppd, option, NewKeyword(option), !IsHidden(option), mNames, mTell);
        if (!block.Make()) {
            continue;
        }
        mOptions.push_back(&option);
        for (std::string const& choice : block.Choices()) {
            mChoices.emplace(option.keyword, choice);
        }
        mBlocks.emplace(option.keyword, std::move(block));
    }
    std::erase_if(mByKeyword, [this](auto const& row) { return mBlocks.count(row.first) == 0; });
    std::ranges::stable_sort(mOptions, {}, [](auto const* option) { return option->order; });
    CollectRules();
    mCounts.options = mOptions.size();
    mCounts.choices = mChoices.size();
}

// One that other readers don't take for the job language's.
std::string AdoptedPPD::NewKeyword(PlainPPD::Option const& option) const {
    std::string keyword = option.keyword;
    while (keyword.starts_with("*JCL") ||
           (keyword != option.keyword && mByKeyword.count(keyword) > 0)) {
        keyword.insert(1, "Kept");
    }
    return keyword;
}

bool AdoptedPPD::IsHidden(PlainPPD::Option const& option) const {
    return option.isJobLanguage || (option.keyword == "*PageRegion" &&
                                    std::ranges::any_of(mPPD.options, [](auto const& other) {
                                        return other.keyword == "*PageSize";
                                    }));
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
    return found == mPPD.headers.end() || found->second.value.empty() ? otherwise
                                                                      : found->second.value;
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

void AdoptedPPD::Put(std::ostream& out, long line, std::string const& text) const {
    if (AdoptedOption::Fits(text)) {
        out << text << '\n';
    } else {
        mTell(line, PeopleText::Bytes(text.substr(0, text.find_first_of(" :\n"))) +
                        " has a line that is too long or a byte FF: left out");
    }
}

void AdoptedPPD::WriteHeader(std::ostream& out) {
    auto const lineOf = [this](char const* keyword) {
        auto const found = mPPD.headers.find(keyword);
        return found == mPPD.headers.end() ? 1 : found->second.line;
    };
    std::string const version = Header("*PPD-Adobe", "");
    if (version != "4.3") {
        mTell(1, "the file's format version " + PeopleText::Bytes(version) + " becomes 4.3");
    }
    mTell(lineOf("*PCFileName"),
          "*PCFileName becomes " + PCFileName() + ", one that the plug-in takes");
    out << "*PPD-Adobe: \"4.3\"\n"
        << "*FormatVersion: \"4.3\"\n"
        << "*PCFileName: \"" << PCFileName() << "\"\n";
    Put(out, lineOf("*LanguageVersion"),
        "*LanguageVersion: " + Header("*LanguageVersion", "English"));
    Put(out, lineOf("*LanguageEncoding"),
        "*LanguageEncoding: " + Header("*LanguageEncoding", EncodingOf(mPPD)));
    out << "*%ZUVersion: 4.4\n";
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
        std::string const name = mNames.Named(mPPD.groups[index].line, group, text);
        auto const named = [&name](std::string const& keyword) {
            return keyword + name.substr(name.find('/'));
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
        std::string const group = GroupOf(*option);
        std::string place = group;
        place.append("/").append(group);
        out << mBlocks.at(option->keyword).Block(place);
    }
}

void AdoptedPPD::WriteShortcuts(std::ostream& out) {
    for (char const* const keyword : kOften) {
        auto const found = mByKeyword.find(keyword);
        if (found != mByKeyword.end() && !IsHidden(*found->second)) {
            Put(out, found->second->line, std::string("*%ZUShortcut ") + keyword);
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
        bool const isOneLine = statement.text.find('\n') == std::string::npos;
        Put(out, statement.line, statement.text + (isOneLine ? "" : "\n*End"));
    }
    if (!mPPD.translations.empty()) {
        mTell(mPPD.translations.front(),
              std::to_string(mPPD.translations.size()) +
                  (mPPD.translations.size() == 1 ? " line in a further language isn't used"
                                                 : " lines in further languages aren't used"));
    }
}

bool AdoptedPPD::Knows(Pair const& pair) const {
    return pair.second.empty() ? mByKeyword.count(pair.first) > 0 : mChoices.count(pair) > 0;
}

AdoptedPPD::Pair AdoptedPPD::Renamed(Pair const& pair) const {
    return {NewKeyword(*mByKeyword.at(pair.first)), pair.second};
}

// Empty for a rule that can be carried.
std::string AdoptedPPD::WhyNot(PlainPPD::Rule const& rule) const {
    if (rule.pairs.size() != 2) {
        return "a constraint of " + std::to_string(rule.pairs.size()) +
               (rule.pairs.size() == 1 ? " option" : " options") +
               " can't be carried: two are possible";
    }
    auto const at =
        std::ranges::find_if_not(rule.pairs, [this](Pair const& pair) { return Knows(pair); });
    if (at != rule.pairs.end()) {
        return "a constraint is left out: there is no " + PeopleText::Bytes(at->first) +
               (at->second.empty() ? "" : "=") + PeopleText::Bytes(at->second);
    }
    return {};
}

// A rule of an ordinary PPD holds in both directions, one here in that of its line. So each gets
// the other one, behind it, unless the file has that too.
void AdoptedPPD::CollectRules() {
    std::vector<std::pair<long, Rule>> own;
    std::set<Rule> known;
    for (PlainPPD::Rule const& rule : mPPD.rules) {
        if (std::string const why = WhyNot(rule); !why.empty()) {
            mTell(rule.line, why);
            continue;
        }
        ++mCounts.rules;
        Rule const made(Renamed(rule.pairs[0]), Renamed(rule.pairs[1]));
        if (known.insert(made).second) {
            own.emplace_back(rule.line, made);
        }
    }
    for (auto const& [line, rule] : own) {
        mRules.emplace_back(line, rule);
        Rule const opposite(rule.second, rule.first);
        if (known.insert(opposite).second) {
            mRules.emplace_back(line, opposite);
        }
    }
}

void AdoptedPPD::WriteRules(std::ostream& out) {
    auto const text = [](Pair const& pair) {
        return " " + pair.first + (pair.second.empty() ? "" : " ") + pair.second;
    };
    for (auto const& [line, rule] : mRules) {
        Put(out, line, "*UIConstraints:" + text(rule.first) + text(rule.second));
    }
}
