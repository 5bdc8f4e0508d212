// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <utility>

#include "platform/UTF16.h"
#include "platform/internal/CFObjects.h"
#include "platform/internal/Desktop.h"
#include "platform/internal/Dispatch.h"
#include "platform/internal/Gestures.h"
#include "platform/internal/ListRows.h"

namespace platform {
namespace {

constexpr char32_t kEnterKey = 3;
constexpr std::int16_t kNoPart = 0;

// The modifier keys are held as long as the key is dealt with.
class HeldModifiers {
  public:
    explicit HeldModifiers(std::uint32_t modifiers)
        : mFormer(std::exchange(TheDesktop().modifiers, modifiers)) {}
    HeldModifiers(HeldModifiers const&) = delete;
    HeldModifiers& operator=(HeldModifiers const&) = delete;
    ~HeldModifiers() { TheDesktop().modifiers = mFormer; }

  private:
    std::uint32_t mFormer;
};

struct Key {
    char32_t character;
    std::uint32_t modifiers;
};

// The focus that can take a key; null where the window itself is all there is.
ControlNode* ReadyFocus(WindowNode& window) {
    ControlNode* const focus = FocusOf(window);
    return focus != nullptr && CanBeUsed(*focus) ? focus : nullptr;
}

TargetNode* KeyTarget(WindowRef window) {
    WindowNode* const node = Find(window);
    ControlNode* const focus = node == nullptr ? nullptr : ReadyFocus(*node);
    return focus == nullptr ? static_cast<TargetNode*>(node) : focus;
}

// The byte that stands for it in the application's encoding; 0 for none.
std::uint8_t ByteOf(std::u16string const& units) {
    auto const length = static_cast<CFIndex>(units.size());
    CFRef<CFStringRef> const text(CFStringCreateWithCharacters(nullptr, units.data(), length));
    std::uint8_t byte = 0;
    CFStringGetBytes(text, CFRangeMake(0, length), CFStringGetSystemEncoding(), 0, false, &byte, 1,
                     nullptr);
    return byte;
}

bool IsTakenAsText(TargetNode* target, Key const& key) {
    std::u16string const units = UnitsOf(key.character);
    return OwnEvent(kEventClassTextInput, kEventTextInputUnicodeForKeyEvent)
               .With(kEventParamTextInputSendText, typeUnicodeText, units.size() * sizeof(char16_t),
                     units.data())
               .With(kEventParamKeyModifiers, typeUInt32, key.modifiers)
               .SendTo(target) != eventNotHandledErr;
}

bool IsTakenAsRawKey(TargetNode* target, Key const& key) {
    std::u16string const units = UnitsOf(key.character);
    constexpr char32_t kLastKeyCode = 127;
    std::uint32_t const code = key.character <= kLastKeyCode ? key.character : 0;
    return OwnEvent(kEventClassKeyboard, kEventRawKeyDown)
               .With(kEventParamKeyMacCharCodes, typeChar, ByteOf(units))
               .With(kEventParamKeyUnicodes, typeUnicodeText, units.size() * sizeof(char16_t),
                     units.data())
               .With(kEventParamKeyCode, typeUInt32, code)
               .With(kEventParamKeyModifiers, typeUInt32, key.modifiers)
               .SendTo(target) != eventNotHandledErr;
}

// ---- What a key does to the control with the focus, where nobody took it ----

// Up and down: the next enabled item that way, once the press has had its say.
void StepItem(ControlNode& node, int step) {
    ControlRef const control = node.Ref();
    if (!Click(control, true)) {
        return;
    }
    ControlNode& now = *Find(control);
    int const count = ItemCount(now);
    for (int item = std::clamp(now.value, 0, count + 1) + step; item >= 1 && item <= count;
         item += step) {
        if (ItemState(now, static_cast<std::uint16_t>(item)) == InputResult::kDone) {
            ChooseValue(control, item);
            return;
        }
    }
}

void StepRow(ControlNode& node, int step) {
    ItemList const& list = *node.As<ItemList>();
    Items const rows = ListedRows(list);
    if (rows.empty()) {
        return;
    }
    auto const last = static_cast<std::ptrdiff_t>(rows.size()) - 1;
    std::ptrdiff_t next = step > 0 ? 0 : last;
    if (!list.selection.IsEmpty()) {
        auto const at = std::find(rows.begin(), rows.end(), list.selection.Last());
        next = std::clamp<std::ptrdiff_t>(at - rows.begin() + step, 0, last);
    }
    UserSelectedRows(node.Ref(), 1, &rows[static_cast<std::size_t>(next)]);
}

void OpenSelectedRow(ControlNode& node, bool open) {
    ItemList const& list = *node.As<ItemList>();
    if (!list.selection.IsEmpty()) {
        UserOpenedRow(node.Ref(), list.selection.Last(), open);
    }
}

struct KeyAction {
    OSType kind;
    char32_t key;
    void (*act)(ControlNode& node);
};
constexpr KeyAction kKeyActions[] = {
    {"push"_code, kSpaceKey, [](ControlNode& n) { Hit(n.Ref(), kNoPart); }},
    {"cbox"_code, kSpaceKey, [](ControlNode& n) { Press(n.Ref(), kNoPart, true); }},
    {"popb"_code, kSpaceKey, [](ControlNode& n) { Press(n.Ref(), kNoPart, true); }},
    {"popb"_code, kUpKey, [](ControlNode& n) { StepItem(n, -1); }},
    {"popb"_code, kDownKey, [](ControlNode& n) { StepItem(n, 1); }},
    {"rgrp"_code, kUpKey, [](ControlNode& n) { StepItem(n, -1); }},
    {"rgrp"_code, kLeftKey, [](ControlNode& n) { StepItem(n, -1); }},
    {"rgrp"_code, kDownKey, [](ControlNode& n) { StepItem(n, 1); }},
    {"rgrp"_code, kRightKey, [](ControlNode& n) { StepItem(n, 1); }},
    {"scrl"_code, kUpKey, [](ControlNode& n) { Press(n.Ref(), 20, true); }},
    {"scrl"_code, kDownKey, [](ControlNode& n) { Press(n.Ref(), 21, true); }},
    {"scrl"_code, kPageUpKey, [](ControlNode& n) { Press(n.Ref(), 22, true); }},
    {"scrl"_code, kPageDownKey, [](ControlNode& n) { Press(n.Ref(), 23, true); }},
    {"list"_code, kUpKey, [](ControlNode& n) { StepRow(n, -1); }},
    {"list"_code, kDownKey, [](ControlNode& n) { StepRow(n, 1); }},
    {"list"_code, kRightKey, [](ControlNode& n) { OpenSelectedRow(n, true); }},
    {"list"_code, kLeftKey, [](ControlNode& n) { OpenSelectedRow(n, false); }},
};

bool ActOnFocus(ControlNode& focus, Key const& key) {
    if (IsField(focus)) {
        return EditField(focus, key.character, key.modifiers);
    }
    for (KeyAction const& action : kKeyActions) {
        if (IsKind(focus, action.kind) && action.key == key.character) {
            action.act(focus);
            return true;
        }
    }
    return false;
}

// ---- What a key does to the window ----

void PressButton(ControlRef button) {
    if (Takes(Find(button)) == InputResult::kDone) {
        Hit(button, kNoPart);
    }
}

// The control before or behind the focus in the order of embedding that can have it, round the
// window; null for none.
ControlNode* NextFocus(WindowNode& window, bool backward) {
    ControlNode const* const focus = FocusOf(window);
    bool isBehind = focus == nullptr && !backward;
    ControlNode *first = nullptr, *last = nullptr, *found = nullptr;
    ForEachInBranch(*window.root, [&](ControlNode& node) {
        if (!node.isVisible || !node.isEnabled) {
            return Walk::kPast;
        }
        if (&node == focus) {
            found = backward ? last : nullptr;
            isBehind = !backward;
        } else if (node.traits->takesFocus && isBehind) {
            found = &node;
        }
        if (found != nullptr) {
            return Walk::kStop;
        }
        if (node.traits->takesFocus) {
            first = first == nullptr ? &node : first;
            last = &node;
        }
        return Walk::kInto;
    });
    return found != nullptr ? found : backward ? last : first;
}

void MoveFocus(WindowNode& window, bool backward) {
    if (ControlNode const* const next = NextFocus(window, backward); next != nullptr) {
        SetFocus(window, next->Ref());
    }
}

void ActOnWindow(WindowNode& window, Key const& key) {
    switch (key.character) {
        case kTabKey:
            MoveFocus(window, (key.modifiers & kShiftKey) != 0);
            break;
        case kReturnKey:
        case kEnterKey:
            PressButton(window.defaultButton);
            break;
        case kEscapeKey:
            PressButton(window.cancelButton);
            break;
        default:
            break;
    }
}

void SendKey(WindowRef window, Key const& key) {
    HeldModifiers const held(key.modifiers);
    // Each handler may have changed who is there to be asked.
    if (IsTakenAsText(KeyTarget(window), key) || IsTakenAsRawKey(KeyTarget(window), key)) {
        return;
    }
    WindowNode* const node = Find(window);
    if (Takes(node) != InputResult::kDone) {
        return;
    }
    ControlNode* const focus = ReadyFocus(*node);
    if (focus == nullptr || !ActOnFocus(*focus, key)) {
        ActOnWindow(*node, key);
    }
}

// The text that the focus holds; null where it takes none.
FieldText* FocusedText(WindowRef window) {
    WindowNode* const node = Find(window);
    ControlNode* const focus = Takes(node) != InputResult::kDone ? nullptr : ReadyFocus(*node);
    return focus == nullptr ? nullptr : focus->As<FieldText>();
}

}  // namespace
}  // namespace platform

using platform::Find;

InputResult UserPressedKey(WindowRef window, char32_t key, std::uint32_t modifiers) {
    InputResult const result = platform::Takes(Find(window));
    if (result != InputResult::kDone) {
        return result;
    }
    return platform::WithoutExceptions(InputResult::kRefused, [&] {
        platform::DispatchScope const scope;
        platform::SendKey(window, {key, modifiers});
        return InputResult::kDone;
    });
}

TypedResult UserTyped(WindowRef window, std::u16string_view text) {
    InputResult const result = platform::Takes(Find(window));
    if (result != InputResult::kDone) {
        return {result, 0};
    }
    std::int32_t taken = 0;
    platform::WithoutExceptions(false, [&] {
        platform::DispatchScope const scope;
        while (!text.empty()) {
            auto const* const before = platform::FocusedText(window);
            if (before == nullptr) {
                break;
            }
            ControlRef const focus = Find(window)->focus;
            std::uint32_t const revision = before->revision;
            std::size_t units = 0;
            char32_t const character = TakeCharacter(text, units);
            platform::SendKey(window, {character, 0});
            auto const* const after = platform::FindAs<platform::FieldText>(focus);
            taken += after != nullptr && after->revision != revision ? 1 : 0;
            text.remove_prefix(units);
        }
        return true;
    });
    return {taken == 0 ? InputResult::kRefused : InputResult::kDone, taken};
}
