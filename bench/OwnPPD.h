// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "PPDX/PPDObjects/ZUBPPD.h"
#include "platform/CFRef.h"

class PPDXPopupControl;

// A PPD as the print dialog sees it. Its menus are its popups, in the order of the file.
class OwnPPD {
  public:
    // Reads the file, asks the first question about a rule, for which the rules are put in order,
    // and forgets the file; that is the whole of a parse.
    static void Parse(CFURLRef url);
    static CFRef<CFURLRef> URL(std::string const& path);
    // Makes the PPD again from what Archive gave, and forgets it; whether it is valid.
    static bool Rebuild(CFDataRef archive, CFURLRef url);

    // Exits the program with a message when the file isn't a PPD with menus and without errors.
    explicit OwnPPD(std::string const& path);
    OwnPPD(OwnPPD const&) = delete;
    OwnPPD& operator=(OwnPPD const&) = delete;
    ~OwnPPD();

    ZUBPPD& Get() const { return *mPPD; }
    std::size_t MenuCount() const { return mMenus.size(); }
    std::string Keyword(std::size_t menu) const;  // with its asterisk
    std::vector<std::string> Items(std::size_t menu);
    // Asks about each item of the menu whether it is to be greyed; the number of those that are.
    // Tells each in `byItem` when that isn't null.
    long GreyMenu(std::size_t menu, std::vector<bool>* byItem = nullptr);
    // The bytes of the compiled PPD; null without memory.
    CFRef<CFDataRef> Archive();
    // Makes the code of everything that is selected in one buffer, which is kept; its bytes.
    long EmitAll();

  private:
    ZUBPPD* mPPD;                           // one reference owned
    std::vector<PPDXPopupControl*> mMenus;  // in mPPD
    std::string mOutput;
};
