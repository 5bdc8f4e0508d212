// SPDX-License-Identifier: Apache-2.0
#include "host/adopt/PlainPPD.h"

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <optional>
#include <set>
#include <utility>

#include "host/PeopleText.h"

namespace {

constexpr double kLastOrder = 1e6;  // of what tells none

std::string_view Trimmed(std::string_view text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) {
        text.remove_suffix(1);
    }
    return text;
}

std::vector<std::string> Words(std::string_view text) {
    std::vector<std::string> words;
    while (!(text = Trimmed(text)).empty()) {
        std::string_view const word = text.substr(0, text.find_first_of(" \t\n"));
        words.emplace_back(word);
        text.remove_prefix(word.size());
    }
    return words;
}

// One statement: "*keyword option/text: value", of which all but the keyword may be missing.
struct Line {
    std::string keyword;
    std::string option;
    std::string text;
    std::string value;  // behind the colon, with quotes where it has them
    std::string whole;
    long number = 1;
    char const* trouble = nullptr;  // why the value isn't whole

    // What stands in quotes, else the value as it is.
    std::string Unquoted() const {
        std::size_t const open = value.find('"');
        if (open == value.npos) {
            return std::string(Trimmed(value));
        }
        std::string inside = value.substr(open + 1, value.find('"', open + 1) - open - 1);
        while (inside.ends_with('\n')) {
            inside.pop_back();
        }
        return inside;
    }
};

// Cuts a file into statements; a value in quotes goes on over lines.
class Statements {
  public:
    explicit Statements(std::string_view bytes) : mRest(bytes) {}

    std::optional<Line> Next() {
        while (!mRest.empty()) {
            std::string_view const first = NextLine();
            if (Trimmed(first).empty()) {
                continue;
            }
            Line line;
            line.number = mNumber;
            line.whole = first;
            if (first.starts_with('*') && !first.starts_with("*%")) {
                Cut(line);
                GoOn(line);
            }
            return line;
        }
        return std::nullopt;
    }

  private:
    std::string_view NextLine() {
        std::size_t const end = mRest.find_first_of("\r\n");
        std::string_view const line = mRest.substr(0, end);
        mRest.remove_prefix(line.size());
        if (!mRest.empty()) {
            mRest.remove_prefix(mRest.starts_with("\r\n") ? 2 : 1);
        }
        ++mNumber;
        return line.substr(0, line.find('\0'));
    }

    // A quote that nothing closes goes to the next line that begins as a statement does.
    void GoOn(Line& line) {
        if (std::ranges::count(line.value, '"') != 1) {
            return;
        }
        while (!mRest.empty()) {
            if (mRest.size() > 1 && mRest[0] == '*' &&
                std::isalpha(static_cast<unsigned char>(mRest[1])) != 0) {
                line.trouble = "nothing closes the quote of its value";
                return;
            }
            std::string const more = '\n' + std::string(NextLine());
            line.whole += more;
            line.value += more;
            if (more.find('"') != more.npos) {
                return;
            }
        }
        line.trouble = "its value runs to the end of the file, which may be cut off";
    }

    static void Cut(Line& line) {
        std::string_view rest = line.whole;
        std::size_t const keywordEnd = std::min(rest.find_first_of(" \t:\n"), rest.size());
        line.keyword = rest.substr(0, keywordEnd);
        rest.remove_prefix(keywordEnd);
        // Texts have quotes too, so one stands for the colon only where there is none.
        std::size_t colon = rest.find(':');
        colon = colon == rest.npos ? rest.find('"') : colon;
        if (colon == rest.npos) {
            line.option = Trimmed(rest.substr(0, rest.find('/')));
            line.trouble = "it has no value";
            return;
        }
        std::string_view const head = Trimmed(rest.substr(0, colon));
        std::size_t const slash = std::min(head.find('/'), head.size());
        line.option = Trimmed(head.substr(0, slash));
        line.text = Trimmed(head.substr(std::min(slash + 1, head.size())));
        line.value = Trimmed(rest.substr(rest[colon] == ':' ? colon + 1 : colon));
    }

    std::string_view mRest;
    long mNumber = 0;
};

// Takes the statements of a file one by one.
class Reading {
  public:
    explicit Reading(PlainPPD& ppd) : mPPD(ppd), mGroups{{"", 0}} {
        mPPD.groups.push_back({"", "", 1});
    }

    void Take(Line const& line) {
        struct Row {
            std::string_view keyword;
            void (Reading::*take)(Line const&);
        };
        static constexpr Row kRows[] = {
            {"*OpenUI", &Reading::Open},
            {"*JCLOpenUI", &Reading::Open},
            {"*CloseUI", &Reading::Close},
            {"*JCLCloseUI", &Reading::Close},
            {"*OpenGroup", &Reading::OpenGroup},
            {"*CloseGroup", &Reading::CloseGroup},
            {"*OpenSubGroup", &Reading::PassOver},
            {"*CloseSubGroup", &Reading::PassOver},
            {"*OrderDependency", &Reading::TakeOrder},
            {"*NonUIOrderDependency", &Reading::TakeOrder},
            {"*UIConstraints", &Reading::TakeRule},
            {"*NonUIConstraints", &Reading::TakeRule},
            {"*cupsUIConstraints", &Reading::TakeQuotedRule},
            {"*SymbolValue", &Reading::TakeSymbol},
            {"*End", &Reading::PassOver},
        };
        auto const* const row = std::ranges::find(kRows, line.keyword, &Row::keyword);
        if (line.keyword.empty()) {
            TakeComment(line);
        } else if (line.trouble != nullptr && !IsMarkOnly(line)) {
            TakeTrouble(line);
        } else if (row != std::end(kRows)) {
            (this->*row->take)(line);
        } else {
            TakeOther(line);
        }
    }

    // Gives each option the default that was told anywhere.
    void Finish() {
        if (mOpen != kNone) {
            PlainPPD::Option const& last = mPPD.options[mOpen];
            mPPD.troubles.push_back({last.line, "nothing closes " +
                                                    PeopleText::Bytes(last.keyword) +
                                                    ": the file may be cut off"});
        }
        for (PlainPPD::Option& option : mPPD.options) {
            if (auto const found = mDefaults.find(option.keyword); found != mDefaults.end()) {
                option.byDefault = found->second;
            }
            if (auto const found = mOrders.find(option.keyword); found != mOrders.end()) {
                option.order = found->second.first;
                option.orderLine = found->second.second;
            }
        }
    }

  private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    // Lines that say all with their keyword, and take a value or not.
    static bool IsMarkOnly(Line const& line) {
        static constexpr std::string_view kMarks[] = {
            "*End", "*CloseUI", "*JCLCloseUI", "*CloseGroup", "*CloseSubGroup", "*OpenSubGroup"};
        return std::ranges::find(kMarks, line.keyword) != std::end(kMarks);
    }
    void TakeTrouble(Line const& line) {
        std::string const name = PeopleText::Bytes(line.keyword) +
                                 (line.option.empty() ? "" : "=" + PeopleText::Bytes(line.option));
        mPPD.troubles.push_back({line.number, name + " is left out: " + line.trouble});
    }

    // "*OpenUI *Duplex/Two Sided: PickOne"; some files have a colon behind the keyword.
    void Open(Line const& line) {
        std::string keyword = line.option;
        std::string type = line.value;
        if (keyword.ends_with(':')) {
            keyword.pop_back();
        }
        if (!keyword.starts_with('*')) {
            keyword.insert(0, "*");
        }
        type = type.substr(0, type.find_first_of(" \t(;"));
        auto const [known, isNew] = mOptions.emplace(keyword, mPPD.options.size());
        mOpen = known->second;
        if (isNew) {
            PlainPPD::Option& option = mPPD.options.emplace_back();
            option.keyword = keyword;
            option.text = line.text;
            option.type = type;
            option.group = mGroup;
            option.isJobLanguage = line.keyword == "*JCLOpenUI";
            option.line = line.number;
            option.order = kLastOrder;
        }
    }
    void Close(Line const&) { mOpen = kNone; }

    void OpenGroup(Line const& line) {
        mOpen = kNone;
        std::string_view const value = line.value;
        std::size_t const slash = std::min(value.find('/'), value.size());
        std::string const keyword(Trimmed(value.substr(0, slash)));
        std::string const text(Trimmed(value.substr(std::min(slash + 1, value.size()))));
        auto const [known, isNew] = mGroups.emplace(keyword, mPPD.groups.size());
        mGroup = known->second;
        if (isNew) {
            mPPD.groups.push_back({keyword, text.empty() ? keyword : text, line.number});
        }
    }
    void CloseGroup(Line const&) {
        mOpen = kNone;
        mGroup = 0;
    }
    void PassOver(Line const&) {}

    void TakeOrder(Line const& line) {
        std::vector<std::string> const words = Words(line.value);
        if (words.size() >= 3) {
            mOrders.emplace(words[2],
                            std::pair(std::strtod(words[0].c_str(), nullptr), line.whole));
        }
    }

    static PlainPPD::Rule RuleOf(std::string_view text, long number) {
        PlainPPD::Rule rule{{}, number};
        for (std::string const& word : Words(text)) {
            if (word.starts_with('*')) {
                rule.pairs.emplace_back(word, "");
            } else if (!rule.pairs.empty()) {
                rule.pairs.back().second = word;
            }
        }
        return rule;
    }
    void TakeRule(Line const& line) { mPPD.rules.push_back(RuleOf(line.value, line.number)); }
    void TakeQuotedRule(Line const& line) {
        mPPD.rules.push_back(RuleOf(line.Unquoted(), line.number));
    }
    void TakeSymbol(Line const& line) { mPPD.symbols.emplace(line.option, line.Unquoted()); }

    void TakeComment(Line const& line) {
        mPPD.isExtended |= line.whole.starts_with("*%ZUBFlags");
        mPPD.others.push_back({"", line.whole, line.number});
    }

    void TakeOther(Line const& line) {
        if (line.keyword.starts_with("*Default") && line.option.empty()) {
            std::string const option = line.value.substr(0, line.value.find_first_of("/ \t"));
            mDefaults.emplace("*" + line.keyword.substr(8), option);
        } else if (mOpen != kNone && line.keyword == mPPD.options[mOpen].keyword &&
                   !line.option.empty()) {
            AddChoice(line);
            return;
        }
        if (line.keyword.find('.') != line.keyword.npos) {
            mPPD.translations.push_back(line.number);
        }
        mPPD.headers.emplace(line.keyword, PlainPPD::Header{line.Unquoted(), line.number});
        mPPD.others.push_back({line.keyword, line.whole, line.number});
    }

    void AddChoice(Line const& line) {
        std::string const keyword = line.option.substr(0, line.option.find_first_of(" \t"));
        if (mChoices.emplace(mOpen, keyword).second) {
            mPPD.options[mOpen].choices.push_back(
                {keyword, line.text, line.Unquoted(), line.number});
        }
    }

    PlainPPD& mPPD;
    std::size_t mGroup = 0;
    std::size_t mOpen = kNone;
    std::map<std::string, std::size_t> mOptions;  // by keyword
    std::map<std::string, std::size_t> mGroups;
    std::set<std::pair<std::size_t, std::string>> mChoices;  // of which option
    std::map<std::string, std::string> mDefaults;            // by keyword; the first counts
    std::map<std::string, std::pair<double, std::string>> mOrders;
};

}  // namespace

bool PlainPPD::Read(std::string_view bytes) {
    *this = PlainPPD();
    Statements statements(bytes);
    Reading reading(*this);
    std::optional<Line> line = statements.Next();
    if (!line || line->keyword != "*PPD-Adobe") {
        return false;
    }
    for (; line; line = statements.Next()) {
        reading.Take(*line);
    }
    reading.Finish();
    return true;
}
