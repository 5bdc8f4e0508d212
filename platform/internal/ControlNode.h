// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <cstdint>
#include <list>
#include <memory>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

#include "platform/CFRef.h"
#include "platform/Controls.h"
#include "platform/DataBrowser.h"
#include "platform/Events.h"
#include "platform/Menus.h"
#include "platform/Windows.h"
#include "platform/internal/CFRuntime.h"
#include "platform/internal/ControlIndex.h"
#include "platform/internal/HandleTable.h"

// The insides of windows and controls: one kind of node, with what its kind has besides as payload.

namespace platform {

struct WindowNode;

template <>
constexpr HandleKey kTagOf<WindowRef> = kWindowTag;
template <>
constexpr HandleKey kTagOf<CGrafPtr> = kPortTag;
template <>
constexpr HandleKey kTagOf<ControlRef> = kControlTag;
template <>
constexpr HandleKey kTagOf<MenuRef> = kMenuTag;
template <>
constexpr HandleKey kTagOf<EventTargetRef> = kEventTargetTag;
template <>
constexpr HandleKey kTagOf<EventHandlerRef> = kEventHandlerTag;

// ---- What events go to ----

struct HandlerRecord {
    HandleKey key = 0;
    HandleKey target = 0;
    EventHandlerUPP routine = nullptr;
    void* userData = nullptr;  // the installer's
    std::vector<EventTypeSpec> types;
    std::uint64_t serial = 0;  // rises from one installation to the next
    // A removed handler's record lives on while an event is on its way to it.
    bool isAlive = true;
};

struct TargetNode {
    HandleKey key = 0;
    bool isWindow = false;
    std::vector<std::shared_ptr<HandlerRecord>> handlers;  // oldest first
};

// ---- Controls ----

// Text that a user may edit, or only reads.
struct FieldText {
    std::u16string text;
    std::size_t selectionStart = 0;
    std::size_t selectionEnd = 0;
    bool isPassword = false;
    std::uint32_t revision = 0;  // how often the text was set
};

struct MenuItem {
    CFRef<CFStringRef> text;
    CFRef<CFStringRef> help;
    bool isEnabled = true;
};
struct PopupMenu {
    std::vector<MenuItem> items;
    bool isEnabled = true;
};

struct ListColumn {
    DataBrowserPropertyID code = 0;
    CFRef<CFStringRef> title;
    bool isFixed = false;
};
struct ListRow {
    DataBrowserItemID container = kDataBrowserNoItem;
    std::vector<DataBrowserItemID> children;
    bool isOpen = false;
};
// Rows in the order in which they were selected, each once.
class RowSelection {
  public:
    bool Add(DataBrowserItemID item);  // behind the others; whether it is new; throws
    void Remove(DataBrowserItemID item);
    template <typename Goes>
    void RemoveIf(Goes const& goes) {
        for (auto at = mOrder.begin(); at != mOrder.end();) {
            DataBrowserItemID const item = *at++;
            if (goes(item)) {
                Remove(item);
            }
        }
    }

    bool Contains(DataBrowserItemID item) const { return mPlaces.contains(item); }
    bool IsEmpty() const { return mOrder.empty(); }
    DataBrowserItemID First() const { return mOrder.front(); }
    DataBrowserItemID Last() const { return mOrder.back(); }

    RowSelection() = default;
    RowSelection(RowSelection&&) = default;
    RowSelection& operator=(RowSelection&&) = default;

  private:
    std::list<DataBrowserItemID> mOrder;
    std::unordered_map<DataBrowserItemID, std::list<DataBrowserItemID>::iterator> mPlaces;
};
struct ItemList {
    DataBrowserCallbacks callbacks = {};
    std::vector<ListColumn> columns;
    DataBrowserPropertyID disclosureColumn = 0;
    DataBrowserPropertyID sortColumn = 0;
    bool isDescending = false;
    bool isBeingSorted = false;
    // The list itself stands under kDataBrowserNoItem; its children are the top.
    std::unordered_map<DataBrowserItemID, ListRow> rows;
    RowSelection selection;
};

struct DrawnPane {
    ControlDrawProc draw = nullptr;
    CFRef<CFStringRef> picture;
};

using Payload = std::variant<std::monostate, FieldText, PopupMenu, ItemList, DrawnPane>;

struct KindTraits {
    OSType kind;
    bool takesFocus;
    bool isHit;         // released inside, a press makes a hit
    std::int16_t part;  // the whole control, in a hit
    Payload (*payload)();
};
KindTraits const* TraitsOf(OSType kind);  // null for an unknown kind

struct ControlProperty {
    OSType creator;
    OSType tag;
    std::vector<std::uint8_t> bytes;
};

struct ControlNode : TargetNode {
    ControlRef Ref() const { return MakeRef<ControlRef>(key); }
    template <typename Kind>
    Kind* As() {
        return std::get_if<Kind>(&payload);
    }

    KindTraits const* traits = nullptr;
    WindowNode* window = nullptr;        // null for a pane without one; not owned
    ControlNode* container = nullptr;    // not owned
    std::vector<ControlNode*> embedded;  // owned
    Payload payload;

    ControlID id = {0, 0};
    OSType command = 0;
    std::intptr_t reference = 0;
    std::vector<ControlProperty> properties;

    Rect bounds = {};
    CFRef<CFStringRef> title;  // null for none
    ControlFontStyleRec font = {
        kControlUseFontMask | kControlUseFaceMask | kControlUseSizeMask | kControlUseJustMask,
        kControlFontSystem, kSystemFontSize, 0, 0};
    std::int32_t value = 0;
    std::int32_t minimum = 0;
    std::int32_t maximum = 1;
    std::int16_t hilite = 0;
    bool isVisible = true;
    bool isEnabled = true;
    bool isActive = true;
    bool toggles = true;  // a check box by itself

    bool awaitsFace = false;  // stands in the list of what the face is to hear
    bool awaitsDrawing = false;
    bool isBeingDrawn = false;
};

struct WindowNode : TargetNode {
    WindowRef Ref() const { return MakeRef<WindowRef>(key); }

    WindowClass windowClass = kDocumentWindowClass;
    Rect content = {};
    CFRef<CFStringRef> name;
    CFRef<CFStringRef> title;
    WindowRef sheetParent = nullptr;
    bool isVisible = false;
    std::int32_t number = 0;
    ControlNode* root = nullptr;  // owned
    ControlRef focus = nullptr;
    ControlRef defaultButton = nullptr;
    ControlRef cancelButton = nullptr;
    bool awaitsFace = false;
    ControlIndex index;
};

// ---- Kinds ----

inline bool IsKind(ControlNode const& node, OSType kind) {
    return node.traits->kind == kind;
}
inline bool IsField(ControlNode const& node) {
    return IsKind(node, "edit"_code);
}
inline bool IsPane(ControlNode const& node) {
    return IsKind(node, "pane"_code);
}
// The radio buttons embedded in it are its items, from 1, hidden ones too.
inline bool IsRadioGroup(ControlNode const& node) {
    return IsKind(node, "rgrp"_code);
}

// ---- Finding: null for null and foreign references ----

TargetNode* FindTarget(HandleKey key);
WindowNode* Find(WindowRef window);
ControlNode* Find(ControlRef control);
TargetNode* Find(EventTargetRef target);
ControlNode* Find(MenuRef menu);  // the popup
WindowNode* Find(CGrafPtr port);
// The payload of a control of that kind.
template <typename Kind>
Kind* FindAs(ControlRef control) {
    ControlNode* const node = Find(control);
    return node == nullptr ? nullptr : node->As<Kind>();
}

// Counts a node that was looked at, for tests of what an action costs.
void CountVisit();

// ---- Life and place ----

// Both throw std::bad_alloc. The owner of a control is what it is embedded in, or its maker.
WindowNode* NewWindow(WindowClass windowClass, Rect const& content);
ControlNode* NewControl(KindTraits const& traits, Rect const& bounds, ControlNode* container);
void DeleteBranch(ControlNode* node);
void DeleteWindow(WindowNode* window);
// The next three throw std::bad_alloc and change nothing then.
// As the last one, also in another window: the branch goes along with its identifiers, and what of
// it had the focus of the old window or was a button of it is that no longer.
void Embed(ControlNode& node, ControlNode& container);
void SetIdentifier(ControlNode& node, ControlID id);
// What is embedded moves along.
void SetBounds(ControlNode& node, Rect const& bounds);

bool IsShown(ControlNode const& node);    // with what embeds it
bool CanBeUsed(ControlNode const& node);  // enabled, likewise
bool IsWithin(ControlNode const& node, ControlNode const& container);
// The control that has the window's focus, if it is still there and shown.
ControlNode* FocusOf(WindowNode& window);

// How a walk goes on: to what is embedded, past it, or nowhere.
enum class Walk { kInto, kPast, kStop };
// In the order of embedding, what embeds before what is embedded. Throws std::bad_alloc.
template <typename Visit>
void ForEachInBranch(ControlNode& node, Visit const& visit) {
    std::vector<ControlNode*> waiting = {&node};
    while (!waiting.empty()) {
        ControlNode* const next = waiting.back();
        waiting.pop_back();
        CountVisit();
        Walk const on = visit(*next);
        if (on == Walk::kStop) {
            return;
        }
        if (on == Walk::kInto) {
            waiting.insert(waiting.end(), next->embedded.rbegin(), next->embedded.rend());
        }
    }
}
// The whole of it, in that order.
std::vector<ControlNode*> Branch(ControlNode& node);

// ---- Changes ----

// The control looks different: the face hears of it, and it is drawn at the next idle pass.
void MarkChanged(ControlNode& node);
void MarkForFace(ControlNode& node);
void MarkForDrawing(ControlNode& node);
void MarkBranchForDrawing(ControlNode& node);
void MarkChanged(WindowNode& window);
bool SetValue(ControlNode& node, std::int32_t value);  // whether it changed
void SetFocus(WindowNode& window, ControlRef control);
void SetText(ControlNode& node, std::u16string text);  // of a node with text; throws
ControlEditTextSelectionRec SelectionOf(FieldText const& field);
// A password as as many U+2022.
std::u16string ShownText(FieldText const& field);

template <typename Work>
OSStatus Guarded(Work&& work) {
    return WithoutExceptions<OSStatus>(memFullErr, work);
}

}  // namespace platform
