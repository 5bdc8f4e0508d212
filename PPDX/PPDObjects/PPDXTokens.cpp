// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>
#include <string_view>

#include "PPDX/PPDObjects/Blanks.h"
#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDX.h"

// The token layer of PPDX.

namespace {

constexpr char kQuotationMark = '"';

// A token as it stands in the stream, which moves behind it. It may end in the carriage return of
// a line end that lies behind the longest token.
std::string_view TakeToken(PPDStream& stream, Delimiters const& delimiters) {
    constexpr std::size_t kMost = PPDX::kTextSize - 1;
    bool const isOneSearch = stream.IsLine() && delimiters.Only() != '\0';
    std::string_view const token = isOneSearch ? stream.GetUpTo(delimiters.Only(), kMost)
                                               : stream.GetUpTo(delimiters.Stops(), kMost);
    char stop = 0;
    if (token.size() == kMost || !stream.GetChar(stop)) {
        return token;
    }
    if (stop == '\r' && stream.PeekChar() == '\n' && !delimiters.Has(stop)) {
        if (token.size() + 1 == kMost) {
            return {token.data(), kMost};
        }
        stream.GetChar(stop);
    }
    return token;
}

// Moves behind the next double quote; false when the bytes end first.
bool SkipToQuote(PPDStream& stream) {
    char quote = 0;
    stream.GetUpTo(kQuotationMark);
    return stream.GetChar(quote);
}

// A value of PostScript that grows up to a limit, of which the last byte is kept for a line feed.
// What goes beyond is dropped.
class PostScriptText {
  public:
    PostScriptText(char* text, unsigned long limit) : mText(text), mRoom(limit - 1) {}

    void Put(std::string_view bytes) {
        std::string_view const fitting = bytes.substr(0, mRoom - mCount);
        std::ranges::copy(fitting, mText + mCount);
        mCount += fitting.size();
    }
    // True when the closing quote was met, before the bytes end.
    bool PutUpToQuote(PPDStream& stream) {
        char quote = 0;
        Put(stream.GetUpTo(kQuotationMark));
        return stream.GetChar(quote);
    }
    unsigned long Count() const { return mCount; }
    unsigned long Finish() {
        mText[mCount++] = '\n';
        return mCount;
    }

  private:
    char* mText;
    unsigned long mRoom;
    unsigned long mCount = 0;
};

// A value in quotes that grows up to a limit, terminator included. Everything of it that stands in
// the first bytes up to a NUL is what a caller sees as a text.
class QuotedText {
  public:
    enum class Stop { kQuote, kBytesEnded, kFull };

    QuotedText(char* text, unsigned long limit) : mText(text), mLast(limit - 1) {}

    Stop PutUpToQuote(PPDStream& stream) {
        std::string_view const bytes = stream.GetUpTo(kQuotationMark, mLast - mCount);
        std::ranges::copy(bytes, mText + mCount);
        mCount += bytes.size();
        if (mCount == mLast) {
            return Stop::kFull;
        }
        char quote = 0;
        return stream.GetChar(quote) ? Stop::kQuote : Stop::kBytesEnded;
    }
    void PutLineBreak() {
        if (mCount < mLast) {
            mText[mCount++] = '\0';
        }
    }
    unsigned long Count() const { return mCount; }
    unsigned long Terminate(unsigned long count) {
        mText[mCount] = '\0';
        return count;
    }

  private:
    char* mText;
    unsigned long mLast;
    unsigned long mCount = 0;
};

}  // namespace

void PPDX::StripLeadingWhiteSpace(char* text) {
    char const* first = text;
    while (IsBlank(*first)) {
        ++first;
    }
    if (first != text) {
        std::memmove(text, first, std::strlen(first) + 1);
    }
}

void PPDX::StripTrailingWhiteSpace(char* text) {
    text[WithoutTrailingBlanks(text).size()] = '\0';
}

bool PPDX::NextToken(PPDStream& stream, char* token, Delimiters const& delimiters, bool strip) {
    std::string_view const text = TakeToken(stream, delimiters);
    *std::ranges::copy(strip ? WithoutBlanksAround(text) : text, token).out = '\0';
    return !text.empty();
}

bool PPDX::NextToken(PPDStream& stream, std::string_view& token, Delimiters const& delimiters) {
    std::string_view const text = TakeToken(stream, delimiters);
    token = WithoutBlanksAround(text);
    return !text.empty();
}

unsigned long PPDX::GetQuotedString(PPDStream& stream, char* text, unsigned long const& limit) {
    if (text == nullptr) {
        return 0;
    }
    using Stop = QuotedText::Stop;
    QuotedText value(text, limit);
    SkipToQuote(stream);
    Stop stop = value.PutUpToQuote(stream);
    if (stop == Stop::kQuote && value.Count() == 0) {
        return value.Terminate(0);
    }
    std::string_view line;
    while (stop == Stop::kBytesEnded) {
        if (mCurrentStream == nullptr || !mCurrentStream->NextLine(line)) {
            return value.Terminate(0);
        }
        if (line.empty()) {
            continue;
        }
        value.PutLineBreak();
        if (line.starts_with('*')) {
            return value.Terminate(value.Count());
        }
        PPDStream more(line);
        stop = value.PutUpToQuote(more);
    }
    return value.Terminate(value.Count() + (stop == Stop::kQuote ? 1 : 0));
}

unsigned long PPDX::GetPostscriptString(PPDStream& stream, char* text, unsigned long const& limit) {
    if (text == nullptr || !SkipToQuote(stream)) {
        return 0;
    }
    PostScriptText value(text, limit);
    if (value.PutUpToQuote(stream)) {
        return value.Count() == 0 ? 0 : value.Finish();
    }
    std::string_view line;
    while (mCurrentStream != nullptr && mCurrentStream->NextLine(line)) {
        if (line.empty()) {
            continue;
        }
        value.Put("\n");
        if (line.starts_with('*')) {
            if (!line.starts_with("*%")) {
                break;
            }
            line.remove_prefix(2);
        }
        PPDStream more(line);
        if (value.PutUpToQuote(more)) {
            break;
        }
    }
    return value.Finish();
}
