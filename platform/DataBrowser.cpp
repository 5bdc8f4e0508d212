// SPDX-License-Identifier: Apache-2.0
#include "platform/DataBrowser.h"

#include <algorithm>
#include <unordered_set>

#include "platform/internal/Desktop.h"
#include "platform/internal/ListRows.h"

namespace platform {
namespace {

// Runs `work`, which returns a status, on a list; the face hears of it.
template <typename Work>
OSStatus OnList(ControlRef browser, Work&& work) {
    ControlNode* const node = Find(browser);
    ItemList* const list = node == nullptr ? nullptr : node->As<ItemList>();
    if (list == nullptr) {
        return paramErr;
    }
    return Guarded([&]() -> OSStatus {
        MarkChanged(*node);
        return work(*list);
    });
}

// The same for one that is only read: nobody hears of it.
template <typename Work>
OSStatus OnUnchangedList(ControlRef browser, Work&& work) {
    ItemList const* const list = FindAs<ItemList>(browser);
    return list == nullptr ? paramErr : Guarded([&]() -> OSStatus { return work(*list); });
}

bool HasColumn(ItemList const& list, DataBrowserPropertyID code) {
    return std::any_of(list.columns.begin(), list.columns.end(),
                       [&](ListColumn const& column) { return column.code == code; });
}

Items OneTo(std::uint32_t count) {
    Items items(count);
    for (std::uint32_t at = 0; at < count; ++at) {
        items[at] = at + 1;
    }
    return items;
}

void AddRow(ItemList& list, DataBrowserItemID container, DataBrowserItemID item) {
    if (item == kDataBrowserNoItem || list.rows.contains(item)) {
        return;
    }
    ReserveOneMore(list.rows.at(container).children);
    list.rows.emplace(item, ListRow{container, {}, false});
    list.rows.at(container).children.push_back(item);
}

// The rows with what lies below them, from all their containers at once.
void RemoveRows(ItemList& list, Items const& items) {
    std::unordered_set<DataBrowserItemID> gone;
    std::unordered_set<DataBrowserItemID> containers;
    Items waiting;
    for (DataBrowserItemID const item : items) {
        auto const row = list.rows.find(item);
        if (item != kDataBrowserNoItem && row != list.rows.end()) {
            waiting.push_back(item);
            containers.insert(row->second.container);
        }
    }
    while (!waiting.empty()) {
        DataBrowserItemID const next = waiting.back();
        waiting.pop_back();
        if (gone.insert(next).second) {
            auto const& children = list.rows.at(next).children;
            waiting.insert(waiting.end(), children.begin(), children.end());
        }
    }
    for (DataBrowserItemID const container : containers) {
        std::erase_if(list.rows.at(container).children,
                      [&](DataBrowserItemID item) { return gone.contains(item); });
    }
    for (DataBrowserItemID const item : gone) {
        list.rows.erase(item);
        list.selection.Remove(item);
    }
}

// In display order, whether their containers are open or not.
Items RowsBelow(ItemList const& list, DataBrowserItemID container, bool recurse,
                std::uint32_t state) {
    Items found;
    auto const& top = list.rows.at(container).children;
    Items waiting(top.rbegin(), top.rend());
    while (!waiting.empty()) {
        DataBrowserItemID const item = waiting.back();
        waiting.pop_back();
        if (state == kDataBrowserItemAnyState || list.selection.Contains(item)) {
            found.push_back(item);
        }
        if (recurse) {
            auto const& children = list.rows.at(item).children;
            waiting.insert(waiting.end(), children.rbegin(), children.rend());
        }
    }
    return found;
}

bool HasRow(ItemList const& list, DataBrowserItemID item) {
    return list.rows.contains(item);
}

void Select(ItemList& list, DataBrowserItemID item, bool selected) {
    if (item == kDataBrowserNoItem || !HasRow(list, item)) {
        return;
    }
    if (!selected) {
        list.selection.Remove(item);
    } else {
        list.selection.Add(item);
    }
}

bool IsState(std::uint32_t state) {
    return state == kDataBrowserItemAnyState || state == kDataBrowserItemIsSelected;
}

}  // namespace
}  // namespace platform

using platform::FindAs;
using platform::ItemList;
using platform::Items;
using platform::OnList;

OSStatus InitDataBrowserCallbacks(DataBrowserCallbacks* callbacks) {
    if (callbacks == nullptr) {
        return paramErr;
    }
    *callbacks = {};
    return noErr;
}

OSStatus SetDataBrowserCallbacks(ControlRef browser, DataBrowserCallbacks const* callbacks) {
    if (callbacks == nullptr) {
        return paramErr;
    }
    return OnList(browser, [&](ItemList& list) -> OSStatus {
        list.callbacks = *callbacks;
        return noErr;
    });
}

OSStatus SetDataBrowserListViewDisclosureColumn(ControlRef browser, DataBrowserPropertyID column,
                                                bool) {
    return OnList(browser, [&](ItemList& list) -> OSStatus {
        if (!platform::HasColumn(list, column)) {
            return errDataBrowserPropertyNotFound;
        }
        list.disclosureColumn = column;
        return noErr;
    });
}

OSStatus SetAutomaticControlDragTrackingEnabledForWindow(WindowRef window, bool) {
    return platform::Find(window) == nullptr ? paramErr : noErr;
}

OSStatus AddDataBrowserItems(ControlRef browser, DataBrowserItemID container, std::uint32_t count,
                             DataBrowserItemID const* items, DataBrowserPropertyID) {
    return OnList(browser, [&](ItemList& list) -> OSStatus {
        if (!platform::HasRow(list, container)) {
            return errDataBrowserItemNotFound;
        }
        Items const added = items == nullptr ? platform::OneTo(count) : Items(items, items + count);
        for (DataBrowserItemID const item : added) {
            platform::AddRow(list, container, item);
        }
        platform::SortRows(browser, container);
        return noErr;
    });
}

OSStatus RemoveDataBrowserItems(ControlRef browser, DataBrowserItemID container,
                                std::uint32_t count, DataBrowserItemID const* items,
                                DataBrowserPropertyID) {
    return OnList(browser, [&](ItemList& list) -> OSStatus {
        if (!platform::HasRow(list, container)) {
            return errDataBrowserItemNotFound;
        }
        Items const removed =
            items == nullptr ? list.rows.at(container).children : Items(items, items + count);
        platform::RemoveRows(list, removed);
        return noErr;
    });
}

OSStatus UpdateDataBrowserItems(ControlRef browser, DataBrowserItemID container, std::uint32_t,
                                DataBrowserItemID const*, DataBrowserPropertyID,
                                DataBrowserPropertyID) {
    return OnList(browser, [&](ItemList const& list) -> OSStatus {
        if (!platform::HasRow(list, container)) {
            return errDataBrowserItemNotFound;
        }
        platform::SortRows(browser, container);
        return noErr;
    });
}

OSStatus GetDataBrowserItemCount(ControlRef browser, DataBrowserItemID container, bool recurse,
                                 std::uint32_t state, std::uint32_t* count) {
    if (count == nullptr) {
        return paramErr;
    }
    *count = 0;
    return platform::OnUnchangedList(browser, [&](ItemList const& list) -> OSStatus {
        if (!platform::IsState(state)) {
            return paramErr;
        }
        if (!platform::HasRow(list, container)) {
            return errDataBrowserItemNotFound;
        }
        *count =
            static_cast<std::uint32_t>(platform::RowsBelow(list, container, recurse, state).size());
        return noErr;
    });
}

OSStatus GetDataBrowserItems(ControlRef browser, DataBrowserItemID container, bool recurse,
                             std::uint32_t state, DataBrowserItemID* items, std::uint32_t room) {
    if (items == nullptr) {
        return paramErr;
    }
    std::fill(items, items + room, kDataBrowserNoItem);
    return platform::OnUnchangedList(browser, [&](ItemList const& list) -> OSStatus {
        if (!platform::IsState(state)) {
            return paramErr;
        }
        if (!platform::HasRow(list, container)) {
            return errDataBrowserItemNotFound;
        }
        Items const found = platform::RowsBelow(list, container, recurse, state);
        std::copy_n(found.rbegin(), std::min<std::size_t>(room, found.size()), items);
        return noErr;
    });
}

OSStatus GetDataBrowserSelectionAnchor(ControlRef browser, DataBrowserItemID* first,
                                       DataBrowserItemID* last) {
    if (first == nullptr || last == nullptr) {
        return paramErr;
    }
    *first = *last = kDataBrowserNoItem;
    return platform::OnUnchangedList(browser, [&](ItemList const& list) -> OSStatus {
        if (!list.selection.IsEmpty()) {
            *first = list.selection.First();
            *last = list.selection.Last();
        }
        return noErr;
    });
}

OSStatus SetDataBrowserSelectedItems(ControlRef browser, std::uint32_t count,
                                     DataBrowserItemID const* items,
                                     DataBrowserSetOption operation) {
    if (items == nullptr && count > 0) {
        return paramErr;
    }
    return OnList(browser, [&](ItemList& list) -> OSStatus {
        if (operation == kDataBrowserItemsAssign) {
            list.selection = {};
        }
        for (std::uint32_t at = 0; at < count; ++at) {
            bool const selects = operation == kDataBrowserItemsToggle
                                     ? !list.selection.Contains(items[at])
                                     : operation != kDataBrowserItemsRemove;
            platform::Select(list, items[at], selects);
        }
        return noErr;
    });
}

bool IsDataBrowserItemSelected(ControlRef browser, DataBrowserItemID item) {
    ItemList const* const list = FindAs<ItemList>(browser);
    return list != nullptr && list->selection.Contains(item);
}
