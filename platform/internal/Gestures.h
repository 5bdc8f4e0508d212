// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/UserInput.h"
#include "platform/internal/ControlNode.h"

// What a hand does to a control, without asking again whether it may. The parts of gestures that
// keys make too.

namespace platform {

// kDone where the control can take input now.
InputResult Takes(ControlNode const* node);
InputResult Takes(WindowNode const* window);

// The click. Whether the gesture goes on: nobody took it, and the control still takes input.
bool Click(ControlRef control, bool releasedInside);
// The hit, and the command if nobody took it.
void Hit(ControlRef control, std::int16_t part);
// The whole gesture of a press.
void Press(ControlRef control, std::int16_t part, bool releasedInside);
// The value's change where it is another one, and the hit.
void ChooseValue(ControlRef control, std::int32_t value);
// Whether a popup's item, or a radio group's button, can be chosen; kMissing for none.
InputResult ItemState(ControlNode& node, std::uint16_t item);
std::uint16_t ItemCount(ControlNode& node);

// Editing a field by itself. Whether such a key means something to it; a character that found no
// room beeps.
bool EditField(ControlNode& field, char32_t key, std::uint32_t modifiers);
// The character in UTF-16; none for what is no character.
std::u16string UnitsOf(char32_t character);
// The place nearest to `at` that the text has.
std::size_t PlaceInText(FieldText const& field, std::int32_t at);

}  // namespace platform
