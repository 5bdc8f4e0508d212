// SPDX-License-Identifier: Apache-2.0
#include "platform/Windows.h"

#include <algorithm>
#include <utility>

#include "platform/internal/CFObjects.h"
#include "platform/internal/Desktop.h"

namespace platform {
namespace {

void BringToFront(WindowNode& window) {
    auto& windows = TheDesktop().windows;
    auto const at = std::find(windows.begin(), windows.end(), &window);
    std::rotate(windows.begin(), at, at + 1);
    MarkChanged(window);
}

void Show(WindowNode& window) {
    Desktop& desktop = TheDesktop();
    BringToFront(window);
    if (window.isVisible) {
        return;
    }
    window.isVisible = true;
    if (window.number == 0) {
        window.number = ++desktop.lastWindowNumber;
    }
    MarkBranchForDrawing(*window.root);
}

void Hide(WindowNode& window) {
    if (window.isVisible) {
        window.isVisible = false;
        MarkChanged(window);
    }
}

// Runs `work` on a living window.
template <typename Work>
OSStatus OnWindow(WindowRef window, Work&& work) {
    WindowNode* const node = Find(window);
    if (node == nullptr) {
        return paramErr;
    }
    return Guarded([&]() -> OSStatus {
        work(*node);
        return noErr;
    });
}

// Whoever asks: a loop inside of it has to end first.
bool HasEnded(std::uint64_t number) {
    ModalLoop const& innermost = TheDesktop().loops.back();
    return innermost.number == number && (innermost.isQuit || Find(innermost.window) == nullptr);
}

void MarkModalChange(WindowRef window) {
    if (WindowNode* const node = Find(window); node != nullptr) {
        MarkChanged(*node);
    }
}

// A dialog that puts the focus nowhere itself answers to the keys through its default button.
void GiveFirstFocus(WindowNode& window) {
    ControlNode const* const button = Find(window.defaultButton);
    if (FocusOf(window) == nullptr && button != nullptr && IsShown(*button)) {
        SetFocus(window, window.defaultButton);
    }
}

// A loop is known as long as it runs, however it is left.
class ModalLoopScope {
  public:
    explicit ModalLoopScope(WindowRef window) : mNumber(TheDesktop().nextLoopNumber++) {
        TheDesktop().loops.push_back({window, mNumber, false});
    }
    ModalLoopScope(ModalLoopScope const&) = delete;
    ModalLoopScope& operator=(ModalLoopScope const&) = delete;
    ~ModalLoopScope() {
        std::erase_if(TheDesktop().loops,
                      [this](ModalLoop const& loop) { return loop.number == mNumber; });
    }
    std::uint64_t Number() const { return mNumber; }

  private:
    std::uint64_t mNumber;
};

// Whether the loop was ended, and not given up.
bool RunModalLoop(WindowRef window) {
    ModalLoopScope const loop(window);
    GiveFirstFocus(*Find(window));
    MarkModalChange(window);
    NestedLoopScope const scope;
    return TheDesktop().driver.load()->RunUntil(
        [number = loop.Number()] { return HasEnded(number); });
}

// The button has to be one of the window's.
OSStatus SetButton(WindowRef window, ControlRef button, ControlRef WindowNode::*field) {
    WindowNode* const node = Find(window);
    ControlNode const* const control = Find(button);
    if (node == nullptr || (button != nullptr && (control == nullptr || control->window != node))) {
        return paramErr;
    }
    node->*field = button;
    MarkChanged(*node);
    return noErr;
}

}  // namespace

}  // namespace platform

using platform::Find;
using platform::WindowNode;

OSStatus DisposeWindow(WindowRef window) {
    WindowNode* const node = Find(window);
    if (node == nullptr) {
        return paramErr;
    }
    platform::DeleteWindow(node);
    return noErr;
}

OSStatus GetWindowClass(WindowRef window, WindowClass* windowClass) {
    if (windowClass == nullptr) {
        return paramErr;
    }
    WindowNode const* const node = Find(window);
    *windowClass = node == nullptr ? 0 : node->windowClass;
    return node == nullptr ? paramErr : noErr;
}

OSStatus GetWindowBounds(WindowRef window, std::uint16_t region, Rect* bounds) {
    if (bounds == nullptr) {
        return paramErr;
    }
    *bounds = Rect{};
    WindowNode const* const node = Find(window);
    if (node == nullptr || region != kWindowContentRgn) {
        return paramErr;
    }
    *bounds = node->content;
    return noErr;
}

void MoveWindow(WindowRef window, std::int16_t left, std::int16_t top, bool bringToFront) {
    platform::OnWindow(window, [&](WindowNode& node) {
        OffsetRect(&node.content, left - node.content.left, top - node.content.top);
        platform::MarkChanged(node);
        if (bringToFront) {
            platform::BringToFront(node);
        }
    });
}

OSStatus SetWindowTitleWithCFString(WindowRef window, CFStringRef title) {
    return platform::OnWindow(window, [&](WindowNode& node) {
        node.title = platform::CopyOf(title);
        platform::MarkChanged(node);
    });
}

OSStatus CopyWindowTitleAsCFString(WindowRef window, CFStringRef* title) {
    if (title == nullptr) {
        return paramErr;
    }
    *title = nullptr;
    return platform::OnWindow(
        window, [&](WindowNode const& node) { *title = CFRef<CFStringRef>(node.title).Release(); });
}

OSStatus SetWindowName(WindowRef window, CFStringRef name) {
    return platform::OnWindow(window,
                              [&](WindowNode& node) { node.name = platform::CopyOf(name); });
}

// ---- Showing ----

OSStatus ShowWindow(WindowRef window) {
    return platform::OnWindow(window, platform::Show);
}

OSStatus HideWindow(WindowRef window) {
    return platform::OnWindow(window, platform::Hide);
}

bool IsWindowVisible(WindowRef window) {
    WindowNode const* const node = Find(window);
    return node != nullptr && node->isVisible;
}

OSStatus SelectWindow(WindowRef window) {
    return platform::OnWindow(window, platform::BringToFront);
}

OSStatus ShowSheetWindow(WindowRef sheet, WindowRef parent) {
    WindowNode* const node = Find(sheet);
    if (node == nullptr || sheet == parent || Find(parent) == nullptr ||
        !IsSheetClass(node->windowClass)) {
        return paramErr;
    }
    node->sheetParent = parent;
    return ShowWindow(sheet);
}

OSStatus HideSheetWindow(WindowRef sheet) {
    WindowNode* const node = Find(sheet);
    if (node == nullptr || !IsSheetClass(node->windowClass)) {
        return paramErr;
    }
    node->sheetParent = nullptr;
    return HideWindow(sheet);
}

OSStatus GetSheetWindowParent(WindowRef sheet, WindowRef* parent) {
    if (parent == nullptr) {
        return paramErr;
    }
    WindowNode const* const node = Find(sheet);
    *parent = nullptr;
    if (node == nullptr) {
        return paramErr;
    }
    *parent = Find(node->sheetParent) == nullptr ? nullptr : node->sheetParent;
    return *parent == nullptr ? errInvalidWindowRef : noErr;
}

// ---- Modal loops ----

OSStatus RunAppModalLoopForWindow(WindowRef window) {
    if (Find(window) == nullptr) {
        return paramErr;
    }
    OSStatus const status = platform::Guarded(
        [&]() -> OSStatus { return platform::RunModalLoop(window) ? noErr : userCanceledErr; });
    platform::MarkModalChange(window);
    return status;
}

OSStatus QuitAppModalLoopForWindow(WindowRef window) {
    auto& loops = platform::TheDesktop().loops;
    auto const found = std::find_if(loops.rbegin(), loops.rend(), [&](auto const& loop) {
        return loop.window == window && !loop.isQuit;
    });
    if (Find(window) == nullptr || found == loops.rend()) {
        return paramErr;
    }
    found->isQuit = true;
    platform::Wake(GetCurrentEventTime());
    return noErr;
}

// ---- Focus ----

OSStatus SetKeyboardFocus(WindowRef window, ControlRef control, ControlFocusPart part) {
    WindowNode* const node = Find(window);
    platform::ControlNode* const target = Find(control);
    if (node == nullptr || target == nullptr) {
        return paramErr;
    }
    if (target->window != node || !target->traits->takesFocus || !platform::IsShown(*target)) {
        return errCouldntSetFocus;
    }
    if (part == kControlFocusNoPart) {
        return node->focus == control ? ClearKeyboardFocus(window) : noErr;
    }
    platform::SetFocus(*node, control);
    if (auto* const field = target->As<platform::FieldText>(); field != nullptr) {
        field->selectionStart = 0;
        field->selectionEnd = field->text.size();
        platform::MarkForFace(*target);
    }
    return noErr;
}

OSStatus GetKeyboardFocus(WindowRef window, ControlRef* control) {
    if (control == nullptr) {
        return paramErr;
    }
    *control = nullptr;
    return platform::OnWindow(window, [&](WindowNode& node) {
        platform::ControlNode const* const focus = platform::FocusOf(node);
        *control = focus == nullptr ? nullptr : focus->Ref();
    });
}

OSStatus ClearKeyboardFocus(WindowRef window) {
    return platform::OnWindow(window, [](WindowNode& node) { platform::SetFocus(node, nullptr); });
}

OSStatus SetWindowDefaultButton(WindowRef window, ControlRef button) {
    return platform::SetButton(window, button, &WindowNode::defaultButton);
}

OSStatus SetWindowCancelButton(WindowRef window, ControlRef button) {
    return platform::SetButton(window, button, &WindowNode::cancelButton);
}

// ---- Root and port ----

OSStatus GetRootControl(WindowRef window, ControlRef* root) {
    if (root == nullptr) {
        return paramErr;
    }
    *root = nullptr;
    return platform::OnWindow(window, [&](WindowNode const& node) { *root = node.root->Ref(); });
}

OSStatus CreateRootControl(WindowRef window, ControlRef* root) {
    return GetRootControl(window, root);
}

CGrafPtr GetWindowPort(WindowRef window) {
    WindowNode const* const node = Find(window);
    return node == nullptr ? nullptr : platform::MakeRef<CGrafPtr>(node->key);
}

// ---- What a host sets up ----

WindowRef CreateHostWindow(Rect const& content, WindowRef sheetParent) {
    return platform::WithoutExceptions<WindowRef>(nullptr, [&] {
        WindowNode* const window = platform::NewWindow(
            sheetParent == nullptr ? kDocumentWindowClass : kSheetWindowClass, content);
        window->sheetParent = sheetParent;
        return window->Ref();
    });
}

void DisposeHostWindow(WindowRef window) {
    DisposeWindow(window);
}
