// SPDX-License-Identifier: Apache-2.0
#include "platform/internal/ControlNode.h"

#include <algorithm>
#include <utility>

#include "platform/internal/Desktop.h"

namespace platform {
namespace {

template <typename Kind>
Payload Made() {
    return Kind{};
}

Payload MadeList() {
    ItemList list;
    list.rows.emplace(kDataBrowserNoItem, ListRow{});
    return list;
}

constexpr KindTraits kKinds[] = {
    // kind, takes focus, is hit, part, payload
    {"push"_code, true, true, 10, Made<std::monostate>},
    {"cbox"_code, true, true, 11, Made<std::monostate>},
    {"popb"_code, true, true, 0, Made<PopupMenu>},
    {"edit"_code, true, true, 0, Made<FieldText>},
    {"stxt"_code, false, false, 0, Made<FieldText>},
    {"scrl"_code, true, true, 0, Made<std::monostate>},
    {"list"_code, true, false, 0, MadeList},
    {"pane"_code, false, false, 0, Made<DrawnPane>},
    {"rgrp"_code, true, true, 0, Made<std::monostate>},
    {"rado"_code, false, false, 0, Made<std::monostate>},
    {"grup"_code, false, false, 0, Made<std::monostate>},
    {"sepa"_code, false, false, 0, Made<std::monostate>},
    {"chas"_code, false, false, 0, Made<std::monostate>},
};

template <typename List>
bool Append(List& list, typename List::value_type element) {
    return WithoutExceptions(false, [&] {
        list.push_back(element);
        return true;
    });
}

void ForgetTarget(TargetNode& target) {
    Desktop& desktop = TheDesktop();
    for (auto const& handler : target.handlers) {
        handler->isAlive = false;
        desktop.handlers.Remove(handler->key);
    }
    desktop.targets.Remove(target.key);
}

// Of what embeds it. What is taken away is mostly what was added last.
void TakeOut(ControlNode& node) {
    if (node.container != nullptr) {
        auto& siblings = node.container->embedded;
        auto const found = std::find(siblings.rbegin(), siblings.rend(), &node);
        siblings.erase(std::next(found).base());
        node.container = nullptr;
    }
}

// A button or the focus of the window that the control leaves is that no longer.
void LoseRoles(ControlNode const& node) {
    WindowNode* const window = node.window;
    if (window == nullptr) {
        return;
    }
    for (ControlRef WindowNode::*const role :
         {&WindowNode::focus, &WindowNode::defaultButton, &WindowNode::cancelButton}) {
        if (window->*role == node.Ref()) {
            window->*role = nullptr;
            MarkChanged(*window);
        }
    }
}

void LeaveWindow(ControlNode& node) {
    if (node.window != nullptr) {
        LoseRoles(node);
        node.window->index.Remove(node);
    }
}

void DeleteNode(ControlNode* node) {
    LeaveWindow(*node);
    ForgetTarget(*node);
    Append(TheDesktop().goneControls, node->Ref());
    DeleteObject(node);
}

}  // namespace

KindTraits const* TraitsOf(OSType kind) {
    auto const found = std::find_if(std::begin(kKinds), std::end(kKinds),
                                    [&](KindTraits const& traits) { return traits.kind == kind; });
    return found == std::end(kKinds) ? nullptr : found;
}

// ---- Life ----

ControlNode* NewControl(KindTraits const& traits, Rect const& bounds, ControlNode* container) {
    auto* const node = NewObject<ControlNode>();
    if (node == nullptr) {
        throw std::bad_alloc();
    }
    try {
        node->traits = &traits;
        node->payload = traits.payload();
        node->bounds = bounds;
        node->window = container == nullptr ? nullptr : container->window;
        if (container != nullptr) {
            ReserveOneMore(container->embedded);
        }
        if (node->window != nullptr) {
            node->window->index.Add(*node);
        }
        node->key = TheDesktop().targets.Add(node);
    } catch (...) {
        if (node->window != nullptr) {
            node->window->index.Remove(*node);
        }
        DeleteObject(node);
        throw;
    }
    if (container != nullptr) {
        container->embedded.push_back(node);
        node->container = container;
    }
    MarkChanged(*node);
    return node;
}

void DeleteBranch(ControlNode* node) {
    TakeOut(*node);
    // From the leaves up, without a recursion as deep as the tree.
    while (node != nullptr) {
        if (!node->embedded.empty()) {
            node = node->embedded.back();
            continue;
        }
        ControlNode* const container = node->container;
        if (container != nullptr) {
            container->embedded.pop_back();
        }
        DeleteNode(node);
        node = container;
    }
}

WindowNode* NewWindow(WindowClass windowClass, Rect const& content) {
    auto* const window = NewObject<WindowNode>();
    if (window == nullptr) {
        throw std::bad_alloc();
    }
    try {
        Desktop& desktop = TheDesktop();
        ReserveOneMore(desktop.windows);
        window->isWindow = true;
        window->windowClass = windowClass;
        window->content = content;
        Rect const whole = {0, 0, ClampedCoordinate(HeightOf(content)),
                            ClampedCoordinate(WidthOf(content))};
        window->root = NewControl(*TraitsOf("pane"_code), whole, nullptr);
        window->root->window = window;
        window->key = desktop.targets.Add(window);
        desktop.windows.push_back(window);
    } catch (...) {
        if (window->root != nullptr) {
            DeleteBranch(window->root);
        }
        DeleteObject(window);
        throw;
    }
    MarkChanged(*window);
    return window;
}

void DeleteWindow(WindowNode* window) {
    Desktop& desktop = TheDesktop();
    if (window->root != nullptr) {
        DeleteBranch(window->root);
    }
    ForgetTarget(*window);
    std::erase(desktop.windows, window);
    Append(desktop.goneWindows, window->Ref());
    DeleteObject(window);
}

// ---- Place ----

std::vector<ControlNode*> Branch(ControlNode& node) {
    std::vector<ControlNode*> branch;
    ForEachInBranch(node, [&](ControlNode& part) {
        branch.push_back(&part);
        return Walk::kInto;
    });
    return branch;
}

void Embed(ControlNode& node, ControlNode& container) {
    std::vector<ControlNode*> const branch = Branch(node);
    WindowNode* const window = container.window;
    bool const isLeaving = node.window != window;
    ControlIndex entries;
    for (std::size_t at = 0; isLeaving && window != nullptr && at < branch.size(); ++at) {
        entries.Add(*branch[at]);
    }
    ReserveOneMore(container.embedded);
    // From here on nothing fails: half a branch would be lost.
    TakeOut(node);
    container.embedded.push_back(&node);
    node.container = &container;
    // From the back, where the old window's index looks first.
    for (auto part = branch.rbegin(); isLeaving && part != branch.rend(); ++part) {
        LeaveWindow(**part);
        (*part)->window = window;
    }
    if (window != nullptr) {
        window->index.Join(entries);
    }
    MarkForFace(node);
    for (ControlNode* const part : branch) {
        MarkForDrawing(*part);
    }
}

void SetIdentifier(ControlNode& node, ControlID id) {
    if (node.window != nullptr) {
        node.window->index.Rename(node, id);
    }
    node.id = id;
    MarkForFace(node);
}

void SetBounds(ControlNode& node, Rect const& bounds) {
    int const dx = bounds.left - node.bounds.left;
    int const dy = bounds.top - node.bounds.top;
    auto const place = [](ControlNode& part, Rect const& next) {
        if (part.window != nullptr && IsPane(part)) {
            part.window->index.Replace(part, next);
        }
        part.bounds = next;
        MarkChanged(part);
    };
    bool const moves = dx != 0 || dy != 0;
    for (ControlNode* const part : moves ? Branch(node) : std::vector{&node}) {
        Rect next = part->bounds;
        OffsetRect(&next, dx, dy);
        place(*part, part == &node ? bounds : next);
    }
}

bool IsShown(ControlNode const& node) {
    for (ControlNode const* at = &node; at != nullptr; at = at->container) {
        CountVisit();
        if (!at->isVisible) {
            return false;
        }
    }
    return true;
}

bool CanBeUsed(ControlNode const& node) {
    for (ControlNode const* at = &node; at != nullptr; at = at->container) {
        CountVisit();
        if (!at->isEnabled) {
            return false;
        }
    }
    return true;
}

bool IsWithin(ControlNode const& node, ControlNode const& container) {
    ControlNode const* at = &node;
    while (at != nullptr && at != &container) {
        CountVisit();
        at = at->container;
    }
    return at != nullptr;
}

ControlNode* FocusOf(WindowNode& window) {
    ControlNode* const focus = Find(window.focus);
    return focus != nullptr && focus->window == &window && IsShown(*focus) ? focus : nullptr;
}

// ---- Changes ----

void MarkForFace(ControlNode& node) {
    if (!node.awaitsFace) {
        node.awaitsFace = Append(TheDesktop().changedControls, node.Ref());
    }
}

// What a control's own drawing changes about it draws it no second time.
void MarkForDrawing(ControlNode& node) {
    if (!node.awaitsDrawing && !node.isBeingDrawn) {
        node.awaitsDrawing = Append(TheDesktop().undrawn, node.Ref());
    }
}

void MarkChanged(ControlNode& node) {
    MarkForFace(node);
    MarkForDrawing(node);
}

void MarkBranchForDrawing(ControlNode& node) {
    Guarded([&]() -> OSStatus {
        ForEachInBranch(node, [](ControlNode& part) {
            MarkForDrawing(part);
            return Walk::kInto;
        });
        return noErr;
    });
}

void MarkChanged(WindowNode& window) {
    if (!window.awaitsFace) {
        window.awaitsFace = Append(TheDesktop().changedWindows, window.Ref());
    }
}

bool SetValue(ControlNode& node, std::int32_t value) {
    if (node.maximum >= node.minimum) {
        value = std::clamp(value, node.minimum, node.maximum);
    }
    if (value == node.value) {
        return false;
    }
    node.value = value;
    MarkChanged(node);
    return true;
}

void SetFocus(WindowNode& window, ControlRef control) {
    if (window.focus != control) {
        window.focus = control;
        MarkChanged(window);
    }
}

void SetText(ControlNode& node, std::u16string text) {
    FieldText& field = std::get<FieldText>(node.payload);
    field.text = std::move(text);
    field.selectionStart = field.selectionEnd = field.text.size();
    ++field.revision;
    MarkChanged(node);
}

std::u16string ShownText(FieldText const& field) {
    constexpr char16_t kBullet = u'\u2022';
    return field.isPassword ? std::u16string(field.text.size(), kBullet) : field.text;
}

}  // namespace platform
