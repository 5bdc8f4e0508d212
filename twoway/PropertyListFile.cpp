// SPDX-License-Identifier: Apache-2.0
#include "twoway/PropertyListFile.h"

#include <cstdlib>
#include <cstring>

#include "platform/CFRef.h"
#include "platform/MacTypes.h"

namespace {

// The URL of `path` below the home directory; null without one. A relative one would mean another
// place for every working directory. The caller releases it.
CFURLRef CreateHomeURL(char const* path) {
    char const* const home = std::getenv("HOME");
    if (home == nullptr || *home != '/' || path == nullptr) {
        return nullptr;
    }
    CFRef<CFURLRef> const directory(CFURLCreateFromFileSystemRepresentation(
        nullptr, reinterpret_cast<std::uint8_t const*>(home),
        static_cast<CFIndex>(std::strlen(home)), true));
    CFRef<CFStringRef> const below(
        CFStringCreateWithCString(nullptr, path + (*path == '/' ? 1 : 0), kCFStringEncodingUTF8));
    return CFURLCreateCopyAppendingPathComponent(nullptr, directory, below, false);
}

}  // namespace

PropertyListFile::PropertyListFile(CFURLRef url, CFOptionFlags mutability) {
    Open(url, mutability);
    mFileValid = true;
}

PropertyListFile::PropertyListFile(CFURLRef directory, CFStringRef fileName,
                                   CFOptionFlags mutability) {
    if (directory == nullptr || fileName == nullptr) {
        return;
    }
    CFRef<CFURLRef> const url(
        CFURLCreateCopyAppendingPathComponent(nullptr, directory, fileName, false));
    Open(url, mutability);
    mFileValid = mFileURL != nullptr;
}

PropertyListFile::PropertyListFile(char const* path, CFOptionFlags mutability) {
    CFRef<CFURLRef> const url(CreateHomeURL(path));
    Open(url, mutability);
    mFileValid = true;
}

PropertyListFile::~PropertyListFile() {
    CFRelease(mPropertyList);
    CFRelease(mFileURL);
}

void PropertyListFile::Open(CFURLRef url, CFOptionFlags mutability) {
    mFileURL = url == nullptr ? nullptr : CFURLCopyAbsoluteURL(url);
    CreatePropertyListFromFile(mFileURL, mutability);
}

bool PropertyListFile::CreatePropertyListFromFile(CFURLRef url, CFOptionFlags mutability) {
    CFRelease(mPropertyList);
    mPropertyList = nullptr;
    mWasRead = false;
    mFileError = noErr;
    if (url == nullptr) {
        mFileError = fnfErr;
        return false;
    }
    CFRef<CFDataRef> data;
    if (!CFURLCreateDataAndPropertiesFromResource(nullptr, url, data.Receive(), &mFileError)) {
        return false;
    }
    CFRef<CFStringRef> reason;
    mPropertyList = CFPropertyListCreateFromXMLData(nullptr, data, mutability, reason.Receive());
    // A list that memory was short for is no damaged one.
    mWasRead = mPropertyList != nullptr || (reason && !CFEqual(reason, CFSTR("Out of memory")));
    if (mPropertyList == nullptr) {
        mFileError = mWasRead ? paramErr : memFullErr;
    }
    return mPropertyList != nullptr;
}

bool PropertyListFile::Save(CFPropertyListRef list) {
    mFileError = noErr;
    CFRef<CFDataRef> const data(list == nullptr ? nullptr
                                                : CFPropertyListCreateXMLData(nullptr, list));
    if (!data) {
        mFileError = memFullErr;
        return false;
    }
    if (mFileURL == nullptr) {
        mFileError = fnfErr;
        return false;
    }
    return WritePrivateDataToResource(mFileURL, data, &mFileError);
}
