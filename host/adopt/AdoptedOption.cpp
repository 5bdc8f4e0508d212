// SPDX-License-Identifier: Apache-2.0
#include "host/adopt/AdoptedOption.h"

#include <algorithm>

#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDX.h"
#include "host/PeopleText.h"

namespace {

constexpr std::size_t kMostInLine = PPDStream::kLineLength;
constexpr std::size_t kMostCode = PPDX::kPostScriptSize - 2;  // one line feed goes behind it
constexpr std::size_t kMostName = 120;                        // leaves room for the rest of a line

// Where a line of PostScript can be broken: the last blank within the limit that isn't in a string
// or a comment; npos for none.
std::size_t BreakIn(std::string_view line) {
    std::size_t found = line.npos;
    int depth = 0;
    for (std::size_t at = 0; at < std::min(line.size(), kMostInLine); ++at) {
        char const byte = line[at];
        if (byte == '\\' && depth > 0) {
            ++at;
        } else if (byte == '(' || byte == ')') {
            depth += byte == '(' ? 1 : depth > 0 ? -1 : 0;
        } else if (byte == '%' && depth == 0) {
            return found;
        } else if (depth == 0 && (byte == ' ' || byte == '\t') && at > 0) {
            found = at;
        }
    }
    return found;
}

// Code in lines that can be read; empty when it has none such.
std::string Folded(std::string_view code) {
    std::string folded;
    while (!code.empty()) {
        std::string_view line = code.substr(0, code.find('\n'));
        std::size_t taken = std::min(code.size(), line.size() + 1);
        if (line.size() > kMostInLine) {
            std::size_t const at = BreakIn(line);
            if (at == line.npos) {
                return {};
            }
            line = line.substr(0, at);
            taken = at + 1;
        }
        folded += std::string(line) + '\n';
        code.remove_prefix(taken);
    }
    return folded;
}

}  // namespace

bool AdoptedOption::Fits(std::string const& text) {
    std::size_t begin = 0;
    while (begin <= text.size()) {
        std::size_t const end = std::min(text.find('\n', begin), text.size());
        if (end - begin > kMostInLine) {
            return false;
        }
        begin = end + 1;
    }
    return text.find(PPDStream::kEndMark) == text.npos;
}

std::string AdoptedOption::Named(std::string const& keyword, std::string const& text) {
    std::string name = text.substr(0, text.find('\n'));
    for (std::size_t at = 0; (at = name.find(PPDStream::kEndMark, at)) != name.npos;) {
        name.replace(at, 1, "<FF>");
    }
    if (name.empty() || name.size() > kMostName) {
        name = keyword.substr(keyword.starts_with('*') ? 1 : 0);
    }
    return keyword + "/" + name;
}

// A switch has exactly the two states that one of the grammar has.
bool AdoptedOption::IsSwitch() const {
    auto const has = [this](char const* state) {
        return std::ranges::find(mOption.choices, state, &PlainPPD::Choice::keyword) !=
               mOption.choices.end();
    };
    return mOption.type == "Boolean" && mOption.choices.size() == 2 && has("True") && has("False");
}

std::string AdoptedOption::Default() const {
    bool const isListed = std::ranges::find(mOption.choices, mOption.byDefault,
                                            &PlainPPD::Choice::keyword) != mOption.choices.end();
    if (isListed) {
        return mOption.byDefault;
    }
    std::string const& first = mOption.choices.front().keyword;
    mTell(mOption.line,
          PeopleText::Bytes(mOption.keyword) + " has " +
              (mOption.byDefault.empty() ? "no default"
                                         : "the default " + PeopleText::Bytes(mOption.byDefault) +
                                               ", which is none of its choices") +
              ": " + PeopleText::Bytes(first) + " is taken");
    return first;
}

std::string AdoptedOption::Block(std::string const& group) const {
    char const* const type = IsSwitch()                   ? "Boolean"
                             : mOption.type == "PickMany" ? "PickMany"
                                                          : "PickOne";
    std::string block = "*%ZUBFlags " + mOption.keyword + ": Dynamic\n" + "*%ZUBGroup " +
                        mOption.keyword + ": " + group + "\n" + "*OpenUI " +
                        Named(mOption.keyword, mOption.text) + ": " + type + "\n";
    if (!mOption.orderLine.empty() && Fits(mOption.orderLine)) {
        block += mOption.orderLine + "\n";
    }
    block += "*Default" + mOption.keyword.substr(1) + ": " + Default() + "\n";
    for (PlainPPD::Choice const& choice : mOption.choices) {
        block += ChoiceLine(choice);
    }
    return block + "*CloseUI: " + mOption.keyword + "\n";
}

std::string AdoptedOption::CodeOf(PlainPPD::Choice const& choice) const {
    if (!mHasCode) {
        return {};
    }
    auto const symbol =
        choice.code.starts_with('^') ? mPPD.symbols.find(choice.code) : mPPD.symbols.end();
    std::string const& code = symbol == mPPD.symbols.end() ? choice.code : symbol->second;
    std::string const name =
        PeopleText::Bytes(mOption.keyword) + "=" + PeopleText::Bytes(choice.keyword);
    if (choice.code.starts_with('^') && symbol == mPPD.symbols.end()) {
        mTell(choice.line, name + " loses its code: there is no such symbol");
        return {};
    }
    if (code.size() > kMostCode) {
        mTell(choice.line, name + " loses its code: it has " + std::to_string(code.size()) +
                               " bytes, " + std::to_string(kMostCode) + " are the most");
        return {};
    }
    std::string folded = Folded(code);
    if (code.find(PPDStream::kEndMark) != code.npos || (folded.empty() && !code.empty())) {
        mTell(choice.line, name + " loses its code: it has a byte FF or a line that is too long");
        return {};
    }
    return folded;
}

std::string AdoptedOption::ChoiceLine(PlainPPD::Choice const& choice) const {
    std::string const head = mOption.keyword + " " + Named(choice.keyword, choice.text) + ": \"";
    std::string const code = CodeOf(choice);
    if (std::ranges::count(code, '\n') <= 1 && head.size() + code.size() <= kMostInLine) {
        return head + code.substr(0, code.find('\n')) + "\"\n";
    }
    return head + "\n" + code + "\"\n*End\n";
}
