// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <new>
#include <string>
#include <string_view>

#include "PPDX/PPDObjects/CodeBlock.h"
#include "PPDX/PPDObjects/Controls/Numbers.h"
#include "PPDX/PPDObjects/Controls/PPDXControls.h"
#include "PPDX/PPDObjects/Controls/PPDXCustomPageSizeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXFloatRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXRangeControl.h"
#include "PPDX/PPDObjects/Controls/PPDXShortcuts.h"
#include "PPDX/PPDObjects/Controls/PPDXSpecialOption.h"
#include "PPDX/PPDObjects/OwnedBy.h"
#include "PPDX/PPDObjects/PPDDelimiters.h"
#include "PPDX/PPDObjects/PPDStream.h"
#include "PPDX/PPDObjects/PPDXErrorCode.h"
#include "PPDX/PPDObjects/PPDXErrorObj.h"
#include "PPDX/PPDObjects/PPDXGroup.h"
#include "PPDX/PPDObjects/ZUBPPD.h"
#include "ZUBUtils/PPDUtils/CString.h"
#include "platform/CFRef.h"

// Options that one line makes, and the shortcuts.

namespace {

constexpr char kCustomSizeKeyword[] = "*CustomPrintSize";
constexpr char kCustomSizeGroup[] = "FPPaperSource";
// What the numbers of a range stand between, behind the opening parenthesis.
constexpr std::string_view kRangeDelimiters = ";;;)";

bool IsBeyondASCII(char byte) {
    return static_cast<unsigned char>(byte) > 0x7F;
}

// The number at the start of the text; 0 for anything else.
long WholeNumber(char const* text) {
    return std::strtol(text, nullptr, 10);
}

double DecimalNumber(char const* text) {
    // A byte beyond ASCII ends the number; it may not count as some character, a blank for one.
    auto const* const end = std::find_if(text, text + std::strlen(text), IsBeyondASCII);
    return CFStringGetDoubleValue(CFRef<CFStringRef>(
        CFStringCreateWithBytes(nullptr, reinterpret_cast<std::uint8_t const*>(text), end - text,
                                kCFStringEncodingASCII, false)));
}

// Whether the next delimiters of a range are the right ones in the right order.
bool IsRange(PPDStream stream) {
    std::string found;
    for (char byte = 0; found.size() < kRangeDelimiters.size() && stream.GetChar(byte);) {
        if (kTypeDelimiters.Has(byte)) {
            found += byte;
        }
    }
    return found == kRangeDelimiters;
}

}  // namespace

// The fields of a range, still as text.
struct ZUBPPD::RangeLine {
    char minimum[kTextSize];
    char maximum[kTextSize];
    char increment[kTextSize];
    char defaultValue[kTextSize];
    CodeBlock code;
};

// ---- Ranges ----

PPDXErrorObj* ZUBPPD::ParseRange(PPDStream& line, char const* keyword, PointerList& flags,
                                 PPDXGroup* group) {
    return ParseNumber<PPDXRangeControl>(line, keyword, flags, group, WholeNumber);
}

PPDXErrorObj* ZUBPPD::ParseFloatRange(PPDStream& line, char const* keyword, PointerList& flags,
                                      PPDXGroup* group) {
    return ParseNumber<PPDXFloatRangeControl>(line, keyword, flags, group, DecimalNumber);
}

template <typename Range, typename Convert>
PPDXErrorObj* ZUBPPD::ParseNumber(PPDStream& line, char const* keyword, PointerList& flags,
                                  PPDXGroup* group, Convert number) {
    char field[kTextSize];
    if (!NextToken(line, field, kNameDelimiters, true)) {
        return new PPDXErrorObj(kMalformedRange, keyword, false);
    }
    if (std::strcmp(field, keyword) != 0) {
        return new PPDXErrorObj(kMalformedRange, field, false);
    }
    char translation[kTextSize];
    if (!NextToken(line, translation, kTranslationDelimiters, false)) {
        return nullptr;
    }
    RangeLine range;
    if (!ReadRange(line, range)) {
        return new PPDXErrorObj(kMalformedRange, keyword, false);
    }
    if (range.code.size == 0) {
        AddError(kRangeWithoutCode, keyword, false);
    }
    if (group == nullptr && !ParseOrphans()) {
        return new PPDXErrorObj(kControlWithoutGroup, keyword, false);
    }
    CFRef<CFStringRef> const name(CopyTranslation(translation));
    if (!name) {
        return new PPDXErrorObj(kMalformedRange, keyword, false);
    }
    auto* const control = new (std::nothrow)
        Range(keyword, name, flags, range.code.bytes.get(), range.code.size, number(range.minimum),
              number(range.maximum), number(range.increment), number(range.defaultValue), true);
    if (control == nullptr) {
        return new PPDXErrorObj(kOutOfMemory, keyword, false);
    }
    flags.MakeEmpty();
    static_cast<void>(range.code.bytes.release());
    SetupControl(group, control, true);
    return nullptr;
}

// "(minimum;maximum;increment;default)" and the code behind it.
bool ZUBPPD::ReadRange(PPDStream& line, RangeLine& range) {
    line.SkipWhiteSpace();
    char byte = 0;
    if (!line.GetChar(byte) || byte != '(' || !IsRange(line)) {
        return false;
    }
    for (char* const field : {range.minimum, range.maximum, range.increment, range.defaultValue}) {
        if (!NextToken(line, field, kTypeDelimiters, true)) {
            return false;
        }
    }
    range.code = ReadCode(line);
    return true;
}

// ---- The custom page size ----

PPDXErrorObj* ZUBPPD::ParseCustomPageSize(PPDStream& line, char const*) {
    PPDXControl* control = FindControl(kCustomSizeKeyword);
    if (control == nullptr) {
        PointerList flags;
        control = new (std::nothrow) PPDXCustomPageSizeControl(kCustomSizeKeyword, flags);
        SetupControl(FindAndCreateParent(kCustomSizeGroup), control, false);
    }
    if (auto* const size = dynamic_cast<PPDXCustomPageSizeControl*>(control)) {
        ReadSizeLimits(line, *size);
    }
    return nullptr;
}

void ZUBPPD::ReadSizeLimits(PPDStream& line, PPDXCustomPageSizeControl& size) {
    using SetLimit = void (PPDXCustomPageSizeControl::*)(float);
    // The name, nothing between its colon and the blank behind it, the order and the unit.
    constexpr int kFieldsAhead = 4;
    char field[kTextSize];
    bool isWidth = false;
    bool isHeight = false;
    for (int read = 0; read < kFieldsAhead; ++read) {
        NextToken(line, field, kKeywordDelimiters, true);
        isWidth |= std::strcmp(field, "Width") == 0;
        isHeight |= std::strcmp(field, "Height") == 0;
    }
    auto const takeLimit = [&](SetLimit setWidth, SetLimit setHeight) {
        if (!NextToken(line, field, kKeywordDelimiters, true)) {
            return;
        }
        float const limit = NarrowToFloat(DecimalNumber(field));
        if (isWidth) {
            (size.*setWidth)(limit);
        }
        if (isHeight) {
            (size.*setHeight)(limit);
        }
    };
    takeLimit(&PPDXCustomPageSizeControl::SetMinWidth, &PPDXCustomPageSizeControl::SetMinHeight);
    takeLimit(&PPDXCustomPageSizeControl::SetMaxWidth, &PPDXCustomPageSizeControl::SetMaxHeight);
}

// ---- Special options ----

PPDXErrorObj* ZUBPPD::ParseSpecialOption(PPDStream& line) {
    char keyword[kTextSize];
    char value[kTextSize];
    if (!NextToken(line, keyword, kTranslationDelimiters, true) ||
        !NextToken(line, value, kRestOfLineDelimiters, true)) {
        return nullptr;
    }
    CFRef<CFStringRef> const name(CopyTranslation(keyword));
    if (!name) {
        return new PPDXErrorObj(kOutOfMemory, keyword, false);
    }
    PointerList flags;
    SetupControl(nullptr,
                 new (std::nothrow)
                     PPDXSpecialOption(keyword, name, flags, value, nullptr, 0, false),
                 false);
    return nullptr;
}

// ---- Shortcuts ----

PPDXErrorObj* ZUBPPD::ParseShortcut(PPDStream& line) {
    char keyword[kTextSize];
    if (!NextToken(line, keyword, kRestOfLineDelimiters, true)) {
        return nullptr;
    }
    if (!PPDXControl::ValidKeyword(keyword)) {
        return new PPDXErrorObj(kShortcutLeadsNowhere, keyword, false);
    }
    PushOwned(mShortcutNames, std::make_unique<CString>(keyword));
    mShortcutPlaces.push_back(Place());
    return nullptr;
}

void ZUBPPD::ResolveShortcuts() {
    PointerList controls;
    std::size_t number = 0;
    for (auto at = mShortcutNames.Begin(); at != mShortcutNames.End(); ++at, ++number) {
        char const* const keyword = static_cast<CString const*>(*at)->GetCharData();
        if (PPDXControl* const control = FindControl(keyword)) {
            if (!controls.PushBack(control)) {
                throw std::bad_alloc();
            }
        } else {
            auto error = std::make_unique<PPDXErrorObj>(kShortcutLeadsNowhere, keyword, false);
            error->SetPlace(mShortcutPlaces[number]);
            AddError(error.release());
        }
    }
    delete mShortcuts;
    mShortcuts = new (std::nothrow) PPDXShortcuts(controls);
}
