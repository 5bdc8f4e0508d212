// SPDX-License-Identifier: Apache-2.0
#pragma once

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

    static constexpr std::int32_t kGood = 0;
    static constexpr std::int32_t kBad = 1;
    static constexpr std::int32_t kEndOfFile = 2;

    PPDStream() = default;
    PPDStream(char const* bytes, long length) { Setup(bytes, length); }
    PPDStream(PPDStream const&) = default;
    PPDStream& operator=(PPDStream const&) = default;
    virtual ~PPDStream() = default;

    // Null bytes or no bytes make the stream bad.
    void Setup(char const* bytes, long length);

    // False at the end, with -1 in `byte`.
    bool GetChar(char& byte);
    int PeekChar() const;   // the next byte as a signed value, -1 at the end; nothing moves
    void SkipWhiteSpace();  // spaces and tabs
    // Moves over the bytes ahead of the first stop, at most so many, and returns them; they live
    // as long as those under the cursor. Unlike GetChar, leaves the status as it is.
    std::string_view GetUpTo(ByteSet const& stops, std::size_t most);
    std::string_view GetUpTo(char stop, std::size_t most = std::string_view::npos);
    // Reads up to LF, CR or CR LF, which is consumed, into kLineSize bytes, terminated. False for
    // a line that the bytes end or the byte 0xFF ends, and for one of more than kLineLength bytes,
    // whose rest then stays in the stream.
    virtual bool GetLine(char* line);

    std::int32_t Status() const { return mStatus; }
    bool Good() const { return mStatus == kGood; }
    bool Bad() const { return mStatus == kBad; }
    bool EndOfFile() const { return mStatus == kEndOfFile; }

  protected:
    void SetStatus(std::int32_t status) { mStatus = status; }
    // GetLine for a line whose first `stored` bytes are in place already; `stored` counts on.
    bool GetRestOfLine(char* line, long& stored);
    // Whether the bytes are used up and the last of them is a carriage return.
    bool EndedInCarriageReturn() const {
        return mPosition == mEnd && mPosition != mStart && mPosition[-1] == '\r';
    }

  private:
    std::string_view Rest() const { return {mPosition, mEnd}; }
    std::string_view Take(std::size_t count);

    char const* mStart = nullptr;  // not owned, like all three
    char const* mEnd = nullptr;
    char const* mPosition = nullptr;
    std::int32_t mStatus = kBad;
};
