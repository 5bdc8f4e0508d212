// SPDX-License-Identifier: Apache-2.0
#include "host/dialog/ScriptReader.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <iostream>
#include <limits>

#include <nlohmann/json.hpp>

#include "host/HostFiles.h"
#include "host/JsonText.h"
#include "platform/Events.h"
#include "platform/UserInput.h"

namespace {

constexpr std::size_t kLongestLine = 4096;
constexpr int kNoByte = std::istream::traits_type::eof();

struct Word {
    std::string text;
    bool isQuoted = false;
};
using Words = std::vector<Word>;

// A word that is no part of a line as it stands.
struct WrongWord {
    std::string fault;
};

template <typename Value>
bool ReadWhole(std::string_view text, Value& value) {
    char const* const end = text.data() + text.size();
    auto const [stop, error] = std::from_chars(text.data(), end, value);
    return error == std::errc() && stop == end;
}

template <typename Value>
Value NumberOf(std::string const& text, Value lowest, Value highest) {
    Value value{};
    if (!ReadWhole(text, value) || !(value >= lowest && value <= highest)) {
        throw WrongWord{"'" + text + "' is no number from " +
                        std::to_string(static_cast<std::int64_t>(lowest)) + " to " +
                        std::to_string(static_cast<std::int64_t>(highest))};
    }
    return value;
}

// Behind the quote that ends the string.
std::size_t EndOfString(std::string_view line, std::size_t begin) {
    std::size_t at = begin + 1;
    while (at < line.size() && line[at] != '"') {
        at += line[at] == '\\' ? 2 : 1;
    }
    if (at >= line.size()) {
        throw WrongWord{"a quote is missing"};
    }
    return at + 1;
}

Word StringAt(std::string_view quoted) {
    auto const string = nlohmann::json::parse(quoted, nullptr, false);
    if (!string.is_string()) {
        throw WrongWord{"not a JSON string: " + std::string(quoted)};
    }
    return {string.get<std::string>(), true};
}

Words WordsIn(std::string_view line) {
    if (line.starts_with(' ') || line.ends_with(' ')) {
        throw WrongWord{"a blank begins or ends the line"};
    }
    Words words;
    std::size_t at = 0;
    while (at < line.size()) {
        std::size_t end = std::min(line.find(' ', at), line.size());
        if (line[at] == '"') {
            end = EndOfString(line, at);
            words.push_back(StringAt(line.substr(at, end - at)));
        } else {
            words.push_back({std::string(line.substr(at, end - at))});
            if (end == at) {
                throw WrongWord{"words are parted by one blank"};
            }
            if (words.back().text.find('"') != std::string::npos) {
                throw WrongWord{"a quote begins a word"};
            }
        }
        if (end < line.size() && line[end] != ' ') {
            throw WrongWord{"a blank is missing behind a string"};
        }
        at = end + 1;
    }
    return words;
}

std::u32string CharactersOf(std::string const& utf8) {
    std::u32string characters;
    CFRef<CFStringRef> const text = JsonText::FromUTF8(utf8);
    for (CFIndex at = 0; at < CFStringGetLength(text); ++at) {
        char32_t const unit = CFStringGetCharacterAtIndex(text, at);
        bool const isLow = (unit & 0xFC00U) == 0xDC00U && !characters.empty();
        if (isLow) {
            characters.back() = 0x10000U + ((characters.back() & 0x3FFU) << 10) + (unit & 0x3FFU);
        } else {
            characters.push_back(unit);
        }
    }
    return characters;
}

// Each character stands for the byte of the same value; blanks that end it may be left off.
OSType CodeOf(std::string const& text) {
    constexpr std::size_t kLength = 4;
    std::u32string letters = CharactersOf(text);
    if (letters.empty() || letters.size() > kLength) {
        throw WrongWord{"'" + text + "' is no code"};
    }
    letters.resize(kLength, U' ');
    OSType code = 0;
    for (char32_t const letter : letters) {
        if (letter > 0xFF) {
            throw WrongWord{"'" + text + "' is no code"};
        }
        code = (code << 8) | letter;
    }
    return code;
}

ScriptTarget TargetOf(std::string const& text) {
    ScriptTarget target;
    std::string rest = text;
    if (std::size_t const slash = text.find('/'); text[0] == '@' && slash != std::string::npos) {
        target.window =
            NumberOf(text.substr(1, slash - 1), 1, std::numeric_limits<std::int32_t>::max());
        rest = text.substr(slash + 1);
    }
    std::size_t const colon = rest.rfind(':');
    if (colon == std::string::npos) {
        throw WrongWord{"'" + text + "' is no code:id"};
    }
    using Limits = std::numeric_limits<std::int32_t>;
    target.id = {CodeOf(rest.substr(0, colon)),
                 NumberOf(rest.substr(colon + 1), Limits::min(), Limits::max())};
    return target;
}

double SecondsOf(std::string const& text) {
    constexpr double kMost = 3600;
    constexpr std::size_t kDecimals = 3;
    std::size_t const point = text.find('.');
    bool const isPlain = text.find_first_not_of("0123456789.") == std::string::npos;
    bool const isWhole = point == std::string::npos;
    if (!isPlain || (!isWhole && (point == 0 || point + 1 == text.size() ||
                                  text.size() - point - 1 > kDecimals))) {
        throw WrongWord{"'" + text + "' are no seconds"};
    }
    return NumberOf(text, 0.0, kMost);
}

struct KeyName {
    char const* name;
    char32_t key;
    std::uint32_t modifiers;
};
constexpr KeyName kKeys[] = {
    {"tab", kTabKey, 0},           {"backtab", kTabKey, kShiftKey},
    {"return", kReturnKey, 0},     {"escape", kEscapeKey, 0},
    {"space", kSpaceKey, 0},       {"left", kLeftKey, 0},
    {"right", kRightKey, 0},       {"up", kUpKey, 0},
    {"down", kDownKey, 0},         {"home", kHomeKey, 0},
    {"end", kEndKey, 0},           {"backspace", kBackspaceKey, 0},
    {"delete", kDeleteKey, 0},     {"pageup", kPageUpKey, 0},
    {"pagedown", kPageDownKey, 0},
};
constexpr KeyName kModifiers[] = {{"cmd", 0, kCommandKey},
                                  {"shift", 0, kShiftKey},
                                  {"option", 0, kOptionKey},
                                  {"control", 0, kControlKey}};

template <std::size_t kCount>
KeyName const* Named(KeyName const (&names)[kCount], std::string const& text) {
    for (KeyName const& row : names) {
        if (row.name == text) {
            return &row;
        }
    }
    return nullptr;
}

// Takes the words behind a command one after another.
class WordTaker {
  public:
    WordTaker(Words const& words, ScriptLine& line) : mWords(words), mLine(line) {}

    void Take(char letter);  // what it asks for
    void End() const {
        if (!IsAtEnd()) {
            throw WrongWord{"'" + mWords[mNext].text + "' is too much"};
        }
    }

  private:
    struct Taker {
        char letter;
        void (WordTaker::*take)();
    };
    static const Taker kTakers[];

    bool IsAtEnd() const { return mNext == mWords.size(); }
    Word const& Next() {
        if (IsAtEnd()) {
            throw WrongWord{"a word is missing"};
        }
        return mWords[mNext++];
    }
    void Target() { mLine.target = TargetOf(Next().text); }
    void MaybeTarget() {
        if (!IsAtEnd()) {
            Target();
        }
    }
    void Code() { mLine.code = CodeOf(Next().text); }
    void NumberTo(std::int64_t most) {
        mLine.numbers.push_back(NumberOf(Next().text, std::int64_t{0}, most));
    }
    void Number() { NumberTo(std::numeric_limits<std::uint32_t>::max()); }
    void SmallNumber() { NumberTo(std::numeric_limits<std::int32_t>::max()); }
    void Numbers() {
        do {
            Number();
        } while (!IsAtEnd());
    }
    void NumberOrText() {
        if (!IsAtEnd() && mWords[mNext].isQuoted) {
            Text();
        } else {
            Number();
        }
    }
    void Text() { mLine.text = Next().text; }
    void Lengths() {
        constexpr double kMost = 1e6;
        for (int count = 0; count < 2 && (count == 1 || !IsAtEnd()); ++count) {
            mLine.lengths.push_back(NumberOf(Next().text, 0.0, kMost));
        }
    }
    void Seconds() { mLine.seconds = SecondsOf(Next().text); }
    void Key() {
        std::string const& text = Next().text;
        std::u32string const characters = CharactersOf(text);
        if (KeyName const* const named = Named(kKeys, text); named != nullptr) {
            mLine.key = named->key;
            mLine.modifiers = named->modifiers;
        } else if (characters.size() == 1) {
            mLine.key = characters[0];
        } else {
            throw WrongWord{"'" + text + "' is no key"};
        }
    }
    void Modifiers() {
        while (!IsAtEnd()) {
            std::string const& text = Next().text;
            KeyName const* const named = Named(kModifiers, text);
            if (named == nullptr) {
                throw WrongWord{"'" + text + "' is no modifier key"};
            }
            mLine.modifiers |= named->modifiers;
        }
    }
    void Part() {
        constexpr std::string_view kPart = "part=";
        if (!IsAtEnd() && mWords[mNext].text.starts_with(kPart)) {
            mLine.part = NumberOf(Next().text.substr(kPart.size()), std::int16_t{0},
                                  std::numeric_limits<std::int16_t>::max());
        }
    }
    void Outside() {
        if (!IsAtEnd() && mWords[mNext].text == "out") {
            mLine.isOutside = true;
            ++mNext;
        }
    }

    Words const& mWords;
    ScriptLine& mLine;
    std::size_t mNext = 1;  // behind the command
};

constexpr WordTaker::Taker WordTaker::kTakers[] = {
    {'T', &WordTaker::Target},       {'t', &WordTaker::MaybeTarget}, {'C', &WordTaker::Code},
    {'N', &WordTaker::Number},       {'n', &WordTaker::SmallNumber}, {'R', &WordTaker::Numbers},
    {'I', &WordTaker::NumberOrText}, {'W', &WordTaker::Text},        {'L', &WordTaker::Lengths},
    {'S', &WordTaker::Seconds},      {'K', &WordTaker::Key},         {'M', &WordTaker::Modifiers},
    {'P', &WordTaker::Part},         {'O', &WordTaker::Outside},
};

void WordTaker::Take(char letter) {
    for (auto const& [wanted, take] : kTakers) {
        if (wanted == letter) {
            (this->*take)();
        }
    }
}

}  // namespace

ScriptReader::Found ScriptReader::Next(ScriptLine& line) {
    std::string text;
    do {
        if (Found const found = ReadText(text); found != Found::kLine) {
            return found;
        }
        ++mNumber;
    } while (text.empty() || (text[0] == '#' && text.size() <= kLongestLine));
    line = {};
    line.number = mNumber;
    return Parse(text, line) ? Found::kLine : Found::kWrongLine;
}

// No more than tells that a line is too long.
ScriptReader::Found ScriptReader::ReadText(std::string& text) {
    text.clear();
    int byte = NextByte();
    bool const isEnd = byte == kNoByte;
    while (byte != kNoByte && byte != '\n' && text.size() <= kLongestLine) {
        text.push_back(static_cast<char>(byte));
        byte = NextByte();
    }
    if (mError != 0) {
        mFault = "can't read " + mSource.name + ": " + HostFiles::Reason(mError);
        return Found::kUnreadable;
    }
    return isEnd ? Found::kEnd : Found::kLine;
}

int ScriptReader::NextByte() {
    errno = 0;
    int const byte = mSource.stream.get();
    if (byte == kNoByte) {
        int const error = errno != 0 ? errno : EIO;
        // std::cin reads through stdin and takes an error there for the end.
        bool const isInput = &mSource.stream == &std::cin;
        bool const hasFailed = mSource.stream.bad() || (isInput && std::ferror(stdin) != 0);
        mError = hasFailed ? error : 0;
    }
    return byte;
}

void ScriptReader::CheckBytes(std::string const& text) const {
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    if (mNumber == 1 && text.starts_with(kByteOrderMark)) {
        throw WrongWord{"the script begins with a byte order mark"};
    }
    if (text.size() > kLongestLine) {
        throw WrongWord{"longer than " + std::to_string(kLongestLine) + " bytes"};
    }
    if (text.ends_with('\r')) {
        throw WrongWord{"a line ends in LF alone"};
    }
    if (text.find('\0') != std::string::npos || !JsonText::FromUTF8(text)) {
        throw WrongWord{"no UTF-8 text"};
    }
}

void ScriptReader::Take(std::string const& text, ScriptLine& line) const {
    Words const words = WordsIn(text);
    line.command = words[0].text;
    ScriptForm const* const form = words[0].isQuoted ? nullptr : mFormOf(line.command);
    if (form == nullptr) {
        throw WrongWord{"'" + line.command + "' is no command"};
    }
    try {
        WordTaker taker(words, line);
        for (char const letter : std::string_view(form->words)) {
            taker.Take(letter);
        }
        taker.End();
    } catch (WrongWord const& wrong) {
        std::string const usage = *form->usage == '\0' ? "" : std::string(" ") + form->usage;
        throw WrongWord{wrong.fault + " (" + form->name + usage + ")"};
    }
}

bool ScriptReader::Parse(std::string const& text, ScriptLine& line) {
    try {
        CheckBytes(text);
        Take(text, line);
        return true;
    } catch (WrongWord const& wrong) {
        mFault = "line " + std::to_string(mNumber) + ": " + wrong.fault;
        return false;
    }
}
