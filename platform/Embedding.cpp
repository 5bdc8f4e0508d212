// SPDX-License-Identifier: Apache-2.0
#include <algorithm>
#include <limits>

#include "platform/internal/Desktop.h"

namespace platform {
namespace {

bool IsRoot(ControlNode const& node) {
    return node.window != nullptr && node.window->root == &node;
}

}  // namespace
}  // namespace platform

using platform::ControlNode;
using platform::Find;
using platform::Guarded;

OSStatus SetControlID(ControlRef control, ControlID const* id) {
    ControlNode* const node = Find(control);
    if (node == nullptr || id == nullptr) {
        return paramErr;
    }
    return Guarded([&]() -> OSStatus {
        platform::SetIdentifier(*node, *id);
        return noErr;
    });
}

OSStatus GetControlID(ControlRef control, ControlID* id) {
    if (id == nullptr) {
        return paramErr;
    }
    ControlNode const* const node = Find(control);
    *id = node == nullptr ? ControlID{0, 0} : node->id;
    return node == nullptr ? paramErr : noErr;
}

OSStatus GetControlByID(WindowRef window, ControlID const* id, ControlRef* control) {
    if (control == nullptr) {
        return paramErr;
    }
    *control = nullptr;
    platform::WindowNode const* const node = Find(window);
    if (node == nullptr || id == nullptr) {
        return paramErr;
    }
    ControlNode const* const found = node->index.WithID(*id);
    *control = found == nullptr ? nullptr : found->Ref();
    return found == nullptr ? errControlIDNotFound : noErr;
}

WindowRef GetControlOwner(ControlRef control) {
    ControlNode const* const node = Find(control);
    return node == nullptr || node->window == nullptr ? nullptr : node->window->Ref();
}

OSStatus GetControlBounds(ControlRef control, Rect* bounds) {
    if (bounds == nullptr) {
        return paramErr;
    }
    ControlNode const* const node = Find(control);
    *bounds = node == nullptr ? Rect{} : node->bounds;
    return node == nullptr ? paramErr : noErr;
}

OSStatus SetControlBounds(ControlRef control, Rect const* bounds) {
    ControlNode* const node = Find(control);
    if (node == nullptr || bounds == nullptr) {
        return paramErr;
    }
    return Guarded([&]() -> OSStatus {
        if (node->bounds != *bounds) {
            platform::SetBounds(*node, *bounds);
        }
        return noErr;
    });
}

OSStatus EmbedControl(ControlRef control, ControlRef container) {
    ControlNode* const node = Find(control);
    ControlNode* const target = Find(container);
    if (node == nullptr || target == nullptr || platform::IsRoot(*node)) {
        return paramErr;
    }
    if (platform::IsWithin(*target, *node)) {
        return errCantEmbedIntoSelf;
    }
    return Guarded([&]() -> OSStatus {
        platform::Embed(*node, *target);
        return noErr;
    });
}

OSStatus GetIndexedSubControl(ControlRef control, std::uint16_t index, ControlRef* subControl) {
    if (subControl == nullptr) {
        return paramErr;
    }
    *subControl = nullptr;
    ControlNode const* const node = Find(control);
    if (node == nullptr) {
        return paramErr;
    }
    if (index == 0 || index > node->embedded.size()) {
        return errControlIDNotFound;
    }
    *subControl = node->embedded[index - 1U]->Ref();
    return noErr;
}

OSStatus CountSubControls(ControlRef control, std::uint16_t* count) {
    if (count == nullptr) {
        return paramErr;
    }
    *count = 0;
    ControlNode const* const node = Find(control);
    if (node == nullptr) {
        return paramErr;
    }
    constexpr std::size_t kMost = std::numeric_limits<std::uint16_t>::max();
    *count = static_cast<std::uint16_t>(std::min(node->embedded.size(), kMost));
    return noErr;
}

OSStatus DisposeControl(ControlRef control) {
    ControlNode* const node = Find(control);
    if (node == nullptr || platform::IsRoot(*node)) {
        return paramErr;
    }
    platform::DeleteBranch(node);
    return noErr;
}
