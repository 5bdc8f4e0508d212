// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "twoway/PropertyListFile.h"

// The list of accepted printers, "PrinterList.plist" in the contents directory of the bundle: a
// dictionary whose "PCFILENAME" is an array of *PCFileName fragments. Not valid without a
// name in that array.
class PrinterListFile : public PropertyListFile {
  public:
    PrinterListFile(CFURLRef contentsURL, CFOptionFlags mutability);

    // Borrowed, lives as long as this object; null when the file isn't valid.
    CFArrayRef PCFileNames() const { return mPCFileNames; }

  private:
    CFArrayRef mPCFileNames = nullptr;  // inside the property list
};
