// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "platform/CFRef.h"

class PPDXControl;
class ZUBPPD;

// Texts for a person at a terminal, UTF-8.
class PeopleText {
  public:
    // What a terminal might obey, or what turns the direction of text, becomes a question mark;
    // so does what isn't UTF-8.
    static std::string Plain(std::string_view text);
    static std::string Plain(CFStringRef text);  // empty for null
    // A keyword or option, bytes as they stand in a PPD.
    static std::string Bytes(std::string_view bytes);

    // A text of the PPD in the encoding that it declares; null for null and for what is no text in
    // it.
    static CFRef<CFStringRef> InEncodingOf(ZUBPPD const& ppd, char const* bytes);

    static std::string NameOf(PPDXControl& control);
    // The name of one of the control's choices; the option itself where it has no name.
    static std::string NameOf(ZUBPPD const& ppd, PPDXControl& control, std::string const& option);
    // The names of what a control offers, in the order of ControlNames::Choices, in one walk.
    static std::vector<std::string> NamesOfChoices(ZUBPPD const& ppd, PPDXControl& control);
    // What a number, or a pair of them, may be: "25 to 400". Empty for another control.
    static std::string Limits(PPDXControl& control);
    // "Two Sided: Off (*Duplex=None)", as much of it as the PPD has.
    static std::string Pair(ZUBPPD& ppd, std::string const& keyword, std::string const& option);
    // In quotes if a shell would read it otherwise; with control characters in the form $'...',
    // which most shells know.
    static std::string ForShell(std::string const& text);
};

// How a text is set off on a terminal that shows colours; plain everywhere else.
class TextStyle {
  public:
    // Colours for standard output when that is a terminal and NO_COLOR isn't set.
    explicit TextStyle(std::ostream const& out);

    std::string Heading(std::string const& text) const { return In("1", text); }
    std::string Chosen(std::string const& text) const { return In("32", text); }
    std::string Blocked(std::string const& text) const { return In("31", text); }
    std::string Aside(std::string const& text) const { return In("2", text); }

  private:
    std::string In(char const* code, std::string const& text) const;

    bool mColours;
};
