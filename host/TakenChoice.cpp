// SPDX-License-Identifier: Apache-2.0
#include "host/TakenChoice.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <string_view>

#include "PPDX/PPDObjects/Controls/Numbers.h"
#include "PPDX/PPDObjects/Controls/PPDXBooleanControl.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXPopupControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "host/JsonText.h"
#include "platform/CFRef.h"

namespace {

// The number that the whole text is, but for blanks ahead of it.
std::optional<double> NumberIn(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
    if (text.starts_with('+')) {
        text.remove_prefix(1);
    }
    double number = 0;
    char const* const end = text.data() + text.size();
    auto const [behind, error] = std::from_chars(text.data(), end, number);
    bool const whole = error == std::errc() && behind == end && std::isfinite(number);
    return whole ? std::optional(number) : std::nullopt;
}

bool IsFloat(std::string_view text, float value) {
    std::optional<double> const number = NumberIn(text);
    return number && NarrowToFloat(*number) == value;
}

bool IsSize(std::string_view text, PPDXCustomPageSizeControl const& size) {
    std::size_t const blank = text.find(' ');
    return blank != std::string_view::npos && IsFloat(text.substr(0, blank), size.GetWidth()) &&
           IsFloat(text.substr(blank + 1), size.GetHeight());
}

bool Same(CFStringRef left, CFStringRef right, CFOptionFlags options) {
    return left != nullptr && right != nullptr &&
           CFStringCompare(left, right, options) == kCFCompareEqualTo;
}

// Colour profiles also go by their names for people.
bool IsNameOfPresent(PPDXPopupControl& popup, CFStringRef asked) {
    for (_PopupItem* item = popup.FirstItem(); item != nullptr; item = popup.NextItem()) {
        if (item->HasKeyword(popup.CurrentKeyword()) &&
            Same(item->LocalName(), asked, kCFCompareCaseInsensitive)) {
            return popup.TakesUnknownValues();
        }
    }
    return false;
}

}  // namespace

bool StandsAt(PPDXControl& control, std::string_view asked) {
    CFRef<CFStringRef> const text = JsonText::FromUTF8(asked);
    CFRef<CFStringRef> const value(control.CopyCurrentControlValueString());
    switch (control.Type()) {
        case kBooleanType:
            return Same(value, text, kCFCompareCaseInsensitive);
        case kRangeType:
            return NumberIn(asked) ==
                   static_cast<double>(static_cast<PPDXRangeControl&>(control).GetValue());
        case kFloatRangeType:
            return IsFloat(asked, static_cast<PPDXFloatRangeControl&>(control).GetValue());
        case kCustomPageSizeType:
            return IsSize(asked, static_cast<PPDXCustomPageSizeControl&>(control));
        case kPopupType:
            return Same(value, text, 0) ||
                   IsNameOfPresent(static_cast<PPDXPopupControl&>(control), text);
        case kSpecialOptionType:
            return Same(value, text, 0);
        default:
            return true;
    }
}
