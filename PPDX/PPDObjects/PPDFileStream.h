// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <memory>
#include <string_view>

#include "PPDX/PPDObjects/PPDStream.h"

class PPDFile;

// A cursor over a file, of which it shows a chunk at a time. Only reading a line goes on from one
// chunk to the next.
class PPDFileStream : public PPDStream {
  public:
    static constexpr long kChunkSize = 10000;
    static constexpr long kReadSize = 10 * kChunkSize;  // what it reads at once

    // Opens the file and reads its beginning: a chunk, or the whole of it. Bad for a null file, for
    // one that can't be read and for an empty one. The file must outlive the stream, which closes
    // it.
    PPDFileStream(PPDFile* file, bool chunked);
    PPDFileStream(PPDFileStream const&) = delete;
    PPDFileStream& operator=(PPDFileStream const&) = delete;
    ~PPDFileStream() override;

    // Whether the file couldn't be read to its end: what was delivered isn't all of it.
    bool ReadFailed() const { return mReadFailed; }

    // As in PPDStream, over the borders of chunks. A last line without a line end isn't delivered.
    bool NextLine(std::string_view& line) override;

    long Place() const override { return mShown - static_cast<long>(Left()); }

    using PPDStream::Setup;
    // Goes on with the file's next chunk, whatever of the last one is unread. Bad when there is
    // none.
    void Setup();

  private:
    bool Read();    // the file's next bytes, if there are any; false when it can't be opened
    bool Refill();  // false at the end of the file
    // TakeLine for a line whose beginning ended the chunk.
    bool GoOnInNextChunk(std::string_view& line);

    std::unique_ptr<char[]> mBuffer;
    std::size_t mBufferSize = 0;
    std::string_view mUnseen;  // read and in no chunk yet
    char mLine[kLineSize];     // a line over the border of chunks
    long mShown = 0;           // bytes of the file up to the end of the chunk
    bool mChunked;
    PPDFile* mFile;  // not owned
    bool mReadFailed = false;
    bool mLineFeedDue = false;  // the chunk ended in a carriage return that ended a line
};
