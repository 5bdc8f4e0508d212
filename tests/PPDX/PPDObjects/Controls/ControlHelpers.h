// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "PPDX/PPDObjects/Controls/PPDXControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "tests/Texts.h"

// "keyword=value" for every call of CheckForChangeInListFromJP since the last one of this; these
// tests stand in for the Job Properties exchange.
std::vector<std::string> TakeReportedChanges();

// What a reader hands over to a control.
PointerList Words(std::initializer_list<char const*> words);
unsigned char* Code(std::string const& text);

struct ItemText {
    char const* keyword;
    char const* name;  // null for none
    char const* code;  // null for none
};
_PopupItem* NewItem(ItemText const& text);
PointerList NewItems(std::initializer_list<ItemText> texts);

struct PopupTraits {
    char const* defaultKeyword = nullptr;
    bool multiple = false;
    bool installable = false;
    UIConstraints* constraints = nullptr;
};
std::unique_ptr<PPDXPopupControl> NewPopup(char const* keyword,
                                           std::initializer_list<ItemText> items,
                                           PopupTraits const& traits = {});

// The control's PostScript, asked for as the job does: the length first, then the bytes into a
// block of just that length.
std::string Emitted(PPDXControl& control);

// Something that a control can stand in.
class Place : public PPDXElement {
  public:
    Place() : PPDXElement("Place", CFSTR("Place"), true) {}
    ~Place() override = default;
};
