// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <limits>

#include "platform/Graphics.h"
#include "platform/UTF16.h"
#include "platform/internal/Desktop.h"
#include "platform/internal/Gestures.h"

namespace platform {
namespace {

// Selections are 16-bit numbers.
constexpr std::size_t kLongestText = std::numeric_limits<std::int16_t>::max();

// A pair of surrogates is one step.
std::size_t Before(std::u16string const& text, std::size_t at) {
    bool const isPair = at >= 2 && IsLowSurrogate(text[at - 1]) && IsHighSurrogate(text[at - 2]);
    return at - std::min<std::size_t>(at, isPair ? 2 : 1);
}
std::size_t Behind(std::u16string const& text, std::size_t at) {
    bool const isPair =
        at + 1 < text.size() && IsHighSurrogate(text[at]) && IsLowSurrogate(text[at + 1]);
    return std::min(text.size(), at + (isPair ? 2 : 1));
}

void MoveTo(FieldText& field, std::size_t at) {
    field.selectionStart = field.selectionEnd = at;
}

bool HasSelection(FieldText const& field) {
    return field.selectionStart != field.selectionEnd;
}

void ReplaceSelection(FieldText& field, std::u16string const& inserted) {
    std::size_t const length = field.selectionEnd - field.selectionStart;
    field.text.replace(field.selectionStart, length, inserted);
    MoveTo(field, field.selectionStart + inserted.size());
    ++field.revision;
}

// Deletes the selection, or what lies between the insertion point and `at`.
void Delete(FieldText& field, std::size_t at) {
    if (!HasSelection(field)) {
        field.selectionStart = std::min(field.selectionStart, at);
        field.selectionEnd = std::max(field.selectionEnd, at);
    }
    if (HasSelection(field)) {
        ReplaceSelection(field, {});
    }
}

// An arrow with a selection goes to that end of it.
struct EditKey {
    char32_t key;
    void (*act)(FieldText& field);
};
constexpr EditKey kEditKeys[] = {
    {kBackspaceKey, [](FieldText& f) { Delete(f, Before(f.text, f.selectionStart)); }},
    {kDeleteKey, [](FieldText& f) { Delete(f, Behind(f.text, f.selectionEnd)); }},
    {kLeftKey,
     [](FieldText& f) {
         MoveTo(f, HasSelection(f) ? f.selectionStart : Before(f.text, f.selectionStart));
     }},
    {kRightKey,
     [](FieldText& f) {
         MoveTo(f, HasSelection(f) ? f.selectionEnd : Behind(f.text, f.selectionEnd));
     }},
    {kHomeKey, [](FieldText& f) { MoveTo(f, 0); }},
    {kUpKey, [](FieldText& f) { MoveTo(f, 0); }},
    {kEndKey, [](FieldText& f) { MoveTo(f, f.text.size()); }},
    {kDownKey, [](FieldText& f) { MoveTo(f, f.text.size()); }},
};

void Insert(FieldText& field, char32_t character) {
    std::u16string const units = UnitsOf(character);
    std::size_t const kept = field.text.size() - (field.selectionEnd - field.selectionStart);
    if (units.empty() || kept + units.size() > kLongestText) {
        SysBeep(1);
        return;
    }
    ReplaceSelection(field, units);
}

}  // namespace

std::u16string UnitsOf(char32_t character) {
    if (character > kLastCharacter) {
        return {};
    }
    char16_t units[2];
    return {units, PutCharacter(character, units)};
}

std::size_t PlaceInText(FieldText const& field, std::int32_t at) {
    return std::min(static_cast<std::size_t>(std::max(at, 0)), field.text.size());
}

bool EditField(ControlNode& node, char32_t key, std::uint32_t modifiers) {
    FieldText& field = *node.As<FieldText>();
    auto const found = std::find_if(std::begin(kEditKeys), std::end(kEditKeys),
                                    [&](EditKey const& row) { return row.key == key; });
    if (found != std::end(kEditKeys)) {
        found->act(field);
    } else if (key >= kSpaceKey && (modifiers & (kCommandKey | kControlKey)) == 0) {
        Insert(field, key);
    } else {
        return false;
    }
    MarkChanged(node);
    return true;
}

}  // namespace platform
