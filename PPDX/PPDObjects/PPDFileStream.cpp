// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDFileStream.h"

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
    if (mFile == nullptr || (!mFile->dataForkOpen() && mFile->openDataFork(fsRdPerm) != noErr)) {
        SetStatus(kBad);
        return;
    }
    if (mBuffer.empty()) {
        mBuffer.resize(static_cast<std::size_t>(mChunked ? kChunkSize : WholeSize(*mFile)));
    }
    unsigned long size = mBuffer.size();
    OSErr const error = mFile->dataForkRead(mBuffer.data(), &size);
    bool const read = error == noErr || error == eofErr;
    mReadFailed |= !read;
    PPDStream::Setup(mBuffer.data(), read ? static_cast<long>(size) : 0);
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

bool PPDFileStream::GetLine(char* line) {
    long stored = 0;
    bool whole = GetRestOfLine(line, stored);
    while (!whole && EndOfFile() && Refill()) {
        whole = GetRestOfLine(line, stored);
    }
    mLineFeedDue = whole && EndedInCarriageReturn();
    return whole;
}
