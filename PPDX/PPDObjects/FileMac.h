// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/FileManager.h"

// A named file and its data, read and written through one reference at a time. Operations on
// its data keep their result as the last error; closing, reading or writing data that isn't open
// gives -38.
class FileMac {
  public:
    // Room that a file name needs, the terminator counted.
    static constexpr unsigned long kNameSize = 256;

    FileMac(FileMac const&) = delete;
    FileMac& operator=(FileMac const&) = delete;
    virtual ~FileMac();  // closes the data

    virtual void getFileInfo(FSSpec* file) const;
    // `name` receives at most 63 bytes and a terminator; each argument may be null.
    virtual void getFileInfo(short* volume, long* directory, char* name) const;
    virtual FSSpec const& getFileInfo() const { return mFile; }
    // The name on disk, at most kNameSize bytes with its terminator.
    virtual OSErr getFileName(char* name) const;
    virtual bool exists() const;

    virtual OSErr openDataFork(char permission);
    virtual OSErr closeDataFork();
    virtual OSErr createDataFork(OSType creator, OSType fileType);
    virtual std::int16_t getDataForkRefNum() const { return mDataFork; }
    virtual bool dataForkOpen() const { return mDataForkOpen; }
    virtual OSErr dataForkWrite(char const* data, unsigned long size);
    // `size` goes in as the wish and comes out as what was read; -39 with what was there when the
    // file ends first.
    virtual OSErr dataForkRead(char* data, unsigned long* size);

    OSErr LastError() const { return mLastError; }
    bool Valid() const { return mValid; }

  protected:
    explicit FileMac(FSSpec const& file);
    explicit FileMac(CFURLRef url);

  private:
    OSErr Keep(OSErr error);

    OSErr mLastError = 0;
    bool mValid = false;  // the file can be named; it need not exist
    FSSpec mFile = {};
    bool mDataForkOpen = false;
    std::int16_t mDataFork = 0;
};
