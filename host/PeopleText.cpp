// SPDX-License-Identifier: Apache-2.0
#include "host/PeopleText.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <sstream>

#include <unistd.h>

#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/TextConverter.h"
#include "host/ControlNames.h"
#include "host/JsonText.h"

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

// Control characters, line and paragraph separators, and marks of direction.
constexpr Range kUnfit[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0x200E, 0x200F},
                            {0x2028, 0x202E}, {0x2066, 0x2069}, {0xFEFF, 0xFEFF}};

bool IsUnfit(char32_t character) {
    return std::ranges::any_of(kUnfit, [character](Range const& range) {
        return range.first <= character && character <= range.last;
    });
}

// The length of the character that begins there, which is valid UTF-8.
std::size_t LengthOf(char first) {
    auto const byte = static_cast<unsigned char>(first);
    return byte < 0x80 ? 1 : byte < 0xE0 ? 2 : byte < 0xF0 ? 3 : 4;
}

char32_t CharacterAt(std::string_view text) {
    std::size_t const length = text.size();
    auto character = static_cast<char32_t>(static_cast<unsigned char>(text[0]) &
                                           (length == 1 ? 0x7F : 0xFF >> (length + 1)));
    for (std::size_t index = 1; index < length; ++index) {
        character = (character << 6) | (static_cast<unsigned char>(text[index]) & 0x3F);
    }
    return character;
}

// Of an encoding of single bytes.
bool IsControl(char byte) {
    return IsUnfit(static_cast<unsigned char>(byte));
}

std::string Octal(char byte) {
    auto const value = static_cast<unsigned char>(byte);
    std::string text = "\\000";
    for (std::size_t digit = 0; digit < 3; ++digit) {
        text[3 - digit] = static_cast<char>('0' + (value >> (3 * digit) & 7));
    }
    return text;
}

std::string OrOption(std::string const& name, char const* option) {
    return !name.empty() ? name : option == nullptr ? std::string() : PeopleText::Bytes(option);
}

// The text of a switch's state is kept as the PPD's bytes.
std::string NameOfState(ZUBPPD const& ppd, PPDXBooleanControl const& control,
                        std::string const& option) {
    char const* const bytes =
        option == "True" ? control.TrueDisplayText() : control.FalseDisplayText();
    return OrOption(PeopleText::Plain(PeopleText::InEncodingOf(ppd, bytes)), option.c_str());
}

template <typename Range>
std::string LimitsOf(Range const& range) {
    std::ostringstream text;
    text << range.MinVal() << " to " << range.MaxVal();
    return text.str();
}

std::string NameOfItem(_PopupItem& item) {
    return OrOption(PeopleText::Plain(item.LocalName()), item.Keyword());
}

}  // namespace

std::string PeopleText::Plain(std::string_view text) {
    std::string plain;
    if (!JsonText::FromUTF8(std::string(text))) {
        plain = text;
        std::ranges::replace_if(plain, IsControl, '?');
        return plain;
    }
    while (!text.empty()) {
        std::string_view const character = text.substr(0, LengthOf(text.front()));
        plain += IsUnfit(CharacterAt(character)) ? "?" : character;
        text.remove_prefix(character.size());
    }
    return plain;
}

std::string PeopleText::Plain(CFStringRef text) {
    return text == nullptr ? std::string() : Plain(std::string_view(JsonText::ToUTF8(text)));
}

std::string PeopleText::Bytes(std::string_view bytes) {
    return Plain(std::string_view(JsonText::BytesToUTF8(bytes)));
}

CFRef<CFStringRef> PeopleText::InEncodingOf(ZUBPPD const& ppd, char const* bytes) {
    if (bytes == nullptr) {
        return {};
    }
    TextConverter* const converter = ppd.GetTextConverter();
    return CFRef<CFStringRef>(
        converter != nullptr
            ? converter->ConvertToCFString(bytes, 0)
            : CFStringCreateWithCString(nullptr, bytes, kCFStringEncodingMacRoman));
}

std::string PeopleText::Limits(PPDXControl& control) {
    switch (control.Type()) {
        case kRangeType:
            return LimitsOf(static_cast<PPDXRangeControl&>(control));
        case kFloatRangeType:
            return LimitsOf(static_cast<PPDXFloatRangeControl&>(control));
        default:
            return {};
    }
}

std::string PeopleText::NameOf(PPDXControl& control) {
    std::string name = Plain(control.CFStringUserName());
    return name.empty() && control.Keyword() != nullptr ? Bytes(control.Keyword()) : name;
}

std::string PeopleText::NameOf(ZUBPPD const& ppd, PPDXControl& control, std::string const& option) {
    if (auto const* const boolean = dynamic_cast<PPDXBooleanControl*>(&control)) {
        return NameOfState(ppd, *boolean, option);
    }
    auto* const popup = dynamic_cast<PPDXPopupControl*>(&control);
    for (_PopupItem* item = popup == nullptr ? nullptr : popup->FirstItem(); item != nullptr;
         item = popup->NextItem()) {
        if (item->HasKeyword(option.c_str())) {
            return NameOfItem(*item);
        }
    }
    return Bytes(option);
}

std::vector<std::string> PeopleText::NamesOfChoices(ZUBPPD const& ppd, PPDXControl& control) {
    if (auto const* const boolean = dynamic_cast<PPDXBooleanControl*>(&control)) {
        return {NameOfState(ppd, *boolean, "True"), NameOfState(ppd, *boolean, "False")};
    }
    std::vector<std::string> names;
    auto* const popup = dynamic_cast<PPDXPopupControl*>(&control);
    for (_PopupItem* item = popup == nullptr ? nullptr : popup->FirstItem(); item != nullptr;
         item = popup->NextItem()) {
        names.push_back(NameOfItem(*item));
    }
    return names;
}

std::string PeopleText::Pair(ZUBPPD& ppd, std::string const& keyword, std::string const& option) {
    PPDXControl* const control = ControlNames::Find(ppd, keyword);
    std::string const pair = Bytes(keyword) + "=" + Bytes(option);
    return control == nullptr
               ? pair
               : NameOf(*control) + ": " + NameOf(ppd, *control, option) + " (" + pair + ")";
}

std::string PeopleText::ForShell(std::string const& text) {
    bool const isSafe = !text.empty() && std::ranges::all_of(text, [](char byte) {
        return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') ||
               (byte >= '0' && byte <= '9') ||
               std::string_view("-_=./:,+@%").find(byte) != std::string_view::npos;
    });
    if (isSafe) {
        return text;
    }
    bool const hasControls = Plain(std::string_view(text)) != text;
    std::string quoted = hasControls ? "$'" : "'";
    for (char const byte : text) {
        if (hasControls && (IsControl(byte) || byte < 0)) {
            quoted += Octal(byte);
        } else if (byte == '\'') {
            quoted += hasControls ? "\\'" : "'\\''";
        } else {
            quoted += hasControls && byte == '\\' ? "\\\\" : std::string(1, byte);
        }
    }
    return quoted + "'";
}

TextStyle::TextStyle(std::ostream const& out) {
    char const* const noColour = std::getenv("NO_COLOR");
    char const* const terminal = std::getenv("TERM");
    mColours = &out == &std::cout && isatty(STDOUT_FILENO) != 0 &&
               (noColour == nullptr || *noColour == '\0') && terminal != nullptr &&
               std::string_view(terminal) != "dumb";
}

std::string TextStyle::In(char const* code, std::string const& text) const {
    return mColours ? "\x1B[" + std::string(code) + "m" + text + "\x1B[0m" : text;
}
