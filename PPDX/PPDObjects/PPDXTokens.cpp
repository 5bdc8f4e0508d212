// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstring>
#include <string_view>

#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDX.h"

// The token layer of PPDX.

namespace {

constexpr char kQuotationMark = '"';

bool IsBlank(char byte) {
    return byte == ' ' || byte == '\t';
}

void CutTrailingBlanks(char* text, unsigned long length) {
    while (length > 0 && IsBlank(text[length - 1])) {
        --length;
    }
    text[length] = '\0';
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
    CutTrailingBlanks(text, std::strlen(text));
}

bool PPDX::NextToken(PPDStream& stream, char* token, Delimiters const& delimiters, bool strip) {
    unsigned long length = 0;
    bool lineFeed = false;
    while (length < kTextSize - 1) {
        std::string_view const bytes = stream.GetUpTo(delimiters.Stops(), kTextSize - 1 - length);
        std::ranges::copy(bytes, token + length);
        length += bytes.size();
        char stop = 0;
        if (length == kTextSize - 1 || !stream.GetChar(stop)) {
            break;
        }
        lineFeed = stop == '\n';
        if (stop != '\r' || stream.PeekChar() != '\n' || delimiters.Has(stop)) {
            break;
        }
        token[length++] = stop;
    }
    if (lineFeed && length > 0 && token[length - 1] == '\r') {
        --length;
    }
    token[length] = '\0';
    bool const isToken = length > 0;
    if (isToken && strip) {
        CutTrailingBlanks(token, length);
        StripLeadingWhiteSpace(token);
    }
    return isToken;
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
    char line[PPDStream::kLineSize];
    while (stop == Stop::kBytesEnded) {
        if (mCurrentStream == nullptr || !mCurrentStream->GetLine(line)) {
            return value.Terminate(0);
        }
        if (line[0] == '\0') {
            continue;
        }
        value.PutLineBreak();
        if (line[0] == '*') {
            return value.Terminate(value.Count());
        }
        PPDStream more(line, static_cast<long>(std::strlen(line)));
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
    char line[PPDStream::kLineSize];
    while (mCurrentStream != nullptr && mCurrentStream->GetLine(line)) {
        if (line[0] == '\0') {
            continue;
        }
        value.Put("\n");
        char const* content = line;
        if (line[0] == '*') {
            if (line[1] != '%') {
                break;
            }
            content += 2;
        }
        PPDStream more(content, static_cast<long>(std::strlen(content)));
        if (value.PutUpToQuote(more)) {
            break;
        }
    }
    return value.Finish();
}
