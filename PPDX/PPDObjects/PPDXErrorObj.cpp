// SPDX-License-Identifier: Apache-2.0
#include "PPDX/PPDObjects/PPDXErrorObj.h"

#include <algorithm>
#include <iterator>

namespace {

struct ErrorText {
    short code;
    char const* text;
};

constexpr ErrorText kErrorTexts[] = {
    {1, "There is not enough memory for the options of this printer."},
    {4, "A property page has no name."},
    {5, "A group has no keyword, or no option block follows it."},
    {6, "A job note has no keyword, or its keyword is not the announced one."},
    {7, "A range of values is not well-formed."},
    {8, "An option block opens without a keyword."},
    {9, "A state of a switch is neither True nor False."},
    {10, "The file ends inside an extended option block."},
    {11, "An option list has two defaults, or the file ends inside it."},
    {12, "A group name is missing."},
    {14, "An element names a parent that does not exist."},
    {15, "An element lacks its name or the name of its parent."},
    {16, "An option is announced without a keyword, or no option block follows it."},
    {18, "The printer description file can't be opened or read."},
    {19, "A shortcut has no valid keyword, or leads to no option."},
    {21, "An option belongs to no group."},
    {23, "An option, group name or property page is there twice."},
    {25, "The printer description has no property page."},
    {26, "The printer description has no group."},
    {27, "The printer description has no option."},
    {28, "The file is not a printer description of format version 4.3."},
    {29, "An option has no place on a property page."},
    {31, "An option block is of no known type."},
    {32, "A job note uses a flag that is not available."},
    {33, "An option has no default."},
    {34, "An extended option block was passed over."},
    {35, "A range of values has no PostScript code."},
    {36, "A constraint names only one option."},
};

// Null for a code without a text.
char const* TextOf(short code) {
    auto const found = std::find_if(std::begin(kErrorTexts), std::end(kErrorTexts),
                                    [code](ErrorText const& row) { return row.code == code; });
    return found == std::end(kErrorTexts) ? nullptr : found->text;
}

}  // namespace

PPDXErrorObj::PPDXErrorObj(short const& code, CString const& keyword, bool const& fatal)
    : CError(code, TextOf(code), fatal), mKeyword(keyword) {}

PPDXErrorObj::PPDXErrorObj(short const& code, bool const& fatal)
    : CError(code, TextOf(code), fatal) {}

char const* PPDXErrorObj::Keyword() const {
    return mKeyword.Empty() ? nullptr : mKeyword.GetCharData();
}

char const* GetErrorKeyword(PPDXErrorObj* error) {
    return error == nullptr ? nullptr : error->Keyword();
}

char const* GetErrorDescription(PPDXErrorObj* error) {
    return error == nullptr ? nullptr : error->Description();
}

bool IsErrorFatal(PPDXErrorObj* error) {
    return error != nullptr && error->IsFatal();
}
