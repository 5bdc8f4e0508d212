// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/Gestures.h"

#include <algorithm>
#include <tuple>
#include <utility>

#include "platform/Menus.h"
#include "platform/internal/Desktop.h"
#include "platform/internal/Dispatch.h"
#include "platform/internal/ListRows.h"

namespace platform {
namespace {

// The gesture that TrackMouseLocation answers from, for as long as its click is under way.
class GestureScope {
  public:
    explicit GestureScope(Gesture const& gesture)
        : mFormer(std::exchange(TheDesktop().gesture, &gesture)) {}
    GestureScope(GestureScope const&) = delete;
    GestureScope& operator=(GestureScope const&) = delete;
    ~GestureScope() { TheDesktop().gesture = mFormer; }

  private:
    Gesture const* mFormer;
};

// A check box takes its other value.
void Toggle(ControlRef control) {
    ControlNode* const node = Find(control);
    if (node != nullptr && IsKind(*node, "cbox"_code) && node->toggles &&
        SetValue(*node, node->value == 0 ? 1 : 0)) {
        SendControlEvent(control, kEventControlValueFieldChanged);
    }
}

// Runs `work`, which answers with a result, as one gesture.
template <typename Work>
InputResult Gestured(Work&& work) {
    return WithoutExceptions(InputResult::kRefused, [&] {
        DispatchScope const scope;
        return work();
    });
}

// The list if it takes input, else null and why.
ItemList* ListTaking(ControlRef list, InputResult& result) {
    ControlNode* const node = Find(list);
    ItemList* const found = node == nullptr ? nullptr : node->As<ItemList>();
    result = found == nullptr ? InputResult::kMissing : Takes(node);
    return result == InputResult::kDone ? found : nullptr;
}

// Which place of its group a radio button has.
std::uint16_t PlaceInGroup(ControlNode const& button) {
    auto const& buttons = button.container->embedded;
    auto const at = std::find(buttons.begin(), buttons.end(), &button);
    return static_cast<std::uint16_t>(at - buttons.begin() + 1);
}

bool IsRadioButton(ControlNode const& node) {
    return IsKind(node, "rado"_code) && node.container != nullptr && IsRadioGroup(*node.container);
}

}  // namespace

InputResult Takes(WindowNode const* window) {
    if (window == nullptr) {
        return InputResult::kMissing;
    }
    if (!window->isVisible) {
        return InputResult::kHidden;
    }
    auto const& loops = TheDesktop().loops;
    return loops.empty() || loops.back().window == window->Ref() ? InputResult::kDone
                                                                 : InputResult::kBlocked;
}

InputResult Takes(ControlNode const* node) {
    if (node == nullptr || node->window == nullptr) {
        return InputResult::kMissing;
    }
    InputResult const ofWindow = Takes(node->window);
    if (ofWindow == InputResult::kHidden || !IsShown(*node)) {
        return InputResult::kHidden;
    }
    if (ofWindow != InputResult::kDone) {
        return ofWindow;
    }
    return CanBeUsed(*node) ? InputResult::kDone : InputResult::kDisabled;
}

bool Click(ControlRef control, bool releasedInside) {
    Gesture const gesture = {control, releasedInside};
    GestureScope const scope(gesture);
    return SendControlEvent(control, kEventControlClick) == eventNotHandledErr &&
           Takes(Find(control)) == InputResult::kDone;
}

void Hit(ControlRef control, std::int16_t part) {
    ControlNode const* node = Find(control);
    if (node == nullptr) {
        return;
    }
    OSStatus const status =
        SendControlEvent(control, kEventControlHit, part == 0 ? node->traits->part : part);
    node = Find(control);
    if (status == eventNotHandledErr && node != nullptr && node->command != 0) {
        SendCommand(Find(GetControlEventTarget(control)), node->command);
    }
}

void Press(ControlRef control, std::int16_t part, bool releasedInside) {
    if (!Click(control, releasedInside)) {
        return;
    }
    ControlNode const* const node = Find(control);
    if (IsField(*node)) {
        SetFocus(*node->window, control);
    }
    if (!releasedInside || !node->traits->isHit || IsKind(*node, "popb"_code)) {
        return;
    }
    Toggle(control);
    Hit(control, part);
}

void ChooseValue(ControlRef control, std::int32_t value) {
    ControlNode* const node = Find(control);
    if (node != nullptr && SetValue(*node, value)) {
        SendControlEvent(control, kEventControlValueFieldChanged);
    }
    Hit(control, 0);
}

std::uint16_t ItemCount(ControlNode& node) {
    return IsRadioGroup(node) ? static_cast<std::uint16_t>(node.embedded.size())
                              : CountMenuItems(MakeRef<MenuRef>(node.key));
}

InputResult ItemState(ControlNode& node, std::uint16_t item) {
    if (item == 0 || item > ItemCount(node)) {
        return InputResult::kMissing;
    }
    if (IsRadioGroup(node)) {
        ControlNode const& button = *node.embedded[item - 1U];
        if (!button.isVisible) {
            return InputResult::kHidden;
        }
        return button.isEnabled ? InputResult::kDone : InputResult::kRefused;
    }
    return IsMenuItemEnabled(MakeRef<MenuRef>(node.key), item) ? InputResult::kDone
                                                               : InputResult::kRefused;
}

}  // namespace platform

using platform::ControlNode;
using platform::Find;
using platform::Gestured;
using platform::Takes;
using platform::WindowNode;

InputResult UserPressed(ControlRef control, std::int16_t part, bool releasedInside) {
    return Gestured([&] {
        ControlNode const* const node = Find(control);
        InputResult const result = Takes(node);
        if (result != InputResult::kDone) {
            return result;
        }
        if (platform::IsRadioButton(*node) && releasedInside) {
            return UserChose(node->container->Ref(), platform::PlaceInGroup(*node));
        }
        platform::Press(control, part, releasedInside);
        return InputResult::kDone;
    });
}

InputResult UserChose(ControlRef control, std::uint16_t item) {
    return Gestured([&] {
        ControlNode* const node = Find(control);
        bool const isGroup = node != nullptr && platform::IsRadioGroup(*node);
        if (node == nullptr || !(isGroup || platform::IsKind(*node, "popb"_code))) {
            return InputResult::kMissing;
        }
        InputResult result = Takes(node);
        if (result == InputResult::kDone) {
            result = platform::ItemState(*node, item);
        }
        if (result == InputResult::kDone && (!isGroup || platform::Click(control, true))) {
            platform::ChooseValue(control, item);
        }
        return result;
    });
}

InputResult UserPicked(ControlRef control, std::uint16_t item) {
    return Gestured([&] {
        ControlNode* const node = Find(control);
        if (node == nullptr || !platform::IsKind(*node, "popb"_code)) {
            return UserChose(control, item);
        }
        InputResult const result = Takes(node);
        if (result != InputResult::kDone) {
            return result;
        }
        if (platform::ItemState(*node, item) == InputResult::kMissing) {
            return InputResult::kMissing;
        }
        // The press has been sent by now, and may have taken the item away.
        bool const isChosen =
            platform::Click(control, true) && UserChose(control, item) == InputResult::kDone;
        return isChosen ? InputResult::kDone : InputResult::kRefused;
    });
}

InputResult UserFocused(ControlRef control) {
    return Gestured([&] {
        ControlNode const* const node = Find(control);
        if (node != nullptr && !node->traits->takesFocus) {
            return InputResult::kMissing;
        }
        InputResult const result = Takes(node);
        if (result == InputResult::kDone) {
            platform::SetFocus(*node->window, control);
        }
        return result;
    });
}

InputResult UserSelectedText(ControlRef field, std::int32_t from, std::int32_t to) {
    return Gestured([&] {
        ControlNode* const node = Find(field);
        if (node != nullptr && !platform::IsField(*node)) {
            return InputResult::kMissing;
        }
        InputResult const result = Takes(node);
        if (result != InputResult::kDone) {
            return result;
        }
        auto& text = *node->As<platform::FieldText>();
        std::tie(text.selectionStart, text.selectionEnd) =
            std::minmax({platform::PlaceInText(text, from), platform::PlaceInText(text, to)});
        platform::SetFocus(*node->window, field);
        platform::MarkForFace(*node);
        return InputResult::kDone;
    });
}

InputResult UserSelectedRows(ControlRef list, std::uint32_t count, DataBrowserItemID const* items) {
    return Gestured([&] {
        InputResult result{};
        platform::ItemList* rows = platform::ListTaking(list, result);
        if (rows == nullptr) {
            return result;
        }
        platform::RowSelection selection;
        platform::Items added;
        for (std::uint32_t at = 0; items != nullptr && at < count; ++at) {
            if (!platform::IsListed(*rows, items[at])) {
                return InputResult::kMissing;
            }
            if (selection.Add(items[at]) && !rows->selection.Contains(items[at])) {
                added.push_back(items[at]);
            }
        }
        rows->selection = std::move(selection);
        platform::MarkChanged(*Find(list));
        for (DataBrowserItemID const item : added) {
            if (IsDataBrowserItemSelected(list, item)) {
                platform::Notify(list, item, kDataBrowserItemSelected);
            }
        }
        return InputResult::kDone;
    });
}

InputResult UserOpenedRow(ControlRef list, DataBrowserItemID item, bool open) {
    return Gestured([&] {
        InputResult result{};
        platform::ItemList* rows = platform::ListTaking(list, result);
        if (rows == nullptr) {
            return result;
        }
        if (!platform::IsListed(*rows, item) || !platform::IsContainer(list, item)) {
            return InputResult::kMissing;
        }
        // The owner was asked and may have changed the list.
        rows = platform::ListTaking(list, result);
        if (rows == nullptr || !platform::IsListed(*rows, item)) {
            return InputResult::kMissing;
        }
        if (std::exchange(rows->rows.at(item).isOpen, open) != open) {
            platform::DropUnlisted(*rows);
            platform::MarkChanged(*Find(list));
            if (open) {
                platform::Notify(list, item, kDataBrowserContainerOpened);
            }
        }
        return InputResult::kDone;
    });
}

InputResult UserSorted(ControlRef list, DataBrowserPropertyID column) {
    return Gestured([&] {
        InputResult result{};
        platform::ItemList* const rows = platform::ListTaking(list, result);
        if (rows == nullptr) {
            return result;
        }
        auto const found =
            std::find_if(rows->columns.begin(), rows->columns.end(),
                         [&](platform::ListColumn const& row) { return row.code == column; });
        if (found == rows->columns.end()) {
            return InputResult::kMissing;
        }
        if (found->isFixed) {
            return InputResult::kRefused;
        }
        rows->isDescending = rows->sortColumn == column && !rows->isDescending;
        rows->sortColumn = column;
        platform::MarkChanged(*Find(list));
        platform::SortRows(list, kDataBrowserNoItem);
        return InputResult::kDone;
    });
}

InputResult UserClosedWindow(WindowRef window) {
    return Gestured([&] {
        WindowNode const* const node = Find(window);
        InputResult result = Takes(node);
        if (result == InputResult::kDone) {
            result = Takes(Find(node->cancelButton));
        }
        if (result == InputResult::kDone) {
            platform::Hit(node->cancelButton, 0);
        }
        return result;
    });
}

InputResult UserSentCommand(WindowRef window, OSType command) {
    return Gestured([&] {
        WindowNode* const node = Find(window);
        InputResult const result = Takes(node);
        if (result == InputResult::kDone) {
            platform::SendCommand(node, command);
        }
        return result;
    });
}
