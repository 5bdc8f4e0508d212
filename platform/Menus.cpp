// SPDX-License-Identifier: Apache-2.0
#include "platform/Menus.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/internal/CFObjects.h"
#include "platform/internal/Desktop.h"

namespace platform {
namespace {

constexpr MenuItemIndex kWholeMenu = 0;

MenuItem* ItemAt(ControlNode* popup, MenuItemIndex item) {
    auto& items = popup->As<PopupMenu>()->items;
    return item == 0 || item > items.size() ? nullptr : &items[item - 1U];
}

// Runs `work` on an item.
template <typename Work>
OSStatus OnItem(MenuRef menu, MenuItemIndex item, Work&& work) {
    ControlNode* const popup = Find(menu);
    if (popup == nullptr) {
        return paramErr;
    }
    MenuItem* const found = ItemAt(popup, item);
    if (found == nullptr) {
        return menuItemNotFoundErr;
    }
    return Guarded([&]() -> OSStatus {
        work(*found);
        return noErr;
    });
}

OSStatus SetEnabled(MenuRef menu, MenuItemIndex item, bool enabled) {
    ControlNode* const popup = Find(menu);
    if (popup == nullptr) {
        return paramErr;
    }
    MenuItem* const found = ItemAt(popup, item);
    if (found == nullptr && item != kWholeMenu) {
        return menuItemNotFoundErr;
    }
    bool& state = found == nullptr ? popup->As<PopupMenu>()->isEnabled : found->isEnabled;
    if (state != enabled) {
        state = enabled;
        MarkForFace(*popup);
    }
    if (found != nullptr && enabled) {
        found->help = {};
    }
    return noErr;
}

OSStatus Copy(MenuRef menu, MenuItemIndex item, CFRef<CFStringRef> MenuItem::*field,
              CFStringRef* text) {
    if (text == nullptr) {
        return paramErr;
    }
    *text = nullptr;
    return OnItem(menu, item, [&](MenuItem const& found) {
        *text = CFRef<CFStringRef>(found.*field).Release();
    });
}

}  // namespace
}  // namespace platform

using platform::ControlNode;
using platform::Find;
using platform::MenuItem;
using platform::PopupMenu;

MenuRef GetControlPopupMenuHandle(ControlRef popup) {
    ControlNode* const node = Find(popup);
    return node == nullptr || node->As<PopupMenu>() == nullptr
               ? nullptr
               : platform::MakeRef<MenuRef>(node->key);
}

std::uint16_t GetMenuWidth(MenuRef menu) {
    ControlNode* const popup = Find(menu);
    if (popup == nullptr) {
        return 0;
    }
    double width = 0;
    platform::TellFace([&](ControlFace& face) {
        double widest = 0;
        for (MenuItem const& item : popup->As<PopupMenu>()->items) {
            FloatSize const text = face.MeasureText(item.text, popup->font.size, popup->font.style);
            widest = std::max(widest, text.width);
        }
        width = std::ceil(widest + face.MenuMargin());
    });
    constexpr double kMost = std::numeric_limits<std::uint16_t>::max();
    return static_cast<std::uint16_t>(std::min(width, kMost));
}

std::uint16_t CountMenuItems(MenuRef menu) {
    ControlNode* const popup = Find(menu);
    return popup == nullptr ? std::uint16_t{0}
                            : static_cast<std::uint16_t>(popup->As<PopupMenu>()->items.size());
}

OSStatus AppendMenuItemTextWithCFString(MenuRef menu, CFStringRef text, MenuItemAttributes,
                                        std::uint32_t, MenuItemIndex* item) {
    if (item != nullptr) {
        *item = 0;
    }
    ControlNode* const popup = Find(menu);
    if (popup == nullptr || text == nullptr) {
        return paramErr;
    }
    auto& items = popup->As<PopupMenu>()->items;
    if (items.size() == std::numeric_limits<MenuItemIndex>::max()) {
        return memFullErr;
    }
    return platform::Guarded([&]() -> OSStatus {
        items.push_back({platform::CopyOf(text), {}, true});
        platform::MarkForFace(*popup);
        if (item != nullptr) {
            *item = static_cast<MenuItemIndex>(items.size());
        }
        return noErr;
    });
}

OSStatus SetMenuItemTextWithCFString(MenuRef menu, MenuItemIndex item, CFStringRef text) {
    if (text == nullptr) {
        return paramErr;
    }
    return platform::OnItem(menu, item, [&](MenuItem& found) {
        found.text = platform::CopyOf(text);
        platform::MarkForFace(*Find(menu));
    });
}

OSStatus CopyMenuItemTextAsCFString(MenuRef menu, MenuItemIndex item, CFStringRef* text) {
    return platform::Copy(menu, item, &MenuItem::text, text);
}

OSStatus DeleteMenuItem(MenuRef menu, MenuItemIndex item) {
    return platform::OnItem(menu, item, [&](MenuItem const&) {
        ControlNode* const popup = Find(menu);
        auto& items = popup->As<PopupMenu>()->items;
        items.erase(items.begin() + (item - 1));
        platform::MarkForFace(*popup);
    });
}

OSStatus EnableMenuItem(MenuRef menu, MenuItemIndex item) {
    return platform::SetEnabled(menu, item, true);
}

OSStatus DisableMenuItem(MenuRef menu, MenuItemIndex item) {
    return platform::SetEnabled(menu, item, false);
}

OSStatus DisableAllMenuItems(MenuRef menu) {
    for (MenuItemIndex item = CountMenuItems(menu); item > 0; --item) {
        platform::SetEnabled(menu, item, false);
    }
    return Find(menu) == nullptr ? paramErr : noErr;
}

bool IsMenuItemEnabled(MenuRef menu, MenuItemIndex item) {
    ControlNode* const popup = Find(menu);
    if (popup == nullptr) {
        return false;
    }
    bool const isMenuEnabled = popup->As<PopupMenu>()->isEnabled;
    MenuItem const* const found = platform::ItemAt(popup, item);
    return isMenuEnabled &&
           (item == platform::kWholeMenu || (found != nullptr && found->isEnabled));
}

OSStatus SetMenuItemHelp(MenuRef menu, MenuItemIndex item, CFStringRef text) {
    return platform::OnItem(menu, item, [&](MenuItem& found) {
        found.help = platform::CopyOf(text);
        platform::MarkForFace(*Find(menu));
    });
}

OSStatus CopyMenuItemHelp(MenuRef menu, MenuItemIndex item, CFStringRef* text) {
    return platform::Copy(menu, item, &MenuItem::help, text);
}
