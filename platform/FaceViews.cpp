// SPDX-License-Identifier: Apache-2.0
#include <algorithm>

#include "platform/Face.h"
#include "platform/internal/CFObjects.h"
#include "platform/internal/Desktop.h"
#include "platform/internal/ListRows.h"

namespace platform {
namespace {

CFRef<CFStringRef> StringOf(std::u16string const& text) {
    CFRef<CFStringRef> string(
        CFStringCreateWithCharacters(nullptr, text.data(), static_cast<CFIndex>(text.size())));
    if (!string) {
        throw std::bad_alloc();
    }
    return string;
}

// A radio button says nothing of why it can't be pressed.
std::vector<ItemView> ItemsOf(ControlNode& node) {
    std::vector<ItemView> items;
    std::uint16_t number = 0;
    if (auto const* const menu = node.As<PopupMenu>(); menu != nullptr) {
        for (MenuItem const& item : menu->items) {
            items.push_back({++number, item.text, item.isEnabled && menu->isEnabled, item.help});
        }
    }
    if (IsRadioGroup(node)) {
        for (ControlNode const* const button : node.embedded) {
            ++number;
            if (button->isVisible) {
                items.push_back({number, button->title, button->isEnabled, {}});
            }
        }
    }
    return items;
}

ControlView ViewOf(ControlNode& node) {
    ControlView view;
    view.control = node.Ref();
    view.container = node.container == nullptr ? nullptr : node.container->Ref();
    view.kind = node.traits->kind;
    view.id = node.id;
    view.command = node.command;
    view.title = node.title;
    if (auto const* const field = node.As<FieldText>(); field != nullptr) {
        view.text = StringOf(ShownText(*field));
        view.selection = SelectionOf(*field);
        view.isPassword = field->isPassword;
    }
    view.value = node.value;
    view.minimum = node.minimum;
    view.maximum = node.maximum;
    view.isEnabled = CanBeUsed(node);
    view.isVisible = IsShown(node);
    view.isActive = node.isActive;
    view.hilite = node.hilite;
    view.bounds = node.bounds;
    view.font = node.font;
    view.items = ItemsOf(node);
    if (auto const* const pane = node.As<DrawnPane>(); pane != nullptr) {
        view.picture = pane->picture;
    }
    return view;
}

// A button of the window that is still there.
ControlRef Living(WindowNode const& window, ControlRef control) {
    ControlNode const* const node = Find(control);
    return node != nullptr && node->window == &window ? control : nullptr;
}

WindowView ViewOf(WindowNode& window) {
    WindowView view;
    view.window = window.Ref();
    view.number = window.number;
    view.name = window.name;
    view.title = window.title;
    view.isSheet = IsSheetClass(window.windowClass);
    view.parent = Find(window.sheetParent) == nullptr ? nullptr : window.sheetParent;
    view.isVisible = window.isVisible;
    auto const& loops = TheDesktop().loops;
    view.isModal = std::any_of(loops.begin(), loops.end(),
                               [&](ModalLoop const& loop) { return loop.window == view.window; });
    view.bounds = window.content;
    view.root = window.root->Ref();
    ControlNode const* const focus = FocusOf(window);
    view.focus = focus == nullptr ? nullptr : focus->Ref();
    view.defaultButton = Living(window, window.defaultButton);
    view.cancelButton = Living(window, window.cancelButton);
    return view;
}

// All that can be told without asking the list's owner.
ListView FrameOf(ItemList const& list) {
    ListView view;
    for (ListColumn const& column : list.columns) {
        view.columns.push_back(
            {column.code, column.title, column.code == list.disclosureColumn, !column.isFixed});
    }
    view.sortColumn = list.sortColumn;
    view.isDescending = list.isDescending;
    for (DataBrowserItemID const item : ListedRows(list)) {
        ListRow const& row = list.rows.at(item);
        view.rows.push_back(
            {item, row.container, false, row.isOpen, list.selection.Contains(item), {}});
    }
    return view;
}

template <typename Node, typename View>
bool Describe(Node* node, View* view) {
    if (view == nullptr) {
        return false;
    }
    *view = {};
    return node != nullptr && WithoutExceptions(false, [&] {
               *view = ViewOf(*node);
               return true;
           });
}

}  // namespace
}  // namespace platform

using platform::ControlNode;
using platform::Find;
using platform::TheDesktop;

void InstallFace(ControlFace* face, LoopDriver* driver) {
    platform::Desktop& desktop = TheDesktop();
    desktop.face = face == nullptr ? &platform::NobodysFace() : face;
    desktop.driver = driver == nullptr ? &platform::NobodysFace() : driver;
    desktop.lastWindowNumber = 0;
    // What a former face hadn't heard of the dead is nothing to the new one.
    desktop.goneControls.clear();
    desktop.goneWindows.clear();
}

std::vector<WindowRef> WindowsInOrder() {
    return platform::WithoutExceptions<std::vector<WindowRef>>({}, [] {
        std::vector<WindowRef> windows;
        for (platform::WindowNode const* const window : TheDesktop().windows) {
            windows.push_back(window->Ref());
        }
        return windows;
    });
}

WindowRef FrontWindow() {
    auto const& windows = TheDesktop().windows;
    auto const front = std::find_if(windows.begin(), windows.end(),
                                    [](auto const* window) { return window->isVisible; });
    return front == windows.end() ? nullptr : (*front)->Ref();
}

std::int32_t ModalLoopCount() {
    return static_cast<std::int32_t>(TheDesktop().loops.size());
}

WindowRef ModalWindow() {
    auto const& loops = TheDesktop().loops;
    return loops.empty() || Find(loops.back().window) == nullptr ? nullptr : loops.back().window;
}

bool DescribeWindow(WindowRef window, WindowView* view) {
    return platform::Describe(Find(window), view);
}

bool DescribeControl(ControlRef control, ControlView* view) {
    return platform::Describe(Find(control), view);
}

std::vector<ControlRef> EmbeddedControls(ControlRef control) {
    return platform::WithoutExceptions<std::vector<ControlRef>>({}, [&] {
        std::vector<ControlRef> controls;
        ControlNode const* const node = Find(control);
        if (node == nullptr) {
            return controls;
        }
        for (ControlNode const* const embedded : node->embedded) {
            if (!platform::IsRadioGroup(*node)) {
                controls.push_back(embedded->Ref());
            }
        }
        return controls;
    });
}

bool DescribeList(ControlRef list, ListView* view) {
    if (view == nullptr) {
        return false;
    }
    *view = {};
    auto const* const rows = platform::FindAs<platform::ItemList>(list);
    return rows != nullptr && platform::WithoutExceptions(false, [&] {
               ListView made = platform::FrameOf(*rows);
               // From here on the owner may do what it likes to the list.
               for (RowView& row : made.rows) {
                   row.isContainer = platform::IsContainer(list, row.item);
                   for (ColumnView const& column : made.columns) {
                       row.cells.push_back(platform::CellText(list, row.item, column.code));
                   }
               }
               *view = std::move(made);
               return true;
           });
}
