// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDStream.h"

#include <algorithm>

namespace {

constexpr char kEndMark = static_cast<char>(0xFF);
constexpr char kLineStops[] = {'\n', '\r', kEndMark};

}  // namespace

void PPDStream::Setup(char const* bytes, long length) {
    bool const usable = bytes != nullptr && length > 0;
    mStart = bytes;
    mPosition = bytes;
    mEnd = usable ? bytes + length : bytes;
    mStatus = usable ? kGood : kBad;
}

bool PPDStream::GetChar(char& byte) {
    if (mPosition == mEnd) {
        byte = kEndMark;
        mStatus = kEndOfFile;
        return false;
    }
    byte = *mPosition++;
    mStatus = kGood;
    return true;
}

int PPDStream::PeekChar() const {
    return mPosition == mEnd ? -1 : static_cast<signed char>(*mPosition);
}

void PPDStream::SkipWhiteSpace() {
    while (mPosition != mEnd && (*mPosition == ' ' || *mPosition == '\t')) {
        ++mPosition;
    }
}

bool PPDStream::GetLine(char* line) {
    long stored = 0;
    return GetRestOfLine(line, stored);
}

bool PPDStream::GetRestOfLine(char* line, long& stored) {
    // One byte more than a line may have, which then is too long.
    auto const room = static_cast<std::size_t>(kLineLength + 1 - stored);
    std::string_view text = Rest().substr(0, room);
    for (char const stop : kLineStops) {
        text = text.substr(0, text.find(stop));
    }
    std::ranges::copy(Take(text.size()), line + stored);
    stored += static_cast<long>(text.size());
    line[stored] = '\0';
    char byte = 0;
    if (text.size() == room || !GetChar(byte) || byte == kEndMark) {
        return false;
    }
    if (byte == '\r' && PeekChar() == '\n') {
        GetChar(byte);
    }
    return true;
}

std::string_view PPDStream::GetUpTo(ByteSet const& stops, std::size_t most) {
    std::string_view const rest = Rest().substr(0, most);
    auto const stop = std::ranges::find_if(rest, [&](char byte) { return stops.Has(byte); });
    return Take(static_cast<std::size_t>(stop - rest.begin()));
}

std::string_view PPDStream::GetUpTo(char stop, std::size_t most) {
    std::string_view const rest = Rest().substr(0, most);
    return Take(std::min(rest.find(stop), rest.size()));
}

std::string_view PPDStream::Take(std::size_t count) {
    std::string_view const taken = Rest().substr(0, count);
    mPosition += count;
    return taken;
}
