// SPDX-License-Identifier: Apache-2.0
#include "twoway/PrinterListFile.h"

namespace {

// The array under "PCFILENAME" of a list that is a dictionary; borrowed, null for anything else and
// for an array without a name.
CFArrayRef FileNamesIn(CFPropertyListRef list) {
    if (list == nullptr || CFGetTypeID(list) != CFDictionaryGetTypeID()) {
        return nullptr;
    }
    CFTypeRef const names =
        CFDictionaryGetValue(static_cast<CFDictionaryRef>(list), CFSTR("PCFILENAME"));
    if (names == nullptr || CFGetTypeID(names) != CFArrayGetTypeID()) {
        return nullptr;
    }
    auto const array = static_cast<CFArrayRef>(names);
    return CFArrayGetCount(array) > 0 ? array : nullptr;
}

}  // namespace

PrinterListFile::PrinterListFile(CFURLRef contentsURL, CFOptionFlags mutability)
    : PropertyListFile(contentsURL, CFSTR("PrinterList.plist"), mutability) {
    mPCFileNames = FileNamesIn(PropertyList());
    if (mPCFileNames == nullptr) {
        SetFileValid(false);
    }
}
