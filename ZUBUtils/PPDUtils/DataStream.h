// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

// Where an archive is written to and read from.
class DataStream {
  public:
    DataStream() = default;
    DataStream(DataStream const&) = delete;
    DataStream& operator=(DataStream const&) = delete;
    virtual ~DataStream();

    // Appends `size` bytes. False, with LastError() telling why, when they weren't written.
    virtual bool out(void* data, unsigned long size) = 0;
    // Says how many bytes will be appended from here on; may be left out, and may be wrong.
    virtual void expect(unsigned long size);
    // Copies the next `size` bytes to `data` and moves on; `count` and `error`, if given, receive
    // how many they were and a status. There is no test for the end: a caller asks for no more
    // than dataSize() leaves.
    virtual bool in(void* data, unsigned long size, unsigned long* count, short* error) = 0;
    virtual bool dataExists();
    virtual bool valid();
    virtual unsigned long dataSize();  // all of it in bytes, what has been read too

    short LastError() const { return mLastError; }

  protected:
    std::uint32_t mDataSize = 0;
    std::uint32_t mReadPosition = 0;
    bool mValid = false;
    std::int16_t mLastError = 0;
};
