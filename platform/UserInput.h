// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/DataBrowser.h"
#include "platform/MacTypes.h"
#include "platform/WindowTypes.h"

// The door through which a user's hands come in, whatever face they use. Here alone is asked
// whether a control can take them. A gesture is reported whole, once it is over.

enum class InputResult {
    kDone,
    kMissing,   // no such window, control, item or row
    kHidden,    // it, what embeds it or its window isn't visible
    kDisabled,  // it or what embeds it
    kBlocked,   // another window is modal
    kRefused    // a disabled item, a heading that doesn't sort, no character taken
};
// Nothing was sent unless the result is kDone, except that a menu that was opened has had its
// press.

// A press: a click; and, released inside, where no handler took the click, the value's change (a
// check box), a hit with `part`, and the command if nobody took the hit. On a popup the click
// alone: what comes of the menu is UserChose. On a field it also gives the focus and leaves the
// selection. Part 0 stands for the whole control, which in a hit is 10 for a push button and 11 for
// a check box; on a scroll bar 20, 21, 22 and 23 are line up, line down, page up and page down.
InputResult UserPressed(ControlRef control, std::int16_t part, bool releasedInside);
// What a popup's menu gave after its press, or a radio group's button after no other: the value's
// change where it is another item, and the hit. Items from 1.
InputResult UserChose(ControlRef control, std::uint16_t item);
// The whole gesture on a popup: the press, and then the item if the menu came to open and the item
// can be chosen.
InputResult UserPicked(ControlRef control, std::uint16_t item);

struct TypedResult {
    InputResult result;
    std::int32_t taken;  // characters that went into the text
};
// Character by character into the window's focus, as UserPressedKey has it. A surrogate pair is one
// character.
TypedResult UserTyped(WindowRef window, std::u16string_view text);

constexpr char32_t kHomeKey = 1;
constexpr char32_t kEndKey = 4;
constexpr char32_t kBackspaceKey = 8;
constexpr char32_t kTabKey = 9;
constexpr char32_t kPageUpKey = 11;
constexpr char32_t kPageDownKey = 12;
constexpr char32_t kReturnKey = 13;
constexpr char32_t kEscapeKey = 27;
constexpr char32_t kLeftKey = 28;
constexpr char32_t kRightKey = 29;
constexpr char32_t kUpKey = 30;
constexpr char32_t kDownKey = 31;
constexpr char32_t kSpaceKey = 32;
constexpr char32_t kDeleteKey = 127;
// A key goes as text to the focus and what is around it, then, if nobody took it, as a raw key, and
// then does what such a key does: it edits a field, moves the focus (Tab, Shift-Tab), presses a
// check box, a popup or a button (Space), takes a popup's next enabled item (Up, Down), moves a
// scroll bar or a list's selection, or presses the window's default or cancel button (Return,
// Escape), which is a hit alone.
InputResult UserPressedKey(WindowRef window, char32_t key, std::uint32_t modifiers);

// UTF-16 units, kept within the text; gives the field the focus.
InputResult UserSelectedText(ControlRef field, std::int32_t from, std::int32_t to);
// Replaces the selection; the row named first is the anchor. The focus stays.
InputResult UserSelectedRows(ControlRef list, std::uint32_t count, DataBrowserItemID const* items);
// Opens or shuts a container; one that is so already stays so. kMissing for a row that holds none.
InputResult UserOpenedRow(ControlRef list, DataBrowserItemID item, bool open);
// A click on a heading: sorts by that column, upward first, and turns round at the next.
InputResult UserSorted(ControlRef list, DataBrowserPropertyID column);
// kMissing for a control of a kind that takes no focus. Leaves the selection.
InputResult UserFocused(ControlRef control);
// Presses the window's cancel button.
InputResult UserClosedWindow(WindowRef window);
// A command of a menu or of the host, to the window itself.
InputResult UserSentCommand(WindowRef window, OSType command);
