// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>

#include "platform/CoreFoundation.h"
#include "platform/MacTypes.h"
#include "platform/WindowTypes.h"

// A popup's menu. It lives as long as its popup. Items count from 1; an item that isn't there is
// menuItemNotFoundErr, a null or foreign menu paramErr. One thread.

using MenuItemIndex = std::uint16_t;
using MenuItemAttributes = std::uint32_t;
constexpr OSStatus menuItemNotFoundErr = -5622;

MenuRef GetControlPopupMenuHandle(ControlRef popup);  // null for what is no popup
// Points: the widest text and room for the mark and the edges.
std::uint16_t GetMenuWidth(MenuRef menu);
std::uint16_t CountMenuItems(MenuRef menu);
// `item`, if given, gets the new item's place. Attributes are kept for nobody.
OSStatus AppendMenuItemTextWithCFString(MenuRef menu, CFStringRef text,
                                        MenuItemAttributes attributes, std::uint32_t command,
                                        MenuItemIndex* item);
OSStatus SetMenuItemTextWithCFString(MenuRef menu, MenuItemIndex item, CFStringRef text);
OSStatus CopyMenuItemTextAsCFString(MenuRef menu, MenuItemIndex item, CFStringRef* text);
// Later items close up.
OSStatus DeleteMenuItem(MenuRef menu, MenuItemIndex item);
// Item 0 is the menu as a whole, which leaves each item's own state as it is.
OSStatus EnableMenuItem(MenuRef menu, MenuItemIndex item);
OSStatus DisableMenuItem(MenuRef menu, MenuItemIndex item);
OSStatus DisableAllMenuItems(MenuRef menu);
bool IsMenuItemEnabled(MenuRef menu, MenuItemIndex item);
// Why the item can't be chosen, for people; null for no reason. Enabling the item takes it away.
OSStatus SetMenuItemHelp(MenuRef menu, MenuItemIndex item, CFStringRef text);
OSStatus CopyMenuItemHelp(MenuRef menu, MenuItemIndex item, CFStringRef* text);  // null for none
