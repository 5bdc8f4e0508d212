// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDStream.h"

#include <algorithm>

namespace {

constexpr char kRareLineStops[] = {'\r', PPDStream::kEndMark};

}  // namespace

void PPDStream::SkipWhiteSpace() {
    while (mPosition != mEnd && (*mPosition == ' ' || *mPosition == '\t')) {
        ++mPosition;
    }
}

bool PPDStream::GetLine(char* line) {
    std::string_view text;
    bool const whole = NextLine(text);
    *std::ranges::copy(text, line).out = '\0';
    return whole;
}

bool PPDStream::NextLine(std::string_view& line) {
    bool const whole = TakeLine(line, kLineLength);
    line = TextOf(line);
    return whole;
}

bool PPDStream::IsPlain(std::string_view bytes) {
    return bytes.find('\0') == bytes.npos && bytes.find('\r') == bytes.npos &&
           bytes.find(kEndMark) == bytes.npos;
}

bool PPDStream::TakeLine(std::string_view& line, std::size_t most) {
    // One byte more than a line may have, which then is too long.
    std::size_t const room = most + 1;
    line = Rest().substr(0, room);
    line = line.substr(0, line.find('\n'));
    if (!mPlain) {
        for (char const stop : kRareLineStops) {
            line = line.substr(0, line.find(stop));
        }
    }
    mPosition += line.size();
    char byte = 0;
    if (line.size() == room || !GetChar(byte) || byte == kEndMark) {
        return false;
    }
    if (byte == '\r' && PeekChar() == '\n') {
        GetChar(byte);
    }
    return true;
}
