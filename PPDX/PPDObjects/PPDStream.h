// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "PPDX/PPDObjects/ByteSet.h"

// A read cursor over bytes that it doesn't own and that must outlive it. A copy is a second,
// independent cursor.
class PPDStream {
  public:
    // The longest line that can be read, in bytes without its terminator; a line buffer has
    // kLineSize bytes.
    static constexpr long kLineLength = 254;
    static constexpr long kLineSize = 256;

    static constexpr char kEndMark = static_cast<char>(0xFF);  // what a read byte is at the end

    static constexpr std::int32_t kGood = 0;
    static constexpr std::int32_t kBad = 1;
    static constexpr std::int32_t kEndOfFile = 2;

    PPDStream() = default;
    PPDStream(char const* bytes, long length) { Setup(bytes, length); }
    explicit PPDStream(std::string_view line) { SetupLine(line); }
    PPDStream(PPDStream const&) = default;
    PPDStream& operator=(PPDStream const&) = default;
    virtual ~PPDStream() = default;

    // Null bytes or no bytes make the stream bad.
    void Setup(char const* bytes, long length) {
        bool const usable = bytes != nullptr && length > 0;
        mStart = bytes;
        mPosition = bytes;
        mEnd = usable ? bytes + length : bytes;
        mStatus = usable ? kGood : kBad;
        mPlain = false;
        mIsLine = false;
    }
    // The same for bytes among which there is no line end.
    void SetupLine(std::string_view line) {
        Setup(line.data(), static_cast<long>(line.size()));
        mIsLine = true;
    }
    bool IsLine() const { return mIsLine; }

    // False at the end, with -1 in `byte`.
    bool GetChar(char& byte) {
        if (mPosition == mEnd) {
            byte = kEndMark;
            mStatus = kEndOfFile;
            return false;
        }
        byte = *mPosition++;
        mStatus = kGood;
        return true;
    }
    // The next byte as a signed value, -1 at the end; nothing moves.
    int PeekChar() const { return mPosition == mEnd ? -1 : static_cast<signed char>(*mPosition); }
    void SkipWhiteSpace();  // spaces and tabs
    // Moves over the bytes ahead of the first stop, at most so many, and returns them; they live
    // as long as those under the cursor. Unlike GetChar, leaves the status as it is.
    std::string_view GetUpTo(ByteSet const& stops, std::size_t most) {
        char const* const start = mPosition;
        char const* const end = start + std::min(most, Rest().size());
        mPosition = std::find_if(start, end, [&stops](char byte) { return stops.Has(byte); });
        return {start, mPosition};
    }
    std::string_view GetUpTo(char stop, std::size_t most = std::string_view::npos) {
        std::string_view const rest = Rest().substr(0, most);
        std::string_view const taken = rest.substr(0, rest.find(stop));
        mPosition += taken.size();
        return taken;
    }
    std::string_view Rest() const { return {mPosition, mEnd}; }  // what lies ahead
    // Moves over so many bytes, of which there must be as many ahead.
    void Skip(std::size_t count) {
        mPosition += count;
        mStatus = kGood;
    }
    // Reads up to LF, CR or CR LF, which is consumed, into kLineSize bytes, terminated. False for
    // a line that the bytes end or the byte 0xFF ends, and for one of more than kLineLength bytes,
    // whose rest then stays in the stream. A NUL in the line ends its text.
    virtual bool GetLine(char* line);
    // The same without a copy: `line` is good until the next line is read.
    virtual bool NextLine(std::string_view& line);
    // How many bytes of its file lie ahead of the cursor; -1 for bytes that are no file's.
    virtual long Place() const { return -1; }

    std::int32_t Status() const { return mStatus; }
    bool Good() const { return mStatus == kGood; }
    bool Bad() const { return mStatus == kBad; }
    bool EndOfFile() const { return mStatus == kEndOfFile; }

  protected:
    void SetStatus(std::int32_t status) { mStatus = status; }
    // Promises, until the next Setup, that a line feed is the only byte that ends a line or its
    // text.
    void SetPlain(bool plain) { mPlain = plain; }
    static bool IsPlain(std::string_view bytes);
    // Moves behind the line and gives its bytes, of which there may be `most`, with a NUL that
    // stands among them; false as in GetLine.
    bool TakeLine(std::string_view& line, std::size_t most);
    // TakeLine where bytes are plain and the line ends among them, as nearly all do. False, with
    // the cursor where it was, for any other.
    bool TakePlainLine(std::string_view& line, std::size_t most) {
        std::string_view const ahead = Rest().substr(0, most + 1);
        std::size_t const size = mPlain ? ahead.find('\n') : ahead.npos;
        if (size == ahead.npos) {
            return false;
        }
        line = ahead.substr(0, size);
        Skip(size + 1);
        return true;
    }
    std::size_t Left() const { return Rest().size(); }  // bytes behind the cursor
    // The text of such bytes.
    std::string_view TextOf(std::string_view line) const {
        return mPlain ? line : line.substr(0, line.find('\0'));
    }
    // Whether the bytes are used up and the last of them is a carriage return.
    bool EndedInCarriageReturn() const {
        return mPosition == mEnd && mPosition != mStart && mPosition[-1] == '\r';
    }

  private:
    char const* mStart = nullptr;  // not owned, like all three
    char const* mEnd = nullptr;
    char const* mPosition = nullptr;
    std::int32_t mStatus = kBad;
    bool mPlain = false;
    bool mIsLine = false;
};
