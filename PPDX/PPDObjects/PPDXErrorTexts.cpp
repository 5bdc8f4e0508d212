// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDXErrorTexts.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr PPDXErrorText kErrorTexts[] = {
    {1, "There is not enough memory for the options of this printer.",
     "Free some memory. If a single line is named, put *LanguageVersion and *LanguageEncoding "
     "ahead of it: its name can't be read without them.",
     "when a part of the layout, not a single option, finds no memory"},
    {4, "A property page has no name.",
     "Write a name and a text behind *%ZUBPropPage, as in *%ZUBPropPage Layout/Layout: True, below "
     "*LanguageVersion and *LanguageEncoding.",
     ""},
    {5, "A group has no keyword, or no option block follows it.",
     "Let the option's block follow in the very next line, and name the option behind *%ZUBGroup.",
     ""},
    {6, "A job note has no keyword, or its keyword is not the announced one.",
     "Give the note the keyword of its *%ZUBFlags line, below *LanguageVersion and "
     "*LanguageEncoding.",
     ""},
    {7, "A range of values is not well-formed.",
     "Write it as *%ZUBRange *Key/Text: (minimum;maximum;increment;default) \"code\", with the "
     "keyword of the flags line, below *LanguageVersion and *LanguageEncoding.",
     ""},
    {8, "An option block opens without a keyword.",
     "Write *OpenUI *Key/Text: PickOne, below *LanguageVersion and *LanguageEncoding.", ""},
    {9, "A state of a switch is neither True nor False.",
     "Name the states True and False, or open the block as PickOne.", ""},
    {10, "The file ends inside an extended option block.",
     "Close the block with a line *CloseUIZUB.", "always"},
    {11, "An option list has two defaults, or the file ends inside it.",
     "Leave one *Default line in the block, and close the block with *CloseUI.",
     "when the file ends inside the list"},
    {12, "A group name is missing.",
     "Write a name and a text behind *%ZUBGroupName, as in *%ZUBGroupName Finish/Finishing: True, "
     "below *LanguageVersion and *LanguageEncoding.",
     ""},
    {14, "An element names a parent that does not exist.",
     "Put the page, or the pane, ahead of this line, and check the spelling of its name.", ""},
    {15, "An element lacks its name or the name of its parent.",
     "Write both, as in *%ZUBParent Pane1/Layout: True|Scrollpane.", ""},
    {16, "An option is announced without a keyword, or no option block follows it.",
     "Let the option's block follow the *%ZUBFlags line at once, with its *%ZUBGroup line first.",
     ""},
    {18, "The printer description file can't be opened or read.",
     "Check that the file is there, isn't empty and may be read.", "always"},
    {19, "A shortcut has no valid keyword, or leads to no option.",
     "Name the keyword of an option of this file, or take the line out.", ""},
    {21, "An option belongs to no group.",
     "Write a *%ZUBGroup line behind the option's *%ZUBFlags line, with a group that is declared "
     "above it.",
     ""},
    {23, "An option, group name or property page is there twice.",
     "Take the second one out, or give it another name.", ""},
    {25, "The printer description has no property page.", "Declare one with *%ZUBPropPage.", ""},
    {26, "The printer description has no group.",
     "Declare one with *%ZUBGroupName and *%ZUBParent.", ""},
    {27, "The printer description has no option.", "Put a *%ZUBFlags line ahead of each option.",
     ""},
    {28, "The file is not a printer description of format version 4.3.",
     "Let the file begin with *PPD-Adobe: \"4.3\".", "always"},
    {29, "An option has no place on a property page.",
     "Name a group in the *%ZUBGroup line of the option that a *%ZUBParent line makes a Rolldown.",
     ""},
    {31, "An option block is of no known type.",
     "Write text and type: *OpenUI *Key/Text: PickOne, or PickMany, or Boolean.", ""},
    {32, "A job note uses a flag that is not available.",
     "Take the flag out, or use the program with the extensions that know it.", ""},
    {33, "An option has no default.",
     "Write a *Default line with one of the choices at the beginning of the block.", ""},
    {34, "An extended option block was passed over.",
     "Open the block with *OpenUI if it is to be used.", ""},
    {35, "A range of values has no PostScript code.",
     "Write code in quotes behind the range; <*Key> in it stands for the value.", ""},
    {36, "A constraint names only one option.",
     "Write both keywords, each with its option or alone: *UIConstraints: *A x *B y.", ""},
};

PPDXErrorText const* RowOf(short code) {
    auto const* const found = std::ranges::find(kErrorTexts, code, &PPDXErrorText::code);
    return found == std::end(kErrorTexts) ? nullptr : found;
}

}  // namespace

std::span<PPDXErrorText const> ErrorTexts() {
    return kErrorTexts;
}

char const* ErrorTextOf(short code) {
    PPDXErrorText const* const row = RowOf(code);
    return row == nullptr ? nullptr : row->text;
}

char const* ErrorRemedyOf(short code) {
    PPDXErrorText const* const row = RowOf(code);
    return row == nullptr ? nullptr : row->remedy;
}
