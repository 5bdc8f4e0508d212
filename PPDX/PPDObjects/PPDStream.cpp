// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDStream.h"

namespace {

constexpr char kEndMark = static_cast<char>(0xFF);

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
    bool whole = false;
    char byte = 0;
    while (stored <= kLineLength && GetChar(byte)) {
        if (byte == '\n' || byte == '\r') {
            if (byte == '\r' && PeekChar() == '\n') {
                GetChar(byte);
            }
            whole = true;
            break;
        }
        if (byte == kEndMark) {
            break;
        }
        line[stored++] = byte;
    }
    line[stored] = '\0';
    return whole;
}
