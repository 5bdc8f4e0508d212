// SPDX-License-Identifier: Apache-2.0
#include "host/adopt/AdoptedOption.h"

#include <algorithm>
#include <string_view>

#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDX.h"
#include "host/PeopleText.h"

namespace {

constexpr std::size_t kMostInLine = PPDStream::kLineLength;
constexpr std::size_t kMostCode = PPDX::kPostScriptSize - 2;  // one line feed goes behind it
constexpr std::size_t kLongestGroup = 48;                     // bytes of its keyword and text

// Follows PostScript byte by byte, over line ends too: whether one stands where a blank is nothing
// but white space. The syntax is that of the PostScript Language Reference, third edition (Adobe
// Systems, 1999), chapter 3.2. Within <...> and <~...~> white space counts for nothing, so those
// are no strings here; but what looks like a parenthesis or a remark in the second is none.
class CodeWalk {
  public:
    // Steps over a byte; `former` stands ahead of it.
    void Step(char byte, char former) {
        if (mEscaped) {
            mEscaped = false;
        } else if (mRemark) {
            mRemark = byte != '\n';
        } else if (mBase85) {
            mBase85 = !(byte == '>' && former == '~');
        } else if (mDepth > 0) {
            mEscaped = byte == '\\';
            mDepth += byte == '(' ? 1 : byte == ')' ? -1 : 0;
        } else {
            mDepth = byte == '(' ? 1 : 0;
            mRemark = byte == '%';
            mBase85 = byte == '~' && former == '<';
        }
    }
    bool IsOutside() const { return mDepth == 0 && !mRemark; }

  private:
    int mDepth = 0;  // of parentheses
    bool mEscaped = false;
    bool mRemark = false;
    bool mBase85 = false;
};

// A line that begins with a star ends the value.
bool HasStarredLine(std::string const& code) {
    return code.starts_with('*') || code.find("\n*") != code.npos;
}

}  // namespace

std::optional<std::string> AdoptedOption::Folded(std::string code) {
    CodeWalk walk;
    std::size_t begin = 0;  // of the line
    std::size_t blank = code.npos;
    for (std::size_t at = 0; at < code.size(); ++at) {
        walk.Step(code[at], at == 0 ? '\n' : code[at - 1]);
        if (code[at] == '\n') {
            begin = at + 1;
            blank = code.npos;
            continue;
        }
        bool const isBlank = code[at] == ' ' || code[at] == '\t';
        bool const starsNext = at + 1 < code.size() && code[at + 1] == '*';
        if (isBlank && walk.IsOutside() && at > begin && !starsNext) {
            blank = at;
        }
        if (at - begin < kMostInLine) {
            continue;
        }
        if (blank == code.npos) {
            return std::nullopt;
        }
        code[blank] = '\n';
        begin = blank + 1;
        blank = code.npos;
    }
    if (!code.empty() && !code.ends_with('\n')) {
        code += '\n';
    }
    return code;
}

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

// A switch has exactly the two states that one of the grammar has.
bool AdoptedOption::IsSwitch() const {
    auto const has = [this](char const* state) {
        return std::ranges::find(mChoices, state) != mChoices.end();
    };
    return mOption.type == "Boolean" && mChoices.size() == 2 && has("True") && has("False");
}

std::string AdoptedOption::Default() const {
    if (std::ranges::find(mChoices, mOption.byDefault) != mChoices.end()) {
        return mOption.byDefault;
    }
    mTell(mOption.line,
          PeopleText::Bytes(mOption.keyword) + " has " +
              (mOption.byDefault.empty() ? "no default"
                                         : "the default " + PeopleText::Bytes(mOption.byDefault) +
                                               ", which is none of its choices") +
              ": " + PeopleText::Bytes(mChoices.front()) + " is taken");
    return mChoices.front();
}

bool AdoptedOption::Make() {
    std::string lines;
    for (PlainPPD::Choice const& choice : mOption.choices) {
        std::string const made = ChoiceLines(choice);
        if (!made.empty()) {
            lines += made;
            mChoices.push_back(choice.keyword);
        }
    }
    std::string const name = PeopleText::Bytes(mOption.keyword);
    if (mChoices.empty()) {
        mTell(mOption.line, name + " has no choices: left out");
        return false;
    }
    mLines = Head() + lines + "*CloseUI: " + mKeyword + "\n";
    if (!Fits(mLines) || !Fits(Block(std::string(kLongestGroup, ' ')))) {
        mTell(mOption.line,
              name + " is left out: its name is too long for a line or has a byte FF");
        return false;
    }
    return true;
}

std::string AdoptedOption::Head() const {
    char const* const type = IsSwitch()                   ? "Boolean"
                             : mOption.type == "PickMany" ? "PickMany"
                                                          : "PickOne";
    std::string head =
        "*OpenUI " + mNames.Named(mOption.line, mKeyword, mOption.text) + ": " + type + "\n";
    if (mKeyword == mOption.keyword && !mOption.orderLine.empty() && Fits(mOption.orderLine)) {
        head += mOption.orderLine + "\n";
    }
    return head + "*Default" + mKeyword.substr(1) + ": " + Default() + "\n";
}

std::string AdoptedOption::Block(std::string const& group) const {
    return "*%ZUBFlags " + mKeyword + ": Dynamic\n" + "*%ZUBGroup " + mKeyword + ": " + group +
           "\n" + mLines;
}

// None, and the reason, for code that can't stand in the block.
std::optional<std::string> AdoptedOption::CodeOf(PlainPPD::Choice const& choice,
                                                 std::string& why) const {
    if (!mHasCode) {
        return "";
    }
    bool const isSymbol = choice.code.starts_with('^');
    auto const symbol = isSymbol ? mPPD.symbols.find(choice.code) : mPPD.symbols.end();
    std::string const& code = symbol == mPPD.symbols.end() ? choice.code : symbol->second;
    std::optional<std::string> const folded = Folded(code);
    if (isSymbol && symbol == mPPD.symbols.end()) {
        why = "there is no symbol " + PeopleText::Bytes(choice.code);
    } else if (code.size() > kMostCode) {
        why = "its code has " + std::to_string(code.size()) + " bytes, " +
              std::to_string(kMostCode) + " are the most";
    } else if (code.find(PPDStream::kEndMark) != code.npos) {
        why = "its code has a byte FF";
    } else if (HasStarredLine(code)) {
        why = "its code has a line that begins with a star";
    } else if (!folded) {
        why = "its code has a line that is too long and can't be broken";
    }
    return why.empty() ? folded : std::nullopt;
}

// Empty, and told, for one that is left out.
std::string AdoptedOption::ChoiceLines(PlainPPD::Choice const& choice) const {
    std::string const head =
        mKeyword + " " + mNames.Named(choice.line, choice.keyword, choice.text) + ": \"";
    std::string why;
    std::optional<std::string> const code = CodeOf(choice, why);
    std::string lines;
    if (code) {
        bool const isOneLine =
            std::ranges::count(*code, '\n') <= 1 && head.size() + code->size() <= kMostInLine;
        lines = isOneLine ? head + code->substr(0, code->find('\n')) + "\"\n"
                          : head + "\n" + *code + "\"\n*End\n";
        if (Fits(lines)) {
            return lines;
        }
        why = "its name is too long for a line or has a byte FF";
    }
    mTell(choice.line, PeopleText::Bytes(mOption.keyword) + "=" +
                           PeopleText::Bytes(choice.keyword) + " is left out: " + why);
    return {};
}
