// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"

// A property list that is kept in a file as XML. The file is read while the object is constructed
// and changes only on Save. What it holds is the user's own business: a new file is for its owner
// alone.
//
// `mutability` is kCFPropertyListImmutable or kCFPropertyListMutableContainersAndLeaves.
class PropertyListFile {
  public:
    PropertyListFile(CFURLRef url, CFOptionFlags mutability);
    PropertyListFile(CFURLRef directory, CFStringRef fileName, CFOptionFlags mutability);
    // `path` begins with a slash and lies below the user's home directory, the value of HOME.
    // Without that value, and with one that isn't an absolute path, the object is valid and empty,
    // and can't be saved.
    PropertyListFile(char const* path, CFOptionFlags mutability);
    PropertyListFile(PropertyListFile const&) = delete;
    PropertyListFile& operator=(PropertyListFile const&) = delete;
    virtual ~PropertyListFile();

    // A missing file is no failure: the list is null then, and FileError() tells why.
    bool IsFileValid() const { return mFileValid; }
    // 0, or what the last reading or writing met: an errno or a negative number.
    std::int32_t FileError() const { return mFileError; }
    bool HasPlace() const { return mFileURL != nullptr; }
    // The whole file was there at the last reading, whether or not it was a property list.
    bool WasRead() const { return mWasRead; }
    CFPropertyListRef PropertyList() const { return mPropertyList; }  // borrowed; null for none

    // Replaces the list by what the file holds. False, with a null list and the error set, for a
    // file that can't be read or holds no property list.
    bool CreatePropertyListFromFile(CFURLRef url, CFOptionFlags mutability);
    // Writes `list` to the file. False, with the error set and the file as it was, when that
    // fails. The list in memory stays what it is.
    bool Save(CFPropertyListRef list);

  protected:
    CFURLRef FileURL() const { return mFileURL; }  // borrowed; null without a place for the file
    void SetFileValid(bool valid) { mFileValid = valid; }
    void SetFileError(std::int32_t error) { mFileError = error; }

  private:
    void Open(CFURLRef url, CFOptionFlags mutability);

    CFURLRef mFileURL = nullptr;                // owned, absolute
    CFPropertyListRef mPropertyList = nullptr;  // owned
    bool mFileValid = false;
    bool mWasRead = false;
    std::int32_t mFileError = 0;
};
