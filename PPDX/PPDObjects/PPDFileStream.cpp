// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDFileStream.h"

#include <algorithm>

#include "PPDX/PPDObjects/PPDFile.h"

namespace {

long WholeSize(PPDFile& file) {
    long size = 0;
    GetEOF(file.getDataForkRefNum(), &size);
    return size;
}

}  // namespace

PPDFileStream::PPDFileStream(PPDFile* file, bool chunked) : mChunked(chunked), mFile(file) {
    Setup();
}

PPDFileStream::~PPDFileStream() {
    if (mFile != nullptr && mFile->dataForkOpen()) {
        mFile->closeDataFork();
    }
}

void PPDFileStream::Setup() {
    if (mFile == nullptr || (mUnseen.empty() && !Read())) {
        SetStatus(kBad);
        return;
    }
    std::string_view const chunk = mUnseen.substr(0, mChunked ? kChunkSize : mUnseen.npos);
    mUnseen.remove_prefix(chunk.size());
    mShown += static_cast<long>(chunk.size());
    PPDStream::Setup(chunk.data(), static_cast<long>(chunk.size()));
    SetPlain(IsPlain(chunk));
}

bool PPDFileStream::Read() {
    if (!mFile->dataForkOpen() && mFile->openDataFork(fsRdPerm) != noErr) {
        return false;
    }
    if (mBuffer == nullptr) {
        mBufferSize = static_cast<std::size_t>(mChunked ? kReadSize : WholeSize(*mFile));
        mBuffer = std::make_unique_for_overwrite<char[]>(mBufferSize);
    }
    unsigned long size = mBufferSize;
    OSErr const error = mFile->dataForkRead(mBuffer.get(), &size);
    bool const read = error == noErr || error == eofErr;
    mReadFailed |= !read;
    mUnseen = {mBuffer.get(), read ? size : 0};
    return true;
}

bool PPDFileStream::Refill() {
    if (mFile == nullptr) {
        return false;
    }
    bool const lineFeedDue = mLineFeedDue;
    mLineFeedDue = false;
    Setup();
    if (Bad()) {
        SetStatus(kEndOfFile);
        return false;
    }
    if (lineFeedDue && PeekChar() == '\n') {
        char lineFeed = 0;
        GetChar(lineFeed);
    }
    return true;
}

bool PPDFileStream::NextLine(std::string_view& line) {
    if (TakePlainLine(line, kLineLength)) {
        mLineFeedDue = false;
        return true;
    }
    bool whole = TakeLine(line, kLineLength);
    if (!whole && EndOfFile()) {
        whole = GoOnInNextChunk(line);
    }
    mLineFeedDue = whole && EndedInCarriageReturn();
    line = TextOf(line);
    return whole;
}

bool PPDFileStream::GoOnInNextChunk(std::string_view& line) {
    std::size_t stored = line.copy(mLine, line.size());
    bool whole = false;
    while (!whole && EndOfFile() && Refill()) {
        std::string_view part;
        whole = TakeLine(part, kLineLength - stored);
        stored += part.copy(mLine + stored, part.size());
    }
    // A NUL may have come from a chunk that is no longer there.
    line = std::string_view(mLine, stored).substr(0, std::string_view(mLine, stored).find('\0'));
    return whole;
}
