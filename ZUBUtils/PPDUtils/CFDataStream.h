// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ZUBUtils/PPDUtils/DataStream.h"

struct __CFData;

// A stream over a growing block of memory.
class CFDataStream : public DataStream {
  public:
    CFDataStream();  // empty; not valid, with the error -108, when there is no memory
    // Reads from a private copy, or from the very data where nobody can change that. Not valid for
    // data that is null or empty, or without memory.
    explicit CFDataStream(__CFData const* data);
    ~CFDataStream() override;

    bool out(void* data, unsigned long size) override;
    void expect(unsigned long size) override;
    // Bytes asked for beyond the end are 0.
    bool in(void* data, unsigned long size, unsigned long* count, short* error) override;

    // What is read or was written so far, borrowed: it lives until the stream goes, an empty one
    // until expect. May be null.
    __CFData const* Data() const { return mBuffer != nullptr ? mBuffer : mSource; }

  private:
    bool MakeBuffer();  // false, with nothing changed, without memory

    __CFData const* mSource = nullptr;  // owned: what is read as long as nothing was written
    __CFData* mBuffer = nullptr;        // owned, may be null
};
