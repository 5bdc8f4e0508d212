// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/FileMac.h"

#include <algorithm>
#include <cstring>

FileMac::FileMac(FSSpec const& file) : mValid(true), mFile(file) {}

FileMac::FileMac(CFURLRef url) {
    Keep(FSMakeFSSpecFromURL(url, &mFile));
    mValid = mLastError == noErr || mLastError == fnfErr;
}

FileMac::~FileMac() {
    if (mDataForkOpen) {
        closeDataFork();
    }
}

OSErr FileMac::Keep(OSErr error) {
    mLastError = error;
    return error;
}

void FileMac::getFileInfo(FSSpec* file) const {
    if (file != nullptr) {
        *file = mFile;
    }
}

void FileMac::getFileInfo(short* volume, long* directory, char* name) const {
    if (volume != nullptr) {
        *volume = mFile.vRefNum;
    }
    if (directory != nullptr) {
        *directory = mFile.parID;
    }
    if (name != nullptr) {
        std::size_t const length = std::min<std::size_t>(mFile.name[0], sizeof mFile.name - 1);
        std::memcpy(name, mFile.name + 1, length);
        name[length] = '\0';
    }
}

OSErr FileMac::getFileName(char* name) const {
    return FSSpecGetName(&mFile, name, kNameSize);
}

bool FileMac::exists() const {
    FSSpec found;
    return mValid && FSMakeFSSpec(mFile.vRefNum, mFile.parID, mFile.name, &found) == noErr;
}

OSErr FileMac::openDataFork(char permission) {
    if (mDataForkOpen) {
        return Keep(noErr);
    }
    if (!mValid) {
        return Keep(bdNamErr);
    }
    Keep(FSpOpenDF(&mFile, permission, &mDataFork));
    mDataForkOpen = mLastError == noErr;
    return mLastError;
}

OSErr FileMac::closeDataFork() {
    if (!mDataForkOpen) {
        return Keep(fnOpnErr);
    }
    mDataForkOpen = false;
    return Keep(FSClose(mDataFork));
}

OSErr FileMac::createDataFork(OSType creator, OSType fileType) {
    return Keep(mValid ? FSpCreate(&mFile, creator, fileType) : static_cast<OSErr>(bdNamErr));
}

OSErr FileMac::dataForkWrite(char const* data, unsigned long size) {
    if (!mDataForkOpen) {
        return Keep(fnOpnErr);
    }
    long count = static_cast<long>(size);
    return Keep(FSWrite(mDataFork, &count, data));
}

OSErr FileMac::dataForkRead(char* data, unsigned long* size) {
    if (!mDataForkOpen) {
        *size = 0;
        return Keep(fnOpnErr);
    }
    long count = static_cast<long>(*size);
    Keep(FSRead(mDataFork, &count, data));
    *size = static_cast<unsigned long>(count);
    return mLastError;
}
